// SPDX-License-Identifier: Apache-2.0
// Files, tables and CSV lines of the command.
#include <filesystem>

#include <gtest/gtest.h>

#include "support/ScratchRoot.h"
#include "tool/Errors.h"
#include "tool/Files.h"
#include "tool/print/Csv.h"
#include "tool/print/Json.h"
#include "tool/print/Table.h"

using namespace recordkit::tool;
using namespace testing_support;

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
