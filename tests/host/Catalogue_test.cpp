// SPDX-License-Identifier: Apache-2.0
#include <recordkit/host/Catalogue.h>

#include <cstring>
#include <gtest/gtest.h>
#include <set>

#include <recordkit/platform/MessageCatalogue.h>

using namespace TAVLib::host;

namespace {

std::string message(int number, const char* first, long second = 0, long third = 0)
{
    char buffer[120];
    lmsg_getmsg(number, buffer, first, second, third);
    return buffer;
}

}

TEST(Catalogue, EveryMessageHasAPlaceForEachOfItsParameters)
{
    std::size_t count = 0;
    const CatalogueMessage* const messages = catalogue(count);
    std::set<int> numbers;
    for (std::size_t i = 0; i < count; ++i) {
        std::size_t places = 0;
        for (const char* at = messages[i].text; (at = std::strstr(at, "{}")) != nullptr; at += 2) {
            ++places;
        }
        EXPECT_EQ(places, std::strlen(messages[i].kinds)) << messages[i].number;
        EXPECT_EQ(std::strspn(messages[i].kinds, "sn"), places) << messages[i].number;
        numbers.insert(messages[i].number);
    }
    EXPECT_EQ(numbers, std::set<int>({20003, 20004, 20008, 20010, 20011, 20019, 20020, 20027, 20030,
                                      20031, 20032, 20034, 30001}));
    EXPECT_EQ(count, numbers.size());
}

TEST(Catalogue, FillsItsMessagesIn)
{
    EXPECT_EQ(message(20003, "text"), "text");
    EXPECT_EQ(message(20008, "SELEntry", 15, 16), "SELEntry: 15 where 16 is needed");
    EXPECT_EQ(message(20011, "read", 5), "read failed: errno 5");
    EXPECT_EQ(message(20027, "Get SB", -1), "Get SB: bad value -1");
    EXPECT_EQ(message(20031, "a step"), "failed: a step");
    EXPECT_EQ(message(20034, "getSpeed(fan)", 4), "getSpeed(fan): 4 is beyond the table");
}

TEST(Catalogue, UnknownNumberHasNoParameters)
{
    EXPECT_EQ(message(1, "ignored"), "unknown message");
    EXPECT_STREQ(findMessage(-1).kinds, "");
}

TEST(Catalogue, NullTextIsEmpty)
{
    EXPECT_EQ(message(20031, nullptr), "failed: ");
}

TEST(Catalogue, MissingParameterLeavesItsPlace)
{
    EXPECT_EQ(fillMessage({0, "sn", "{}: {}"}, {"only"}), "only: {}");
    EXPECT_EQ(fillMessage({0, "s", "{}"}, {"a{}b", "surplus"}), "a{}b");
}
