// SPDX-License-Identifier: Apache-2.0
#include "SeverityTable.h"

#include <iterator>

namespace {

using Entry = SeverityMap::offsetToSev_t;

constexpr auto NONE = SeverityMap::SEV_NONE;
constexpr auto WARNING = SeverityMap::SEV_NONCRITICAL;
constexpr auto CRITICAL = SeverityMap::SEV_CRITICAL;
constexpr auto FATAL = SeverityMap::SEV_NONRECOVERABLE;
constexpr auto MONITOR = SeverityMap::SEV_MONITOR;
constexpr auto NORMAL = SeverityMap::SEV_INFORMATIONAL;

/// Closes a list; sets nothing.
constexpr Entry END = {0xFF, NONE};

// clang-format off
constexpr Entry REDUNDANCY[] = {{0, NORMAL}, {1, WARNING}, {3, WARNING}, {5, CRITICAL}, END};
constexpr Entry PERFORMANCE_VOLTAGE[] = {{1, CRITICAL}, END};
constexpr Entry PERFORMANCE_CHASSIS[] = {{1, WARNING}, END};
constexpr Entry SEVERITY[] = {{0, NORMAL}, {1, WARNING}, {2, CRITICAL}, {3, FATAL}, {4, WARNING},
    {5, CRITICAL}, {6, FATAL}, {7, MONITOR}, {8, NORMAL}, END};
constexpr Entry PRESENCE[] = {{0, NORMAL}, {1, NORMAL}, END};
constexpr Entry NOTHING[] = {END};
constexpr Entry PROCESSOR[] = {{0, CRITICAL}, {1, FATAL}, {2, CRITICAL}, {3, CRITICAL},
    {4, CRITICAL}, {5, CRITICAL}, {8, NORMAL}, {10, NORMAL}, {11, CRITICAL}, {12, CRITICAL},
    {13, MONITOR}, {14, WARNING}, END};
constexpr Entry POWER_SUPPLY[] = {{0, NORMAL}, {1, CRITICAL}, {2, WARNING}, {3, CRITICAL},
    {4, NONE}, {5, CRITICAL}, {6, CRITICAL}, {11, NORMAL}, END};
constexpr Entry MEMORY[] = {{0, MONITOR}, {1, CRITICAL}, {4, NORMAL}, {5, WARNING}, {7, CRITICAL},
    {14, WARNING}, END};
constexpr Entry SYSTEM_FIRMWARE_PROGRESS[] = {{0, WARNING}, {1, CRITICAL}, END};
constexpr Entry EVENT_LOGGING_DISABLED[] = {{0, WARNING}, {1, WARNING}, END};
constexpr Entry CABLE_INTERCONNECT[] = {{0, NORMAL}, {1, NORMAL}, END};
constexpr Entry SLOT_CONNECTOR[] = {{0, CRITICAL}, END};
constexpr Entry WATCHDOG_2[] = {{0, CRITICAL}, {1, CRITICAL}, {2, CRITICAL}, {3, CRITICAL}, END};
constexpr Entry MANAGEMENT_SUBSYSTEM_HEALTH[] = {{0, NONE}, {1, NONE}, {2, NONE}, {3, NONE},
    {4, CRITICAL}, {5, NONE}, END};
constexpr Entry VERSION_CHANGE[] = {{2, CRITICAL}, END};
constexpr Entry FRU_STATE[] = {{0, NORMAL}, {1, NORMAL}, {2, NORMAL}, {3, NORMAL}, {4, NORMAL},
    {5, NORMAL}, {6, NORMAL}, {7, CRITICAL}, END};
constexpr Entry OEM_C5[] = {{0, MONITOR}, {1, CRITICAL}, {2, CRITICAL}, {3, NORMAL}, END};
constexpr Entry OEM_C6[] = {{0, WARNING}, {1, CRITICAL}, {2, CRITICAL}, END};
constexpr Entry OEM_C7[] = {{1, CRITICAL}, END};
constexpr Entry OEM_C8[] = {{0, MONITOR}, {1, CRITICAL}, {2, CRITICAL}, {3, FATAL}, {4, FATAL},
    {5, FATAL}, {6, FATAL}, {7, WARNING}, {9, WARNING}, END};
constexpr Entry OEM_C9[] = {{0, NORMAL}, {1, WARNING}, {2, CRITICAL}, {3, FATAL}, {6, MONITOR},
    {7, WARNING}, {8, WARNING}, {9, CRITICAL}, END};
constexpr Entry OEM_CA[] = {{0, CRITICAL}, END};
constexpr Entry OEM_DB[] = {{0, NONE}, {1, NONE}, {3, CRITICAL}, {4, CRITICAL}, {5, WARNING},
    {6, NONE}};
constexpr Entry OEM_DC[] = {{0, NONE}, {1, NORMAL}, {2, NONE}, {3, NONE}, {5, NONE}, {6, CRITICAL}};
constexpr Entry OEM_DE[] = {{0, NONE}, {1, NONE}, {3, CRITICAL}, {4, CRITICAL}, {5, WARNING}};
constexpr Entry OEM_DF[] = {{0, NONE}, {1, NORMAL}, {2, NONE}, {3, NONE}, {4, NONE}, {5, NONE},
    {6, CRITICAL}};

constexpr SeverityRow ROWS[] = {
    {0x0B, 0x09, REDUNDANCY, std::size(REDUNDANCY)},                         // Power unit
    {0x0B, 0x08, REDUNDANCY, std::size(REDUNDANCY)},                         // Power supply
    {0x0B, 0x04, REDUNDANCY, std::size(REDUNDANCY)},                         // Fan
    {0x0B, 0xC7, REDUNDANCY, std::size(REDUNDANCY)},                         // OEM
    {0x0B, 0x15, REDUNDANCY, std::size(REDUNDANCY)},                         // Module/board
    {0x06, 0x02, PERFORMANCE_VOLTAGE, std::size(PERFORMANCE_VOLTAGE)},       // Voltage
    {0x06, 0x18, PERFORMANCE_CHASSIS, std::size(PERFORMANCE_CHASSIS)},       // Chassis
    {0x07, 0x15, SEVERITY, std::size(SEVERITY)},                             // Module/board
    {0x07, 0x18, SEVERITY, std::size(SEVERITY)},                             // Chassis
    {0x08, 0x04, PRESENCE, std::size(PRESENCE)},                             // Fan
    {0x08, 0x18, PRESENCE, std::size(PRESENCE)},                             // Chassis
    {0x6F, 0x06, NOTHING, std::size(NOTHING)},                               // Platform security violation attempt
    {0x6F, 0x07, PROCESSOR, std::size(PROCESSOR)},                           // Processor
    {0x6F, 0x08, POWER_SUPPLY, std::size(POWER_SUPPLY)},                     // Power supply
    {0x6F, 0x09, NOTHING, std::size(NOTHING)},                               // Power unit
    {0x6F, 0x0C, MEMORY, std::size(MEMORY)},                                 // Memory
    {0x6F, 0x0E, NOTHING, std::size(NOTHING)},                               // POST memory resize
    {0x6F, 0x0F, SYSTEM_FIRMWARE_PROGRESS, std::size(SYSTEM_FIRMWARE_PROGRESS)}, // System firmware progress
    {0x6F, 0x10, EVENT_LOGGING_DISABLED, std::size(EVENT_LOGGING_DISABLED)}, // Event logging disabled
    {0x6F, 0x12, NOTHING, std::size(NOTHING)},                               // System event
    {0x6F, 0x13, NOTHING, std::size(NOTHING)},                               // Critical interrupt
    {0x6F, 0x1B, CABLE_INTERCONNECT, std::size(CABLE_INTERCONNECT)},         // Cable/interconnect
    {0x6F, 0x1D, NOTHING, std::size(NOTHING)},                               // System boot/restart initiated
    {0x6F, 0x21, SLOT_CONNECTOR, std::size(SLOT_CONNECTOR)},                 // Slot/connector
    {0x6F, 0x23, WATCHDOG_2, std::size(WATCHDOG_2)},                         // Watchdog 2
    {0x6F, 0x28, MANAGEMENT_SUBSYSTEM_HEALTH, std::size(MANAGEMENT_SUBSYSTEM_HEALTH)}, // Management subsystem health
    {0x6F, 0x29, NOTHING, std::size(NOTHING)},                               // Battery
    {0x6F, 0x2B, VERSION_CHANGE, std::size(VERSION_CHANGE)},                 // Version change
    {0x6F, 0x2C, FRU_STATE, std::size(FRU_STATE)},                           // FRU state
    {0x6F, 0xC0, NOTHING, std::size(NOTHING)},                               // OEM
    {0x6F, 0xC1, NOTHING, std::size(NOTHING)},                               // OEM
    {0x6F, 0xC5, OEM_C5, std::size(OEM_C5)},                                 // OEM
    {0x6F, 0xC6, OEM_C6, std::size(OEM_C6)},                                 // OEM
    {0x6F, 0xC7, OEM_C7, std::size(OEM_C7)},                                 // OEM
    {0x6F, 0xC8, OEM_C8, std::size(OEM_C8)},                                 // OEM
    {0x6F, 0xC9, OEM_C9, std::size(OEM_C9)},                                 // OEM
    {0x6F, 0xCA, OEM_CA, std::size(OEM_CA)},                                 // OEM
    {0x07, 0x28, SEVERITY, std::size(SEVERITY)},                             // Management subsystem health
    {0x6F, 0xDB, OEM_DB, std::size(OEM_DB)},                                 // OEM
    {0x6F, 0xDC, OEM_DC, std::size(OEM_DC)},                                 // OEM
    {0x6F, 0xDE, OEM_DE, std::size(OEM_DE)},                                 // OEM
    {0x6F, 0xDF, OEM_DF, std::size(OEM_DF)},                                 // OEM
};
// clang-format on
static_assert(std::size(ROWS) == 42, "one row for each pair");

}

const SeverityRow* severityRows(std::size_t& count)
{
    count = std::size(ROWS);
    return ROWS;
}
