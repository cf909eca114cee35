// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_EXAMPLES_GENERATOR_TYPES_H
#define RECORDKIT_EXAMPLES_GENERATOR_TYPES_H

namespace generator {

/// Sensor types (IPMI v2.0, table 42-3) of the server.
enum SensorType : unsigned char {
    TEMPERATURE = 0x01,
    VOLTAGE = 0x02,
    FAN = 0x04,
    PHYSICAL_SECURITY = 0x05,
    CPU = 0x07,
    POWER_SUPPLY = 0x08,
    POWER_UNIT_TYPE = 0x09,
    MEMORY = 0x0C,
    FIRMWARE_PROGRESS = 0x0F,
    SYSTEM_EVENT_TYPE = 0x12,
    BOOT = 0x1D,
    OS_BOOT_TYPE = 0x1F,
    OS_STOP_TYPE = 0x20,
    SLOT = 0x21,
    WATCHDOG_2 = 0x23,
    VERSION = 0x2B,
};

/// Event/reading types (IPMI v2.0, table 42-1).
enum EventType : unsigned char { THRESHOLD = 0x01, REDUNDANCY_TYPE = 0x0B, SPECIFIC = 0x6F };

}

#endif
