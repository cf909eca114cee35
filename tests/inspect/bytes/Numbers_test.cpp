// SPDX-License-Identifier: Apache-2.0
#include <recordkit/inspect/bytes/Numbers.h>

#include <gtest/gtest.h>

using namespace recordkit::inspect;

namespace {

std::string parsed(const std::string& text, unsigned long limit)
{
    const auto number = parseNumber(text, limit);
    return number ? std::to_string(*number) : "none";
}

std::string listed(const std::string& text)
{
    const auto numbers = parseNumberList(text, 15);
    if (!numbers) {
        return "none";
    }
    std::string result;
    for (const unsigned long number : *numbers) {
        result += std::to_string(number) + ";";
    }
    return result;
}

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
    EXPECT_EQ(listed("0,2-4"), "0;2;3;4;");
    EXPECT_EQ(listed("15-15"), "15;");
    for (const char* text :
         {"", ",", "1,", ",1", "1,,2", "16", "1;2", "4-2", "1-", "-1", "1-16", "1-2-3"}) {
        EXPECT_EQ(listed(text), "none") << text;
    }
}

TEST(Numbers, NounsAreCounted)
{
    EXPECT_EQ(counted(0, "event"), "0 events");
    EXPECT_EQ(counted(1, "event"), "1 event");
    EXPECT_EQ(counted(2, "event"), "2 events");
}

TEST(Numbers, BitsAreListedLowOnesFirst)
{
    EXPECT_EQ(bitsOf(0), std::vector<unsigned int>());
    EXPECT_EQ(bitsOf(0x8005), std::vector<unsigned int>({0, 2, 15}));
    EXPECT_EQ(bitsOf(0x80000000U), std::vector<unsigned int>({31}));
}
