// SPDX-License-Identifier: Apache-2.0
#include <recordkit/platform/MessageCatalogue.h>

#include <LibraryMessages.h>
#include <cstring>
#include <gtest/gtest.h>
#include <sstream>
#include <string>

#include <recordkit/platform/CatalogueFile.h>

namespace {

constexpr std::size_t LIMIT = 120;

/// A buffer that shows how far it was written.
struct Buffer {
    char bytes[LIMIT + 8];

    Buffer() { std::memset(bytes, '#', sizeof bytes); }
    bool isWrittenWithinTheLimit() const { return std::string(bytes + LIMIT, 8) == "########"; }
    bool shows(const std::string& part) const
    {
        return std::string(bytes).find(part) != std::string::npos;
    }
};

std::vector<TAVLib::CatalogueEntry> libraryMessages()
{
    std::istringstream file(RECORDKIT_LIBRARY_MESSAGES);
    return TAVLib::readCatalogue(file);
}

}

TEST(MessageCatalogue, EveryMessageShowsItsParameters)
{
    EXPECT_FALSE(libraryMessages().empty());
    for (const TAVLib::CatalogueEntry& entry : libraryMessages()) {
        Buffer buffer;
        int length = 0;
        const std::string& kinds = entry.kinds;
        if (kinds == "s") {
            length = lmsg_getmsg(entry.number, buffer.bytes, "1st");
        } else if (kinds == "sn") {
            length = lmsg_getmsg(entry.number, buffer.bytes, "1st", 4711L);
        } else if (kinds == "ss") {
            length = lmsg_getmsg(entry.number, buffer.bytes, "1st", "2nd");
        } else if (kinds == "snn") {
            length = lmsg_getmsg(entry.number, buffer.bytes, "1st", 4711L, -4712L);
        } else if (kinds == "ssn") {
            length = lmsg_getmsg(entry.number, buffer.bytes, "1st", "2nd", -4712L);
        } else {
            FAIL() << "this test has no call for " << kinds;
        }
        EXPECT_TRUE(buffer.isWrittenWithinTheLimit());
        EXPECT_EQ(length, static_cast<int>(std::strlen(buffer.bytes))) << entry.number;
        const char* const shown[3] = {"1st", kinds[1] == 's' ? "2nd" : "4711", "-4712"};
        for (std::size_t i = 0; i < kinds.size(); ++i) {
            EXPECT_TRUE(buffer.shows(shown[i])) << entry.number << " shows: " << buffer.bytes;
        }
    }
}

TEST(MessageCatalogue, MoreArgumentsThanAMessageHasAreIgnored)
{
    // The library gives all messages of one group as many as the longest of them has.
    Buffer buffer;
    lmsg_getmsg(20003, buffer.bytes, "text", 4711L, 4712L);
    EXPECT_TRUE(buffer.shows("text"));
    EXPECT_FALSE(buffer.shows("4711"));
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
        EXPECT_TRUE(buffer.shows(std::string(80, 'a')));
    }
}

TEST(MessageCatalogue, TextsAreNotTakenForFormats)
{
    Buffer buffer;
    lmsg_getmsg(20003, buffer.bytes, "%s%n{}{0} 100%");
    EXPECT_TRUE(buffer.shows("%s%n{}{0} 100%"));
}

TEST(MessageCatalogue, NumberWithoutAMessageHasATextOfItsOwn)
{
    Buffer buffer;
    const int length = lmsg_getmsg(1, buffer.bytes);
    EXPECT_TRUE(buffer.isWrittenWithinTheLimit());
    EXPECT_GT(length, 0);
    EXPECT_EQ(length, static_cast<int>(std::strlen(buffer.bytes)));
}
