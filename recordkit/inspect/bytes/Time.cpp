// SPDX-License-Identifier: Apache-2.0
#include <recordkit/inspect/bytes/Time.h>

#include <algorithm>
#include <cstdlib>
#include <ctime>

#include <fmt/compile.h>

#include <recordkit/inspect/bytes/Numbers.h>

namespace recordkit::inspect {

namespace {

constexpr long SECONDS_PER_DAY = 86400;

/// A day of the Gregorian calendar. Not the C library's: a 32-bit time_t ends in 2038, an IPMI
/// timestamp in 2106.
struct Date {
    int year;
    int month;
    int day;
};

/// Days from 1970-01-01; years begin in March here, so that the leap day is a year's last.
long toDays(const Date& date)
{
    const long year = date.year - (date.month <= 2 ? 1 : 0);
    const long monthFromMarch = (date.month + 9) % 12;
    return 365 * year + year / 4 - year / 100 + year / 400 + (153 * monthFromMarch + 2) / 5 +
           date.day - 719469;
}

Date toDate(long days)
{
    constexpr long DAYS_IN_400_YEARS = 146097;
    const long sinceYear0 = days + 719468;
    const long era = sinceYear0 / DAYS_IN_400_YEARS;
    const long dayOfEra = sinceYear0 % DAYS_IN_400_YEARS;
    const long yearOfEra =
        (dayOfEra - dayOfEra / 1460 + dayOfEra / 36524 - dayOfEra / 146096) / 365;
    const long dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
    const long monthFromMarch = (5 * dayOfYear + 2) / 153;
    const int month =
        static_cast<int>(monthFromMarch < 10 ? monthFromMarch + 3 : monthFromMarch - 9);
    return {static_cast<int>(era * 400 + yearOfEra + (month <= 2 ? 1 : 0)), month,
            static_cast<int>(dayOfYear - (153 * monthFromMarch + 2) / 5 + 1)};
}

/// `seconds`: of the zone's clock.
std::string format(long long seconds, char separator)
{
    const Date date = toDate(static_cast<long>(seconds / SECONDS_PER_DAY));
    const auto time = static_cast<long>(seconds % SECONDS_PER_DAY);
    // Listings have a time in each row; a compiled format is faster.
    return fmt::format(FMT_COMPILE("{:04}-{:02}-{:02}{}{:02}:{:02}:{:02}"), date.year, date.month,
                       date.day, separator, time / 3600, time / 60 % 60, time % 60);
}

std::string format(unsigned int seconds, char separator, Zone zone)
{
    const long offset = zone(seconds);
    const long minutes = std::labs(offset) / 60;
    return fmt::format("{}{}{:02}:{:02}",
                       format(static_cast<long long>(seconds) + offset, separator),
                       offset < 0 ? '-' : '+', minutes / 60, minutes % 60);
}

}

std::string Timestamp::toText(Zone zone) const
{
    if (isUnspecified()) {
        return "unspecified";
    }
    if (isPreInit()) {
        return fmt::format("pre-init +{} s", seconds);
    }
    return zone == nullptr ? format(seconds, ' ') : format(seconds, ' ', zone);
}

std::string Timestamp::toIso(Zone zone) const
{
    if (!isDate()) {
        return "";
    }
    return zone == nullptr ? format(seconds, 'T') + "Z" : format(seconds, 'T', zone);
}

namespace {

/// The text without "Z" or " UTC" after a time.
std::string withoutUtc(const std::string& text)
{
    for (const std::string utc : {"Z", " UTC"}) {
        const std::size_t at = text.size() - utc.size();
        if (text.size() > utc.size() && text.compare(at, utc.size(), utc) == 0 &&
            text.find(':') != std::string::npos) {
            return text.substr(0, at);
        }
    }
    return text;
}

}

std::optional<unsigned int> parseTime(const std::string& text)
{
    const std::string bare = withoutUtc(text);
    for (const char* form : {"%Y-%m-%d", "%Y-%m-%d %H:%M", "%Y-%m-%dT%H:%M", "%Y-%m-%d %H:%M:%S",
                             "%Y-%m-%dT%H:%M:%S"}) {
        std::tm utc = {};
        const char* const end = ::strptime(bare.c_str(), form, &utc);
        if (end != nullptr && *end == '\0') {
            const Date date = {utc.tm_year + 1900, utc.tm_mon + 1, utc.tm_mday};
            const long days = toDays(date);
            const long long time = static_cast<long long>(days) * SECONDS_PER_DAY +
                                   utc.tm_hour * 3600 + utc.tm_min * 60 + utc.tm_sec;
            // strptime accepts the 30th of February.
            if (toDate(days).day != date.day || time < 0 || time > 0xFFFFFFFELL) {
                return std::nullopt;
            }
            return static_cast<unsigned int>(time);
        }
    }
    return std::nullopt;
}

namespace {

/// What is left of a text after the time's offset from UTC, in seconds; 0 if it has none.
std::string withoutOffset(const std::string& text, long& offset)
{
    constexpr std::size_t LENGTH = 6; // "+01:00"
    const std::size_t at = text.size() - LENGTH;
    if (text.size() <= LENGTH || text.find(':') >= at || (text[at] != '+' && text[at] != '-')) {
        return text;
    }
    std::tm time = {};
    const char* const end = ::strptime(text.c_str() + at + 1, "%H:%M", &time);
    if (end == nullptr || *end != '\0') {
        return text;
    }
    offset = (time.tm_hour * 60L + time.tm_min) * 60 * (text[at] == '+' ? 1 : -1);
    return text.substr(0, at);
}

/// Seconds of "-12h"; nothing for any other text.
std::optional<long> spanOf(const std::string& text)
{
    constexpr unsigned long LONGEST = 1000000;
    const std::size_t unit = text.empty() ? 0 : std::string("mhd").find(text.back());
    if (text.size() < 3 || text[0] != '-' || unit == std::string::npos) {
        return std::nullopt;
    }
    const auto number = parseNumber(text.substr(1, text.size() - 2), LONGEST);
    constexpr long SECONDS[] = {60, 3600, SECONDS_PER_DAY};
    return number ? std::optional(static_cast<long>(*number) * SECONDS[unit]) : std::nullopt;
}

/// Seconds since midnight of "18:00" or "18:00:30".
std::optional<long> clockOf(const std::string& text)
{
    for (const char* const form : {"%H:%M", "%H:%M:%S"}) {
        std::tm time = {};
        const char* const end = ::strptime(text.c_str(), form, &time);
        if (end != nullptr && *end == '\0') {
            return time.tm_hour * 3600L + time.tm_min * 60L + time.tm_sec;
        }
    }
    return std::nullopt;
}

/// Nothing for what an IPMI timestamp cannot express.
std::optional<Moment> moment(long long first, long long last)
{
    if (first < 0 || last > 0xFFFFFFFELL) {
        return std::nullopt;
    }
    return Moment{static_cast<unsigned int>(first), static_cast<unsigned int>(last)};
}

std::optional<Moment> moment(long long seconds)
{
    return moment(seconds, seconds);
}

/// What a zone's clocks show, in seconds since their 1970-01-01.
class Clocks {
public:
    Clocks(unsigned int utcNow, Zone clocksZone) : now(utcNow), zone(clocksZone) {}

