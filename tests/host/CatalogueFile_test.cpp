// SPDX-License-Identifier: Apache-2.0
#include <recordkit/platform/CatalogueFile.h>

#include <gtest/gtest.h>
#include <sstream>

using namespace TAVLib;

namespace {

std::vector<CatalogueEntry> read(const std::string& content)
{
    std::istringstream file(content);
    return readCatalogue(file);
}

std::string refusal(const std::string& content)
{
    try {
        read(content);
    } catch (const std::runtime_error& e) {
        return e.what();
    }
    return "none";
}

}

TEST(CatalogueFile, ReadsALineForEachMessage)
{
    const auto entries = read("# comment\n\n7\tsn\t{} is \"{}\"; 100 %\n12\t\tno parameter\n");
    ASSERT_EQ(entries.size(), 2U);
    EXPECT_EQ(entries[0].number, 7);
    EXPECT_EQ(entries[0].kinds, "sn");
    EXPECT_EQ(entries[0].text, "{} is \"{}\"; 100 %");
    EXPECT_EQ(entries[1].number, 12);
    EXPECT_EQ(entries[1].kinds, "");
    EXPECT_EQ(entries[1].text, "no parameter");
}

TEST(CatalogueFile, LastLineNeedsNoEnd)
{
    EXPECT_EQ(read("7\ts\t{}").at(0).text, "{}");
    EXPECT_EQ(read("").size(), 0U);
}

TEST(CatalogueFile, NamesTheLineThatIsNotAMessage)
{
    for (const std::string line : {"7", "7\ts", "7 s {}"}) {
        EXPECT_EQ(refusal("1\ts\t{}\n" + line + "\n"), "not a message: " + line);
    }
    for (const std::string line : {"\ts\t{}", "x\ts\t{}", "-1\ts\t{}", "1234567890\ts\t{}"}) {
        EXPECT_EQ(refusal(line), "not a message's number: " + line);
    }
    for (const std::string line :
         {"7\ts\ttext", "7\tn\t{}{}", "7\tx\t{}", "7\t\t{}", "7\tsssssssss\t{}{}{}{}{}{}{}{}{}"}) {
        EXPECT_EQ(refusal(line), "not one s or n for each {}, 8 at most: " + line);
    }
    EXPECT_EQ(refusal("7\ts\t{}\n8\tn\t{}\n7\tn\t{}\n"), "two messages have one number: 7\tn\t{}");
    EXPECT_EQ(refusal("7\tssssssss\t{}{}{}{}{}{}{}{}"), "none");
}

TEST(CatalogueFile, FillsParametersInOrder)
{
    EXPECT_EQ(fillCatalogueText("{}: {}", {"one", "two"}), "one: two");
    EXPECT_EQ(fillCatalogueText("{}: {}", {"only"}), "only: {}");
    EXPECT_EQ(fillCatalogueText("{}", {"a{}b", "surplus"}), "a{}b");
    EXPECT_EQ(fillCatalogueText("text", {}), "text");
}
