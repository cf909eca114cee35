// SPDX-License-Identifier: Apache-2.0
#include <recordkit/inspect/fields/Registry.h>

namespace recordkit::inspect {

namespace {

constexpr const RecordClasses* SUBSYSTEMS[] = {
    &SERIAL_CLASSES, &HARDWARE_CLASSES, &VERSION_CLASSES,
    &SEL_CLASSES,    &SENSOR_CLASSES,   &EEPROM_CLASSES,
};

}

std::vector<const RecordClass*> recordClasses()
{
    return classesOf(SUBSYSTEMS);
}

}
