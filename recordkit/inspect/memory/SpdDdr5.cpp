// SPDX-License-Identifier: Apache-2.0
// DDR5 modules: JESD400-5.
#include <recordkit/inspect/memory/SpdRows.h>

#include <iterator>

#include <fmt/format.h>

namespace recordkit::inspect {

namespace {

using F = SpdFact;

enum Offset {
    MODULE_TYPE = 3,
    DENSITY = 4,
    IO_WIDTH = 6,
    BANKS = 7,
    VDD = 16,
    CAS_LATENCIES = 24,
    ORGANIZATION = 234,
    BUS_WIDTH = 235,
    CRC = 510,
    XMP = 640,
    EXPO = 832,
};

// Base module types (byte 3, bits 3..0).
enum ModuleType { RDIMM = 1, LRDIMM = 4 };
constexpr const char* MODULE_TYPES[] = {nullptr,  "RDIMM",  "UDIMM",    "SO-DIMM",
                                        "LRDIMM", "CUDIMM", "CSO-DIMM", "MRDIMM",
                                        "CAMM2",  nullptr,  "DDIMM",    "solder down"};

/// A name by its code; the code where there is none.
template <std::size_t COUNT> Value nameOf(unsigned int code, const char* const (&names)[COUNT])
{
    return code < COUNT && names[code] != nullptr ? Value(std::string(names[code]))
                                                  : reservedCode(code);
}

Value bytesTotal(ByteView image, const Place& place)
{
    const unsigned int code = codeAt(image, place);
    return code == 0 ? Value() : code <= 4 ? Value(128LL << code) : reservedCode(code);
}

Value hybrid(ByteView image, const Place& place)
{
    const unsigned int code = codeAt(image, place); // bit 7: the module is hybrid; 6..4: the media
    return code < 8     ? Value()
           : code == 9  ? Value(std::string("NVDIMM-N"))
           : code == 10 ? Value(std::string("NVDIMM-P"))
                        : reservedCode(code);
}

/// Dies in a package by the code of bits 7..5; 0 for a reserved code. All of a stack are ranks.
unsigned int diesOf(unsigned int code)
{
    constexpr unsigned int DIES[] = {1, 0, 2, 4, 8, 16};
    return code < std::size(DIES) ? DIES[code] : 0;
}

Value package(ByteView image, const Place& place)
{
    const unsigned int dies = diesOf(codeAt(image, place));
    return dies == 0   ? reservedCode(codeAt(image, place))
           : dies == 1 ? Value(std::string("monolithic"))
                       : Value(std::string("single-load stack"));
}

Value dies(ByteView image, const Place& place)
{
    const unsigned int code = codeAt(image, place);
    return diesOf(code) == 0 ? reservedCode(code) : Value(static_cast<long long>(diesOf(code)));
}

Value banks(ByteView image, const Place& place)
{
    const unsigned int groups = codeAt(image, bitsAt(place.offset, 7, 5));
    const unsigned int banksOfGroup = codeAt(image, bitsAt(place.offset, 2, 0));
    return groups <= 3 && banksOfGroup <= 2 ? Value(1LL << (groups + banksOfGroup))
                                            : reservedCode(image[place.offset]);
}

Value voltages(ByteView image, const Place& place)
{
    const auto text = [image](const char* name, std::size_t offset, const char* volts) {
        return image[offset] == 0 ? fmt::format("{} {} V", name, volts)
                                  : fmt::format("{} code {:X}h", name, image[offset]);
    };
    return text("VDD", place.offset, "1.1") + ", " + text("VDDQ", place.offset + 1, "1.1") + ", " +
           text("VPP", place.offset + 2, "1.8");
}

Value temperatureSensors(ByteView image, const Place& place)
{
    return codeAt(image, place) != 0;
}

/// Bit 7 of a device's type: it is installed.
bool isInstalled(ByteView image, std::size_t typeOffset)
{
    return image[typeOffset] >> 7 != 0;
}

// A device has its maker in two bytes, then its type, then its revision.
Value deviceMaker(ByteView image, const Place& place)
{
    return isInstalled(image, place.offset + 2) ? maker(image, place) : Value();
}

Value deviceRevision(ByteView image, const Place& place)
{
    return isInstalled(image, place.offset - 1) ? nibbles(image, place) : Value();
}

Value hubType(ByteView image, const Place& place)
{
    constexpr const char* NAMES[] = {"SPD5118", "SPD5108"};
    return isInstalled(image, place.offset) ? nameOf(codeAt(image, place), NAMES) : Value();
}

Value pmicType(ByteView image, const Place& place)
{
    constexpr const char* NAMES[] = {"PMIC5000", "PMIC5010", "PMIC5100", "PMIC5020",
                                     "PMIC5120", "PMIC5200", "PMIC5030"};
    return isInstalled(image, place.offset) ? nameOf(codeAt(image, place), NAMES) : Value();
}

Value registerType(ByteView image, const Place& place)
{
    constexpr const char* NAMES[] = {"DDR5RCD01", "DDR5RCD02", "DDR5RCD03"};
    return isInstalled(image, place.offset) ? nameOf(codeAt(image, place), NAMES) : Value();
}

Value profiles(ByteView image, const Place& /*place*/)
{
    std::string text;
    if (image.contains(XMP, 3) && image[XMP] == 0x0C && image[XMP + 1] == 0x4A) {
        text = fmt::format("XMP {}.{}", image[XMP + 2] >> 4, image[XMP + 2] & 0x0FU);
    }
    if (image.part(EXPO, 4).text() == "EXPO") {
        text += text.empty() ? "EXPO" : ", EXPO";
    }
    return text.empty() ? Value() : Value(std::move(text));
}

constexpr SpdRow ROWS[] = {
    {F::REVISION, bytesAt(1), revision},
    {F::PACKAGE, bitsAt(DENSITY, 7, 5), package},
    {F::DIES, bitsAt(DENSITY, 7, 5), dies},
    {F::ROW_BITS, bitsAt(5, 4, 0), countFrom<16, 2>},
    {F::COLUMN_BITS, bitsAt(5, 7, 5), countFrom<10, 1>},
    {F::BANK_GROUPS, bitsAt(BANKS, 7, 5), doubledFrom<1, 0, 3>},
    {F::BANKS, bytesAt(BANKS), banks},
    {F::VOLTAGES, bytesAt(VDD, 3), voltages},
    {F::CHANNELS, bitsAt(BUS_WIDTH, 7, 5), countFrom<1, 1>},
    {F::PROFILES, bytesAt(0), profiles},
};

// Of the module; the same in JESD406-5.
constexpr SpdRow MODULE_ROWS[] = {
    {F::BYTES_TOTAL, bitsAt(0, 6, 4), bytesTotal},
    {F::HYBRID, bitsAt(MODULE_TYPE, 7, 4), hybrid},
    {F::HUB_MAKER, bytesAt(194, 2), deviceMaker},
    {F::HUB_TYPE, bitsAt(196, 3, 0), hubType},
    {F::HUB_REVISION, bytesAt(197), deviceRevision},
    {F::PMIC_MAKER, bytesAt(198, 2), deviceMaker},
    {F::PMIC_TYPE, bitsAt(200, 3, 0), pmicType},
    {F::PMIC_REVISION, bytesAt(201), deviceRevision},
    {F::THERMAL_SENSOR, bitsAt(212, 7, 6), temperatureSensors},
    {F::HEIGHT, bitsAt(230, 4, 0), countFrom<15, 31>},
    {F::FRONT, bitsAt(231, 3, 0), countFrom<1, 15>},
    {F::BACK, bitsAt(231, 7, 4), countFrom<1, 15>},
    {F::REFERENCE_CARD, bytesAt(232), referenceCard},
    {F::DEVICE_ROWS, bitsAt(233, 1, 0), registers},
    {F::HEAT_SPREADER, bitAt(233, 2), isSet},
};

constexpr SpdRow REGISTERED_ROWS[] = {
    {F::REGISTER_MAKER, bytesAt(240, 2), deviceMaker},
    {F::REGISTER_TYPE, bitsAt(242, 3, 0), registerType},
    {F::REGISTER_REVISION, bytesAt(243), deviceRevision},
};

constexpr SpdRow LOAD_REDUCED_ROWS[] = {
    {F::BUFFER_REVISION, bytesAt(247), deviceRevision},
};

constexpr unsigned int NANOSECONDS = 1000;

constexpr SpdTime TIMES[] = {
    {F::TCK_MIN, bytesAt(20, 2)},
    {F::TCK_MAX, bytesAt(22, 2)},
    {F::TAA, bytesAt(30, 2)},
    {F::TRCD, bytesAt(32, 2)},
    {F::TRP, bytesAt(34, 2)},
    {F::TRAS, bytesAt(36, 2)},
    {F::TRC, bytesAt(38, 2)},
    {F::TWR, bytesAt(40, 2)},
    {F::TRFC1, bytesAt(42, 2), {}, 0, 0, NANOSECONDS},
    {F::TRFC2, bytesAt(44, 2), {}, 0, 0, NANOSECONDS},
    {F::TRFC_SB, bytesAt(46, 2), {}, 0, 0, NANOSECONDS},
    {F::TRRD_L, bytesAt(70, 2), {}, 0, 72},
    {F::TCCD_L, bytesAt(73, 2), {}, 0, 75},
    {F::TCCD_L_WR, bytesAt(76, 2), {}, 0, 78},
    {F::TCCD_L_WR2, bytesAt(79, 2), {}, 0, 81},
    {F::TFAW, bytesAt(82, 2), {}, 0, 84},
    {F::TCCD_L_WTR, bytesAt(85, 2), {}, 0, 87},
    {F::TCCD_S_WTR, bytesAt(88, 2), {}, 0, 90},
    {F::TRTP, bytesAt(91, 2), {}, 0, 93},
};

constexpr SpdOrigin ORIGIN = {bytesAt(512, 2),  bytesAt(514), bytesAt(515, 2), bytesAt(517, 4),
                              bytesAt(521, 30), bytesAt(551), bytesAt(552, 2), bytesAt(554)};

unsigned int densityOf(unsigned int code)
{
    constexpr unsigned int GIGABITS[] = {0, 4, 8, 12, 16, 24, 32, 48, 64};
    return code < std::size(GIGABITS) ? GIGABITS[code] * 1024 : 0;
}

Value latenciesOf(ByteView image)
{
    const unsigned long long high = image[CAS_LATENCIES + 4];
    return latencies(image.le32(CAS_LATENCIES) | high << 32, 20, 2);
}

}

std::string moduleTypeOfDdr5(unsigned int type)
{
    return type < std::size(MODULE_TYPES) && MODULE_TYPES[type] != nullptr
               ? MODULE_TYPES[type]
               : fmt::format("type {:X}h", type);
}

unsigned int eccWidthOfDdr5(unsigned int code)
{
    constexpr unsigned int BITS[] = {0, 4, 8};
    return code < std::size(BITS) ? BITS[code] : 0;
}

void readModuleOfDdr5(Spd& spd, ByteView image)
{
    readFacts(spd, image, MODULE_ROWS);
    readOrigin(spd, image, ORIGIN);
}

void readDdr5(Spd& spd, ByteView image)
{
    const unsigned int type = codeAt(image, bitsAt(MODULE_TYPE, 3, 0));
    spd.moduleType = moduleTypeOfDdr5(type);
    const unsigned int channelCode = codeAt(image, bitsAt(BUS_WIDTH, 7, 5));
    const unsigned int channels = channelCode <= 1 ? channelCode + 1 : 0;
    spd.densityMegabits = densityOf(codeAt(image, bitsAt(DENSITY, 4, 0)));
    spd.ranks = (codeAt(image, bitsAt(ORGANIZATION, 5, 3)) + 1) *
                diesOf(codeAt(image, bitsAt(DENSITY, 7, 5)));
    spd.deviceWidth = widthOf(codeAt(image, bitsAt(IO_WIDTH, 7, 5)), 4);
    spd.busWidth = widthOf(codeAt(image, bitsAt(BUS_WIDTH, 2, 0)), 8) * channels;
    spd.eccWidth = eccWidthOfDdr5(codeAt(image, bitsAt(BUS_WIDTH, 4, 3))) * channels;
    // The ranks of an asymmetrical module have different devices, of which this describes the
    // first.
    const bool isAsymmetrical = codeAt(image, bitAt(ORGANIZATION, 6)) != 0;
    spd.megabytes = isAsymmetrical ? 0 : capacityOf(spd, spd.densityMegabits);

    readFacts(spd, image, ROWS);
    readModuleOfDdr5(spd, image);
    if (type == RDIMM || type == LRDIMM) {
        readFacts(spd, image, REGISTERED_ROWS);
    }
    if (type == LRDIMM) {
        readFacts(spd, image, LOAD_REDUCED_ROWS);
    }
    set(spd, F::CAS_LATENCIES, latenciesOf(image));
    readTimes(spd, image, TIMES, SpdTimebases{1, 1, 1, 1}, DDR5_ROUNDING);
    const SpdCrc crc = crcAt(image, 0, CRC - 1, CRC);
    spd.storedCrc = crc.stored;
    spd.expectedCrc = crc.expected;
}

}
