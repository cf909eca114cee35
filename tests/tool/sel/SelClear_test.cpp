// SPDX-License-Identifier: Apache-2.0
#include "tool/sel/SelTest.h"

using namespace testing_support;

namespace {

using Ids = std::vector<int>;

class SelClear : public SelTest {};

}

TEST_F(SelClear, WantsToBeSure)
{
    initialise();
    fill(4);
    expectRefused(2, {"clear", "--board", "1"}, "pass --yes to confirm");
    EXPECT_EQ(sel({"clear", "--board", "1", "--yes"}).out,
              "board 1: 4 events deleted, all files are empty\n");
    EXPECT_EQ(listedIds({"--board", "1"}), Ids());
    EXPECT_EQ(readFile(kept(1, 7)), Bytes(FULL_FILE, 0xFF));
}

TEST_F(SelClear, ThatFailsIsStatusThree)
{
    initialise();
    std::filesystem::remove_all(root.at("/tmp"));
    expectRefused(3, {"clear", "--yes"}, "No such file or directory");
}
