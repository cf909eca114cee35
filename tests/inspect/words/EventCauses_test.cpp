// SPDX-License-Identifier: Apache-2.0
// What event data 2 and 3 mean, code by code as the standard defines it (IPMI v2.0, tables 29-6 and
// 42-3).
#include <recordkit/inspect/words/EventCauses.h>

#include <cstdio>
#include <gtest/gtest.h>
#include <map>
#include <string>
#include <vector>

using namespace recordkit::inspect;

namespace {

EventCauses causesOf(unsigned char eventType, unsigned char sensorType, unsigned int data1,
                     unsigned int data2, unsigned int data3)
{
    const unsigned char data[3] = {static_cast<unsigned char>(data1),
                                   static_cast<unsigned char>(data2),
                                   static_cast<unsigned char>(data3)};
    return eventCauses(eventType, sensorType, data);
}

std::string data2Of(unsigned char sensorType, unsigned int data1, unsigned int data2,
                    unsigned int data3 = 0xFF)
{
    return causesOf(0x6F, sensorType, data1, data2, data3).data2;
}

std::string data3Of(unsigned char sensorType, unsigned int data1, unsigned int data3,
                    unsigned int data2 = 0xFF)
{
    return causesOf(0x6F, sensorType, data1, data2, data3).data3;
}

std::string hex(unsigned int value, int digits)
{
    char text[16];
    std::snprintf(text, sizeof text, digits == 1 ? "%Xh" : "%02Xh", value);
    return text;
}

/// A group of bits with words for its codes. The other bits of the byte have the values in `rest`,
/// which say `before` and `after`.
struct Codes {
    unsigned char sensorType;
    unsigned int offset;
    int byte;
    unsigned int shift;
    unsigned int width;
    std::vector<std::string>
        words;        ///< by code; "" for none, "-" for a reserved one, as after the end
    const char* what; ///< before the number of a reserved one
    unsigned int rest;
    const char* before;
    const char* after;
};

const char* const RESERVED = "-";

const std::vector<std::string> FIRMWARE_PROGRESS = {
    "",
    "Memory initialization",
    "Hard-disk initialization",
    "Secondary processor(s) initialization",
    "User authentication",
    "User-initiated system setup",
    "USB resource configuration",
    "PCI resource configuration",
    "Option ROM initialization",
    "Video initialization",
    "Cache initialization",
    "SM Bus initialization",
    "Keyboard controller initialization",
    "Embedded controller/management controller initialization",
    "Docking station attachment",
    "Enabling docking station",
    "Docking station ejection",
    "Disabling docking station",
    "Calling operating system wake-up vector",
    "Starting operating system boot process",
    "Baseboard or motherboard initialization",
    RESERVED,
    "Floppy initialization",
    "Keyboard test",
    "Pointing device test",
    "Primary processor initialization",
};

const std::vector<std::string> ACPI_STATES = {
    "S0/G0 working",
    "S1 sleeping with system h/w & processor context maintained",
    "S2 sleeping, processor context lost",
    "S3 sleeping, processor & h/w context lost, memory retained",
    "S4 non-volatile sleep / suspend-to-disk",
    "S5/G2 soft-off",
    "S4/S5 soft-off, particular S4/S5 state cannot be determined",
    "G3 Mechanical Off",
    "Sleeping in an S1, S2, or S3 state",
    "G1 sleeping",
    "S5 entered by override",
    "Legacy ON state",
    "Legacy OFF state",
};

std::vector<std::string> eachAfter(const std::string& what, std::vector<std::string> words)
{
    for (std::string& each : words) {
        each = what + " " + each;
    }
    return words;
}

std::vector<std::string> andThen(std::vector<std::string> words, const std::string& last)
{
    words.push_back(last);
    return words;
}

const Codes CODES[] = {
    {0x08,
     6,
     3,
     0,
     4,
     {"Vendor mismatch", "Revision mismatch", "Processor missing", "Power Supply rating mismatch",
      "Voltage rating mismatch"},
     "error type",
     0,
     "",
     ""},
    {0x0F,
     0,
     2,
     0,
     8,
     {"", "No system memory is physically installed", "No usable system memory",
      "Unrecoverable hard-disk/ATAPI/IDE device failure", "Unrecoverable system-board failure",
      "Unrecoverable diskette subsystem failure", "Unrecoverable hard-disk controller failure",
      "Unrecoverable PS/2 or USB keyboard failure", "Removable boot media not found",
      "Unrecoverable video controller failure", "No video device detected",
      "Firmware (BIOS) ROM corruption detected", "CPU voltage mismatch",
      "CPU speed matching failure"},
     "error",
     0,
     "",
     ""},
    {0x0F, 1, 2, 0, 8, FIRMWARE_PROGRESS, "progress", 0, "", ""},
    {0x0F, 2, 2, 0, 8, FIRMWARE_PROGRESS, "progress", 0, "", ""},
    {0x12,
     3,
     2,
     4,
     4,
     {"entry added", "entry added because the event has no standard one",
      "entry added along with SEL entries", "log cleared", "log disabled", "log enabled"},
     "action",
     0x00,
     "",
     ", MCA log"},
    {0x12,
     3,
     2,
     0,
     4,
     {"MCA log", "OEM log 1", "OEM log 2"},
     "log type",
     0x40,
     "log disabled, ",
     ""},
    {0x12, 4, 2, 0, 1, {"", "alert"}, "", 0, "", ""},
    {0x12, 4, 2, 1, 1, {"", "power off"}, "", 0, "", ""},
    {0x12, 4, 2, 2, 1, {"", "reset"}, "", 0, "", ""},
    {0x12, 4, 2, 3, 1, {"", "power cycle"}, "", 0, "", ""},
    {0x12, 4, 2, 4, 1, {"", "OEM action"}, "", 0, "", ""},
    {0x12, 4, 2, 5, 1, {"", "diagnostic interrupt (NMI)"}, "", 0, "", ""},
    {0x12, 5, 2, 7, 1, {"first of a pair", "second of a pair"}, "", 0x01, "", ", SDR clock"},
    {0x12, 5, 2, 0, 4, {"SEL clock", "SDR clock"}, "clock", 0x80, "second of a pair, ", ""},
    {0x19, 0, 2, 0, 8, eachAfter("requested power state", ACPI_STATES), "requested power state", 0,
     "", ""},
    {0x19, 0, 3, 0, 8, andThen(eachAfter("power state at that time", ACPI_STATES), ""),
     "power state at that time", 0, "", ""},
    {0x1D,
     7,
     2,
     0,
     4,
     {"", "Chassis Control command", "reset via pushbutton", "power-up via power pushbutton",
      "Watchdog expiration", "OEM cause", "automatic power-up, policy 'always restore'",
      "automatic power-up, policy 'restore previous power state'", "reset via PEF",
      "power-cycle via PEF", "soft reset", "power-up via RTC"},
     "restart cause",
     0,
     "",
     ""},
    {0x21,
     0,
     2,
     0,
     7,
     {"PCI", "Drive Array", "External Peripheral Connector", "Docking",
      "other standard internal expansion slot", "slot of the sensor's entity", "AdvancedTCA",
      "DIMM/memory device", "FAN", "PCI Express", "SCSI (parallel)", "SATA / SAS", "USB"},
     "slot type",
     0,
     "",
     ""},
    {0x23,
     0,
     2,
     4,
     4,
     {"interrupt none", "interrupt SMI", "interrupt NMI", "interrupt Messaging Interrupt", RESERVED,
      RESERVED, RESERVED, RESERVED, RESERVED, RESERVED, RESERVED, RESERVED, RESERVED, RESERVED,
      RESERVED},
     "interrupt",
     0x0F,
     "",
     ""},
    {0x23,
     8,
     2,
     0,
     4,
     {RESERVED, "timer use BIOS FRB2", "timer use BIOS/POST", "timer use OS Load",
      "timer use SMS/OS", "timer use OEM", RESERVED, RESERVED, RESERVED, RESERVED, RESERVED,
      RESERVED, RESERVED, RESERVED, RESERVED},
     "timer use",
     0xF0,
     "",
     ""},
    {0x28, 5, 2, 7, 1, {"physical FRU device", "logical FRU device"}, "", 0, "", ""},
    {0x28, 5, 2, 3, 2, {"", ", LUN 1", ", LUN 2", ", LUN 3"}, "", 0x80, "logical FRU device", ""},
    {0x28,
     5,
     2,
     0,
     3,
     {"", ", private bus 1", ", private bus 2", ", private bus 3", ", private bus 4",
      ", private bus 5", ", private bus 6", ", private bus 7"},
     "",
     0x00,
     "physical FRU device",
     ""},
    {0x2A,
     1,
     3,
     4,
     2,
     {"", "deactivated by Close Session command, ", "deactivated by timeout, ",
      "deactivated by configuration change, "},
     "",
     0x01,
     "",
     "channel 1"},
    {0x2B,
     1,
     2,
     0,
     8,
     {"",
      "management controller device ID",
      "management controller firmware revision",
      "management controller device revision",
      "management controller manufacturer ID",
      "management controller IPMI version",
      "management controller auxiliary firmware ID",
      "management controller firmware boot block",
      "other management controller firmware",
      "system firmware (EFI / BIOS) change",
      "SMBIOS change",
      "operating system change",
      "operating system loader change",
      "service or diagnostic partition change",
      "management software agent change",
      "management software application change",
      "management software middleware change",
      "programmable hardware change",
      "board/FRU module change",
      "board/FRU component change",
      "board/FRU replaced with equivalent version",
      "board/FRU replaced with newer version",
      "board/FRU replaced with older version",
      "board/FRU hardware configuration change"},
     "version change type",
     0,
     "",
     ""},
    {0x2C,
     4,
     2,
     4,
     4,
     {"Normal State Change", "Change Commanded by software external to FRU",
      "State Change due to operator changing a Handle latch",
      "State Change due to operator pressing the hot swap push button",
      "State Change due to FRU programmatic action", "Communication Lost",
      "Communication Lost due to local failure", "State Change due to unexpected extraction",
      "State Change due to operator intervention/update", "Unable to compute IPMB address",
      "Unexpected Deactivation", RESERVED, RESERVED, RESERVED, RESERVED, ""},
     "cause",
     0x04,
     "",
     ""},
    {0x2C,
     0,
     2,
     0,
     4,
     {"", "previous state FRU Inactive", "previous state FRU Activation Requested",
      "previous state FRU Activation In Progress", "previous state FRU Active",
      "previous state FRU Deactivation Requested", "previous state FRU Deactivation In Progress",
      "previous state FRU Communication Lost", "previous state offset 8", "previous state offset 9",
      "previous state offset 10", "previous state offset 11", "previous state offset 12",
      "previous state offset 13", "previous state offset 14"},
     "",
     0xF0,
     "",
     ""},
};

/// The offsets of a sensor type for which event data 2 and 3 have a meaning: bit n for offset n.
struct Meaning {
    unsigned char sensorType;
    unsigned int offsets2;
    unsigned int offsets3;
};

const Meaning MEANINGS[] = {
    {0x05, 0x0010, 0x0000}, {0x08, 0x0000, 0x0040}, {0x0C, 0x0000, 0x07FF}, {0x0F, 0x0007, 0x0000},
    {0x10, 0x0043, 0x0062}, {0x12, 0x0038, 0x0000}, {0x19, 0x0001, 0x0001}, {0x1D, 0x0080, 0x0080},
    {0x21, 0x03FF, 0x03FF}, {0x23, 0x01FF, 0x0000}, {0x28, 0x0031, 0x0020}, {0x2A, 0x000F, 0x000F},
    {0x2B, 0x00FF, 0x0000}, {0x2C, 0x00FF, 0x0000},
};

/// Whether event data 2 or 3 says something for any value with the given event data 1.
bool saysSomething(unsigned char eventType, unsigned char sensorType, unsigned int data1, int byte)
{
    for (unsigned int value = 0; value < 256; ++value) {
        const EventCauses causes = causesOf(eventType, sensorType, data1, value, value);
        if (!(byte == 2 ? causes.data2 : causes.data3).empty()) {
            return true;
        }
    }
    return false;
}

}

