// SPDX-License-Identifier: Apache-2.0
#include <recordkit/inspect/words/EventTypes.h>

#include <iterator>

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

}
