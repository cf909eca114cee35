// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_INSPECT_FIELDS_REGISTRY_H
#define RECORDKIT_INSPECT_FIELDS_REGISTRY_H

#include <recordkit/inspect/fields/RecordClass.h>

namespace recordkit::inspect {

// The classes of each subsystem, next to their tables.
extern const RecordClasses SERIAL_CLASSES;
extern const RecordClasses HARDWARE_CLASSES;
extern const RecordClasses VERSION_CLASSES;
extern const RecordClasses SEL_CLASSES;
extern const RecordClasses SENSOR_CLASSES;
extern const RecordClasses EEPROM_CLASSES;

/// The classes of some subsystems, one after another.
template <std::size_t Count>
std::vector<const RecordClass*> classesOf(const RecordClasses* const (&subsystems)[Count])
{
    std::vector<const RecordClass*> all;
    for (const RecordClasses* const subsystem : subsystems) {
        for (const RecordClass& each : *subsystem) {
            all.push_back(&each);
        }
    }
    return all;
}

}

#endif