TEST(EventCauses, EveryCodeHasItsWordsAndAReservedOneItsNumber)
{
    std::map<int, int> count;
    for (const Codes& codes : CODES) {
        const unsigned int last = codes.width == 8 ? 0xFE : (1U << codes.width) - 1;
        for (unsigned int code = 0; code <= last; ++code) {
            const unsigned int value = code << codes.shift | codes.rest;
            if (value == 0xFF) {
                continue;
            }
            const bool isReserved = code >= codes.words.size() || codes.words[code] == RESERVED;
            const int digits = codes.width > 4 ? 2 : 1;
            const std::string words =
                codes.before +
                (isReserved ? codes.what + (" " + hex(code, digits)) : codes.words[code]) +
                codes.after;
            EXPECT_EQ(codes.byte == 2 ? data2Of(codes.sensorType, 0xC0 | codes.offset, value)
                                      : data3Of(codes.sensorType, 0x30 | codes.offset, value),
                      words)
                << hex(codes.sensorType, 2) << " offset " << codes.offset << " value "
                << hex(value, 2);
            count[codes.sensorType] += isReserved ? 0 : 1;
        }
    }
    const std::map<int, int> ofTheStandard = {
        {0x08, 5}, {0x0F, 64}, {0x12, 25}, {0x19, 27}, {0x1D, 12}, {0x21, 13},
        {0x23, 9}, {0x28, 14}, {0x2A, 4},  {0x2B, 24}, {0x2C, 27},
    };
    EXPECT_EQ(count, ofTheStandard);
}

