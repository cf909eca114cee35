// SPDX-License-Identifier: Apache-2.0
// Numbers, times, tables and CSV lines of the command.
#include <filesystem>

#include <gtest/gtest.h>

#include "support/ScratchRoot.h"
#include "tool/Errors.h"
#include "tool/Files.h"
#include "tool/Numbers.h"
#include "tool/Time.h"
#include "tool/print/Csv.h"
#include "tool/print/Json.h"
#include "tool/print/Table.h"
#include "tool/severity/SeverityNames.h"

using namespace recordkit::tool;
using namespace testing_support;

namespace {

std::string parsed(const std::string& text, unsigned long limit)
{
    unsigned long number = 0;
    return parseNumber(text, limit, number) ? std::to_string(number) : "none";
}

std::string listed(const std::string& text)
{
    std::vector<unsigned long> numbers;
    if (!parseNumberList(text, 15, numbers)) {
        return "none";
    }
    std::string result;
    for (const unsigned long number : numbers) {
        result += std::to_string(number) + ";";
    }
    return result;
}

std::string seconds(const std::string& text)
{
    unsigned int time = 0;
    return parseTime(text, time) ? std::to_string(time) : "none";
}

}

TEST(Files, LinksInFoldersOfEverybodyAreNotWrittenThrough)
{
    const ScratchRoot root;
    const std::string link = root.at("/tmp/link");
    writeFile(root.at("/target"), "precious");
    std::filesystem::create_symlink(root.at("/target"), link);
    std::filesystem::permissions(root.at("/tmp"), std::filesystem::perms(01777));
    try {
        writeOutput(link, "new");
        ADD_FAILURE() << "written";
    } catch (const CommandError& e) {
        EXPECT_EQ(e.getStatus(), 3);
        EXPECT_EQ(std::string(e.what()),
                  link + " cannot be written: Too many levels of symbolic links");
    }
    EXPECT_EQ(readFile(root.at("/target")), textBytes("precious"));
    EXPECT_EQ(listFolder(root.at("/tmp")), std::vector<std::string>({"link"}));

    std::filesystem::permissions(root.at("/tmp"), std::filesystem::perms(0755));
    writeOutput(link, "new");
    EXPECT_EQ(readFile(root.at("/target")), textBytes("new"));
    EXPECT_TRUE(std::filesystem::is_symlink(link));
}

TEST(Files, NewFilesAreForTheOwnerToChangeAndTheRestToRead)
{
    const ScratchRoot root;
    const std::string path = root.at("/tmp/new");
    writeOutput(path, "text");
    EXPECT_EQ(std::filesystem::status(path).permissions(), std::filesystem::perms(0644));
}

TEST(Numbers, AreDecimalOrHexadecimal)
{
    EXPECT_EQ(parsed("0", 9), "0");
    EXPECT_EQ(parsed("255", 255), "255");
    EXPECT_EQ(parsed("0xFf", 255), "255");
    EXPECT_EQ(parsed("FFh", 255), "255");
    EXPECT_EQ(parsed("010", 255), "10");
}

TEST(Numbers, EverythingElseIsRefused)
{
    for (const char* text : {"", "-1", "+1", " 1", "1 ", "0x", "h", "0xG", "1.5", "256", "0x100",
                             "99999999999999999999999999", "12a"}) {
        EXPECT_EQ(parsed(text, 255), "none") << text;
    }
}

TEST(Numbers, ListsAreSeparatedByCommas)
{
    EXPECT_EQ(listed("3"), "3;");
    EXPECT_EQ(listed("0,15,0x2"), "0;15;2;");
    for (const char* text : {"", ",", "1,", ",1", "1,,2", "16", "1;2"}) {
        EXPECT_EQ(listed(text), "none") << text;
    }
}