    long long midnight() const
    {
        const long long shown = static_cast<long long>(now) + ahead(now);
        return shown - shown % SECONDS_PER_DAY;
    }
    /// The time at which they show `shown`; in the hour that they skip, the one after it.
    std::optional<Moment> at(long long shown) const { return moment(toUtc(shown)); }
    std::optional<Moment> wholeDay(long long midnight) const
    {
        return moment(toUtc(midnight), toUtc(midnight + SECONDS_PER_DAY - 1));
    }

private:
    long ahead(long long seconds) const
    {
        const long long known = std::min(std::max(seconds, 0LL), 0xFFFFFFFELL);
        return zone == nullptr ? 0 : zone(static_cast<unsigned int>(known));
    }
    long long toUtc(long long shown) const { return shown - ahead(shown - ahead(shown)); }

    unsigned int now;
    Zone zone;
};

/// A date, with or without a time and an offset from UTC.
std::optional<Moment> dateMoment(const std::string& text, const Clocks& clocks)
{
    long offset = 0;
    const std::string local = withoutOffset(text, offset);
    const auto time = parseTime(local);
    if (!time) {
        return std::nullopt;
    }
    if (local != text || withoutUtc(text) != text) {
        return moment(static_cast<long long>(*time) - offset);
    }
    constexpr std::size_t DATE_ONLY = 10;
    return text.size() == DATE_ONLY ? clocks.wholeDay(*time) : clocks.at(*time);
}

}

std::optional<Moment> parseMoment(const std::string& text, unsigned int now, Zone zone)
{
    const Clocks clocks(now, zone);
    if (text == "now") {
        return moment(now);
    }
    if (text == "today" || text == "yesterday") {
        return clocks.wholeDay(clocks.midnight() - (text == "today" ? 0 : SECONDS_PER_DAY));
    }
    if (const auto span = spanOf(text)) {
        return moment(static_cast<long long>(now) - *span);
    }
    if (const auto clock = clockOf(text)) {
        return clocks.at(clocks.midnight() + *clock);
    }
    constexpr std::size_t SHORTEST_EPOCH = 9;
    if (text.size() >= SHORTEST_EPOCH) {
        if (const auto seconds = parseNumber(text, 0xFFFFFFFE)) {
            return moment(static_cast<long long>(*seconds));
        }
    }
    return dateMoment(text, clocks);
}

}
