// SPDX-License-Identifier: Apache-2.0
// DDR3 modules: JEDEC 21-C, Annex K. Firmware of boards with soldered LPDDR3 memory describes it in
// the same layout, with F1h as the type of device.
#include <recordkit/inspect/memory/SpdRows.h>

#include <algorithm>
#include <iterator>
#include <utility>

#include <fmt/format.h>

#include <recordkit/hardware/MemorySPDData.h>
#include <recordkit/inspect/bytes/Text.h>
#include <recordkit/serial/PaddedImage.h>

namespace recordkit::inspect {

using TAVLib::RecordKit::MemorySPDData;

namespace {

using F = SpdFact;

enum Offset {
    BYTES_USED = 0,
    DEVICE_TYPE = 2,
    MODULE_TYPE = 3,
    DENSITY = 4,
    ORGANIZATION = 7,
    BUS_WIDTH = 8,
    FINE_TIMEBASE = 9,
    MEDIUM_TIMEBASE = 10,
    CAS_LATENCIES = 14,
    CRC = 126,
};

constexpr unsigned char DDR3 = 0x0B;

// Module types (byte 3, bits 3..0) with bytes of their own.
enum ModuleType {
    RDIMM = 1,
    UDIMM = 2,
    SO_DIMM = 3,
    MICRO_DIMM = 4,
    MINI_RDIMM = 5,
    MINI_UDIMM = 6,
    SO_UDIMM = 8,
    SO_RDIMM = 9,
    LRDIMM = 11,
    SO_DIMM_16 = 12,
    SO_DIMM_32 = 13,
};

std::string moduleTypeName(unsigned int type)
{
    constexpr const char* NAMES[] = {"undefined",    "RDIMM",        "UDIMM",        "SO-DIMM",
                                     "Micro-DIMM",   "Mini-RDIMM",   "Mini-UDIMM",   "Mini-CDIMM",
                                     "72b-SO-UDIMM", "72b-SO-RDIMM", "72b-SO-CDIMM", "LRDIMM",
                                     "16b-SO-DIMM",  "32b-SO-DIMM"};
    return type < std::size(NAMES) ? NAMES[type] : fmt::format("type {:X}h", type);
}

Value bytesUsed(ByteView image, const Place& place)
{
    constexpr long long USED[] = {0, 128, 176, 256};
    const unsigned int code = codeAt(image, place);
    return code == 0 ? Value() : code < std::size(USED) ? Value(USED[code]) : reservedCode(code);
}

Value bytesTotal(ByteView image, const Place& place)
{
    const unsigned int code = codeAt(image, place);
    return code == 0 ? Value() : code == 1 ? Value(256LL) : reservedCode(code);
}

Value voltages(ByteView image, const Place& place)
{
    constexpr unsigned char KNOWN = 7;
    const unsigned char byte = image[place.offset];
    if (byte > KNOWN) {
        return reservedCode(byte);
    }
    std::string text = (byte & 1U) == 0 ? "1.5 V" : ""; // bit 0 is set where it is not
    for (const auto& [bit, name] : {std::pair(1, "1.35 V"), std::pair(2, "1.25 V")}) {
        if ((byte >> bit & 1U) != 0) {
            text += (text.empty() ? "" : ", ") + std::string(name);
        }
    }
    return text.empty() ? Value() : Value(std::move(text));
}

Value timebases(ByteView image, const Place& place)
{
    const auto quotient = [](unsigned int dividend, unsigned int divisor, const char* unit) {
        return divisor == 1 ? fmt::format("{} {}", dividend, unit)
                            : fmt::format("{}/{} {}", dividend, divisor, unit);
    };
    const unsigned char fine = image[place.offset];
    return quotient(image[MEDIUM_TIMEBASE], image[MEDIUM_TIMEBASE + 1], "ns") + ", " +
           quotient(fine >> 4, fine & 0x0FU, "ps");
}

Value package(ByteView image, const Place& place)
{
    // Bit 7: not a standard monolithic device; bits 1..0 are the loads of a stack.
    constexpr const char* LOADS[] = {"stack", "multi-load stack", "single-load stack"};
    const unsigned int load = image[place.offset] & 3U;
    if (image[place.offset] >> 7 == 0) {
        return std::string("monolithic");
    }
    return load < std::size(LOADS) ? Value(std::string(LOADS[load])) : reservedCode(load);
}

Value dies(ByteView image, const Place& place)
{
    const unsigned int code = codeAt(image, place);
    return code == 0 ? Value() : code <= 4 ? Value(1LL << (code - 1)) : reservedCode(code);
}

Value hotRefresh(ByteView image, const Place& place)
{
    return codeAt(image, place) == 0 ? 2LL : 1LL;
}

Value registerType(ByteView image, const Place& place)
{
    const unsigned int code = codeAt(image, place);
    return code == 0 ? Value(std::string("SSTE32882")) : reservedCode(code);
}

Value profiles(ByteView image, const Place& place)
{
    if (image[place.offset] != 0x0C || image[place.offset + 1] != 0x4A) {
        return {};
    }
    return fmt::format("XMP {}.{}", image[place.offset + 3] >> 4, image[place.offset + 3] & 0x0FU);
}

constexpr SpdRow ROWS[] = {
    {F::BYTES_USED, bitsAt(BYTES_USED, 3, 0), bytesUsed},
    {F::BYTES_TOTAL, bitsAt(BYTES_USED, 6, 4), bytesTotal},
    {F::REVISION, bytesAt(1), revision},
    {F::BANKS, bitsAt(DENSITY, 6, 4), doubledFrom<8, 0, 3>},
    {F::COLUMN_BITS, bitsAt(5, 2, 0), countFrom<9, 3>},
    {F::ROW_BITS, bitsAt(5, 5, 3), countFrom<12, 4>},
    {F::TIMEBASES, bytesAt(FINE_TIMEBASE, 3), timebases},
    {F::RZQ6, bitAt(30, 0), isSet},
    {F::RZQ7, bitAt(30, 1), isSet},
    {F::DLL_OFF, bitAt(30, 7), isSet},
    {F::HOT, bitAt(31, 0), isSet},
    {F::HOT_REFRESH, bitAt(31, 1), hotRefresh},
    {F::AUTO_REFRESH, bitAt(31, 2), isSet},
    {F::ON_DIE_SENSOR, bitAt(31, 3), isSet},
    {F::PARTIAL_REFRESH, bitAt(31, 7), isSet},
    {F::THERMAL_SENSOR, bitAt(32, 7), isSet},
    {F::PACKAGE, bytesAt(33), package},
    {F::DIES, bitsAt(33, 6, 4), dies},
    {F::MAX_ACTIVATES, bitsAt(41, 3, 0), maxActivates},
    {F::ACTIVATE_WINDOW, bitsAt(41, 5, 4), activateWindow},
    {F::HEIGHT, bitsAt(60, 4, 0), countFrom<15, 31>},
    {F::FRONT, bitsAt(61, 3, 0), countFrom<1, 15>},
    {F::BACK, bitsAt(61, 7, 4), countFrom<1, 15>},
    {F::REFERENCE_CARD, bytesAt(62), referenceCard},
    {F::PROFILES, bytesAt(176, 4), profiles},
};

// LPDDR3 in this layout has other voltages.
constexpr SpdRow DDR3_ROWS[] = {
    {F::VOLTAGES, bytesAt(6), voltages},
};

constexpr SpdRow UNBUFFERED_ROWS[] = {
    {F::MAPPING, bitAt(63, 0), mapping},
};

constexpr SpdRow REGISTERED_ROWS[] = {
    {F::REGISTERS, bitsAt(63, 1, 0), registers},
    {F::DEVICE_ROWS, bitsAt(63, 3, 2), registers},
    {F::HEAT_SPREADER, bitAt(64, 7), isSet},
    {F::REGISTER_MAKER, bytesAt(65, 2), maker},
    {F::REGISTER_REVISION, bytesAt(67), nibbles},
    {F::REGISTER_TYPE, bitsAt(68, 2, 0), registerType},
};

constexpr SpdRow LOAD_REDUCED_ROWS[] = {
    {F::MAPPING, bitAt(63, 0), mapping},        {F::DEVICE_ROWS, bitsAt(63, 3, 2), registers},
    {F::HEAT_SPREADER, bitAt(63, 7), isSet},    {F::BUFFER_REVISION, bytesAt(64), nibbles},
    {F::REGISTER_MAKER, bytesAt(65, 2), maker},
};

constexpr SpdTime TIMES[] = {
    {F::TCK_MIN, bytesAt(12), {}, 34},
    {F::TAA, bytesAt(16), {}, 35},
    {F::TWR, bytesAt(17)},
    {F::TRCD, bytesAt(18), {}, 36},
    {F::TRRD, bytesAt(19)},
    {F::TRP, bytesAt(20), {}, 37},
    {F::TRAS, bytesAt(22), bitsAt(21, 3, 0)},
    {F::TRC, bytesAt(23), bitsAt(21, 7, 4), 38},
    {F::TRFC1, bytesAt(24, 2)},
    {F::TWTR, bytesAt(26)},
    {F::TRTP, bytesAt(27)},
    {F::TFAW, bytesAt(29), bitsAt(28, 3, 0)},
};

// Serial and part number are those of MemorySPDData.
constexpr SpdOrigin ORIGIN = {
    bytesAt(117, 2), bytesAt(119), bytesAt(120, 2), {}, {}, bytesAt(146, 2), bytesAt(148, 2), {}};

bool isUnbuffered(unsigned int type)
{
    return type == UDIMM || type == SO_DIMM || type == MICRO_DIMM || type == MINI_UDIMM ||
           type == SO_UDIMM || type == SO_DIMM_16 || type == SO_DIMM_32;
}

}

void readDdr3(Spd& spd, ByteView image)
{
    const bool isDdr3 = image[DEVICE_TYPE] == DDR3;
    MemorySPDData memory;
    Bytes padded = image.copy();
    padded.resize(std::max<std::size_t>(padded.size(), memory.getSerializedSize()), 0);
    TAVLib::setSerializedPadded(memory, padded);
    spd.hasCodes = isDdr3;
    spd.rankField = memory.getRankNum();
    spd.dimmSize = memory.getDIMMSize();
    spd.dramSize = memory.getDRAMSize();
    spd.serialNumber = memory.getSerialNumber();
    spd.partNumber = toUtf8(memory.getModulePartNumber());

    constexpr unsigned char KNOWN_RANKS = 4;
    constexpr unsigned int KNOWN_DENSITIES = 7;
    spd.densityMegabits = widthOf(codeAt(image, bitsAt(DENSITY, 3, 0)), 256, KNOWN_DENSITIES);
    spd.ranks = spd.rankField < KNOWN_RANKS ? spd.rankField + 1U : 0;
    spd.deviceWidth = widthOf(codeAt(image, bitsAt(ORGANIZATION, 2, 0)), 4);
    spd.busWidth = widthOf(codeAt(image, bitsAt(BUS_WIDTH, 2, 0)), 8);
    spd.eccWidth = codeAt(image, bitsAt(BUS_WIDTH, 4, 3)) == 1 ? 8 : 0;
    spd.megabytes = capacityOf(spd, spd.densityMegabits);
    const unsigned int type = codeAt(image, bitsAt(MODULE_TYPE, 3, 0));
    spd.moduleType = moduleTypeName(type);
    readFacts(spd, image, ROWS);
    if (isDdr3) {
        readFacts(spd, image, DDR3_ROWS);
    }
    if (isUnbuffered(type)) {
        readFacts(spd, image, UNBUFFERED_ROWS);
    } else if (type == RDIMM || type == MINI_RDIMM || type == SO_RDIMM) {
        readFacts(spd, image, REGISTERED_ROWS);
    } else if (type == LRDIMM) {
        readFacts(spd, image, LOAD_REDUCED_ROWS);
    }
    set(spd, F::CAS_LATENCIES, latencies(image.le16(CAS_LATENCIES) & 0x7FFFU, 4));
    // The medium unit is in nanoseconds, the fine one in picoseconds.
    readTimes(spd, image, TIMES,
              SpdTimebases{image[MEDIUM_TIMEBASE] * 1000U, image[MEDIUM_TIMEBASE + 1],
                           codeAt(image, bitsAt(FINE_TIMEBASE, 7, 4)),
                           codeAt(image, bitsAt(FINE_TIMEBASE, 3, 0))},
              DDR3_ROUNDING);
    readOrigin(spd, image, ORIGIN);
    spd.hasManufacturerData = image.size() >= memory.getSerializedSize();
    // Bit 7 of byte 0: the CRC covers only the bytes that do not differ between modules of a kind.
    const bool isShort = codeAt(image, bitAt(BYTES_USED, 7)) != 0;
    const SpdCrc crc = crcAt(image, 0, isShort ? 116 : 125, CRC);
    spd.storedCrc = crc.stored;
    spd.expectedCrc = crc.expected;
}

}