TEST(EventCauses, ExactlyTheOffsetsOfTheStandardHaveThem)
{
    for (unsigned int sensorType = 0; sensorType < 256; ++sensorType) {
        unsigned int offsets2 = 0;
        unsigned int offsets3 = 0;
        for (const Meaning& meaning : MEANINGS) {
            if (meaning.sensorType == sensorType) {
                offsets2 = meaning.offsets2;
                offsets3 = meaning.offsets3;
            }
        }
        for (unsigned int offset = 0; offset < 16; ++offset) {
            const auto type = static_cast<unsigned char>(sensorType);
            EXPECT_EQ(saysSomething(0x6F, type, 0xF0 | offset, 2), (offsets2 >> offset & 1) != 0)
                << hex(sensorType, 2) << " " << offset;
            EXPECT_EQ(saysSomething(0x6F, type, 0xF0 | offset, 3), (offsets3 >> offset & 1) != 0)
                << hex(sensorType, 2) << " " << offset;
        }
    }
}

TEST(EventCauses, OnlyTheFormOfTheStandardIsRead)
{
    for (const Meaning& meaning : MEANINGS) {
        for (unsigned int offset = 0; offset < 16; ++offset) {
            for (const unsigned int form : {0x00U, 0x80U}) {
                EXPECT_FALSE(saysSomething(0x6F, meaning.sensorType, form | 0x30 | offset, 2));
            }
            for (const unsigned int form : {0x00U, 0x10U, 0x20U}) {
                EXPECT_FALSE(saysSomething(0x6F, meaning.sensorType, 0xC0 | form | offset, 3));
            }
            // The codes belong to the offsets of sensor-specific events.
            for (const unsigned char eventType : {0x01, 0x03, 0x0B, 0x70}) {
                EXPECT_FALSE(saysSomething(eventType, meaning.sensorType, 0xF0 | offset, 2));
                EXPECT_FALSE(saysSomething(eventType, meaning.sensorType, 0xF0 | offset, 3));
            }
        }
    }
}

