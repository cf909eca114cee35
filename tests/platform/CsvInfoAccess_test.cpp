// SPDX-License-Identifier: Apache-2.0
#include <recordkit/platform/CsvInfoAccess.h>

#include <gtest/gtest.h>

#include "Files.h"

using TAVLib::CsvInfoAccess;
using namespace platform_tests;

namespace {

class CsvInfoAccessTest : public testing::Test {
protected:
    std::string found(const std::string& content, int column, const std::string& key)
    {
        writeFile(scratch.at("table.csv"), content);
        CsvInfoAccess table(scratch.path() + "/", "table.csv");
        EXPECT_FALSE(table.isFault());
        std::string record = "untouched";
        const bool isFound = table.searchRecord(column, key, record);
        EXPECT_EQ(isFound, record != "untouched");
        return record;
    }

    ScratchFolder scratch;
};

}

TEST_F(CsvInfoAccessTest, TableThatIsNotThereIsAFault)
{
    CsvInfoAccess table(scratch.path() + "/", "none.csv");
    EXPECT_TRUE(table.isFault());
    std::string record;
    EXPECT_FALSE(table.searchRecord(0, "a", record));
}

TEST_F(CsvInfoAccessTest, FolderMayEndWithASlashOrNot)
{
    writeFile(scratch.at("table.csv"), "a,1\n");
    for (const char* end : {"", "/"}) {
        CsvInfoAccess table(scratch.path() + end, "table.csv");
        EXPECT_FALSE(table.isFault());
        std::string record;
        EXPECT_TRUE(table.searchRecord(0, "a", record));
        EXPECT_EQ(record, "a,1");
    }
}

TEST_F(CsvInfoAccessTest, EverySearchBeginsAtTheFirstRecord)
{
    writeFile(scratch.at("table.csv"), "a,1\nb,2\n");
    CsvInfoAccess table(scratch.path(), "table.csv");
    std::string record;
    EXPECT_TRUE(table.searchRecord(0, "b", record));
    EXPECT_FALSE(table.searchRecord(0, "c", record));
    EXPECT_EQ(record, "b,2");
    EXPECT_TRUE(table.searchRecord(0, "a", record));
    EXPECT_EQ(record, "a,1");
}

TEST_F(CsvInfoAccessTest, EmptyLinesAreNotRecords)
{
    EXPECT_EQ(found("\n\r\n,1\n", 0, ""), ",1");
}

TEST_F(CsvInfoAccessTest, GivesTheFirstRecordWithTheKeyAsItStands)
{
    EXPECT_EQ(found("a,1\nb,2\nb,3\n", 0, "b"), "b,2");
    // Without the line end of either kind.
    EXPECT_EQ(found("a,1\r\n", 0, "a"), "a,1");
    EXPECT_EQ(found("a,1\r\r\n", 0, "a"), "a,1");
    EXPECT_EQ(found("a,1\r", 0, "a"), "a,1");
    EXPECT_EQ(found("a,\r1\n", 0, "a"), "a,\r1");
    EXPECT_EQ(found("\"a,b\",1\n", 0, "a,b"), "\"a,b\",1");
}

TEST_F(CsvInfoAccessTest, LooksAtTheColumnAskedFor)
{
    EXPECT_EQ(found("a,1\nb,2\n", 1, "2"), "b,2");
    EXPECT_EQ(found("a,1\r\nb,2\r\n", 1, "2"), "b,2");
    EXPECT_EQ(found("a,1\nb,2\n", 1, "a"), "untouched");
    EXPECT_EQ(found("a,1\n", 5, "1"), "untouched");
}

TEST_F(CsvInfoAccessTest, EscapesBelongToTheTableAndNotToTheKey)
{
    EXPECT_EQ(found("a\\,b,1\n", 0, "a,b"), "a\\,b,1");
    EXPECT_EQ(found("\"a\\\"b\",1\n", 0, "a\"b"), "\"a\\\"b\",1");
    EXPECT_EQ(found("a\\\\b,1\n", 0, "a\\b"), "a\\\\b,1");
    EXPECT_EQ(found("\"x,y\",b\n", 1, "b"), "\"x,y\",b");
    EXPECT_EQ(found("a\\nb,1\n", 0, "a\nb"), "a\\nb,1");
    EXPECT_EQ(found("a\"b,c\"d,1\n", 0, "ab,cd"), "a\"b,c\"d,1");
}

TEST_F(CsvInfoAccessTest, WrongEscapeHidesTheColumnsFromItOnAndNoOtherLine)
{
    EXPECT_EQ(found("a\\q,1\na,2\n", 0, "a\\q"), "untouched");
    EXPECT_EQ(found("a,\\q,1\nb,2\n", 0, "a"), "a,\\q,1");
    EXPECT_EQ(found("a,\\q,1\nb,x,1\n", 2, "1"), "b,x,1");
    EXPECT_EQ(found("a\\\nb,2\n", 0, "b"), "b,2");
}

TEST_F(CsvInfoAccessTest, MissingColumnIsEmpty)
{
    EXPECT_EQ(found("a,1\n", 2, ""), "a,1");
    EXPECT_EQ(found("a,1\nb,,2\n", 1, ""), "b,,2");
}

TEST_F(CsvInfoAccessTest, WholeColumnsAreCompared)
{
    EXPECT_EQ(found("abc,1\n", 0, "ab"), "untouched");
    EXPECT_EQ(found("ab,1\n", 0, "abc"), "untouched");
    EXPECT_EQ(found("", 0, ""), "untouched");
}
