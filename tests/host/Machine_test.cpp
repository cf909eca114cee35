// SPDX-License-Identifier: Apache-2.0
#include <recordkit/host/Machine.h>

#include <gtest/gtest.h>

#include <recordkit/platform/CommonUtil.h>

namespace {

class MachineTest : public testing::Test {
protected:
    void TearDown() override { TAVLib::host::setMachine({}); }
};

}

TEST_F(MachineTest, DefaultMachineHasFourOfEach)
{
    EXPECT_EQ(CommonUtil::getMaxUnitNum(1), 4);
    EXPECT_EQ(CommonUtil::getMaxUnitNum(7), 4);
    EXPECT_EQ(CommonUtil::getMaxPartitionNum(), 4);
    EXPECT_EQ(CommonUtil::getSBBoardType(0, 0), 0);
}

TEST_F(MachineTest, CommonUtilAnswersFromTheMachine)
{
    TAVLib::host::setMachine({8, 6, 2, {10, 20}});
    EXPECT_EQ(TAVLib::host::machine().systemBoards, 8);
    EXPECT_EQ(CommonUtil::getMaxUnitNum(1), 8);
    EXPECT_EQ(CommonUtil::getMaxUnitNum(7), 2);
    EXPECT_EQ(CommonUtil::getMaxPartitionNum(), 6);
    EXPECT_EQ(CommonUtil::getSBBoardType(0, 1), 10);
    EXPECT_EQ(CommonUtil::getSBBoardType(1, 1), 20);
    EXPECT_EQ(CommonUtil::getSBBoardType(2, 1), 0);
    EXPECT_EQ(CommonUtil::getSBBoardType(255, 1), 0);
}

TEST_F(MachineTest, UnknownUnitKindHasNoUnits)
{
    for (const int kind : {-1, 0, 2, 6, 8}) {
        EXPECT_EQ(CommonUtil::getMaxUnitNum(kind), 0) << kind;
    }
}