TEST(EventCauses, NumbersAreCountedAsTheStandardCountsThem)
{
    EXPECT_EQ(data2Of(0x05, 0xC4, 0x00), "network controller 0");
    EXPECT_EQ(data2Of(0x05, 0xC4, 0xFE), "network controller 254");
    EXPECT_EQ(data3Of(0x0C, 0x31, 0x00), "memory module 0");
    EXPECT_EQ(data3Of(0x0C, 0x3A, 0x13), "memory module 19");
    EXPECT_EQ(data2Of(0x10, 0xC0, 0x03), "memory module 3");
    EXPECT_EQ(data2Of(0x10, 0xC6, 0x03), "processor 3");
    EXPECT_EQ(data3Of(0x1D, 0x37, 0x0E), "channel 14");
    EXPECT_EQ(data3Of(0x21, 0x30, 0x00), "slot 0");
    EXPECT_EQ(data3Of(0x21, 0x39, 0xFE), "slot 254");
    EXPECT_EQ(data2Of(0x28, 0xC0, 0x0A), "sensor 0Ah");
    EXPECT_EQ(data2Of(0x28, 0xC4, 0xFE), "sensor FEh");
    EXPECT_EQ(data2Of(0x2A, 0xC0, 0x3F), "user 63");
    EXPECT_EQ(data3Of(0x2A, 0x30, 0x0F), "channel 15");
    EXPECT_EQ(data2Of(0x2A, 0xC0, 0x00), "") << "unspecified";
}

