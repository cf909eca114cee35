// SPDX-License-Identifier: Apache-2.0
#include <recordkit/inspect/words/SensorNames.h>

namespace recordkit::inspect {

namespace {

unsigned int keyOf(unsigned char owner, unsigned char lun, unsigned char number)
{
    constexpr unsigned char LUN = 0x03;
    return static_cast<unsigned int>(owner << 16 | (lun & LUN) << 8 | number);
}

}

void SensorNames::add(unsigned char owner, unsigned char lun, unsigned char number,
                      const NamedSensor& sensor)
{
    sensors.emplace(keyOf(owner, lun, number), sensor);
}

const NamedSensor* SensorNames::find(const unsigned char (&generatorId)[2],
                                     unsigned char number) const
{
    const auto found = sensors.find(keyOf(generatorId[0], generatorId[1], number));
    return found == sensors.end() ? nullptr : &found->second;
}

}
