// SPDX-License-Identifier: Apache-2.0
#include <recordkit/inspect/bytes/Time.h>

#include <gtest/gtest.h>

using namespace recordkit::inspect;

namespace {

std::string seconds(const std::string& text)
{
    const auto time = parseTime(text);
    return time ? std::to_string(*time) : "none";
}

}

TEST(Time, TimestampsAreUTC)
{
    EXPECT_EQ(Timestamp(1730786828).toText(), "2024-11-05 06:07:08");
    EXPECT_EQ(Timestamp(1730786828).toIso(), "2024-11-05T06:07:08Z");
    EXPECT_EQ(Timestamp(951782400).toIso(), "2000-02-29T00:00:00Z");
    EXPECT_EQ(Timestamp(951868800).toIso(), "2000-03-01T00:00:00Z");
    EXPECT_EQ(Timestamp(2147483648U).toIso(), "2038-01-19T03:14:08Z");
    EXPECT_EQ(Timestamp(0xFFFFFFFEU).toIso(), "2106-02-07T06:28:14Z");
}

TEST(Time, UpToHex20000000SecondsCountFromInitialisation)
{
    EXPECT_EQ(Timestamp(0).toText(), "pre-init +0 s");
    EXPECT_EQ(Timestamp(0x20000000).toText(), "pre-init +536870912 s");
    EXPECT_TRUE(Timestamp(0x20000000).isPreInit());
    EXPECT_EQ(Timestamp(0x20000000).toIso(), "");
    EXPECT_FALSE(Timestamp(0x20000001).isPreInit());
    EXPECT_EQ(Timestamp(0x20000001).toText(), "1987-01-05 18:48:33");
}

TEST(Time, AllOnesIsUnspecified)
{
    EXPECT_EQ(Timestamp(0xFFFFFFFFU).toText(), "unspecified");
    EXPECT_EQ(Timestamp(0xFFFFFFFFU).toIso(), "");
    EXPECT_FALSE(Timestamp(0xFFFFFFFFU).isDate());
}

TEST(Time, IsReadAsISODatesAndTimes)
{
    EXPECT_EQ(seconds("2024-11-05"), "1730764800");
    EXPECT_EQ(seconds("2024-11-05 06:07"), "1730786820");
    EXPECT_EQ(seconds("2024-11-05T06:07:08"), "1730786828");
    EXPECT_EQ(seconds("2024-11-05T06:07:08Z"), "1730786828");
    EXPECT_EQ(seconds("2024-11-05T06:07Z"), "1730786820");
    EXPECT_EQ(seconds("2024-11-05 06:07:08Z"), "1730786828");
    EXPECT_EQ(seconds("2024-11-05 06:07:08 UTC"), "1730786828");
    EXPECT_EQ(seconds("1970-01-01"), "0");
    EXPECT_EQ(seconds("2106-02-07T06:28:14Z"), "4294967294");
    EXPECT_EQ(seconds("2024-02-29"), "1709164800");
}

TEST(Time, OtherTextsAreRefused)
{
    for (const char* text :
         {"", "yesterday", "2024-13-01", "2024-02-30", "2023-02-29", "2024-11-05T", "2024-11-05 06",
          "05.11.2024", "1969-12-31", "2106-02-07T06:28:15Z", "2024-11-05T06:07:08+01",
          "2024-11-05Z", "2024-11-05 UTC", "2024-11-05T06:07:08UTC", "Z", " UTC", ":Z",
          "2024-11-05T06:07ZZ"}) {
        EXPECT_EQ(seconds(text), "none") << text;
    }
}

namespace {

constexpr unsigned int NOW = 1730786828; // 2024-11-05 06:07:08

std::string momentOf(const std::string& text)
{
    const auto moment = parseMoment(text, NOW);
    if (!moment) {
        return "none";
    }
    const std::string first = Timestamp(moment->first).toText();
    return moment->first == moment->last ? first
                                         : first + " to " + Timestamp(moment->last).toText();
}

}

TEST(Moment, IsReadAsAPersonGivesIt)
{
    EXPECT_EQ(momentOf("now"), "2024-11-05 06:07:08");
    EXPECT_EQ(momentOf("today"), "2024-11-05 00:00:00 to 2024-11-05 23:59:59");
    EXPECT_EQ(momentOf("yesterday"), "2024-11-04 00:00:00 to 2024-11-04 23:59:59");
    EXPECT_EQ(momentOf("-12h"), "2024-11-04 18:07:08");
    EXPECT_EQ(momentOf("-30m"), "2024-11-05 05:37:08");
    EXPECT_EQ(momentOf("-2d"), "2024-11-03 06:07:08");
    EXPECT_EQ(momentOf("18:00"), "2024-11-05 18:00:00");
    EXPECT_EQ(momentOf("18:00:30"), "2024-11-05 18:00:30");
    EXPECT_EQ(momentOf("1730786828"), "2024-11-05 06:07:08");
    EXPECT_EQ(momentOf("2024-11-05"), "2024-11-05 00:00:00 to 2024-11-05 23:59:59");
    EXPECT_EQ(momentOf("2024-11-05T06:07:08Z"), "2024-11-05 06:07:08");
    EXPECT_EQ(momentOf("2024-11-05T08:00+01:00"), "2024-11-05 07:00:00");
    EXPECT_EQ(momentOf("2024-11-05T08:00:30-05:30"), "2024-11-05 13:30:30");
}

