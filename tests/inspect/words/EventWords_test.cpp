// SPDX-License-Identifier: Apache-2.0
// The tables of names and words, row by row as the standard defines them.
#include <gtest/gtest.h>
#include <map>
#include <string>

#include <recordkit/inspect/words/EventTypes.h>
#include <recordkit/inspect/words/EventWords.h>
#include <recordkit/inspect/words/SensorTypes.h>

using namespace recordkit::inspect;

namespace {

struct Code {
    unsigned char code;
    unsigned int offsets; ///< bit n: the standard has words for offset n
    const char* name;
    const char* first; ///< words of the lowest and of the highest offset
    const char* last;
};

// IPMI v2.0, table 42-2.
const Code GENERIC[] = {
    {0x01, 0x0FFF, "threshold", "Lower Non-critical - going low",
     "Upper Non-recoverable - going high"},
    {0x02, 0x0007, "usage state", "Transition to Idle", "Transition to Busy"},
    {0x03, 0x0003, "digital state", "State Deasserted", "State Asserted"},
    {0x04, 0x0003, "predictive failure", "Predictive Failure deasserted",
     "Predictive Failure asserted"},
    {0x05, 0x0003, "limit", "Limit Not Exceeded", "Limit Exceeded"},
    {0x06, 0x0003, "performance", "Performance Met", "Performance Lags"},
    {0x07, 0x01FF, "severity", "Transition to OK", "Informational"},
    {0x08, 0x0003, "device presence", "Device Removed / Device Absent",
     "Device Inserted / Device Present"},
    {0x09, 0x0003, "device enabled", "Device Disabled", "Device Enabled"},
    {0x0A, 0x01FF, "availability", "Transition to Running", "Install Error"},
    {0x0B, 0x00FF, "redundancy", "Fully Redundant", "Redundancy Degraded from Non-redundant"},
    {0x0C, 0x000F, "ACPI device power state", "D0 Power State", "D3 Power State"},
};

// IPMI v2.0, table 42-3.
const Code SENSORS[] = {
    {0x01, 0, "Temperature", "", ""},
    {0x02, 0, "Voltage", "", ""},
    {0x03, 0, "Current", "", ""},
    {0x04, 0, "Fan", "", ""},
    {0x05, 0x007F, "Physical Security", "General Chassis Intrusion", "FAN area intrusion"},
    {0x06, 0x003F, "Platform Security Violation Attempt",
     "Secure Mode (Front Panel Lockout) Violation attempt",
     "Out-of-band Access Password Violation"},
    {0x07, 0x1FFF, "Processor", "IERR", "Correctable Machine Check Error"},
    {0x08, 0x00FF, "Power Supply", "Presence detected", "Power Supply Inactive (in standby state)"},
    {0x09, 0x00FF, "Power Unit", "Power Off / Power Down", "Predictive Failure"},
    {0x0A, 0, "Cooling Device", "", ""},
    {0x0B, 0, "Other Units-based Sensor", "", ""},
    {0x0C, 0x07FF, "Memory", "Correctable ECC / other correctable memory error",
     "Critical Overtemperature"},
    {0x0D, 0x01FF, "Drive Slot / Bay", "Drive Presence", "Rebuild/Remap Aborted"},
    {0x0E, 0, "POST Memory Resize", "", ""},
    {0x0F, 0x0007, "System Firmware Progress", "System Firmware Error (POST Error)",
     "System Firmware Progress"},
    {0x10, 0x007F, "Event Logging Disabled", "Correctable Memory Error Logging Disabled",
     "Correctable Machine Check Error Logging Disabled"},
    {0x11, 0x00FF, "Watchdog 1", "BIOS Watchdog Reset",
     "OS Watchdog pre-timeout Interrupt, non-NMI"},
    {0x12, 0x003F, "System Event", "System Reconfigured", "Timestamp Clock Synch"},
    {0x13, 0x0FFF, "Critical Interrupt", "Front Panel NMI / Diagnostic Interrupt", "Bus Degraded"},
    {0x14, 0x001F, "Button / Switch", "Power Button pressed", "FRU service request button"},
    {0x15, 0, "Module / Board", "", ""},
    {0x16, 0, "Microcontroller / Coprocessor", "", ""},
    {0x17, 0, "Add-in Card", "", ""},
    {0x18, 0, "Chassis", "", ""},
    {0x19, 0x0003, "Chip Set", "Soft Power Control Failure", "Thermal Trip"},
    {0x1A, 0, "Other FRU", "", ""},
    {0x1B, 0x0003, "Cable / Interconnect", "Cable/Interconnect is connected",
     "Configuration Error - Incorrect cable connected / Incorrect interconnection"},
    {0x1C, 0, "Terminator", "", ""},
    {0x1D, 0x00FF, "System Boot / Restart Initiated", "Initiated by power up", "System Restart"},
    {0x1E, 0x001F, "Boot Error", "No bootable media",
     "Timeout waiting for user selection of boot source"},
    {0x1F, 0x07FF, "Base OS Boot / Installation Status", "A: boot completed",
     "Base OS/Hypervisor Installation failed"},
    {0x20, 0x003F, "OS Stop / Shutdown", "Critical stop during OS load / initialization",
     "Agent Not Responding"},
    {0x21, 0x03FF, "Slot / Connector", "Fault Status asserted", "Slot holds spare device"},
    {0x22, 0x5FFF, "System ACPI Power State", "S0/G0 working", "Unknown"},
    {0x23, 0x01FF, "Watchdog 2", "Timer expired, status only", "Timer interrupt"},
    {0x24, 0x000F, "Platform Alert", "Platform generated page",
     "Platform generated SNMP trap, OEM format"},
    {0x25, 0x0007, "Entity Presence", "Entity Present", "Entity Disabled"},
    {0x26, 0, "Monitor ASIC / IC", "", ""},
    {0x27, 0x0003, "LAN", "LAN Heartbeat Lost", "LAN Heartbeat"},
    {0x28, 0x003F, "Management Subsystem Health", "Sensor access degraded or unavailable",
     "FRU failure"},
    {0x29, 0x0007, "Battery", "Battery low (predictive failure)", "Battery presence detected"},
    {0x2A, 0x000F, "Session Audit", "Session Activated", "Invalid password disable"},
    {0x2B, 0x00FF, "Version Change", "Hardware change detected with associated Entity",
     "Software or F/W Change detected with associated Entity was successful"},
    {0x2C, 0x00FF, "FRU State", "FRU Not Installed", "FRU Communication Lost"},
};

std::string words(unsigned char eventType, unsigned char sensorType, int offset)
{
    const char* const found = eventWords(eventType, sensorType, static_cast<unsigned char>(offset));
    return found == nullptr ? "" : found;
}

int highestBit(unsigned int mask)
{
    int bit = 0;
    while (mask >> (bit + 1) != 0) {
        ++bit;
    }
    return bit;
}

void expectSortedWithoutRepeats(const EventWordsTable& table)
{
    int before = -1;
    for (const EventWordsRow& row : table) {
        EXPECT_LT(before, row.code << 8 | row.offset);
        before = row.code << 8 | row.offset;
    }
}

}

