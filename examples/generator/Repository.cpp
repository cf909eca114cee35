// SPDX-License-Identifier: Apache-2.0
#include "Repository.h"

#include <cstdio>
#include <string>

#include "Types.h"
#include "Units.h"

namespace generator {

namespace {

// Entities (IPMI v2.0, table 43-13).
enum Entity : unsigned char {
    PROCESSOR_ENTITY = 3,
    SYSTEM_BOARD_ENTITY = 7,
    POWER_SUPPLY_ENTITY = 10,
    IO_ENTITY = 16, // system internal expansion board
    POWER_UNIT_ENTITY = 19,
    CHASSIS_ENTITY = 23,
    FAN_ENTITY = 29,
    COOLING_UNIT_ENTITY = 30,
    MEMORY_ENTITY = 32,
    FIRMWARE_ENTITY = 34,
    OS_ENTITY = 35,
    INLET_ENTITY = 55,
};

enum RecordType : unsigned char {
    FULL = 0x01,
    COMPACT = 0x02,
    EVENT_ONLY = 0x03,
    FRU_LOCATOR = 0x11,
    CONTROLLER_LOCATOR = 0x12,
};

constexpr unsigned char SCANS_AND_SENDS_EVENTS = 0x7F;

/// A raw threshold that a sensor does not have.
constexpr unsigned char NO_THRESHOLD = 0;

/// A sensor with readings: those are raw times m times ten to the exponent.
struct Analog {
    std::string name;
    unsigned char owner;
    unsigned char number;
    Entity entity;
    unsigned char instance;
    unsigned char type;
    unsigned char unit;
    unsigned char m;
    int exponent;
    unsigned char nominal;
    unsigned char lowerCritical;
    unsigned char lowerNonCritical;
    unsigned char upperNonCritical;
    unsigned char upperCritical;
};

/// A sensor with states, or several whose numbers and entity instances follow each other.
struct Discrete {
    RecordType record;
    std::string name;
    unsigned char owner;
    unsigned char number;
    Entity entity;
    unsigned char instance;
    unsigned char type;
    unsigned char eventType;
    unsigned short states;
    unsigned char count = 1;
};

class Repository {
public:
    void add(const Analog& sensor);
    void add(const Discrete& sensor);
    void addFru(unsigned char owner, unsigned char device, Entity entity, unsigned char instance,
                const std::string& name);
    void addController(unsigned char address, unsigned char instance, const std::string& name);

    const Bytes& get() const { return bytes; }

private:
    void add(RecordType type, const Bytes& body, const std::string& name);

