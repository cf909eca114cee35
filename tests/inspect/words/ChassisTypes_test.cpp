// SPDX-License-Identifier: Apache-2.0
#include <recordkit/inspect/words/ChassisTypes.h>

#include <gtest/gtest.h>

using namespace recordkit::inspect;

TEST(ChassisTypes, HaveNamesAndNumbers)
{
    EXPECT_EQ(chassisTypeName(17), "Main Server Chassis");
    EXPECT_EQ(chassisTypeName(36), "Stick PC");
    EXPECT_EQ(chassisTypeName(37), "type 37");
    EXPECT_EQ(findChassisType("rack mount chassis"), 23);
    EXPECT_EQ(findChassisType("0x11"), 17);
    EXPECT_FALSE(findChassisType("256"));
    EXPECT_FALSE(findChassisType("rack"));
}