TEST(EventCauses, WhatAByteThatIsNotPresentSaysIsNothing)
{
    for (const Meaning& meaning : MEANINGS) {
        for (unsigned int offset = 0; offset < 16; ++offset) {
            EXPECT_EQ(data2Of(meaning.sensorType, 0xF0 | offset, 0xFF), "");
            EXPECT_EQ(data3Of(meaning.sensorType, 0xF0 | offset, 0xFF), "");
        }
    }
    EXPECT_EQ(causesOf(0x0B, 0x08, 0x40, 0xFF, 0xFF).data2, "");
}

TEST(EventCauses, ReservedBitsAreGivenAsTheyAre)
{
    EXPECT_EQ(data3Of(0x08, 0x36, 0x10), "Vendor mismatch, reserved bits 10h");
    EXPECT_EQ(data3Of(0x08, 0x36, 0xF4), "Voltage rating mismatch, reserved bits F0h");
    EXPECT_EQ(data3Of(0x10, 0x31, 0xF0), "all its events, reserved bits C0h");
    EXPECT_EQ(data3Of(0x10, 0xF6, 0x81, 3), "vendor-specific number, reserved bits 01h");
    EXPECT_EQ(data3Of(0x10, 0x36, 0x01), "reserved bits 01h");
    EXPECT_EQ(data2Of(0x12, 0xC4, 0x40), "reserved bits 40h");
    EXPECT_EQ(data2Of(0x12, 0xC5, 0xF1), "second of a pair, SDR clock, reserved bits 70h");
    EXPECT_EQ(data2Of(0x1D, 0xC7, 0x14), "Watchdog expiration, reserved bits 10h");
    EXPECT_EQ(data2Of(0x21, 0xC0, 0x81), "Drive Array, reserved bits 80h");
    EXPECT_EQ(data2Of(0x28, 0xC5, 0xE0), "logical FRU device, reserved bits 60h");
    EXPECT_EQ(data2Of(0x2A, 0xC0, 0xC1), "user 1, reserved bits C0h");
    EXPECT_EQ(data3Of(0x2A, 0x30, 0x41), "channel 1, reserved bits 40h");
}

