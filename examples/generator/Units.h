// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_EXAMPLES_GENERATOR_UNITS_H
#define RECORDKIT_EXAMPLES_GENERATOR_UNITS_H

#include <string>

namespace generator {

// The units of the server. None of them exists.

constexpr const char* MAKER = "Example Works";
constexpr unsigned int BOARDS = 2;
constexpr unsigned int CPUS = 2;  ///< of a board
constexpr unsigned int DIMMS = 8; ///< of a board

struct Unit {
    const char* name;
    const char* partNumber;
    const char* serialNumber;
};

constexpr Unit SERVER = {"Example Server", "EX-CH-2000", "CH26A00017"};
constexpr Unit SYSTEM_BOARDS[BOARDS] = {
    {"System Board", "EX-SB-2100", "SB26A00101"},
    {"System Board", "EX-SB-2100", "SB26A00102"},
};
constexpr Unit POWER_SUPPLIES[] = {
    {"Power Supply", "EX-PS-1100", "PS26A00031"},
    {"Power Supply", "EX-PS-1100", "PS26B00007"},
};
/// The second power supply until it failed.
constexpr Unit FAILED_POWER_SUPPLY = {"Power Supply", "EX-PS-1100", "PS26A00032"};
constexpr Unit FAN_TRAY = {"Fan Tray", "EX-FT-0600", "FT26A00009"};
constexpr Unit IO_UNIT = {"IO Unit", "EX-IO-0400", "IO26A00005"};
constexpr Unit PROCESSOR = {"Processor", "CA0042-0001", ""};

constexpr const char* DIMM_PART_NUMBER = "EX-DDR4-16G-2666";
constexpr unsigned int FIRST_DIMM_SERIAL = 0x26050101;

constexpr unsigned int dimmSerial(unsigned int board, unsigned int dimm)
{
    return FIRST_DIMM_SERIAL + board * 0x100 + dimm;
}

/// What wears out: a fan of board 0, and a module of board 1.
constexpr unsigned int WORN_FAN = 3;
constexpr unsigned int FAILING_DIMM = 5;

// Sensors, by the numbers that repository and events have. Those of a board's controller:

enum SensorNumber : unsigned char {
    INLET_TEMPERATURE = 0x01,
    FIRST_CPU_TEMPERATURE = 0x02,
    VOLTAGE_12 = 0x10,
    VOLTAGE_3_3 = 0x11,
    MEMORY_VOLTAGE = 0x12,
    FIRST_CPU = 0x20,
    FIRST_DIMM = 0x30,
    WATCHDOG = 0x40,
    BOOT_INITIATED = 0x41,
    VERSION_CHANGE = 0x42,
    SYSTEM_EVENT = 0x43,
    POWER_UNIT = 0x44,
    // Of board 0 only, whose controller manages the chassis:
    FIRST_FAN = 0x50,
    FIRST_POWER_SUPPLY = 0x60,
    REDUNDANCY = 0x62,
    FIRST_INPUT_VOLTAGE = 0x64,
    CHASSIS_INTRUSION = 0x66,
    FIRST_SLOT = 0x70,
    // Of the system firmware and of the operating system:
    POST_PROGRESS = 0x01,
    OS_BOOT = 0x01,
    OS_STOP = 0x02,
};

constexpr unsigned int FANS = 6;
constexpr unsigned int SLOTS = 4;

/// Who owns a sensor, as byte 1 of an event's generator id.
constexpr unsigned char CONTROLLERS[BOARDS] = {0x20, 0x24};
constexpr unsigned char SYSTEM_FIRMWARE = 0x01;
constexpr unsigned char OPERATING_SYSTEM = 0x41;

// Raw thresholds, with the conversions of the repository.

constexpr unsigned char INLET_WARM = 42; ///< degrees
constexpr unsigned char INLET_HOT = 47;
constexpr unsigned char CPU_WARM = 85;
constexpr unsigned char CPU_HOT = 95;
constexpr unsigned char FAN_SLOW = 100; ///< of 60 rpm
constexpr unsigned char FAN_TOO_SLOW = 80;
constexpr unsigned char VOLTAGE_3_3_LOW = 157; ///< of 20 mV
constexpr unsigned char INPUT_LOW = 103;       ///< of 2 V

/// The OEM's number in records of types C0h to DFh: one of those reserved for examples (RFC 5612).
constexpr unsigned int MANUFACTURER = 32473;

}

#endif
