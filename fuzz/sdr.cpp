// SPDX-License-Identifier: Apache-2.0
// The walk over a repository of sensor data records, in each format, and every record in it.
#include <recordkit/inspect/sensor/Sensor.h>

#include "Fuzz.h"

using namespace recordkit::inspect;

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size)
{
    const std::string content(data, data + size);
    for (const SdrFormat format : {SdrFormat::AUTO, SdrFormat::DUMP, SdrFormat::RESPONSES}) {
        const SdrFile file = parseSdrFile(content, format);
        std::size_t end = 0;
        for (const SdrRecord& record : file.records) {
            // Every step advances, and stays in the file.
            fuzz::expect(record.offset >= end && record.offset + record.bytes.size() <= size);
            end = record.offset + record.bytes.size();
            fuzz::attempt([&] { eventOffsets(readSensor(record)); });
        }
    }
    return 0;
}
