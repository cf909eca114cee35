// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_INSPECT_WORDS_EVENTTYPES_H
#define RECORDKIT_INSPECT_WORDS_EVENTTYPES_H

#include <optional>
#include <string>
#include <vector>

namespace recordkit::inspect {

/// Event/reading types with a meaning of their own (IPMI v2.0, table 42-1).
constexpr unsigned char THRESHOLD_EVENT = 0x01;
constexpr unsigned char LAST_GENERIC_EVENT = 0x0C;
constexpr unsigned char SENSOR_SPECIFIC_EVENT = 0x6F;
constexpr unsigned char FIRST_OEM_EVENT = 0x70;

/// Whether the standard has no meaning for an event/reading type, and leaves none to OEMs.
constexpr bool isReservedEventType(unsigned char eventType)
{
    constexpr unsigned char LAST_OEM_EVENT = 0x7F;
    return (eventType > LAST_GENERIC_EVENT && eventType < SENSOR_SPECIFIC_EVENT) ||
           eventType > LAST_OEM_EVENT;
}

/// Name of an event/reading type: "threshold", "redundancy", "sensor-specific", "OEM", ...
std::string eventTypeName(unsigned char eventType);

/// Reads an event/reading type: the name of a type of the standard as matchWord takes it, or a
/// number (1, 0x6F, 6Fh).
std::optional<unsigned char> findEventType(const std::string& text);
/// The names that findEventType knows.
std::vector<std::string> eventTypeNames();

}

#endif
