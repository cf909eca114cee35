// SPDX-License-Identifier: Apache-2.0
// DDR4 modules: JEDEC 21-C, Annex L.
#include <recordkit/inspect/memory/SpdRows.h>

#include <iterator>

#include <fmt/format.h>

namespace recordkit::inspect {

namespace {

using F = SpdFact;

enum Offset {
    MODULE_TYPE = 3,
    DENSITY = 4,
    PACKAGE_TYPE = 6,
    ORGANIZATION = 12,
    BUS_WIDTH = 13,
    TIMEBASE = 17,
    CAS_LATENCIES = 20,
    CRC = 126,
    MODULE_BLOCK = 128,
    MODULE_CRC = 254,
};

// Base module types (byte 3, bits 3..0).
enum ModuleType { RDIMM = 1, LRDIMM = 4, MINI_RDIMM = 5, SO_RDIMM = 8 };
constexpr const char* MODULE_TYPES[] = {
    "extended", "RDIMM",        "UDIMM",        "SO-DIMM", "LRDIMM", "Mini-RDIMM",  "Mini-UDIMM",
    nullptr,    "72b-SO-RDIMM", "72b-SO-UDIMM", nullptr,   nullptr,  "16b-SO-DIMM", "32b-SO-DIMM"};

bool isStack(ByteView image)
{
    return image[PACKAGE_TYPE] >> 7 != 0;
}

/// Dies of a package that are ranks of their own: those of a single load stack.
unsigned int ranksOfPackage(ByteView image)
{
    constexpr unsigned int SINGLE_LOAD = 2;
    return isStack(image) && (image[PACKAGE_TYPE] & 3U) == SINGLE_LOAD
               ? codeAt(image, bitsAt(PACKAGE_TYPE, 6, 4)) + 1
               : 1;
}

Value hybrid(ByteView image, const Place& place)
{
    const unsigned int code = codeAt(image, place); // bit 7: the module is hybrid; 6..4: the media
    return code < 8 ? Value() : code == 9 ? Value(std::string("NVDIMM")) : reservedCode(code);
}

Value package(ByteView image, const Place& place)
{
    constexpr const char* LOADS[] = {"stack", "multi-load stack", "single-load stack"};
    const unsigned int load = codeAt(image, place);
    if (!isStack(image)) {
        return std::string("monolithic");
    }
    return load < std::size(LOADS) ? Value(std::string(LOADS[load])) : reservedCode(load);
}

Value banks(ByteView image, const Place& place)
{
    const unsigned int addressBits = codeAt(image, place) & 3U;
    const unsigned int groupBits = codeAt(image, place) >> 2;
    return addressBits <= 1 && groupBits <= 2 ? Value(4LL << (addressBits + groupBits))
                                              : reservedCode(codeAt(image, place));
}

Value repair(ByteView image, const Place& place)
{
    constexpr const char* NAMES[] = {"not supported", "one row per bank group"};
    const unsigned int code = codeAt(image, place);
    return code < std::size(NAMES) ? Value(std::string(NAMES[code])) : reservedCode(code);
}

Value voltages(ByteView image, const Place& place)
{
    const unsigned char byte = image[place.offset];
    if (byte > 3) {
        return reservedCode(byte);
    }
    return byte == 0          ? Value()
           : (byte & 1U) != 0 ? Value(std::string("1.2 V"))
                              : Value(std::string("1.2 V endurant"));
}

Value timebases(ByteView image, const Place& place)
{
    const unsigned int code = codeAt(image, place);
    return code == 0 ? Value(std::string("125 ps, 1 ps")) : reservedCode(code);
}

Value registerType(ByteView image, const Place& place)
{
    const unsigned int code = codeAt(image, place);
    return code <= 1 ? Value(fmt::format("DDR4RCD{:02}", code + 1)) : reservedCode(code);
}

Value bufferedType(ByteView image, const Place& place)
{
    const unsigned int code = codeAt(image, place);
    return code <= 1 ? Value(fmt::format("DDR4RCD{0:02}, DDR4DB{0:02}", code + 1))
                     : reservedCode(code);
}

Value profiles(ByteView image, const Place& place)
{
    if (image[place.offset] != 0x0C || image[place.offset + 1] != 0x4A) {
        return {};
    }
    return fmt::format("XMP {}.{}", image[place.offset + 3] >> 4, image[place.offset + 3] & 0x0FU);
}

constexpr SpdRow ROWS[] = {
    {F::BYTES_USED, bitsAt(0, 3, 0), bytesUsed},
    {F::BYTES_TOTAL, bitsAt(0, 6, 4), bytesTotal},
    {F::REVISION, bytesAt(1), revision},
    {F::HYBRID, bitsAt(MODULE_TYPE, 7, 4), hybrid},
    {F::BANKS, bitsAt(DENSITY, 7, 4), banks},
    {F::BANK_GROUPS, bitsAt(DENSITY, 7, 6), doubledFrom<1, 0, 2>},
    {F::COLUMN_BITS, bitsAt(5, 2, 0), countFrom<9, 3>},
    {F::ROW_BITS, bitsAt(5, 5, 3), countFrom<12, 6>},
    {F::PACKAGE, bitsAt(PACKAGE_TYPE, 1, 0), package},
    {F::DIES, bitsAt(PACKAGE_TYPE, 6, 4), countFrom<1, 7>},
    {F::MAX_ACTIVATES, bitsAt(7, 3, 0), maxActivates},
    {F::ACTIVATE_WINDOW, bitsAt(7, 5, 4), activateWindow},
    {F::REPAIR, bitsAt(9, 7, 6), repair},
    {F::SOFT_REPAIR, bitAt(9, 5), isSet},
    {F::VOLTAGES, bytesAt(11), voltages},
    {F::THERMAL_SENSOR, bitAt(14, 7), isSet},
    {F::TIMEBASES, bitsAt(TIMEBASE, 3, 0), timebases},
    {F::HEIGHT, bitsAt(MODULE_BLOCK, 4, 0), countFrom<15, 31>},
    {F::FRONT, bitsAt(129, 3, 0), countFrom<1, 15>},
    {F::BACK, bitsAt(129, 7, 4), countFrom<1, 15>},
    {F::REFERENCE_CARD, bytesAt(130), referenceCard},
    {F::PROFILES, bytesAt(384, 4), profiles},
};

constexpr SpdRow UNBUFFERED_ROWS[] = {
    {F::MAPPING, bitAt(131, 0), mapping},
};

constexpr SpdRow REGISTERED_ROWS[] = {
    {F::REGISTERS, bitsAt(131, 1, 0), registers},
    {F::DEVICE_ROWS, bitsAt(131, 3, 2), registers},
    {F::REGISTER_TYPE, bitsAt(131, 7, 4), registerType},
    {F::HEAT_SPREADER, bitAt(132, 7), isSet},
    {F::REGISTER_MAKER, bytesAt(133, 2), maker},
    {F::REGISTER_REVISION, bytesAt(135), nibbles},
    {F::MAPPING, bitAt(136, 0), mapping},
};

constexpr SpdRow LOAD_REDUCED_ROWS[] = {
    {F::REGISTER_TYPE, bitsAt(131, 7, 4), bufferedType},
    {F::BUFFER_REVISION, bytesAt(139), nibbles},
};

constexpr SpdTime TIMES[] = {
    {F::TCK_MIN, bytesAt(18), {}, 125},
    {F::TCK_MAX, bytesAt(19), {}, 124},
    {F::TAA, bytesAt(24), {}, 123},
    {F::TRCD, bytesAt(25), {}, 122},
    {F::TRP, bytesAt(26), {}, 121},
    {F::TRAS, bytesAt(28), bitsAt(27, 3, 0)},
    {F::TRC, bytesAt(29), bitsAt(27, 7, 4), 120},
    {F::TRFC1, bytesAt(30, 2)},
    {F::TRFC2, bytesAt(32, 2)},
    {F::TRFC4, bytesAt(34, 2)},
    {F::TFAW, bytesAt(37), bitsAt(36, 3, 0)},
    {F::TRRD, bytesAt(38), {}, 119},
    {F::TRRD_L, bytesAt(39), {}, 118},
    {F::TCCD_L, bytesAt(40), {}, 117},
    {F::TWR, bytesAt(42), bitsAt(41, 3, 0)},
    {F::TWTR, bytesAt(44), bitsAt(43, 3, 0)},
    {F::TWTR_L, bytesAt(45), bitsAt(43, 7, 4)},
};

constexpr SpdOrigin ORIGIN = {bytesAt(320, 2),  bytesAt(322), bytesAt(323, 2), bytesAt(325, 4),
                              bytesAt(329, 20), bytesAt(349), bytesAt(350, 2), bytesAt(352)};

unsigned int densityOf(unsigned int code)
{
    constexpr unsigned int MEGABITS[] = {256,  512,   1024,  2048,  4096,
                                         8192, 16384, 32768, 12288, 24576};
    return code < std::size(MEGABITS) ? MEGABITS[code] : 0;
}

Value latenciesOf(ByteView image)
{
    constexpr unsigned int HIGH_RANGE = 0x80000000;
    const unsigned int mask = image.le32(CAS_LATENCIES);
    return latencies(mask & 0x3FFFFFFF, (mask & HIGH_RANGE) != 0 ? 23 : 7);
}

}

void readDdr4(Spd& spd, ByteView image)
{
    const unsigned int type = codeAt(image, bitsAt(MODULE_TYPE, 3, 0));
    spd.moduleType = type < std::size(MODULE_TYPES) && MODULE_TYPES[type] != nullptr
                         ? MODULE_TYPES[type]
                         : fmt::format("type {:X}h", type);
    spd.densityMegabits = densityOf(codeAt(image, bitsAt(DENSITY, 3, 0)));
    spd.ranks = (codeAt(image, bitsAt(ORGANIZATION, 5, 3)) + 1) * ranksOfPackage(image);
    spd.deviceWidth = widthOf(codeAt(image, bitsAt(ORGANIZATION, 2, 0)), 4);
    spd.busWidth = widthOf(codeAt(image, bitsAt(BUS_WIDTH, 2, 0)), 8);
    spd.eccWidth = codeAt(image, bitsAt(BUS_WIDTH, 4, 3)) == 1 ? 8 : 0;
    // The ranks of an asymmetrical module have different devices, of which this describes the
    // first.
    const bool isAsymmetrical = codeAt(image, bitAt(ORGANIZATION, 6)) != 0;
    spd.megabytes = isAsymmetrical ? 0 : capacityOf(spd, spd.densityMegabits);

    readFacts(spd, image, ROWS);
    if (type == RDIMM || type == LRDIMM || type == MINI_RDIMM || type == SO_RDIMM) {
        readFacts(spd, image, REGISTERED_ROWS);
    } else {
        readFacts(spd, image, UNBUFFERED_ROWS);
    }
    if (type == LRDIMM) {
        readFacts(spd, image, LOAD_REDUCED_ROWS);
    }
    set(spd, F::CAS_LATENCIES, latenciesOf(image));
    const bool areBasesKnown = codeAt(image, bitsAt(TIMEBASE, 3, 0)) == 0;
    readTimes(spd, image, TIMES, SpdTimebases{areBasesKnown ? 125U : 0U, 1, 1, 1}, DDR4_ROUNDING);
    readOrigin(spd, image, ORIGIN);
    const SpdCrc crc = crcAt(image, 0, CRC - 1, CRC);
    spd.storedCrc = crc.stored;
    spd.expectedCrc = crc.expected;
    if (image.contains(MODULE_CRC, 2)) {
        spd.moduleCrc = crcAt(image, MODULE_BLOCK, MODULE_CRC - 1, MODULE_CRC);
    }
}

}