    Bytes bytes;
    unsigned int records = 0;
};

/// The body ends with the type/length byte and the name.
void Repository::add(RecordType type, const Bytes& body, const std::string& name)
{
    constexpr unsigned char VERSION = 0x51;
    constexpr unsigned char TEXT = 0xC0;
    ++records;
    const std::size_t length = body.size() + 1 + name.size();
    bytes = join(bytes, lowFirst(records, 2));
    bytes = join(bytes, {VERSION, type, static_cast<unsigned char>(length)});
    bytes = join(bytes, body);
    bytes.push_back(static_cast<unsigned char>(TEXT | name.size()));
    bytes = join(bytes, Bytes(name.begin(), name.end()));
}

void Repository::add(const Analog& sensor)
{
    // Bits of the thresholds: lower non-critical, lower critical, ..., upper non-critical, upper
    // critical; and of the events of crossing them, two for each.
    unsigned int thresholds = 0;
    unsigned int events = 0;
    const auto has = [&thresholds, &events](unsigned char raw, unsigned int bit,
                                            unsigned int event) {
        thresholds |= raw != NO_THRESHOLD ? 1U << bit : 0;
        events |= raw != NO_THRESHOLD ? 1U << event : 0;
    };
    has(sensor.lowerNonCritical, 0, 0);
    has(sensor.lowerCritical, 1, 2);
    has(sensor.upperNonCritical, 3, 7);
    has(sensor.upperCritical, 4, 9);
    constexpr unsigned char REARMS_AND_HAS_THRESHOLDS = 0x58;
    constexpr unsigned char NOMINAL_SPECIFIED = 0x01;
    constexpr unsigned char HYSTERESIS = 1;
    Bytes body = {sensor.owner,
                  0,
                  sensor.number,
                  sensor.entity,
                  sensor.instance,
                  SCANS_AND_SENDS_EVENTS,
                  REARMS_AND_HAS_THRESHOLDS,
                  sensor.type,
                  THRESHOLD};
    body = join(body, lowFirst(events, 2));
    body = join(body, lowFirst(events, 2));
    body = join(body, lowFirst(thresholds, 2));
    body = join(body, {0, sensor.unit, 0, 0, sensor.m, 0, 0, 0, 0,
                       static_cast<unsigned char>((sensor.exponent & 0x0F) << 4), NOMINAL_SPECIFIED,
                       sensor.nominal, 0, 0, 0xFF, 0x00});
    body = join(body, {0, sensor.upperCritical, sensor.upperNonCritical, 0, sensor.lowerCritical,
                       sensor.lowerNonCritical, HYSTERESIS, HYSTERESIS, 0, 0, 0});
    add(FULL, body, sensor.name);
}

void Repository::add(const Discrete& sensor)
{
    // The instances of sensors that share a record increment, as do the numbers in their names.
    constexpr unsigned char EACH_ENTITY = 0x80;
    const auto sharing = static_cast<unsigned char>(sensor.count);
    const unsigned char instances = sensor.count > 1 ? EACH_ENTITY : 0;
    Bytes body = {sensor.owner, 0, sensor.number, sensor.entity, sensor.instance};
    if (sensor.record == EVENT_ONLY) {
        body = join(body, {sensor.type, sensor.eventType, sharing, instances, 0, 0});
        add(EVENT_ONLY, body, sensor.name);
        return;
    }
    constexpr unsigned char REARMS = 0x40;
    body = join(body, {SCANS_AND_SENDS_EVENTS, REARMS, sensor.type, sensor.eventType});
    for (unsigned int mask = 0; mask < 3; ++mask) {
        body = join(body, lowFirst(sensor.states, 2));
    }
    constexpr unsigned char NO_READING = 0xC0;
    body = join(body, {NO_READING, 0, 0, sharing, instances, 0, 0, 0, 0, 0, 0});
    add(COMPACT, body, sensor.name);
}

void Repository::addFru(unsigned char owner, unsigned char device, Entity entity,
                        unsigned char instance, const std::string& name)
{
    constexpr unsigned char LOGICAL = 0x80;
    constexpr unsigned char FRU_DEVICE = 0x10;
    add(FRU_LOCATOR, {owner, device, LOGICAL, 0, 0, FRU_DEVICE, 0, entity, instance, 0}, name);
}

void Repository::addController(unsigned char address, unsigned char instance,
                               const std::string& name)
{
    constexpr unsigned char STATIC = 0x20;
    constexpr unsigned char CAPABILITIES = 0x2F; // sends events; FRU, SEL, SDR, sensors
    add(CONTROLLER_LOCATOR,
        {address, 0, STATIC, CAPABILITIES, 0, 0, 0, SYSTEM_BOARD_ENTITY, instance, 0}, name);
}

enum SensorUnit : unsigned char { DEGREES = 1, VOLTS = 4, RPM = 18 };

/// What each board has.
void addBoard(Repository& repository, unsigned int board)
{
    const unsigned char owner = CONTROLLERS[board];
    const auto instance = static_cast<unsigned char>(board + 1);
    const std::string name = "SB" + std::to_string(board) + " ";
    const auto firstCpu = static_cast<unsigned char>(board * CPUS + 1);
    repository.addController(owner, instance, name + "Controller");
    repository.add(Analog{name + "Inlet Temp", owner, INLET_TEMPERATURE, INLET_ENTITY, instance,
                          TEMPERATURE, DEGREES, 1, 0, 24, NO_THRESHOLD, NO_THRESHOLD, INLET_WARM,
                          INLET_HOT});
    for (unsigned int cpu = 0; cpu < CPUS; ++cpu) {
        repository.add(Analog{name + "CPU" + std::to_string(cpu) + " Temp", owner,
                              static_cast<unsigned char>(FIRST_CPU_TEMPERATURE + cpu),
                              PROCESSOR_ENTITY, static_cast<unsigned char>(firstCpu + cpu),
                              TEMPERATURE, DEGREES, 1, 0, 62, NO_THRESHOLD, NO_THRESHOLD, CPU_WARM,
                              CPU_HOT});
    }
    // Counts of 60, 20 and 6 mV.
    repository.add(Analog{name + "12 V", owner, VOLTAGE_12, SYSTEM_BOARD_ENTITY, instance, VOLTAGE,
                          VOLTS, 6, -2, 200, 180, 190, 210, 220});
    repository.add(Analog{name + "3.3 V", owner, VOLTAGE_3_3, SYSTEM_BOARD_ENTITY, instance,
                          VOLTAGE, VOLTS, 2, -2, 165, 150, VOLTAGE_3_3_LOW, 173, 180});
    repository.add(Analog{name + "1.2 V DIMM", owner, MEMORY_VOLTAGE, SYSTEM_BOARD_ENTITY, instance,
                          VOLTAGE, VOLTS, 6, -3, 200, 185, 190, 210, 215});
    repository.add(Discrete{COMPACT, name + "CPU ", owner, FIRST_CPU, PROCESSOR_ENTITY, firstCpu,
                            CPU, SPECIFIC, 0x04FF, CPUS});
    repository.add(Discrete{COMPACT, name + "DIMM ", owner, FIRST_DIMM, MEMORY_ENTITY,
                            static_cast<unsigned char>(board * DIMMS + 1), MEMORY, SPECIFIC, 0x0033,
                            DIMMS});
    repository.add(Discrete{COMPACT, name + "Watchdog", owner, WATCHDOG, SYSTEM_BOARD_ENTITY,
                            instance, WATCHDOG_2, SPECIFIC, 0x000F});
    repository.add(Discrete{COMPACT, name + "Boot", owner, BOOT_INITIATED, SYSTEM_BOARD_ENTITY,
                            instance, BOOT, SPECIFIC, 0x0007});
    repository.add(Discrete{EVENT_ONLY, name + "Version", owner, VERSION_CHANGE,
                            SYSTEM_BOARD_ENTITY, instance, VERSION, SPECIFIC, 0});
    repository.add(Discrete{EVENT_ONLY, name + "Clock", owner, SYSTEM_EVENT, SYSTEM_BOARD_ENTITY,
                            instance, SYSTEM_EVENT_TYPE, SPECIFIC, 0});
    repository.add(Discrete{COMPACT, name + "Power", owner, POWER_UNIT, POWER_UNIT_ENTITY, instance,
                            POWER_UNIT_TYPE, SPECIFIC, 0x0031});
}

/// What the controller of board 0 manages for the whole server.
void addChassis(Repository& repository)
{
    const unsigned char owner = CONTROLLERS[0];
    for (unsigned int fan = 0; fan < FANS; ++fan) {
        repository.add(Analog{"Fan " + std::to_string(fan), owner,
                              static_cast<unsigned char>(FIRST_FAN + fan), FAN_ENTITY,
                              static_cast<unsigned char>(fan + 1), FAN, RPM, 60, 0, 150,
                              FAN_TOO_SLOW, FAN_SLOW, NO_THRESHOLD, NO_THRESHOLD});
    }
    repository.add(Discrete{COMPACT, "PSU ", owner, FIRST_POWER_SUPPLY, POWER_SUPPLY_ENTITY, 1,
                            POWER_SUPPLY, SPECIFIC, 0x000F, 2});
    repository.add(Discrete{COMPACT, "PSU Redundancy", owner, REDUNDANCY, POWER_UNIT_ENTITY, 3,
                            POWER_SUPPLY, REDUNDANCY_TYPE, 0x0003});
    for (unsigned int i = 0; i < 2; ++i) {
        repository.add(Analog{"PSU " + std::to_string(i) + " Input", owner,
                              static_cast<unsigned char>(FIRST_INPUT_VOLTAGE + i),
                              POWER_SUPPLY_ENTITY, static_cast<unsigned char>(i + 1), VOLTAGE,
                              VOLTS, 2, 0, 115, 95, INPUT_LOW, 126, 132});
    }
    repository.add(Discrete{COMPACT, "Chassis Intru", owner, CHASSIS_INTRUSION, CHASSIS_ENTITY, 1,
                            PHYSICAL_SECURITY, SPECIFIC, 0x0001});
    repository.add(Discrete{COMPACT, "IO Slot ", owner, FIRST_SLOT, IO_ENTITY, 1, SLOT, SPECIFIC,
                            0x0005, SLOTS});
    repository.addFru(owner, 0, CHASSIS_ENTITY, 1, "Chassis");
    repository.addFru(owner, 1, SYSTEM_BOARD_ENTITY, 1, "System Board 0");
    repository.addFru(owner, 2, SYSTEM_BOARD_ENTITY, 2, "System Board 1");
    repository.addFru(owner, 3, POWER_SUPPLY_ENTITY, 1, "Power Supply 0");
    repository.addFru(owner, 4, POWER_SUPPLY_ENTITY, 2, "Power Supply 1");
    repository.addFru(owner, 5, COOLING_UNIT_ENTITY, 1, "Fan Tray");
    repository.addFru(owner, 6, IO_ENTITY, 1, "IO Unit");
}

}

Bytes sensorRepository()
{
    Repository repository;
    for (unsigned int board = 0; board < BOARDS; ++board) {
        addBoard(repository, board);
    }
    addChassis(repository);
    // Both boards run the same firmware and operating system: events of either name their sensors.
    repository.add(Discrete{EVENT_ONLY, "POST", SYSTEM_FIRMWARE, POST_PROGRESS, FIRMWARE_ENTITY, 1,
                            FIRMWARE_PROGRESS, SPECIFIC, 0});
    repository.add(Discrete{EVENT_ONLY, "OS Boot", OPERATING_SYSTEM, OS_BOOT, OS_ENTITY, 1,
                            OS_BOOT_TYPE, SPECIFIC, 0});
    repository.add(Discrete{EVENT_ONLY, "OS Stop", OPERATING_SYSTEM, OS_STOP, OS_ENTITY, 1,
                            OS_STOP_TYPE, SPECIFIC, 0});
    return repository.get();
}

Bytes eventRules()
{
    char rules[600];
    std::snprintf(
        rules, sizeof rules,
        "# SPDX-License-Identifier: Apache-2.0\n"
        "# The OEM records of this server; examples/events.rules explains the form.\n"
        "manufacturer=%06Xh data1=1 data3=1 \"board {data2} was reset by its power\"\n"
        "manufacturer=%06Xh data1=1 data3=4 \"board {data2} was reset by its watchdog\"\n"
        "manufacturer=%06Xh data1=1 data3=7 \"board {data2} was reset by a memory error\"\n"
        "record-type=E1h data1=10h \"service console: action {data2}, result {data3}\"\n",
        MANUFACTURER, MANUFACTURER, MANUFACTURER);
    const std::string text = rules;
    return {text.begin(), text.end()};
}

}