TEST(EventWords, GenericEventsHaveWordsForExactlyTheOffsetsOfTheStandard)
{
    for (const Code& code : GENERIC) {
        EXPECT_EQ(eventTypeName(code.code), code.name);
        for (int offset = 0; offset < 256; ++offset) {
            const bool isThere = offset < 16 && (code.offsets >> offset & 1) != 0;
            EXPECT_EQ(words(code.code, 0x33, offset) != "", isThere)
                << int(code.code) << " " << offset;
        }
        EXPECT_EQ(words(code.code, 0x33, 0), code.first);
        EXPECT_EQ(words(code.code, 0xC7, highestBit(code.offsets)), code.last);
    }
}

TEST(EventWords, SensorSpecificEventsHaveWordsForExactlyTheOffsetsOfTheStandard)
{
    for (const Code& code : SENSORS) {
        EXPECT_EQ(sensorTypeName(code.code), code.name);
        for (int offset = 0; offset < 256; ++offset) {
            const bool isThere = offset < 16 && (code.offsets >> offset & 1) != 0;
            EXPECT_EQ(words(0x6F, code.code, offset) != "", isThere)
                << int(code.code) << " " << offset;
        }
        EXPECT_EQ(words(0x6F, code.code, 0), code.first);
        EXPECT_EQ(words(0x6F, code.code, highestBit(code.offsets)), code.last);
    }
}