TEST(EventCauses, LoggingIsDisabledForATypeAndAnOffset)
{
    EXPECT_EQ(data2Of(0x10, 0xC1, 0x01), "event type threshold");
    EXPECT_EQ(data2Of(0x10, 0xC1, 0x0C), "event type ACPI device power state");
    EXPECT_EQ(data2Of(0x10, 0xC1, 0x6F), "event type sensor-specific");
    for (const unsigned int other : {0x00U, 0x0DU, 0x6EU, 0x70U}) {
        EXPECT_EQ(data2Of(0x10, 0xC1, other), "event type " + hex(other, 2));
    }
    EXPECT_EQ(data3Of(0x10, 0xF1, 0x11, 0x0B), "Redundancy Lost asserted");
    EXPECT_EQ(data3Of(0x10, 0xF1, 0x01, 0x0B), "Redundancy Lost deasserted");
    EXPECT_EQ(data3Of(0x10, 0xF1, 0x1F, 0x0B), "offset 15 asserted");
    EXPECT_EQ(data3Of(0x10, 0xF1, 0x31, 0x0B), "all its events");
    // A sensor-specific event is one of a sensor type that the event does not name.
    EXPECT_EQ(data3Of(0x10, 0xF1, 0x11, 0x6F), "offset 1 asserted");
    // Without event data 2.
    EXPECT_EQ(data3Of(0x10, 0x31, 0x11, 0x0B), "offset 1 asserted");
    EXPECT_EQ(data3Of(0x10, 0xF1, 0x11, 0xFF), "offset 1 asserted");
}

TEST(EventCauses, ProcessorHasTheNumberOfAnInstanceOrOfTheVendor)
{
    EXPECT_EQ(data2Of(0x10, 0xF6, 0x03, 0x80), "processor 3");
    EXPECT_EQ(data3Of(0x10, 0xF6, 0x80, 0x03), "vendor-specific number");
    EXPECT_EQ(data3Of(0x10, 0xF6, 0x00, 0x03), "");
    // Without a number.
    EXPECT_EQ(data3Of(0x10, 0x36, 0x80, 0x03), "");
    EXPECT_EQ(data3Of(0x10, 0xF6, 0x80, 0xFF), "");
}

TEST(EventCauses, LogIsAlmostFullByPercent)
{
    EXPECT_EQ(data3Of(0x10, 0x35, 0x00), "0 % full");
    EXPECT_EQ(data3Of(0x10, 0x35, 0x64), "100 % full");
    EXPECT_EQ(data3Of(0x10, 0x35, 0x65), "filling 65h");
}

TEST(EventCauses, SeveralActionsAreAllGiven)
{
    EXPECT_EQ(data2Of(0x12, 0xC4, 0x3F),
              "alert, power off, reset, power cycle, OEM action, diagnostic interrupt (NMI)");
    EXPECT_EQ(data2Of(0x12, 0xC4, 0x00), "");
}

TEST(EventCauses, FruDeviceHasAnIdOrAnAddress)
{
    EXPECT_EQ(data3Of(0x28, 0xF5, 0x03, 0x80), "FRU device id 3");
    EXPECT_EQ(data3Of(0x28, 0xF5, 0xA0, 0x7F), "slave address A0h");
    EXPECT_EQ(data3Of(0x28, 0xF5, 0xA1, 0x00), "slave address A0h, reserved bits 01h");
    // Event data 2 does not say which.
    EXPECT_EQ(data3Of(0x28, 0x35, 0xA1, 0x80), "FRU device A1h");
    EXPECT_EQ(data3Of(0x28, 0xF5, 0xA1, 0xFF), "FRU device A1h");
    EXPECT_EQ(data2Of(0x28, 0xC5, 0x1A), "physical FRU device, LUN 3, private bus 2");
}

