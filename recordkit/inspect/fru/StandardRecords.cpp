// SPDX-License-Identifier: Apache-2.0
#include <recordkit/inspect/fru/MultiRecordReader.h>

namespace recordkit::inspect {

namespace {

using Kind = MultiRecordRow::Kind;

constexpr MultiRecordRow volts(const char* name, unsigned int offset)
{
    return number(name, offset, 2).as(Kind::SIGNED).per(100).in("V");
}

constexpr MultiRecordWord COMBINED_VOLTAGES[] = {
    {0, "12 V"},
    {1, "-12 V"},
    {2, "5 V"},
    {3, "3.3 V"},
};
constexpr unsigned int THRESHOLD = 23;
constexpr MultiRecordRow POWER_SUPPLY[] = {
    number("capacity", 0, 2).bits(11, 0).in("W"),
    number("peak-va", 2, 2).none(0xFFFF).in("VA"),
    number("inrush-current", 4).none(0xFF).in("A"),
    number("inrush-interval", 5).in("ms"),
    volts("input1-low", 6),
    volts("input1-high", 8),
    volts("input2-low", 10),
    volts("input2-high", 12),
    number("frequency-low", 14).in("Hz"),
    number("frequency-high", 15).in("Hz"),
    number("dropout-tolerance", 16).in("ms"),
    flag("predictive-fail", 17, 0),
    flag("power-factor-correction", 17, 1),
    flag("autoswitch", 17, 2),
    flag("hot-swap", 17, 3),
    number("peak-capacity", 18, 2).bits(11, 0).none(0xFFF).in("W"),
    number("hold-up-time", 18, 2).bits(15, 12).in("s"),
    number("combined-voltage1", 20).bits(7, 4).named(COMBINED_VOLTAGES),
    number("combined-voltage2", 20).bits(3, 0).named(COMBINED_VOLTAGES),
    number("combined-capacity", 21, 2).in("W"),
    number("tachometer-threshold", THRESHOLD).in("/s"),
};

constexpr MultiRecordWord TACHOMETER_PULSES[] = {
    {0, "one pulse per rotation"},
    {1, "two pulses per rotation"},
};
constexpr MultiRecordWord FAIL_PIN[] = {
    {0, "1 for a failure"},
    {1, "0 for a failure"},
};
constexpr MultiRecordRow FAIL_SIGNAL = number("fail-signal", 17).bits(4, 4);

void readPowerSupply(MultiRecordReader& reader)
{
    if (reader.has(THRESHOLD)) {
        reader.readField(reader.peek(THRESHOLD) != 0 ? FAIL_SIGNAL.named(TACHOMETER_PULSES)
                                                     : FAIL_SIGNAL.named(FAIL_PIN));
    }
    reader.read(POWER_SUPPLY);
}

constexpr MultiRecordWord CURRENT_UNITS[] = {
    {0, "10 mA"},
    {1, "100 mA"},
};
constexpr unsigned int OUTPUT_UNIT_BIT = 4;
constexpr unsigned int LOAD_UNIT_BIT = 7;

constexpr MultiRecordRow OUTPUT_NUMBER = number("output", 0).bits(3, 0);
constexpr MultiRecordRow RIPPLE = number("ripple", 7, 2).in("mV");
constexpr MultiRecordRow DC_OUTPUT[] = {
    OUTPUT_NUMBER,
    flag("standby", 0, 7),
    volts("nominal-voltage", 1),
    volts("negative-deviation", 3),
    volts("positive-deviation", 5),
    RIPPLE,
};
constexpr MultiRecordRow DC_LOAD[] = {
    OUTPUT_NUMBER, volts("nominal-voltage", 1), volts("min-voltage", 3), volts("max-voltage", 5),
    RIPPLE,
};

/// An output or a load; currents end both, and `step` is their unit in mA.
void readDc(MultiRecordReader& reader, MultiRecordRows rows, unsigned int step)
{
    const MultiRecordRow currents[] = {
        number("min-current", 0, 2).times(step).in("mA"),
        number("max-current", 2, 2).times(step).in("mA"),
    };
    reader.need(rows.size() + MultiRecordRows(currents).size());
    reader.read(rows);
    reader.read(currents);
}

void readExtended(MultiRecordReader& reader, MultiRecordRows rows, unsigned int unitBit)
{
    const bool isHundred = (reader.peek(0) >> unitBit & 1) != 0;
    reader.readField(number("current-unit", 0).bits(unitBit, unitBit).named(CURRENT_UNITS));
    readDc(reader, rows, isHundred ? 100 : 10);
}

enum ManagementAccess {
    SYSTEM_URL = 1,
    SYSTEM_NAME,
    SYSTEM_PING_ADDRESS,
    COMPONENT_URL,
    COMPONENT_NAME,
    COMPONENT_PING_ADDRESS,
    SYSTEM_GUID
};
constexpr MultiRecordWord MANAGEMENT_ACCESS[] = {
    {SYSTEM_URL, "system-url"},
    {SYSTEM_NAME, "system-name"},
    {SYSTEM_PING_ADDRESS, "system-ping-address"},
    {COMPONENT_URL, "component-url"},
    {COMPONENT_NAME, "component-name"},
    {COMPONENT_PING_ADDRESS, "component-ping-address"},
    {SYSTEM_GUID, "system-guid"},
};
constexpr MultiRecordRow ACCESS_TYPE[] = {number("type", 0).named(MANAGEMENT_ACCESS)};
constexpr MultiRecordRow GUID[] = {bytesOf("system-guid", 0, 16).as(Kind::GUID)};

void readManagementAccess(MultiRecordReader& reader)
{
    const unsigned int type = reader.peek(0);
    reader.read(ACCESS_TYPE);
    if (type == SYSTEM_GUID) {
        reader.read(GUID);
        return;
    }
    for (const MultiRecordWord& each : MANAGEMENT_ACCESS) {
        if (each.value == type) {
            reader.readText(each.text);
        }
    }
}

constexpr MultiRecordRow COMPATIBILITY[] = {
    number("manufacturer", 0, 3),
    number("entity", 3).as(Kind::ENTITY),
    number("base", 4),
    number("code-start", 5).bits(6, 0),
};

void readCompatibility(MultiRecordReader& reader)
{
    reader.read(COMPATIBILITY);
    reader.readBytes("code-mask");
}

struct StandardRecord {
    unsigned char type;
    const char* name;
    void (*read)(MultiRecordReader& reader);
};

constexpr StandardRecord RECORDS[] = {
    {0x00, "power-supply", readPowerSupply},
    {0x01, "dc-output", [](MultiRecordReader& reader) { readDc(reader, DC_OUTPUT, 1); }},
    {0x02, "dc-load", [](MultiRecordReader& reader) { readDc(reader, DC_LOAD, 1); }},
    {0x03, "management-access", readManagementAccess},
    {0x04, "base-compatibility", readCompatibility},
    {0x05, "extended-compatibility", readCompatibility},
    {0x09, "extended-dc-output",
     [](MultiRecordReader& reader) { readExtended(reader, DC_OUTPUT, OUTPUT_UNIT_BIT); }},
    {0x0A, "extended-dc-load",
     [](MultiRecordReader& reader) { readExtended(reader, DC_LOAD, LOAD_UNIT_BIT); }},
};

}

bool readStandardRecord(MultiRecordReader& reader)
{
    for (const StandardRecord& record : RECORDS) {
        if (record.type == reader.type()) {
            reader.call(record.name);
            record.read(reader);
            return true;
        }
    }
    return false;
}

std::optional<MultiRecordStart> standardRecordStart(const std::string& kind)
{
    for (const StandardRecord& record : RECORDS) {
        if (record.name == kind) {
            return MultiRecordStart{record.type};
        }
    }
    return std::nullopt;
}

std::vector<std::string> standardRecordKinds()
{
    std::vector<std::string> kinds;
    for (const StandardRecord& record : RECORDS) {
        kinds.emplace_back(record.name);
    }
    return kinds;
}

}
