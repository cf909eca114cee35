// SPDX-License-Identifier: Apache-2.0
// LPDDR5 and LPDDR5X modules: JESD406-5. Its first 128 bytes are those of annex M, apart from what
// is here; the others are those of JESD400-5.
#include <recordkit/inspect/memory/SpdRows.h>

#include <iterator>

#include <fmt/format.h>

namespace recordkit::inspect {

namespace {

using F = SpdFact;

enum Offset {
    MODULE_TYPE = 3,
    BUS_WIDTH = 235,
    CRC = 510,
};

constexpr unsigned int MOST_CHANNELS = 3; // 8, as a power of two

constexpr unsigned int SOCAMM2 = 9; // not a module type of JESD400-5

/// Column bits without those of a burst; the code has one value for 8 banks and one for 16.
Value columnBits(ByteView image, const Place& place)
{
    const unsigned int code = codeAt(image, place);
    return code <= 1 ? Value(6LL) : reservedCode(code);
}

Value dies(ByteView image, const Place& place)
{
    constexpr long long DIES[] = {1, 2, 3, 4, 5, 6, 16, 8};
    return DIES[codeAt(image, place)];
}

Value repair(ByteView image, const Place& place)
{
    constexpr const char* NAMES[] = {"not supported", "supported"};
    const unsigned int code = codeAt(image, place);
    return code < std::size(NAMES) ? Value(std::string(NAMES[code])) : reservedCode(code);
}

constexpr SpdRow ROWS[] = {
    {F::COLUMN_BITS, bitsAt(5, 2, 0), columnBits},
    {F::DIES, bitsAt(6, 6, 4), dies},
    {F::REPAIR, bitsAt(9, 7, 6), repair},
    {F::CHANNELS, bitsAt(BUS_WIDTH, 7, 5), doubledFrom<1, 0, MOST_CHANNELS>},
};

}

void readLpddr5(Spd& spd, ByteView image)
{
    const unsigned int type = codeAt(image, bitsAt(MODULE_TYPE, 3, 0));
    spd.moduleType = type == SOCAMM2 ? "SOCAMM2" : moduleTypeOfDdr5(type);
    readLpddrBase(spd, image);
    readFacts(spd, image, ROWS);
    readModuleOfDdr5(spd, image);
    const unsigned int code = codeAt(image, bitsAt(BUS_WIDTH, 7, 5));
    const unsigned int channels = code <= MOST_CHANNELS ? 1U << code : 0;
    spd.busWidth = widthOf(codeAt(image, bitsAt(BUS_WIDTH, 2, 0)), 8) * channels;
    spd.eccWidth = eccWidthOfDdr5(codeAt(image, bitsAt(BUS_WIDTH, 4, 3))) * channels;
    // A die has one channel.
    spd.megabytes = capacityOf(spd, spd.densityMegabits);
    const SpdCrc crc = crcAt(image, 0, CRC - 1, CRC);
    spd.storedCrc = crc.stored;
    spd.expectedCrc = crc.expected;
}

}
