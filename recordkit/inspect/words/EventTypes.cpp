// SPDX-License-Identifier: Apache-2.0
#include <recordkit/inspect/words/EventTypes.h>

#include <iterator>

#include <recordkit/inspect/bytes/Numbers.h>
#include <recordkit/inspect/words/Match.h>

namespace recordkit::inspect {

namespace {

// clang-format off
constexpr const char* GENERIC_NAMES[] = {
    "threshold", // 01h
    "usage state", // 02h
    "digital state", // 03h
    "predictive failure", // 04h
    "limit", // 05h
    "performance", // 06h
    "severity", // 07h
    "device presence", // 08h
    "device enabled", // 09h
    "availability", // 0Ah
    "redundancy", // 0Bh
    "ACPI device power state", // 0Ch
};
// clang-format on
static_assert(std::size(GENERIC_NAMES) == LAST_GENERIC_EVENT, "one name for each generic type");

}

std::string eventTypeName(unsigned char eventType)
{
    if (eventType == 0) {
        return "unspecified";
    }
    if (eventType <= LAST_GENERIC_EVENT) {
        return GENERIC_NAMES[eventType - 1];
    }
    if (eventType == SENSOR_SPECIFIC_EVENT) {
        return "sensor-specific";
    }
    return eventType >= FIRST_OEM_EVENT ? "OEM" : "reserved";
}

std::vector<std::string> eventTypeNames()
{
    std::vector<std::string> names(std::begin(GENERIC_NAMES), std::end(GENERIC_NAMES));
    names.push_back(eventTypeName(SENSOR_SPECIFIC_EVENT));
    return names;
}

std::optional<unsigned char> findEventType(const std::string& text)
{
    if (const auto number = parseNumber(text, 0xFF)) {
        return static_cast<unsigned char>(*number);
    }
    const auto found = matchWord(text, eventTypeNames());
    if (!found) {
        return std::nullopt;
    }
    return *found < LAST_GENERIC_EVENT ? static_cast<unsigned char>(*found + 1)
                                       : SENSOR_SPECIFIC_EVENT;
}

}
