// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_INSPECT_BYTES_TIME_H
#define RECORDKIT_INSPECT_BYTES_TIME_H

#include <optional>
#include <string>

namespace recordkit::inspect {

/// How many seconds the clocks of a time zone are ahead of UTC at a time in seconds since 1970;
/// nullptr stands for UTC.
using Zone = long (*)(unsigned int seconds);

/// An IPMI timestamp (IPMI v2.0, section 37): seconds since 1970-01-01 UTC, or, up to 20000000h,
/// seconds since the controller was initialised; FFFFFFFFh means unspecified.
class Timestamp {
public:
    explicit Timestamp(unsigned int ipmiSeconds) : seconds(ipmiSeconds) {}

    unsigned int raw() const { return seconds; }
    bool isPreInit() const { return seconds <= LAST_PRE_INIT; }
    bool isUnspecified() const { return seconds == UNSPECIFIED; }
    bool isDate() const { return !isPreInit() && !isUnspecified(); }

    /// "2024-11-05 06:07:08", in a time zone "2024-11-05 07:07:08+01:00"; "pre-init +948227 s" or
    /// "unspecified".
    std::string toText(Zone zone = nullptr) const;
    /// "2024-11-05T06:07:08Z", in a time zone "2024-11-05T07:07:08+01:00"; empty unless it is a
    /// date.
    std::string toIso(Zone zone = nullptr) const;

private:
    static constexpr unsigned int LAST_PRE_INIT = 0x20000000;
    static constexpr unsigned int UNSPECIFIED = 0xFFFFFFFF;

    unsigned int seconds;
};

/// Reads "2024-11-05", "2024-11-05 06:07", "2024-11-05T06:07:08", and times that end in "Z" or
/// " UTC", as UTC, in seconds since 1970;
/// nothing for any other text and for a time that an IPMI timestamp cannot express.
std::optional<unsigned int> parseTime(const std::string& text);

/// A point in time, or a whole day, in seconds since 1970.
struct Moment {
    unsigned int first = 0;
    unsigned int last = 0; ///< of the day; otherwise the same
};

/// Reads a time as a person gives it, as seen at `now` in a time zone: what parseTime reads, the
/// same with an offset (2026-11-20T08:00+01:00), seconds since 1970 (nine digits or more), "18:00"
/// or "18:00:30" of the day, "-12h", "-30m" or "-2d" before now, "now", "today", "yesterday".
std::optional<Moment> parseMoment(const std::string& text, unsigned int now, Zone zone = nullptr);

}

#endif