TEST(Moment, OtherTextsAreRefused)
{
    for (const char* const text :
         {"", "soon", "-h", "-12", "-12x", "12h", "24:00", "12345678", "4294967295",
          "2024-11-05T08:00+25:00", "2024-11-05+01:00", "-9999999d", "2024-02-30"}) {
        EXPECT_EQ(momentOf(text), "none") << text;
    }
    EXPECT_FALSE(parseMoment("yesterday", 100));
    EXPECT_FALSE(parseMoment("-1d", 86399));
    EXPECT_TRUE(parseMoment("-1d", 86400));
}

namespace {

/// An hour ahead of UTC, from 2024-11-05 06:00:00 on two: the clocks skip 07:00 to 08:00.
long zone(unsigned int seconds)
{
    return seconds < 1730786400 ? 3600 : 7200;
}

long west(unsigned int /*seconds*/)
{
    return -(3 * 3600 + 1800);
}

std::string localMoment(const std::string& text, unsigned int now, Zone in)
{
    const auto moment = parseMoment(text, now, in);
    return moment ? Timestamp(moment->first).toText() + " to " + Timestamp(moment->last).toText()
                  : "none";
}

}

TEST(Zone, TimesHaveTheirOffset)
{
    EXPECT_EQ(Timestamp(1730786399).toText(zone), "2024-11-05 06:59:59+01:00");
    EXPECT_EQ(Timestamp(1730786400).toText(zone), "2024-11-05 08:00:00+02:00");
    EXPECT_EQ(Timestamp(1730786400).toIso(zone), "2024-11-05T08:00:00+02:00");
    EXPECT_EQ(Timestamp(1730786400).toText(west), "2024-11-05 02:30:00-03:30");
    EXPECT_EQ(Timestamp(0xFFFFFFFEU).toIso(zone), "2106-02-07T08:28:14+02:00");
    EXPECT_EQ(Timestamp(5).toText(zone), "pre-init +5 s");
    EXPECT_EQ(Timestamp(5).toIso(zone), "");
    EXPECT_EQ(Timestamp(0xFFFFFFFFU).toText(zone), "unspecified");
}

TEST(Zone, MomentsAreThoseOfItsClocks)
{
    const unsigned int now = 1730786828; // 06:07:08 UTC, 08:07:08 here
    const auto here = [&](const std::string& text) { return localMoment(text, now, zone); };
    EXPECT_EQ(here("2024-11-05"), "2024-11-04 23:00:00 to 2024-11-05 21:59:59");
    EXPECT_EQ(here("today"), "2024-11-04 23:00:00 to 2024-11-05 21:59:59");
    EXPECT_EQ(here("yesterday"), "2024-11-03 23:00:00 to 2024-11-04 22:59:59");
    EXPECT_EQ(here("06:30"), "2024-11-05 05:30:00 to 2024-11-05 05:30:00");
    EXPECT_EQ(here("2024-11-05 09:00"), "2024-11-05 07:00:00 to 2024-11-05 07:00:00");
    EXPECT_EQ(here("2024-11-05T09:00:00Z"), "2024-11-05 09:00:00 to 2024-11-05 09:00:00");
    EXPECT_EQ(here("2024-11-05T09:00-01:00"), "2024-11-05 10:00:00 to 2024-11-05 10:00:00");
    EXPECT_EQ(here("-1h"), "2024-11-05 05:07:08 to 2024-11-05 05:07:08");
    EXPECT_EQ(here("now"), "2024-11-05 06:07:08 to 2024-11-05 06:07:08");
    EXPECT_EQ(here("1730786828"), "2024-11-05 06:07:08 to 2024-11-05 06:07:08");
    // The clocks never show it.
    EXPECT_EQ(here("07:30"), "2024-11-05 06:30:00 to 2024-11-05 06:30:00");
    // The day has begun here, not yet in UTC, and the other way round.
    EXPECT_EQ(localMoment("today", 1730847600, zone), "2024-11-05 22:00:00 to 2024-11-06 21:59:59");
    EXPECT_EQ(localMoment("today", 1730766000, west), "2024-11-04 03:30:00 to 2024-11-05 03:29:59");
    EXPECT_FALSE(parseMoment("1970-01-01", now, zone));
    EXPECT_FALSE(parseMoment("2106-02-07T06:28:14", now, west));
}
