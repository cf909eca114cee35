// SPDX-License-Identifier: Apache-2.0
#include "PeerNames.h"

#include <algorithm>
#include <cctype>

#include <recordkit/inspect/words/EventTypes.h>
#include <recordkit/inspect/words/SensorTypes.h>

namespace {

struct Alias {
    const char* peer;
    const char* ours;
};

// clang-format off
constexpr Alias SENSOR_TYPES[] = {
    {"Button", "Button / Switch"},
    {"Management Subsys Health", "Management Subsystem Health"},
    {"OS Boot", "Base OS Boot / Installation Status"},
    {"OS Critical Stop", "OS Stop / Shutdown"},
    {"Other", "Other Units-based Sensor"},
    {"Platform Security", "Platform Security Violation Attempt"},
    {"System Boot Initiated", "System Boot / Restart Initiated"},
    {"System Firmwares", "System Firmware Progress"},
};

constexpr Alias FIRMWARE_EVENTS[] = {
    {"Unknown Error", "System Firmware Error (POST Error)"},
    {"No system memory installed", "System Firmware Error (POST Error)"},
    {"CPU speed mismatch failure", "System Firmware Error (POST Error)"},
    {"Unknown Hang", "System Firmware Hang"},
    {"Memory initialization", "System Firmware Hang"},
    {"Unknown Progress", "System Firmware Progress"},
    {"Memory initialization", "System Firmware Progress"},
    {"System boot initiated", "System Firmware Progress"},
};

constexpr Alias EVENTS[] = {
    {"AC lost", "AC lost / Power input lost"},
    {"AC lost or out-of-range", "Power Supply input lost or out-of-range"},
    {"AC out-of-range, but present", "Power Supply input out-of-range, but present"},
    {"Absent", "Entity Absent"},
    {"Active", "FRU Active"},
    {"Communication lost", "FRU Communication Lost"},
    {"Config Error", "Configuration Error - Incorrect cable connected / Incorrect interconnection"},
    {"Config Error", "Configuration error"},
    {"Connected", "Cable/Interconnect is connected"},
    {"Correctable ECC logging limit reached", "Correctable ECC / other correctable memory error logging limit reached"},
    {"Correctable ECC", "Correctable ECC / other correctable memory error"},
    {"Device Absent", "Device Removed / Device Absent"},
    {"Device Installed", "Slot / Connector Device installed/attached"},
    {"Device Present", "Device Inserted / Device Present"},
    {"Disabled", "Entity Disabled"},
    {"Disabled", "Processor disabled"},
    {"Drive Present", "Drive Presence"},
    {"Error during system startup", "Critical stop during OS load / initialization"},
    {"Event logging disabled", "Event Type Logging Disabled"},
    {"FRU Service", "FRU service request button"},
    {"Failed", "Battery failed"},
    {"Failure detected", "Power Supply Failure detected"},
    {"Failure detected", "Power Unit Failure detected"},
    {"Fault Status", "Fault Status asserted"},
    {"Front Panel Lockout violation attempted", "Secure Mode (Front Panel Lockout) Violation attempt"},
    {"Hardware change detected", "Hardware change detected with associated Entity"},
    {"Heartbeat Lost", "LAN Heartbeat Lost"},
    {"Heartbeat", "LAN Heartbeat"},
    {"Identify Status", "Identify Status asserted"},
    {"Interlock", "Interlock asserted"},
    {"Log almost full", "SEL Almost Full"},
    {"Log full", "SEL Full"},
    {"Low", "Battery low (predictive failure)"},
    {"Memory Scrub Failed", "Memory Scrub Failed (stuck bit)"},
    {"NMI/Diag Interrupt", "Front Panel NMI / Diagnostic Interrupt"},
    {"Non-Redundant: Sufficient from Insufficient", "Non-redundant: Sufficient Resources from Insufficient Resources"},
    {"Non-Redundant: Sufficient from Redundant", "Non-redundant: Sufficient Resources from Redundant"},
    {"Not Installed", "FRU Not Installed"},
    {"OS Power Down", "OS Watchdog Power Down"},
    {"OS Reset", "OS Watchdog Reset"},
    {"Power Supply AC lost", "Power Supply input lost (AC/DC)"},
    {"Power off/down", "Power Off / Power Down"},
    {"Presence Detected", "Battery presence detected"},
    {"Presence detected", "Processor Presence detected"},
    {"Present", "Entity Present"},
    {"Ready for Device Installation", "Slot / Connector Ready for Device Installation"},
    {"Rebuild Aborted", "Rebuild/Remap Aborted"},
    {"Rebuild In Progress", "Rebuild/Remap in progress"},
    {"Sleeping in S1/S2/S3 state", "Sleeping in an S1, S2, or S3 state"},
    {"Spare Device", "Slot holds spare device"},
    {"System unplugged from LAN", "LAN Leash Lost"},
    {"Throttled", "Processor Automatically Throttled"},
    {"Timeout waiting for selection", "Timeout waiting for user selection of boot source"},
    {"Timer expired", "Timer expired, status only"},
    {"Timestamp Clock Sync", "Timestamp Clock Synch"},
    {"Uncorrectable ECC", "Uncorrectable ECC / other uncorrectable memory error"},
    {"Uncorrectable machine check exception", "Machine Check Exception (Uncorrectable)"},
    {"boot completed - device not specified", "Boot completed - boot device not specified"},
};
// clang-format on

/// Only letters and digits, in lower case: the rest is a matter of style.
std::string essence(const std::string& text)
{
    std::string result;
    for (const char character : text) {
        if (std::isalnum(static_cast<unsigned char>(character)) != 0) {
            result += static_cast<char>(std::tolower(static_cast<unsigned char>(character)));
        }
    }
    return result;
}

template <std::size_t Count>
bool isSame(const Alias (&aliases)[Count], const std::string& peer, const std::string& ours)
{
    return essence(peer) == essence(ours) ||
           std::any_of(std::begin(aliases), std::end(aliases), [&](const Alias& alias) {
               return peer == alias.peer && ours == alias.ours;
           });
}

}

bool isSameSensorType(const std::string& peerName, unsigned char sensorType)
{
    const bool hasName = sensorType != 0 && sensorType <= recordkit::inspect::LAST_SENSOR_TYPE;
    return hasName ? isSame(SENSOR_TYPES, peerName, recordkit::inspect::sensorTypeName(sensorType))
                   : peerName == "Unknown" || peerName == "reserved" || peerName == "OEM";
}

bool isSameEvent(const std::string& peerWords, unsigned char eventType, unsigned char sensorType,
                 const std::string& ourWords)
{
    if (eventType != recordkit::inspect::SENSOR_SPECIFIC_EVENT) {
        return isSame(EVENTS, peerWords, ourWords);
    }
    if (sensorType >= recordkit::inspect::FIRST_OEM_SENSOR_TYPE) {
        // ipmitool knows some OEM types of other bodies' standards.
        return ourWords.find("event") != std::string::npos;
    }
    constexpr unsigned char FIRMWARE_SENSOR = 0x0F;
    if (sensorType == FIRMWARE_SENSOR) {
        // It shows event data 2 in place of the event; ours follows a colon.
        return isSame(FIRMWARE_EVENTS, peerWords, ourWords.substr(0, ourWords.find(": ")));
    }
    return isSame(EVENTS, peerWords, ourWords);
}
