// SPDX-License-Identifier: Apache-2.0
#include "tool/sel/SelTest.h"

using namespace testing_support;

namespace {

using Ids = std::vector<int>;

class SelRotate : public SelTest {};

}

TEST_F(SelRotate, DoesNotDeleteALeftOverBackup)
{
    initialise();
    fill(5);
    ASSERT_EQ(sel({"backup", "--board", "1"}).status, 0);
    writeFile(working(1), Bytes(FULL_FILE, 0xFF));
    ASSERT_EQ(sel({"add", "-", "--board", "1"}, eventAt(9, TIME_1, THERMAL_TRIP)).status, 0);
    expectRefused(1, {"rotate", "--board", "1"}, "run \"recordkit sel check --recover\" first");
    ASSERT_EQ(sel({"check", "--board", "1", "--recover"}).status, 0);
    EXPECT_EQ(sel({"rotate", "--board", "1"}).status, 0);
    EXPECT_EQ(listedIds({"--board", "1"}), Ids({1, 2, 3, 4, 5, 9}));
}

TEST_F(SelRotate, NeedsAWorkingFile)
{
    expectRefused(1, {"rotate"}, "there is nothing to rotate");
    initialise();
    expectRefused(1, {"rotate"}, "nothing to rotate");
}
