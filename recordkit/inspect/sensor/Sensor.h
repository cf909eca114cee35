// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_INSPECT_SENSOR_SENSOR_H
#define RECORDKIT_INSPECT_SENSOR_SENSOR_H

#include <optional>
#include <string>

#include <recordkit/inspect/sensor/SdrFile.h>

namespace recordkit::inspect {

/// The contents of a record of a repository, as a listing shows them.
struct Sensor {
    unsigned int id = 0;
    std::size_t offset = 0;
    unsigned char recordType = 0;
    bool isSensor = false; ///< a full or compact record; only these have the fields below
    unsigned char number = 0;
    std::string name; ///< also of event-only records and locators
    unsigned char sensorType = 0;
    unsigned char entityId = 0;
    unsigned char entityInstance = 0;
    unsigned char eventType = 0;
    std::string units;
    unsigned short assertionMask = 0;
    unsigned short deassertionMask = 0;
    unsigned short readingMask = 0;
    unsigned char positiveHysteresis = 0;
    unsigned char negativeHysteresis = 0;
    /// How many units a count of a difference such as a hysteresis is; nothing for a sensor without
    /// a linear conversion (IPMI v2.0, section 36.3).
    std::optional<double> unitsPerCount;
};

/// Reads a record. Throws DataError for a full or compact one that the library refuses.
Sensor readSensor(const SdrRecord& record);

/// The offsets that a discrete sensor can report: those of its assertion mask. Threshold sensors
/// have the twelve crossings of IPMI v2.0, table 42-2.
std::vector<unsigned int> eventOffsets(const Sensor& sensor);

}

#endif
