// SPDX-License-Identifier: Apache-2.0
#include <sys/stat.h>

#include <recordkit/selfile/SELStoreLock.h>

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

TEST_F(SelInit, RefusesAWorkingFileThatOthersCouldHaveMade)
{
    const auto refused = [this](const std::string& reason) {
        expectRefused(3, {"init"},
                      "recordkit: " + working(0) + " is not used: " + reason +
                          ", in a folder that everybody may write to\n");
        std::filesystem::remove(working(0));
    };
    std::filesystem::permissions(root.at("/tmp"), std::filesystem::perms(01777));
    writeFile(working(0), Bytes(FULL_FILE, 0xFF));
    std::filesystem::create_hard_link(working(0), root.at("/tmp/second"));
    refused("it has a second name");
    writeFile(working(0), Bytes(FULL_FILE, 0xFF));
    std::filesystem::permissions(working(0), std::filesystem::perms(0666));
    refused("others may write it");
    ASSERT_EQ(::mkfifo(working(0).c_str(), 0644), 0);
    std::error_code error;
    const Outcome outcome = sel({"init"});
    EXPECT_EQ(outcome.status, 3);
    EXPECT_NE(outcome.err.find("is not used: it is not a regular file, in"), std::string::npos)
        << outcome.err;
    std::filesystem::remove(working(0), error);
    std::filesystem::create_symlink(root.at("/nowhere"), working(0));
    EXPECT_NE(sel({"init"}).err.find("is not used: it is a link, in"), std::string::npos);
    EXPECT_FALSE(fileExists(root.at("/nowhere")));
    std::filesystem::remove(working(0), error);
    EXPECT_EQ(sel({"init"}).status, 0);
    EXPECT_EQ(sel({"init"}).status, 0);
}

TEST_F(SelInit, NeedsNoLockForWhatIsThere)
{
    initialise();
    const TAVLib::RecordKit::SELStoreLock held(1);
    EXPECT_EQ(sel({"--lock-timeout", "0", "init"}).status, 0);
}
