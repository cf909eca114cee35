// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_INSPECT_WORDS_SENSORTYPES_H
#define RECORDKIT_INSPECT_WORDS_SENSORTYPES_H

#include <optional>
#include <string>
#include <vector>

namespace recordkit::inspect {

/// The last sensor type that the standard names, and the first OEM type.
constexpr unsigned char LAST_SENSOR_TYPE = 0x2C;
constexpr unsigned char FIRST_OEM_SENSOR_TYPE = 0xC0;

/// Whether the standard has no meaning for a sensor type, and leaves none to OEMs.
constexpr bool isReservedSensorType(unsigned char sensorType)
{
    return sensorType > LAST_SENSOR_TYPE && sensorType < FIRST_OEM_SENSOR_TYPE;
}

/// Name of a sensor type (IPMI v2.0, table 42-3); "OEM C7h" for OEM types, "reserved 73h" for those
/// without a name.
std::string sensorTypeName(unsigned char sensorType);

/// Reads a sensor type: a name of the standard as matchWord takes it, a name as above, or a number
/// (7, 0x07, 07h).
std::optional<unsigned char> findSensorType(const std::string& text);
/// The names of the standard.
std::vector<std::string> sensorTypeNames();

}

#endif
