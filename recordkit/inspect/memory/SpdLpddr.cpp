// SPDX-License-Identifier: Apache-2.0
// LPDDR3, LPDDR4 and LPDDR4X modules: JEDEC 21-C, Annex M. JESD406-5 took over most of its first
// 128 bytes for LPDDR5.
#include <recordkit/inspect/memory/SpdRows.h>

#include <array>
#include <iterator>

#include <fmt/format.h>

namespace recordkit::inspect {

namespace {

using F = SpdFact;

enum Offset {
    DEVICE_TYPE = 2,
    MODULE_TYPE = 3,
    DENSITY = 4,
    ADDRESSING = 5,
    PACKAGE_TYPE = 6,
    ORGANIZATION = 12,
    BUS_WIDTH = 13,
    SIGNAL_LOADING = 16,
    TIMEBASE = 17,
    CAS_LATENCIES = 20,
    LATENCY_SETS = 25,
    CRC = 126,
    MODULE_BLOCK = 128,
    MODULE_CRC = 254,
};

// Base module types (byte 3, bits 3..0).
enum ModuleType { LP_DIMM = 7, NON_DIMM = 14 };

constexpr unsigned char LPDDR5 = 0x13;
constexpr unsigned char LPDDR5X = 0x15;

std::string moduleTypeName(unsigned int type)
{
    return type == 0          ? "extended"
           : type == LP_DIMM  ? "LP-DIMM"
           : type == NON_DIMM ? "non-DIMM"
                              : fmt::format("type {:X}h", type);
}

bool isLpddr5(ByteView image)
{
    return image[DEVICE_TYPE] == LPDDR5 || image[DEVICE_TYPE] == LPDDR5X;
}

Value hybrid(ByteView image, const Place& place)
{
    const unsigned int code = codeAt(image, place); // bit 7: the module is hybrid; 6..4: the media
    return code < 8 ? Value() : reservedCode(code);
}

/// LPDDR5 has up to 16 banks without groups, its predecessors 8.
Value banks(ByteView image, const Place& place)
{
    const unsigned int addressBits = codeAt(image, place) & 3U;
    const unsigned int groupBits = codeAt(image, place) >> 2;
    return addressBits <= (isLpddr5(image) ? 2 : 1) && groupBits <= 2
               ? Value(4LL << (addressBits + groupBits))
               : reservedCode(codeAt(image, place));
}

Value package(ByteView image, const Place& place)
{
    return std::string(codeAt(image, place) == 0 ? "monolithic" : "non-monolithic");
}

Value repair(ByteView image, const Place& place)
{
    constexpr const char* NAMES[] = {"not supported", "one row per bank group"};
    const unsigned int code = codeAt(image, place);
    return code < std::size(NAMES) ? Value(std::string(NAMES[code])) : reservedCode(code);
}

Value channels(ByteView image, const Place& place)
{
    constexpr long long CHANNELS[] = {1, 2, 3, 4, 8};
    const unsigned int code = codeAt(image, place);
    return code < std::size(CHANNELS) ? Value(CHANNELS[code]) : reservedCode(code);
}

/// Byte 16 is a matrix of loads if byte 6 says which; only the first one is defined.
template <unsigned int LAST> Value loads(ByteView image, const Place& place)
{
    return codeAt(image, bitsAt(PACKAGE_TYPE, 1, 0)) == 1 ? doubledFrom<1, 0, LAST>(image, place)
                                                          : Value();
}

Value writeLatencies(ByteView image, const Place& place)
{
    const unsigned int code = codeAt(image, place);
    return code == 0   ? Value(std::string("A"))
           : code == 1 ? Value(std::string("B"))
                       : reservedCode(code);
}

Value readDbi(ByteView image, const Place& place)
{
    const unsigned int code = codeAt(image, place);
    return code <= 1 ? Value(code == 1) : reservedCode(code);
}

Value timebases(ByteView image, const Place& place)
{
    const unsigned int code = codeAt(image, place);
    return code == 0 ? Value(std::string("125 ps, 1 ps")) : reservedCode(code);
}

// What JESD406-5 has as well.
constexpr SpdRow BASE_ROWS[] = {
    {F::REVISION, bytesAt(1), revision},
    {F::BANKS, bitsAt(DENSITY, 7, 4), banks},
    {F::BANK_GROUPS, bitsAt(DENSITY, 7, 6), doubledFrom<1, 0, 2>},
    {F::ROW_BITS, bitsAt(ADDRESSING, 5, 3), countFrom<12, 6>},
    {F::PACKAGE, bitAt(PACKAGE_TYPE, 7), package},
    {F::SOFT_REPAIR, bitAt(9, 5), isSet},
    {F::BYTE_MODE, bitAt(ORGANIZATION, 6), isSet},
    {F::DATA_LOADS, bitsAt(SIGNAL_LOADING, 7, 6), loads<2>},
    {F::COMMAND_LOADS, bitsAt(SIGNAL_LOADING, 5, 3), loads<3>},
    {F::SELECT_LOADS, bitsAt(SIGNAL_LOADING, 2, 0), loads<3>},
    {F::TIMEBASES, bitsAt(TIMEBASE, 3, 0), timebases},
};

constexpr SpdRow ROWS[] = {
    {F::BYTES_USED, bitsAt(0, 3, 0), bytesUsed},
    {F::BYTES_TOTAL, bitsAt(0, 6, 4), bytesTotal},
    {F::HYBRID, bitsAt(MODULE_TYPE, 7, 4), hybrid},
    {F::COLUMN_BITS, bitsAt(ADDRESSING, 2, 0), countFrom<9, 3>},
    {F::DIES, bitsAt(PACKAGE_TYPE, 6, 4), countFrom<1, 7>},
    {F::DIE_CHANNELS, bitsAt(PACKAGE_TYPE, 3, 2), doubledFrom<1, 0, 2>},
    {F::MAX_ACTIVATES, bitsAt(7, 3, 0), maxActivates},
    {F::ACTIVATE_WINDOW, bitsAt(7, 5, 4), activateWindow},
    {F::REPAIR, bitsAt(9, 7, 6), repair},
    {F::CHANNELS, bitsAt(BUS_WIDTH, 7, 5), channels},
    {F::THERMAL_SENSOR, bitAt(14, 7), isSet},
};

// LPDDR5 has other latencies.
constexpr SpdRow LATENCY_ROWS[] = {
    {F::WRITE_LATENCIES, bitsAt(LATENCY_SETS, 3, 2), writeLatencies},
    {F::READ_DBI, bitsAt(LATENCY_SETS, 1, 0), readDbi},
};

constexpr SpdRow LP_DIMM_ROWS[] = {
    {F::HEIGHT, bitsAt(MODULE_BLOCK, 4, 0), countFrom<15, 31>},
    {F::FRONT, bitsAt(129, 3, 0), countFrom<1, 15>},
    {F::BACK, bitsAt(129, 7, 4), countFrom<1, 15>},
    {F::REFERENCE_CARD, bytesAt(130), referenceCard},
};

constexpr SpdTime TIMES[] = {
    {F::TCK_MIN, bytesAt(18), {}, 125}, {F::TCK_MAX, bytesAt(19), {}, 124},
    {F::TAA, bytesAt(24), {}, 123},     {F::TRCD, bytesAt(26), {}, 122},
    {F::TRP, bytesAt(27), {}, 121},     {F::TRP_PB, bytesAt(28), {}, 120},
    {F::TRFC1, bytesAt(29, 2)},         {F::TRFC_PB, bytesAt(31, 2)},
};

constexpr SpdOrigin ORIGIN = {bytesAt(320, 2),  bytesAt(322), bytesAt(323, 2), bytesAt(325, 4),
                              bytesAt(329, 20), bytesAt(349), bytesAt(350, 2), bytesAt(352)};

unsigned int densityOf(unsigned int code)
{
    constexpr unsigned int GIGABITS[] = {0, 0, 1, 2, 4, 8, 16, 32, 12, 24, 3, 6, 18};
    return code < std::size(GIGABITS) ? GIGABITS[code] * 1024 : 0;
}

/// Bit by bit from byte 20 on; 0 for a reserved bit.
constexpr std::array<unsigned char, 23> LATENCIES = {3,  6,  8,  9,  10, 11, 12, 14, 16, 18, 20, 22,
                                                     24, 26, 28, 30, 32, 0,  36, 0,  40, 0,  44};

Value latenciesOf(ByteView image)
{
    const unsigned int mask = image.le32(CAS_LATENCIES);
    std::vector<long long> clocks;
    for (std::size_t bit = 0; bit < LATENCIES.size(); ++bit) {
        if ((mask >> bit & 1U) != 0 && LATENCIES[bit] != 0) {
            clocks.push_back(LATENCIES[bit]);
        }
    }
    return clocks.empty() ? Value() : Value(std::move(clocks));
}

/// The number of a fact; 0 for a reserved code.
unsigned int numberOf(const Spd& spd, SpdFact fact)
{
    const long long* const number = std::get_if<long long>(&spd.get(fact));
    return number == nullptr ? 0 : static_cast<unsigned int>(*number);
}

/// Megabits of one channel of a device, by its address bits. The density of a die that byte 4
/// gives is that of its 1, 2 or 4 channels together; data of soldered memory often give that of a
/// channel, of the channels that share 16 bits, or of the package there; the address bits are the
/// same, and agree with the densities in the numbers of their parts. Those of densities with a
/// factor of 3 reach a third more (JESD209-4, SDRAM addressing). 0 if that contradicts byte 4.
unsigned int channelMegabits(const Spd& spd)
{
    constexpr unsigned int MEGABIT = 20;
    const unsigned int addressBits = numberOf(spd, F::ROW_BITS) + numberOf(spd, F::COLUMN_BITS);
    const unsigned long long bits =
        static_cast<unsigned long long>(numberOf(spd, F::BANKS)) * spd.deviceWidth << addressBits;
    auto channel = static_cast<unsigned int>(bits >> MEGABIT); // 0 with a reserved code
    if (spd.densityMegabits % 3 == 0) {
        channel = channel / 4 * 3;
    }
    for (const unsigned int times : {1U, 2U, 4U}) {
        if (channel * times == spd.densityMegabits) {
            return channel;
        }
    }
    return 0;
}

/// The rate by the name of the speed grade that the cycle is rounded from; what the cycle makes
/// where there is none. Grades as in JESD209-3, -4 and -5.
long long gradeOf(long long cycle, long long transfers)
{
    constexpr long long GRADES[] = {533,  800,  1066, 1200, 1333, 1466, 1600, 1866,
                                    2133, 2667, 2750, 3200, 3733, 4267, 4800, 5500,
                                    6000, 6400, 7500, 8533, 9600, 10667};
    const long long product = transfers * 1000000;
    for (const long long grade : GRADES) {
        const long long off = cycle * grade - product;
        if (off <= grade && off >= -grade) {
            return grade;
        }
    }
    return product / cycle;
}

/// Transfers in a cycle. The clock of LPDDR5 is a quarter as fast as its data clock, and not faster
/// than 750 ps (JESD209-5); a shorter cycle is that of the data clock, which some data give.
long long transfersOf(ByteView image, long long cycle)
{
    constexpr long long SHORTEST_CLOCK = 700;
    return isLpddr5(image) && cycle >= SHORTEST_CLOCK ? 8 : 2;
}

constexpr SpdRounding ROUNDING = {1000, 999}; // up, from a thousandth of a clock on

}

void readLpddrBase(Spd& spd, ByteView image)
{
    constexpr unsigned int MOST_RANKS = 4;
    const unsigned int rankCode = codeAt(image, bitsAt(ORGANIZATION, 5, 3));
    spd.densityMegabits = densityOf(codeAt(image, bitsAt(DENSITY, 3, 0)));
    spd.ranks = rankCode < MOST_RANKS ? rankCode + 1 : 0;
    spd.deviceWidth = widthOf(codeAt(image, bitsAt(ORGANIZATION, 2, 0)), 4);
    readFacts(spd, image, BASE_ROWS);
    const bool areBasesKnown = codeAt(image, bitsAt(TIMEBASE, 3, 0)) == 0;
    readTimes(spd, image, TIMES, SpdTimebases{areBasesKnown ? 125U : 0U, 1, 1, 1}, ROUNDING);
    const long long* const cycle = std::get_if<long long>(&spd.get(F::TCK_MIN));
    if (cycle != nullptr) {
        set(spd, F::SPEED, gradeOf(*cycle, transfersOf(image, *cycle)));
    }
}

bool isAnnexM(ByteView image)
{
    return codeAt(image, bitsAt(MODULE_TYPE, 3, 0)) == NON_DIMM;
}

void readLpddr(Spd& spd, ByteView image)
{
    const unsigned int type = codeAt(image, bitsAt(MODULE_TYPE, 3, 0));
    spd.moduleType = moduleTypeName(type);
    readLpddrBase(spd, image);
    readFacts(spd, image, ROWS);
    spd.busWidth = widthOf(codeAt(image, bitsAt(BUS_WIDTH, 2, 0)), 8) * numberOf(spd, F::CHANNELS);
    spd.megabytes = capacityOf(spd, channelMegabits(spd));
    if (!isLpddr5(image)) {
        readFacts(spd, image, LATENCY_ROWS);
        set(spd, F::CAS_LATENCIES, latenciesOf(image));
    }
    readOrigin(spd, image, ORIGIN);
    const SpdCrc crc = crcAt(image, 0, CRC - 1, CRC);
    spd.storedCrc = crc.stored;
    spd.expectedCrc = crc.expected;
    if (type == LP_DIMM) {
        readFacts(spd, image, LP_DIMM_ROWS);
        if (image.contains(MODULE_CRC, 2)) {
            spd.moduleCrc = crcAt(image, MODULE_BLOCK, MODULE_CRC - 1, MODULE_CRC);
        }
    }
}

}
