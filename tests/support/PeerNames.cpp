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
    {"AC lost", "AC lost / Power input lost"},
    {"AC out-of-range, but present", "Power Supply input out-of-range, but present"},
    {"Absent", "Entity Absent"},
    {"Activation Requested", "FRU Activation Requested"},
    {"Activation in Progress", "FRU Activation In Progress"},
    {"Active", "FRU Active"},
    {"BIOS Reset", "BIOS Watchdog Reset"},
    {"Communication lost", "FRU Communication Lost"},
    {"Config Error", "Configuration Error - Incorrect cable connected / Incorrect interconnection"},
    {"Config Error", "Configuration error"},
    {"Connected", "Cable/Interconnect is connected"},
    {"Correctable ECC logging limit reached", "Correctable ECC / other correctable memory error logging limit reached"},
    {"Correctable ECC", "Correctable ECC / other correctable memory error"},
    {"Deactivation Requested", "FRU Deactivation Requested"},
    {"Deactivation in Progress", "FRU Deactivation In Progress"},
    {"Device Absent", "Device Removed / Device Absent"},
    {"Device Installed", "Slot / Connector Device installed/attached"},
    {"Device Present", "Device Inserted / Device Present"},
    {"Device Removal Request", "Slot / Connector Device Removal Request"},
    {"Disabled", "Entity Disabled"},
    {"Disabled", "Processor disabled"},
    {"Drive Present", "Drive Presence"},
    {"Error during system startup", "Critical stop during OS load / initialization"},
    {"Event logging disabled", "Event Type Logging Disabled"},
    {"FRB3/Processor startup/init failure", "FRB3/Processor Startup/Initialization failure"},
    {"FRU Latch", "FRU latch open"},
    {"FRU Service", "FRU service request button"},
    {"Failed", "Battery failed"},
    {"Failure detected", "Power Supply Failure detected"},
    {"Failure detected", "Power Unit Failure detected"},
    {"Fault Status", "Fault Status asserted"},
    {"Firmware or software change detected", "Firmware or software change detected with associated Entity"},
    {"Firmware or software change success", "Software or F/W Change detected with associated Entity was successful"},
    {"Firmware or software incompatibility detected", "Firmware or software incompatibility detected with associated Entity"},
    {"Front Panel Lockout violation attempted", "Secure Mode (Front Panel Lockout) Violation attempt"},
    {"Hardware change detected", "Hardware change detected with associated Entity"},
    {"Hardware change success", "Hardware Change detected with associated Entity was successful"},
    {"Hardware incompatibility detected", "Hardware incompatibility detected with associated Entity"},
    {"Heartbeat Lost", "LAN Heartbeat Lost"},
    {"Heartbeat", "LAN Heartbeat"},
    {"Identify Status", "Identify Status asserted"},
    {"Inactive", "FRU Inactive"},
    {"Installation aborted", "Base OS/Hypervisor Installation aborted"},
    {"Installation completed", "Base OS/Hypervisor Installation completed"},
    {"Installation failed", "Base OS/Hypervisor Installation failed"},
    {"Installation started", "Base OS/Hypervisor Installation started"},
    {"Interlock", "Interlock asserted"},
    {"Invalid or unsupported firmware or software version", "Entity contains an invalid or unsupported firmware or software version"},
    {"Invalid or unsupported hardware version", "Entity is of an invalid or unsupported hardware version"},
    {"Log almost full", "SEL Almost Full"},
    {"Log full", "SEL Full"},
    {"Low", "Battery low (predictive failure)"},
    {"Memory Scrub Failed", "Memory Scrub Failed (stuck bit)"},
    {"NMI/Diag Interrupt", "Front Panel NMI / Diagnostic Interrupt"},
    {"Non-Redundant: Sufficient from Insufficient", "Non-redundant: Sufficient Resources from Insufficient Resources"},
    {"Non-Redundant: Sufficient from Redundant", "Non-redundant: Sufficient Resources from Redundant"},
    {"Non-bootable disk in drive", "Non-bootable diskette left in drive"},
    {"Not Installed", "FRU Not Installed"},
    {"OS Expired", "OS Watchdog Expired, status only"},
    {"OS NMI/Diag Interrupt", "OS Watchdog NMI / Diagnostic Interrupt"},
    {"OS Power Cycle", "OS Watchdog Power Cycle"},
    {"OS Power Down", "OS Watchdog Power Down"},
    {"OS Reset", "OS Watchdog Reset"},
    {"OS Shut Down", "OS Watchdog Shut Down"},
    {"OS initiated hard reset", "OS / run-time software initiated hard reset"},
    {"OS initiated warm reset", "OS / run-time software initiated warm reset"},
    {"OS pre-timeout Interrupt", "OS Watchdog pre-timeout Interrupt, non-NMI"},
    {"PEF initiated soft shutdown", "Soft Shutdown initiated by PEF"},
    {"Parity Check In Progress", "Consistency Check / Parity Check in progress"},
    {"Power Supply AC lost", "Power Supply input lost (AC/DC)"},
    {"Power Supply Inactive", "Power Supply Inactive (in standby state)"},
    {"Power off/down", "Power Off / Power Down"},
    {"Pre-boot password violation - setup password", "Pre-boot Password Violation attempt - setup password"},
    {"Presence Detected", "Battery presence detected"},
    {"Presence detected", "Processor Presence detected"},
    {"Present", "Entity Present"},
    {"Ready for Device Installation", "Slot / Connector Ready for Device Installation"},
    {"Ready for Device Removal", "Slot / Connector Ready for Device Removal"},
    {"Rebuild Aborted", "Rebuild/Remap Aborted"},
    {"Rebuild In Progress", "Rebuild/Remap in progress"},
    {"S4/S5: soft-off", "S4/S5 soft-off, particular S4/S5 state cannot be determined"},
    {"Sleeping in S1/S2/S3 state", "Sleeping in an S1, S2, or S3 state"},
    {"Spare Device", "Slot holds spare device"},
    {"System unplugged from LAN", "LAN Leash Lost"},
    {"Throttled", "Memory Automatically Throttled"},
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
        // It shows event data 2 in place of the event.
        return isSame(FIRMWARE_EVENTS, peerWords, ourWords);
    }
    return isSame(EVENTS, peerWords, ourWords);
}

std::string textWithoutCause(const recordkit::inspect::Event& event)
{
    const std::string text = eventText(event);
    const std::string cause = eventCause(event);
    return cause.empty() ? text : text.substr(0, text.size() - cause.size() - 2);
}
