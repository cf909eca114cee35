// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_INSPECT_FRU_MFGDATE_H
#define RECORDKIT_INSPECT_FRU_MFGDATE_H

#include <optional>
#include <string>

#include <recordkit/inspect/bytes/ByteView.h>

namespace recordkit::inspect {

/// A board's manufacturing date: minutes since 1996-01-01 UTC in three bytes, low byte first; 0 is
/// unspecified (IPMI FRU Information Storage Definition v1.0, section 11). The count rolls over on
/// 2027-11-24 at 20:16: a count that would mean a date before 2006 counts from there.
class MfgDate {
public:
    static constexpr unsigned int LENGTH = 3;

    explicit MfgDate(unsigned int minutesSince1996) : minutes(minutesSince1996) {}
    /// From the three bytes of the field.
    explicit MfgDate(ByteView bytes);

    /// The count as stored, without the roll-over.
    unsigned int raw() const { return minutes; }
    std::string bytes() const;
    bool isSpecified() const { return minutes != 0; }
    /// "2015-01-06 22:01" or "unspecified".
    std::string toText() const;
    /// "2015-01-06T22:01:00Z"; empty for an unspecified one.
    std::string toIso() const;
    /// Whether it is later than `now`, in seconds since 1970; an unspecified one is not.
    bool isAfter(unsigned int now) const { return isSpecified() && secondsSince1970() > now; }
    /// The date that the count means without the roll-over. Nothing if the count does not roll
    /// over, or if this date is not later than `now` (seconds since 1970).
    std::optional<MfgDate> otherReading(unsigned int now) const;

private:
    unsigned int secondsSince1970() const;

    unsigned int minutes;
    bool isRolledOver = true; ///< whether early counts are counted from 2027
};

/// Reads a date as parseTime does, "unspecified", or "now" for the minute of `now` (seconds since
/// 1970; 0 if it is unknown). Nothing for any other text, for a date that the count cannot express,
/// and for 2027-11-24 20:16, whose count is that of "unspecified".
std::optional<MfgDate> parseMfgDate(const std::string& text, unsigned int now = 0);

}

#endif