TEST(EventWords, OtherCodesHaveNone)
{
    for (int eventType = 0; eventType < 256; ++eventType) {
        if ((eventType >= 0x01 && eventType <= 0x0C) || eventType == 0x6F) {
            continue;
        }
        EXPECT_EQ(words(static_cast<unsigned char>(eventType), 0x07, 0), "") << eventType;
    }
    for (int sensorType = 0x2D; sensorType < 256; ++sensorType) {
        EXPECT_EQ(words(0x6F, static_cast<unsigned char>(sensorType), 0), "") << sensorType;
    }
    EXPECT_EQ(words(0x6F, 0x00, 0), "");
}

TEST(EventWords, TablesAreSortedAndHoldEveryRowOnce)
{
    EXPECT_EQ(genericEvents().size(), 57U);
    expectSortedWithoutRepeats(genericEvents());
    EXPECT_EQ(sensorEvents().size(), 208U);
    expectSortedWithoutRepeats(sensorEvents());
}

TEST(EventWords, BothDirectionsOfEveryThresholdHaveTheirOwnOffset)
{
    const char* const levels[] = {"Lower Non-critical", "Lower Critical", "Lower Non-recoverable",
                                  "Upper Non-critical", "Upper Critical", "Upper Non-recoverable"};
    for (int level = 0; level < 6; ++level) {
        EXPECT_EQ(words(0x01, 0x01, 2 * level), std::string(levels[level]) + " - going low");
        EXPECT_EQ(words(0x01, 0x01, 2 * level + 1), std::string(levels[level]) + " - going high");
    }
}

TEST(EventTypes, OtherTypesAreCalledWhatTheyAre)
{
    EXPECT_EQ(eventTypeName(0x00), "unspecified");
    EXPECT_EQ(eventTypeName(0x0D), "reserved");
    EXPECT_EQ(eventTypeName(0x6E), "reserved");
    EXPECT_EQ(eventTypeName(0x6F), "sensor-specific");
    EXPECT_EQ(eventTypeName(0x70), "OEM");
    EXPECT_EQ(eventTypeName(0x7F), "OEM");
}

TEST(SensorTypes, OtherTypesAreCalledByTheirNumber)
{
    EXPECT_EQ(sensorTypeName(0x00), "reserved 00h");
    EXPECT_EQ(sensorTypeName(0x2D), "reserved 2Dh");
    EXPECT_EQ(sensorTypeName(0xBF), "reserved BFh");
    EXPECT_EQ(sensorTypeName(0xC0), "OEM C0h");
    EXPECT_EQ(sensorTypeName(0xFF), "OEM FFh");
}

TEST(SensorTypes, AreFoundByNameAndNumber)
{
    EXPECT_EQ(findSensorType("processor"), 0x07);
    EXPECT_EQ(findSensorType("FRU State"), 0x2C);
    EXPECT_EQ(findSensorType("oem c7h"), 0xC7);
    for (const char* text : {"12", "0x0C", "0Ch"}) {
        EXPECT_EQ(findSensorType(text), 0x0C) << text;
    }
    for (const char* text : {"0c h", "", "256", "toaster"}) {
        EXPECT_FALSE(findSensorType(text)) << text;
    }
}
