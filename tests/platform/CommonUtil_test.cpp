// SPDX-License-Identifier: Apache-2.0
#include <recordkit/platform/CommonUtil.h>

#include <gtest/gtest.h>

TEST(CommonUtil, CountsUnits)
{
    const int boards = CommonUtil::getMaxUnitNum(CommonUtil::SYSTEM_BOARDS);
    EXPECT_GE(boards, 1);
    EXPECT_LE(boards, 256);
    const int units = CommonUtil::getMaxUnitNum(CommonUtil::LOGICAL_IO_UNITS);
    EXPECT_GE(units, 1);
    EXPECT_LE(units, 256);
    EXPECT_GE(CommonUtil::getMaxPartitionNum(), 1);
}

TEST(CommonUtil, EveryBoardHasOneType)
{
    constexpr unsigned char TYPE_KIND = 3;
    for (unsigned int board = 0; board <= 255; ++board) {
        const auto number = static_cast<unsigned char>(board);
        const int type = CommonUtil::getSBBoardType(number, TYPE_KIND);
        EXPECT_EQ(CommonUtil::getSBBoardType(number, TYPE_KIND), type) << board;
    }
}
