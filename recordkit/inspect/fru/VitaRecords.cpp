// SPDX-License-Identifier: Apache-2.0
#include <recordkit/inspect/fru/MultiRecordReader.h>

namespace recordkit::inspect {

namespace {

constexpr unsigned char TYPE = 0xFA;
constexpr unsigned int MANUFACTURER = 0x0012A2;

constexpr MultiRecordRow HEADER[] = {
    number("manufacturer", 0, 3),
    number("subtype", 3).bits(7, 4),
    number("version", 3).bits(3, 0),
};

constexpr MultiRecordWord MODULE_SIZES[] = {
    {0, "single width"},
    {1, "double width"},
};
constexpr MultiRecordWord CONNECTORS[] = {
    {0, "LPC"},
    {1, "HPC"},
    {3, "not fitted"},
};
constexpr MultiRecordWord FIRST_CONNECTORS_PLUS[] = {
    {0, "LPC"},
    {1, "HPC"},
    {2, "HSPC"},
    {3, "P1 HSPC, P3 HSPCe"},
};
constexpr MultiRecordWord SECOND_CONNECTORS_PLUS[] = {
    {0, "LPC"}, {1, "HPC"}, {2, "HSPC"}, {3, "P2 HSPC, P4 HSPCe"}, {7, "not fitted"},
};
constexpr MultiRecordWord CLOCK_DIRECTIONS[] = {
    {0, "mezzanine to carrier"},
    {1, "carrier to mezzanine"},
};

/// By VITA 57.1.
constexpr MultiRecordRow CARD[] = {
    number("module-size", 0).bits(7, 6).named(MODULE_SIZES),
    number("p1-connector", 0).bits(5, 4).named(CONNECTORS),
    number("p2-connector", 0).bits(3, 2).named(CONNECTORS),
    number("clock-direction", 0).bits(1, 1).named(CLOCK_DIRECTIONS),
    number("p1-bank-a-signals", 1),
    number("p1-bank-b-signals", 2),
    number("p2-bank-a-signals", 3),
    number("p2-bank-b-signals", 4),
    number("p1-transceivers", 5).bits(7, 4),
    number("p2-transceivers", 5).bits(3, 0),
    number("tck-max", 6).in("MHz"),
};

/// By VITA 57.4.
constexpr MultiRecordRow CARD_PLUS[] = {
    number("module-size", 0).bits(7, 6).named(MODULE_SIZES),
    number("p1-connector", 0).bits(5, 4).named(FIRST_CONNECTORS_PLUS),
    number("p2-connector", 0).bits(3, 1).named(SECOND_CONNECTORS_PLUS),
    number("clock-direction", 0).bits(0, 0).named(CLOCK_DIRECTIONS),
    number("p1-bank-a-signals", 1),
    number("p2-bank-a-signals", 2),
    number("p1-bank-b-signals", 3, 3).bits(5, 0),
    number("p2-bank-b-signals", 3, 3).bits(11, 6),
    number("p1-transceivers", 3, 3).bits(17, 12),
    number("p2-transceivers", 3, 3).bits(23, 18),
    number("tck-max", 6).in("MHz"),
};

struct VitaRecord {
    unsigned char kind; ///< subtype and version
    const char* name;
    void (*read)(MultiRecordReader& reader);
};

constexpr VitaRecord RECORDS[] = {
    {0x00, "fmc", [](MultiRecordReader& reader) { reader.read(CARD); }},
    {0x01, "fmc", [](MultiRecordReader& reader) { reader.read(CARD_PLUS); }},
    {0x10, "fmc-i2c", [](MultiRecordReader& reader) { reader.readSixBit("devices"); }},
};

}

bool readVitaRecord(MultiRecordReader& reader)
{
    if (reader.type() != TYPE || !reader.has(3) || reader.peek(0, 3) != MANUFACTURER) {
        return false;
    }
    const unsigned int kind = reader.peek(3);
    reader.read(HEADER);
    for (const VitaRecord& record : RECORDS) {
        if (record.kind == kind) {
            reader.call(record.name);
            record.read(reader);
            return true;
        }
    }
    reader.call("vita");
    reader.readBytes("data");
    return true;
}

std::optional<MultiRecordStart> vitaRecordStart(const std::string& kind)
{
    for (const VitaRecord& record : RECORDS) {
        if (record.name == kind) {
            return startOf(TYPE, MANUFACTURER, {record.kind});
        }
    }
    return std::nullopt;
}

std::vector<std::string> vitaRecordKinds()
{
    std::vector<std::string> kinds;
    for (const VitaRecord& record : RECORDS) {
        kinds.emplace_back(record.name);
    }
    return kinds;
}

}