TEST(EventCauses, FruStateHasACauseAndThePreviousState)
{
    EXPECT_EQ(data2Of(0x2C, 0xC4, 0x13),
              "Change Commanded by software external to FRU, previous state FRU Activation In "
              "Progress");
    // The same state again means that the previous one is unknown.
    EXPECT_EQ(data2Of(0x2C, 0xC4, 0x14), "Change Commanded by software external to FRU");
    EXPECT_EQ(data2Of(0x2C, 0xC4, 0xF3), "previous state FRU Activation In Progress");
    EXPECT_EQ(data2Of(0x2C, 0xC4, 0xB8), "cause Bh, previous state offset 8");
}

TEST(EventCauses, DiscreteEventsHaveThePreviousStateAndASeverity)
{
    EXPECT_EQ(causesOf(0x0B, 0x08, 0x40, 0xF1, 0xFF).data2, "previous state Redundancy Lost");
    EXPECT_EQ(causesOf(0x0B, 0x08, 0x40, 0x2F, 0xFF).data2,
              "severity Transition to Critical from less severe");
    EXPECT_EQ(causesOf(0x0B, 0x08, 0x70, 0x80, 0x12).data2,
              "previous state Fully Redundant, severity Informational");
    EXPECT_EQ(causesOf(0x0B, 0x08, 0x70, 0x80, 0x12).data3, "") << "01b and 11b of event data 3";
    EXPECT_EQ(causesOf(0x0B, 0x08, 0x40, 0x9E, 0xFF).data2,
              "previous state offset 14, severity offset 9");
    EXPECT_EQ(causesOf(0x6F, 0x2A, 0x41, 0xF0, 0xFF).data2, "previous state Session Activated");
    EXPECT_EQ(causesOf(0x6F, 0xC7, 0x41, 0xF3, 0xFF).data2, "previous state offset 3");
    EXPECT_EQ(causesOf(0x02, 0x07, 0x41, 0xF0, 0xFF).data2, "previous state Transition to Idle");
    EXPECT_EQ(causesOf(0x0C, 0x07, 0x41, 0xF3, 0xFF).data2, "previous state D3 Power State");
    // For a threshold sensor it is a reading; the offsets of OEM types have no words.
    EXPECT_EQ(causesOf(0x01, 0x08, 0x40, 0x20, 0xFF).data2, "");
    EXPECT_EQ(causesOf(0x70, 0x08, 0x40, 0x20, 0xFF).data2, "");
    EXPECT_EQ(causesOf(0x7F, 0x08, 0x40, 0x20, 0xFF).data2, "");
    // Only in event data 2.
    EXPECT_EQ(causesOf(0x0B, 0x08, 0x10, 0x20, 0x20).data3, "");
}

TEST(EventCauses, FormsDependOnTheClassOfTheEventType)
{
    struct Case {
        unsigned char eventType;
        const char* data2[4];
        const char* data3[4];
    };
    const char* const previous = "previous state and severity";
    const Case cases[] = {
        {0x01,
         {"unspecified", "reading", "OEM code", "sensor-specific"},
         {"unspecified", "threshold", "OEM code", "sensor-specific"}},
        {0x02,
         {"unspecified", previous, "OEM code", "sensor-specific"},
         {"unspecified", "reserved", "OEM code", "sensor-specific"}},
        {0x6F,
         {"unspecified", previous, "OEM code", "sensor-specific"},
         {"unspecified", "reserved", "OEM code", "sensor-specific"}},
        {0x70,
         {"unspecified", previous, "OEM code", "reserved"},
         {"unspecified", "reserved", "OEM code", "reserved"}},
    };
    for (const Case& each : cases) {
        for (unsigned int bits = 0; bits < 4; ++bits) {
            const auto data1 = static_cast<unsigned char>(bits << 6 | (3 - bits) << 4 | 0x0F);
            EXPECT_STREQ(formName(formOfData2(each.eventType, data1)), each.data2[bits]);
            EXPECT_STREQ(formName(formOfData3(each.eventType, data1)), each.data3[3 - bits]);
        }
    }
}
