// SPDX-License-Identifier: Apache-2.0
#include <recordkit/host/Catalogue.h>

#include <fstream>
#include <gtest/gtest.h>
#include <regex>
#include <set>

#include <recordkit/platform/MessageCatalogue.h>

using TAVLib::CatalogueEntry;
using namespace TAVLib::host;

namespace {

constexpr const char* MESSAGES_FILE = RECORDKIT_SOURCE "/recordkit/platform/messages.tsv";

std::string message(int number, const char* first, long second = 0, long third = 0)
{
    char buffer[120];
    lmsg_getmsg(number, buffer, first, second, third);
    return buffer;
}

}

TEST(Catalogue, HasTheMessagesOfTheFileAndTheHostsOwn)
{
    std::ifstream file(MESSAGES_FILE);
    std::vector<CatalogueEntry> expected = TAVLib::readCatalogue(file);
    expected.push_back({30001, "sssn", "{} {}: {} (errno {})"});
    const std::vector<CatalogueEntry>& entries = catalogue();
    ASSERT_EQ(entries.size(), expected.size());
    for (std::size_t i = 0; i < entries.size(); ++i) {
        EXPECT_EQ(entries[i].number, expected[i].number);
        EXPECT_EQ(entries[i].kinds, expected[i].kinds);
        EXPECT_EQ(entries[i].text, expected[i].text);
    }
}

TEST(Catalogue, FileHasEveryMessageThatTheLibraryWrites)
{
    std::ifstream header(RECORDKIT_SOURCE "/recordkit/serial/Failure.h");
    const std::regex enumerator(R"( +MESSAGE_[A-Z_]+ = ([0-9]+), .*)");
    std::set<int> written;
    std::smatch match;
    for (std::string line; std::getline(header, line);) {
        if (std::regex_match(line, match, enumerator)) {
            written.insert(std::stoi(match[1]));
        }
    }
    EXPECT_EQ(written.size(), 12U);
    std::ifstream file(MESSAGES_FILE);
    std::set<int> listed;
    for (const CatalogueEntry& entry : TAVLib::readCatalogue(file)) {
        listed.insert(entry.number);
    }
    EXPECT_EQ(listed, written);
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
    EXPECT_EQ(findMessage(-1).kinds, "");
}

TEST(Catalogue, NullTextIsEmpty)
{
    EXPECT_EQ(message(20031, nullptr), "failed: ");
}
