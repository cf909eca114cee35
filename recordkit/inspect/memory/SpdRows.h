// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_INSPECT_MEMORY_SPDROWS_H
#define RECORDKIT_INSPECT_MEMORY_SPDROWS_H

#include <cstddef>
#include <utility>

#include <recordkit/inspect/fields/Place.h>
#include <recordkit/inspect/memory/Spd.h>

namespace recordkit::inspect {

// What the generations have in common: a table of facts and one of times for each, read by the same
// functions.

/// Reads a fact from its bits or bytes, which the image contains.
using SpdAccessor = Value (*)(ByteView image, const Place& place);

struct SpdRow {
    SpdFact fact;
    Place place;
    SpdAccessor read;
};

/// A time: its low byte, its high bits if it has any, and its fine correction if it has one.
struct SpdTime {
    SpdFact fact;
    Place low;
    Place high = {};
    unsigned char fine = 0;   ///< offset of a signed byte; 0 for none
    unsigned char clocks = 0; ///< offset of the fewest clocks; 0 for none
    unsigned int scale = 1;   ///< medium units in one of the time's
};

/// The units of times, in picoseconds as fractions. A unit of 0 is unknown: so are the times.
struct SpdTimebases {
    unsigned int medium = 0;
    unsigned int mediumDivisor = 1;
    unsigned int fine = 0;
    unsigned int fineDivisor = 1;
};

/// Where a generation has what all of them have.
struct SpdOrigin {
    Place maker;
    Place location;
    Place date;
    Place serial;
    Place part;
    Place revision;
    Place dramMaker;
    Place stepping; ///< width 0: there is none
};

/// The code in bits of one byte.
inline unsigned int codeAt(ByteView image, const Place& place)
{
    return image[place.offset] >> place.low & ((1U << (place.high - place.low + 1)) - 1);
}

/// "code 7h".
Value reservedCode(unsigned int code);

/// The code plus FIRST for the codes up to LAST.
template <unsigned int FIRST, unsigned int LAST> Value countFrom(ByteView image, const Place& place)
{
    const unsigned int code = codeAt(image, place);
    return code <= LAST ? Value(static_cast<long long>(FIRST + code)) : reservedCode(code);
}

/// FIRST doubled as often as the code says, for the codes from LEAST (which is FIRST) up to LAST.
template <unsigned int FIRST, unsigned int LEAST, unsigned int LAST>
Value doubledFrom(ByteView image, const Place& place)
{
    const unsigned int code = codeAt(image, place);
    return code >= LEAST && code <= LAST ? Value(static_cast<long long>(FIRST) << (code - LEAST))
                                         : reservedCode(code);
}

Value isSet(ByteView image, const Place& place);
Value isClear(ByteView image, const Place& place);
Value revision(ByteView image, const Place& place);       ///< "1.1"
Value maxActivates(ByteView image, const Place& place);   ///< DDR3 and later
Value activateWindow(ByteView image, const Place& place); ///< DDR3 and later
Value referenceCard(ByteView image, const Place& place);  ///< one byte, and its extension before it
Value mapping(ByteView image, const Place& place);
Value registers(ByteView image, const Place& place); ///< none for code 0
Value maker(ByteView image, const Place& place);
Value bytesUsed(ByteView image, const Place& place);  ///< DDR4, and LPDDR by the same bits
Value bytesTotal(ByteView image, const Place& place); ///< the same
Value nibbles(ByteView image, const Place& place);    ///< "3.1"; none for FFh

/// Sets the facts of a table.
void readFacts(Spd& spd, ByteView image, const SpdRow* rows, std::size_t count);
template <std::size_t COUNT> void readFacts(Spd& spd, ByteView image, const SpdRow (&rows)[COUNT])
{
    readFacts(spd, image, rows, COUNT);
}

/// A time in picoseconds; none for 0, which means that it is not specified.
Value timeAt(ByteView image, const SpdTime& time, const SpdTimebases& bases);

/// How times become whole clocks: thousandths of a clock times `factor`, then `more` thousandths,
/// and what is left of a clock does not count.
struct SpdRounding {
    unsigned int factor;
    unsigned int more;
};
constexpr SpdRounding DDR3_ROUNDING = {1000, 999}; ///< up, from a thousandth of a clock on
constexpr SpdRounding DDR4_ROUNDING = {1000, 974}; ///< Annex L, rounding algorithm
constexpr SpdRounding DDR5_ROUNDING = {997, 1000}; ///< JESD400-5, rounding algorithm

/// Whole clocks that a time takes.
long long clocksOf(long long picoseconds, long long cycle, const SpdRounding& rounding);

/// Sets the times, SPEED, and the clocks of the times other than cycles.
void readTimes(Spd& spd, ByteView image, const SpdTime* rows, std::size_t count,
               const SpdTimebases& bases, const SpdRounding& rounding);
template <std::size_t COUNT> void readTimes(Spd& spd, ByteView image, const SpdTime (&rows)[COUNT],
                                            const SpdTimebases& bases, const SpdRounding& rounding)
{
    readTimes(spd, image, rows, COUNT, bases, rounding);
}

/// The rate by the name of a speed grade that the cycle is rounded from: 2133 for 938 ps; twice the
/// frequency where there is none.
long long speedOf(long long cycle);

/// The set bits of the bytes: FIRST for the lowest bit, each next one greater by `step`.
Value latencies(unsigned long long mask, unsigned int first, unsigned int step = 1);

/// Maker, place, date, serial number, part number.
void readOrigin(Spd& spd, ByteView image, const SpdOrigin& origin);

/// The CRC of the bytes `first` to `last`, which the two bytes at `offset` contain.
SpdCrc crcAt(ByteView image, unsigned short first, unsigned short last, std::size_t offset);

inline void set(Spd& spd, SpdFact fact, Value value)
{
    spd.facts[static_cast<std::size_t>(fact)] = std::move(value);
}

/// The first width, doubled `code` times; 0 for a code of `known` and more.
inline unsigned int widthOf(unsigned int code, unsigned int first, unsigned int known = 4)
{
    return code < known ? first << code : 0;
}

/// Megabytes of all ranks, by the megabits of a device; 0 if a reserved code leaves it open.
unsigned int capacityOf(const Spd& spd, unsigned int megabits);

/// The name of a module type (byte 3, bits 3..0) of JESD400-5 and JESD406-5.
std::string moduleTypeOfDdr5(unsigned int type);

/// Bits beside the data of a channel, by bits 4..3 of byte 235 of JESD400-5 and JESD406-5.
unsigned int eccWidthOfDdr5(unsigned int code);

/// Bytes 192 to 239 and 512 to 554, which are the same in JESD400-5 and JESD406-5: the devices of
/// the module, its size, its maker.
void readModuleOfDdr5(Spd& spd, ByteView image);

/// What annex M and JESD406-5 have in common: bytes 1 to 34 and 120 to 125.
void readLpddrBase(Spd& spd, ByteView image);

/// Whether data of LPDDR5 have the layout of annex M: their module type is only in that one.
bool isAnnexM(ByteView image);

/// The generations.
void readDdr3(Spd& spd, ByteView image); ///< and LPDDR3 in its layout
void readDdr4(Spd& spd, ByteView image);
void readDdr5(Spd& spd, ByteView image);
void readLpddr(Spd& spd, ByteView image); ///< LPDDR3, LPDDR4, LPDDR4X, and LPDDR5 in their layout
void readLpddr5(Spd& spd, ByteView image);

}

#endif
