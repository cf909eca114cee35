// SPDX-License-Identifier: Apache-2.0
#include "tool/sel/SelTest.h"

using namespace testing_support;

namespace {

using Ids = std::vector<int>;

class SelInit : public SelTest {};

}

TEST_F(SelInit, CreatesFoldersAndWorkingFiles)
{
    std::filesystem::remove_all(root.at("/tmp"));
    std::filesystem::remove_all(root.at("/var"));
    const Outcome outcome =
        run(ourCommand({"--root", root.path(), "--boards", "2", "sel", "init"}));
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_EQ(outcome.out,
              "board 0: " + working(0) + " created\nboard 1: " + working(1) + " created\n");
    EXPECT_EQ(readFile(working(1)), Bytes(FULL_FILE, 0xFF));
    EXPECT_FALSE(fileExists(working(2)));
    EXPECT_TRUE(fileExists(root.at("/var/tav/fmem/ipmi")));
}

TEST_F(SelInit, KeepsAndRestores)
{
    initialise();
    fill(3);
    ASSERT_EQ(sel({"backup", "--board", "1"}).status, 0);
    std::filesystem::remove(working(1));
    EXPECT_NE(sel({"init"}).out.find("board 1: " + working(1) + " taken from its backup"),
              std::string::npos);
    EXPECT_EQ(listedIds({"--board", "1"}), Ids({1, 2, 3}));
    EXPECT_NE(sel({"init"}).out.find("board 0: " + working(0) + " kept"), std::string::npos);
}

TEST_F(SelInit, OnAnUnwritableRootIsStatusThree)
{
    writeFile(root.at("/file"), "x");
    const Outcome outcome = run(ourCommand({"--root", root.at("/file"), "sel", "init"}));
    EXPECT_EQ(outcome.status, 3);
    EXPECT_NE(outcome.err.find("cannot be created: Not a directory"), std::string::npos);
}

TEST_F(SelInit, DoesNotOverwriteEventsThatWereNotBackedUp)
{
    initialise();
    fill(3);
    ASSERT_EQ(sel({"backup", "--board", "1"}).status, 0);
    ASSERT_EQ(sel({"add", "-", "--board", "1"}, eventAt(4, TIME_1, THERMAL_TRIP)).status, 0);
    ASSERT_EQ(sel({"init"}).status, 0);
    EXPECT_EQ(listedIds({"--board", "1"}), Ids({1, 2, 3, 4}));
}
