// SPDX-License-Identifier: Apache-2.0
// Which sensors does a repository describe, as `ipmitool sdr dump` saves it?
#include <cstdio>
#include <fstream>
#include <iterator>

#include <recordkit/inspect/sensor/Sensor.h>
#include <recordkit/inspect/words/SensorTypes.h>

using namespace recordkit::inspect;

int main(int argc, char** argv)
{
    std::ifstream file(argc == 2 ? argv[1] : "repository.sdr", std::ios::binary);
    const std::string bytes{std::istreambuf_iterator<char>(file), {}};
    for (const SdrRecord& record : parseSdrFile(bytes).records) {
        const Sensor sensor = readSensor(record);
        if (sensor.isSensor) {
            std::printf("%02Xh %-16s %s %s\n", sensor.number, sensor.name.c_str(),
                        sensorTypeName(sensor.sensorType).c_str(), sensor.units.c_str());
        }
    }
}
