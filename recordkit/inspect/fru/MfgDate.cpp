// SPDX-License-Identifier: Apache-2.0
#include <recordkit/inspect/fru/MfgDate.h>

#include <recordkit/inspect/bytes/Time.h>

namespace recordkit::inspect {

namespace {

constexpr unsigned int START_OF_1996 = 820454400; // seconds since 1970
constexpr unsigned int START_OF_2006 = 1136073600;
constexpr unsigned int SECONDS = 60;
constexpr unsigned int ROLL_OVER = 1U << 24;
constexpr unsigned int FIRST_COUNT = (START_OF_2006 - START_OF_1996) / SECONDS;

/// Nothing for a time that the count cannot express.
std::optional<MfgDate> dateAt(unsigned int seconds)
{
    if (seconds < START_OF_2006 || seconds % SECONDS != 0) {
        return std::nullopt;
    }
    const unsigned int count = (seconds - START_OF_1996) / SECONDS;
    if (count == ROLL_OVER || count >= ROLL_OVER + FIRST_COUNT) {
        return std::nullopt;
    }
    return MfgDate(count % ROLL_OVER);
}

}

MfgDate::MfgDate(ByteView bytes) : minutes(bytes.le24(0))
{
}

std::string MfgDate::bytes() const
{
    std::string result;
    for (unsigned int i = 0; i < LENGTH; ++i) {
        result += static_cast<char>(minutes >> 8 * i & 0xFF);
    }
    return result;
}

std::string MfgDate::toText() const
{
    // The seconds are always 00.
    return isSpecified() ? Timestamp(secondsSince1970()).toText().substr(0, 16) : "unspecified";
}

std::string MfgDate::toIso() const
{
    return isSpecified() ? Timestamp(secondsSince1970()).toIso() : "";
}

unsigned int MfgDate::secondsSince1970() const
{
    const unsigned int count =
        isRolledOver && minutes < FIRST_COUNT ? minutes + ROLL_OVER : minutes;
    return START_OF_1996 + count * SECONDS;
}

std::optional<MfgDate> MfgDate::otherReading(unsigned int now) const
{
    if (minutes >= FIRST_COUNT || !isAfter(now)) {
        return std::nullopt;
    }
    MfgDate other = *this;
    other.isRolledOver = false;
    return other;
}

std::optional<MfgDate> parseMfgDate(const std::string& text, unsigned int now)
{
    if (text == "unspecified") {
        return MfgDate(0U);
    }
    if (text == "now") {
        return dateAt(now - now % SECONDS);
    }
    const std::optional<unsigned int> seconds = parseTime(text);
    return seconds ? dateAt(*seconds) : std::nullopt;
}

}