TEST(Numbers, BitsAreListedLowOnesFirst)
{
    EXPECT_EQ(bitsOf(0), std::vector<unsigned int>());
    EXPECT_EQ(bitsOf(0x8005), std::vector<unsigned int>({0, 2, 15}));
    EXPECT_EQ(bitsOf(0x80000000U), std::vector<unsigned int>({31}));
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
    EXPECT_EQ(seconds("1970-01-01"), "0");
    EXPECT_EQ(seconds("2106-02-07T06:28:14Z"), "4294967294");
    EXPECT_EQ(seconds("2024-02-29"), "1709164800");
}

TEST(Time, WhatIsNoTimeIsRefused)
{
    for (const char* text :
         {"", "yesterday", "2024-13-01", "2024-02-30", "2023-02-29", "2024-11-05T", "2024-11-05 06",
          "05.11.2024", "1969-12-31", "2106-02-07T06:28:15Z", "2024-11-05T06:07:08+01"}) {
        EXPECT_EQ(seconds(text), "none") << text;
    }
}

TEST(Table, PadsEveryColumnButTheLast)
{
    const Table table({{"A", 3}, {"LONG", 4}, {"END", 0}}, false);
    EXPECT_EQ(table.header(), "A    LONG  END\n");
    std::string line;
    table.append({{"12345"}, {"x", Style::ALARM}, {"last"}}, line);
    EXPECT_EQ(line, "12345  x     last\n");
}

TEST(Table, ColoursOnlyWhenAskedTo)
{
    const Table table({{"A", 3}, {"B", 0}}, true);
    std::string line;
    table.append({{"x", Style::WARNING}, {"y"}}, line);
    EXPECT_EQ(line, "\033[33mx\033[0m    y\n");
}

TEST(Csv, QuotesWhatNeedsQuotes)
{
    const Json object = {{"a", "x,y"},  {"b", "say \"hi\""}, {"c", nullptr},     {"d", 5},
                         {"e", {1, 2}}, {"f", true},         {"g", "two\nlines"}};
    EXPECT_EQ(csvHeader(object), "a,b,c,d,e,f,g\r\n");
    EXPECT_EQ(csvLine(object), "\"x,y\",\"say \"\"hi\"\"\",,5,1 2,true,\"two\nlines\"\r\n");
}

TEST(Json, Latin1BecomesUTF8)
{
    EXPECT_EQ(toUtf8("a\xE4\xFF"), "a\xC3\xA4\xC3\xBF");
}

TEST(SeverityNames, ThresholdEventsHaveTheSeverityOfTheThreshold)
{
    const int expected[] = {1, 1, 2, 2, 3, 3, 1, 1, 2, 2, 3, 3, 0, 0, 0, 0};
    for (unsigned char offset = 0; offset < 16; ++offset) {
        EXPECT_EQ(severityOfEvent(0x01, 0x02, offset), expected[offset]) << int(offset);
    }
}

TEST(SeverityNames, DiscreteEventsHaveThatOfTheMap)
{
    EXPECT_EQ(severityOfEvent(0x6F, 0x07, 1), SeverityMap::SEV_NONRECOVERABLE);
    EXPECT_EQ(severityOfEvent(0x6F, 0x05, 1), SeverityMap::SEV_NONE);
}

TEST(SeverityNames, AreOrderedFromHarmlessToFatal)
{
    const char* const order[] = {"none",    "informational", "monitor",
                                 "warning", "critical",      "non-recoverable"};
    for (int i = 0; i < 6; ++i) {
        for (int k = 0; k < 6; ++k) {
            Severity one = SeverityMap::SEV_NONE;
            Severity other = SeverityMap::SEV_NONE;
            ASSERT_TRUE(findSeverity(order[i], one));
            ASSERT_TRUE(findSeverity(order[k], other));
            EXPECT_STREQ(severityName(one), order[i]);
            EXPECT_EQ(isAtLeast(one, other), i >= k);
        }
    }
    Severity unknown = SeverityMap::SEV_MONITOR;
    EXPECT_FALSE(findSeverity("bad", unknown));
    EXPECT_EQ(unknown, SeverityMap::SEV_MONITOR);
}
