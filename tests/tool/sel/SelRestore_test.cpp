// SPDX-License-Identifier: Apache-2.0
#include "tool/sel/SelTest.h"

using namespace testing_support;

namespace {

using Ids = std::vector<int>;

class SelRestore : public SelTest {};

}

TEST_F(SelRestore, BackupAndRestoreCarryTheLogOverAnEmptyVolatileFolder)
{
    initialise();
    fill(4);
    EXPECT_EQ(sel({"backup", "--board", "1"}).out,
              "board 1: " + working(1) + " copied to " + kept(1, 0) + "\n");
    std::filesystem::remove_all(root.at("/tmp"));
    EXPECT_EQ(sel({"restore", "--board", "1"}).out,
              "board 1: " + kept(1, 0) + " copied to " + working(1) + "\n");
    EXPECT_EQ(listedIds({"--board", "1"}), Ids({1, 2, 3, 4}));
}

TEST_F(SelRestore, LosesEventsOnlyWhenToldTo)
{
    initialise();
    fill(3);
    ASSERT_EQ(sel({"backup", "--board", "1"}).status, 0);
    EXPECT_EQ(sel({"restore", "--board", "1"}).status, 0);
    ASSERT_EQ(sel({"add", "-", "--board", "1"}, eventAt(4, TIME_1, THERMAL_TRIP)).status, 0);
    expectRefused(2, {"restore", "--board", "1"}, "pass --yes to discard them");
    EXPECT_EQ(sel({"restore", "--board", "1", "--yes"}).status, 0);
    EXPECT_EQ(listedIds({"--board", "1"}), Ids({1, 2, 3}));
}

TEST_F(SelRestore, BackupAndRestoreRefuseWhatIsNotThere)
{
    expectRefused(1, {"backup"}, "there is nothing to back up");
    expectRefused(1, {"restore"}, "there is nothing to restore");
    writeFile(kept(0, 0), "short");
    expectRefused(1, {"restore"}, "5 bytes long, expected 110400");
    initialise();
    std::filesystem::remove_all(root.at("/var/tav"));
    expectRefused(3, {"backup"}, "sb0_bmc_sel.lock cannot be opened: No such file or directory\n");
}
