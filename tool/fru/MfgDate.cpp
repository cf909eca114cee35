// SPDX-License-Identifier: Apache-2.0
#include "MfgDate.h"

#include "../Time.h"

namespace recordkit::tool {

namespace {

constexpr unsigned int START_OF_1996 = 820454400; // seconds since 1970
constexpr unsigned int START_OF_2006 = 1136073600;
constexpr unsigned int SECONDS = 60;
constexpr unsigned int ROLL_OVER = 1U << 24;
constexpr unsigned int FIRST_COUNT = (START_OF_2006 - START_OF_1996) / SECONDS;

}

MfgDate::MfgDate(const std::string& bytes) : minutes(0)
{
    for (unsigned int i = 0; i < LENGTH && i < bytes.size(); ++i) {
        minutes |= static_cast<unsigned int>(static_cast<unsigned char>(bytes[i])) << 8 * i;
    }
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
    const unsigned int count = minutes < FIRST_COUNT ? minutes + ROLL_OVER : minutes;
    return START_OF_1996 + count * SECONDS;
}

bool parseMfgDate(const std::string& text, MfgDate& date)
{
    if (text == "unspecified") {
        date = MfgDate(0U);
        return true;
    }
    unsigned int seconds = 0;
    if (!parseTime(text, seconds) || seconds < START_OF_2006 || seconds % SECONDS != 0) {
        return false;
    }
    const unsigned int count = (seconds - START_OF_1996) / SECONDS;
    if (count == ROLL_OVER || count >= ROLL_OVER + FIRST_COUNT) {
        return false;
    }
    date = MfgDate(count % ROLL_OVER);
    return true;
}

}
