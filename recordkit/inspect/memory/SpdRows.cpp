// SPDX-License-Identifier: Apache-2.0
#include <recordkit/inspect/memory/SpdRows.h>

#include <algorithm>

#include <fmt/format.h>

#include <recordkit/inspect/bytes/Hex.h>
#include <recordkit/inspect/bytes/Text.h>
#include <recordkit/inspect/words/MemoryMakers.h>

namespace recordkit::inspect {

namespace {

bool isAll(ByteView bytes, unsigned char value)
{
    return std::all_of(bytes.begin(), bytes.end(),
                       [value](unsigned char byte) { return byte == value; });
}

/// Nothing for bytes that were never written.
bool isWritten(ByteView bytes)
{
    return !isAll(bytes, 0) && !isAll(bytes, 0xFF);
}

/// "2016-W38" of a year and a week in BCD.
Value madeText(unsigned char year, unsigned char week)
{
    const auto isBcd = [](unsigned char byte) { return byte >> 4 <= 9 && (byte & 0x0F) <= 9; };
    if (!isBcd(year) || !isBcd(week) || week == 0 || week > 0x53) {
        return fmt::format("year {:02X}h, week {:02X}h", year, week);
    }
    return fmt::format("20{:02X}-W{:02X}", year, week);
}

}

Value reservedCode(unsigned int code)
{
    return fmt::format("code {:X}h", code);
}

Value isSet(ByteView image, const Place& place)
{
    return codeAt(image, place) != 0;
}

Value isClear(ByteView image, const Place& place)
{
    return codeAt(image, place) == 0;
}

Value revision(ByteView image, const Place& place)
{
    const unsigned char byte = image[place.offset];
    return fmt::format("{}.{}", byte >> 4, byte & 0x0F);
}

Value nibbles(ByteView image, const Place& place)
{
    return image[place.offset] == 0xFF ? Value()
                                       : Value(fmt::format("{:X}.{:X}", image[place.offset] >> 4,
                                                           image[place.offset] & 0x0FU));
}

Value maxActivates(ByteView image, const Place& place)
{
    constexpr const char* NAMES[] = {"untested", "700 K", "600 K", "500 K",    "400 K",
                                     "300 K",    "200 K", nullptr, "unlimited"};
    const unsigned int code = codeAt(image, place);
    return code < std::size(NAMES) && NAMES[code] != nullptr ? Value(std::string(NAMES[code]))
                                                             : reservedCode(code);
}

Value activateWindow(ByteView image, const Place& place)
{
    const unsigned int code = codeAt(image, place);
    return code <= 2 ? Value(8192LL >> code) : reservedCode(code);
}

Value referenceCard(ByteView image, const Place& place)
{
    constexpr const char* CARDS[] = {
        "A",  "B",  "C",  "D",  "E",  "F",  "G",  "H",  "J",  "K",  "L",  "M",  "N",
        "P",  "R",  "T",  "U",  "V",  "W",  "Y",  "AA", "AB", "AC", "AD", "AE", "AF",
        "AG", "AH", "AJ", "AK", "AL", "ZZ", "AM", "AN", "AP", "AR", "AT", "AU", "AV",
        "AW", "AY", "BA", "BB", "BC", "BD", "BE", "BF", "BG", "BH", "BJ", "BK", "BL",
        "BM", "BN", "BP", "BR", "BT", "BU", "BV", "BW", "BY", "CA", "CB", "ZZ"};
    static_assert(std::size(CARDS) == 64, "32 names, and 32 more with bit 7");
    constexpr unsigned int NO_CARD = 31;
    constexpr unsigned int LAST_REVISION = 3; // from here on the extension counts
    const unsigned char byte = image[place.offset];
    const unsigned int card = byte & 0x1FU;
    unsigned int number = byte >> 5 & 3U;
    if (card == NO_CARD) {
        return std::string("ZZ");
    }
    if (number == LAST_REVISION) {
        number += image[place.offset - 2] >> 5; // the byte of the height
    }
    return fmt::format("{} revision {}", CARDS[card + ((byte & 0x80) != 0 ? 32 : 0)], number);
}

Value mapping(ByteView image, const Place& place)
{
    return std::string(codeAt(image, place) == 0 ? "standard" : "mirrored");
}

Value registers(ByteView image, const Place& place)
{
    const unsigned int code = codeAt(image, place);
    return code == 0 ? Value() : Value(1LL << (code - 1));
}

Value bytesUsed(ByteView image, const Place& place)
{
    const unsigned int code = codeAt(image, place);
    return code == 0 ? Value() : code <= 4 ? Value(128LL * code) : reservedCode(code);
}

Value bytesTotal(ByteView image, const Place& place)
{
    const unsigned int code = codeAt(image, place);
    return code == 0 ? Value() : code <= 2 ? Value(256LL * code) : reservedCode(code);
}

Value maker(ByteView image, const Place& place)
{
    std::string name = memoryMakerName(image[place.offset], image[place.offset + 1]);
    return name.empty() ? Value() : Value(std::move(name));
}

void readFacts(Spd& spd, ByteView image, const SpdRow* rows, std::size_t count)
{
    for (std::size_t i = 0; i < count; ++i) {
        if (image.contains(rows[i].place.offset, rows[i].place.width)) {
            set(spd, rows[i].fact, rows[i].read(image, rows[i].place));
        }
    }
}

Value timeAt(ByteView image, const SpdTime& time, const SpdTimebases& bases)
{
    long long code = image[time.low.offset];
    if (time.low.width == 2) {
        code = image.le16(time.low.offset);
    }
    if (time.high.width != 0) {
        code += static_cast<long long>(codeAt(image, time.high)) << 8;
    }
    code *= time.scale;
    long long correction = time.fine == 0 ? 0 : image[time.fine];
    correction -= correction > 0x7F ? 0x100 : 0;
    if (code == 0 || bases.medium == 0 || bases.mediumDivisor == 0) {
        return {};
    }
    if (correction != 0 && (bases.fine == 0 || bases.fineDivisor == 0)) {
        return {};
    }
    const long long divisor = bases.fineDivisor == 0 ? 1 : bases.fineDivisor;
    const long long whole = static_cast<long long>(bases.mediumDivisor) * divisor;
    const long long parts =
        code * bases.medium * divisor + correction * bases.fine * bases.mediumDivisor;
    const long long picoseconds = parts <= 0 ? 0 : (2 * parts + whole) / (2 * whole);
    return picoseconds == 0 ? Value() : Value(picoseconds);
}

long long clocksOf(long long picoseconds, long long cycle, const SpdRounding& rounding)
{
    return (picoseconds * rounding.factor / cycle + rounding.more) / 1000;
}

long long speedOf(long long cycle)
{
    // Grades are multiples of 400/3 MT/s, named without their fraction; a cycle is rounded to a
    // picosecond.
    constexpr long long TWO_TRANSFERS = 6000000; // in thirds
    constexpr long long STEP = 400;
    const long long grade = (TWO_TRANSFERS / cycle + STEP / 2) / STEP * STEP;
    const long long off = cycle * grade - TWO_TRANSFERS;
    return (off <= grade && off >= -grade ? grade : TWO_TRANSFERS / cycle) / 3;
}

void readTimes(Spd& spd, ByteView image, const SpdTime* rows, std::size_t count,
               const SpdTimebases& bases, const SpdRounding& rounding)
{
    for (std::size_t i = 0; i < count; ++i) {
        set(spd, rows[i].fact, timeAt(image, rows[i], bases));
    }
    const long long* const cycle = std::get_if<long long>(&spd.get(SpdFact::TCK_MIN));
    if (cycle == nullptr) {
        return;
    }
    set(spd, SpdFact::SPEED, speedOf(*cycle));
    for (std::size_t i = 0; i < count; ++i) {
        const long long* const time = std::get_if<long long>(&spd.get(rows[i].fact));
        if (rows[i].fact != SpdFact::TCK_MIN && rows[i].fact != SpdFact::TCK_MAX &&
            time != nullptr) {
            set(spd, static_cast<SpdFact>(static_cast<unsigned int>(rows[i].fact) + 1),
                std::max<long long>(clocksOf(*time, *cycle, rounding),
                                    rows[i].clocks == 0 ? 0 : image[rows[i].clocks]));
        }
    }
}

Value latencies(unsigned long long mask, unsigned int first, unsigned int step)
{
    std::vector<long long> clocks;
    for (unsigned int bit = 0; mask >> bit != 0; ++bit) {
        if ((mask >> bit & 1U) != 0) {
            clocks.push_back(static_cast<long long>(first) + static_cast<long long>(bit) * step);
        }
    }
    return clocks.empty() ? Value() : Value(std::move(clocks));
}

void readOrigin(Spd& spd, ByteView image, const SpdOrigin& origin)
{
    const auto has = [image](const Place& place) {
        return place.width != 0 && image.contains(place.offset, place.width);
    };
    const auto bytesOf = [image](const Place& place) {
        return image.part(place.offset, place.width);
    };
    if (has(origin.maker)) {
        set(spd, SpdFact::MODULE_MAKER, maker(image, origin.maker));
    }
    if (has(origin.dramMaker)) {
        set(spd, SpdFact::DRAM_MAKER, maker(image, origin.dramMaker));
    }
    if (has(origin.location) && isWritten(bytesOf(origin.location))) {
        set(spd, SpdFact::LOCATION, static_cast<long long>(image[origin.location.offset]));
    }
    if (has(origin.date) && isWritten(bytesOf(origin.date))) {
        set(spd, SpdFact::MADE, madeText(image[origin.date.offset], image[origin.date.offset + 1]));
    }
    if (has(origin.revision) && isWritten(bytesOf(origin.revision))) {
        set(spd, SpdFact::MODULE_REVISION, toHex(bytesOf(origin.revision)) + "h");
    }
    if (has(origin.stepping) && image[origin.stepping.offset] != 0xFF) {
        set(spd, SpdFact::DRAM_STEPPING, static_cast<long long>(image[origin.stepping.offset]));
    }
    spd.hasManufacturerData = has(origin.part);
    if (has(origin.serial)) {
        const ByteView serial = bytesOf(origin.serial);
        spd.serialNumber = static_cast<unsigned int>(serial[0]) << 24 |
                           static_cast<unsigned int>(serial[1]) << 16 |
                           static_cast<unsigned int>(serial[2]) << 8 | serial[3];
    }
    if (has(origin.part) && isWritten(bytesOf(origin.part))) {
        const ByteView part = bytesOf(origin.part);
        const std::size_t length =
            static_cast<std::size_t>(std::find(part.begin(), part.end(), 0) - part.begin());
        spd.partNumber = toUtf8(part.part(0, length));
    }
}

unsigned int capacityOf(const Spd& spd, unsigned int megabits)
{
    if (spd.deviceWidth == 0 || spd.busWidth == 0) {
        return 0;
    }
    return megabits / 8 * spd.busWidth / spd.deviceWidth * spd.ranks;
}

SpdCrc crcAt(ByteView image, unsigned short first, unsigned short last, std::size_t offset)
{
    const std::size_t count = static_cast<std::size_t>(last) - first + 1;
    return {first, last, static_cast<unsigned short>(image.le16(offset)),
            spdCrc(image.part(first, count))};
}

}
