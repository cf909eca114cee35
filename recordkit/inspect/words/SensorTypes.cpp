// SPDX-License-Identifier: Apache-2.0
#include <recordkit/inspect/words/SensorTypes.h>

#include <fmt/format.h>
#include <iterator>
#include <strings.h>

#include <recordkit/inspect/bytes/Numbers.h>
#include <recordkit/inspect/words/Match.h>

namespace recordkit::inspect {

namespace {

// clang-format off
constexpr const char* NAMES[] = {
    "reserved", // 00h
    "Temperature", // 01h
    "Voltage", // 02h
    "Current", // 03h
    "Fan", // 04h
    "Physical Security", // 05h
    "Platform Security Violation Attempt", // 06h
    "Processor", // 07h
    "Power Supply", // 08h
    "Power Unit", // 09h
    "Cooling Device", // 0Ah
    "Other Units-based Sensor", // 0Bh
    "Memory", // 0Ch
    "Drive Slot / Bay", // 0Dh
    "POST Memory Resize", // 0Eh
    "System Firmware Progress", // 0Fh
    "Event Logging Disabled", // 10h
    "Watchdog 1", // 11h
    "System Event", // 12h
    "Critical Interrupt", // 13h
    "Button / Switch", // 14h
    "Module / Board", // 15h
    "Microcontroller / Coprocessor", // 16h
    "Add-in Card", // 17h
    "Chassis", // 18h
    "Chip Set", // 19h
    "Other FRU", // 1Ah
    "Cable / Interconnect", // 1Bh
    "Terminator", // 1Ch
    "System Boot / Restart Initiated", // 1Dh
    "Boot Error", // 1Eh
    "Base OS Boot / Installation Status", // 1Fh
    "OS Stop / Shutdown", // 20h
    "Slot / Connector", // 21h
    "System ACPI Power State", // 22h
    "Watchdog 2", // 23h
    "Platform Alert", // 24h
    "Entity Presence", // 25h
    "Monitor ASIC / IC", // 26h
    "LAN", // 27h
    "Management Subsystem Health", // 28h
    "Battery", // 29h
    "Session Audit", // 2Ah
    "Version Change", // 2Bh
    "FRU State", // 2Ch
};
// clang-format on
static_assert(std::size(NAMES) == LAST_SENSOR_TYPE + 1, "one name for each sensor type");

}

std::string sensorTypeName(unsigned char sensorType)
{
    if (sensorType != 0 && sensorType <= LAST_SENSOR_TYPE) {
        return NAMES[sensorType];
    }
    return fmt::format("{} {:02X}h", sensorType >= FIRST_OEM_SENSOR_TYPE ? "OEM" : "reserved",
                       sensorType);
}

std::optional<unsigned char> findSensorType(const std::string& text)
{
    if (const std::optional<unsigned long> number = parseNumber(text, 0xFF)) {
        return static_cast<unsigned char>(*number);
    }
    if (const auto found = matchWord(text, sensorTypeNames())) {
        return static_cast<unsigned char>(*found + 1);
    }
    for (unsigned int type = LAST_SENSOR_TYPE + 1U; type <= 0xFF; ++type) {
        const auto candidate = static_cast<unsigned char>(type);
        if (::strcasecmp(text.c_str(), sensorTypeName(candidate).c_str()) == 0) {
            return candidate;
        }
    }
    return std::nullopt;
}

std::vector<std::string> sensorTypeNames()
{
    return {std::begin(NAMES) + 1, std::end(NAMES)};
}

}
