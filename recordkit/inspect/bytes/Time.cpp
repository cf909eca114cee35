// SPDX-License-Identifier: Apache-2.0
#include <recordkit/inspect/bytes/Time.h>

#include <ctime>

#include <fmt/format.h>

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

std::string format(unsigned int seconds, char separator, const char* end)
{
    const Date date = toDate(static_cast<long>(seconds / SECONDS_PER_DAY));
    const auto time = static_cast<unsigned int>(seconds % SECONDS_PER_DAY);
    return fmt::format("{:04}-{:02}-{:02}{}{:02}:{:02}:{:02}{}", date.year, date.month, date.day,
                       separator, time / 3600, time / 60 % 60, time % 60, end);
}

}

std::string Timestamp::toText() const
{
    if (isUnspecified()) {
        return "unspecified";
    }
    return isPreInit() ? fmt::format("pre-init +{} s", seconds) : format(seconds, ' ', "");
}

std::string Timestamp::toIso() const
{
    return isDate() ? format(seconds, 'T', "Z") : "";
}

std::optional<unsigned int> parseTime(const std::string& text)
{
    for (const char* form : {"%Y-%m-%d", "%Y-%m-%d %H:%M", "%Y-%m-%dT%H:%M", "%Y-%m-%d %H:%M:%S",
                             "%Y-%m-%dT%H:%M:%S", "%Y-%m-%dT%H:%M:%SZ"}) {
        std::tm utc = {};
        const char* const end = ::strptime(text.c_str(), form, &utc);
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

}
