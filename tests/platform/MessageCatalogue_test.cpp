// SPDX-License-Identifier: Apache-2.0
#include <recordkit/platform/MessageCatalogue.h>

#include <cstring>
#include <gtest/gtest.h>
#include <string>

namespace {

constexpr std::size_t LIMIT = 120;

/// A buffer that shows how far it was written.
struct Buffer {
    char bytes[LIMIT + 8];

    Buffer() { std::memset(bytes, '#', sizeof bytes); }
    bool isWrittenWithinTheLimit() const { return std::string(bytes + LIMIT, 8) == "########"; }
};

}

TEST(MessageCatalogue, EveryMessageOfTheLibraryShowsItsTexts)
{
    for (const int number :
         {20003, 20004, 20008, 20010, 20011, 20019, 20020, 20027, 20030, 20031, 20032, 20034}) {
        Buffer buffer;
        const int length = lmsg_getmsg(number, buffer.bytes, "the text", "another text", 4711L);
        EXPECT_EQ(length, static_cast<int>(std::strlen(buffer.bytes))) << number;
        EXPECT_NE(std::string(buffer.bytes).find("the text"), std::string::npos) << number;
    }
}

TEST(MessageCatalogue, NumbersAreShownInDecimal)
{
    Buffer buffer;
    lmsg_getmsg(20008, buffer.bytes, "where", 17L, 18L);
    const std::string text = buffer.bytes;
    EXPECT_NE(text.find("17"), std::string::npos);
    EXPECT_NE(text.find("18"), std::string::npos);
}

TEST(MessageCatalogue, WritesAtMostHundredTwentyBytes)
{
    for (const std::size_t size : {118U, 119U, 120U, 121U, 5000U}) {
        const std::string text(size, 'a');
        Buffer buffer;
        const int length = lmsg_getmsg(20003, buffer.bytes, text.c_str());
        EXPECT_TRUE(buffer.isWrittenWithinTheLimit());
        EXPECT_EQ(length, static_cast<int>(std::strlen(buffer.bytes)));
        EXPECT_LT(std::strlen(buffer.bytes), LIMIT);
    }
}

TEST(MessageCatalogue, TextsAreNotTakenForFormats)
{
    Buffer buffer;
    lmsg_getmsg(20003, buffer.bytes, "%s%n{}{0} 100%");
    EXPECT_NE(std::string(buffer.bytes).find("%s%n{}{0} 100%"), std::string::npos);
}
