// SPDX-License-Identifier: Apache-2.0
#include <recordkit/serial/BitField.h>

#include <gtest/gtest.h>
#include <type_traits>

using TAVLib::get_bit;

namespace {

unsigned char bits(unsigned char value, unsigned int position, unsigned int width)
{
    return get_bit<unsigned char>(value, position, width);
}

}

TEST(BitField, TakesSingleBits)
{
    EXPECT_EQ(bits(0xA5, 0, 1), 1);
    EXPECT_EQ(bits(0xA5, 1, 1), 0);
    EXPECT_EQ(bits(0xA5, 7, 1), 1);
    EXPECT_EQ(bits(0xA5, 6, 1), 0);
}

TEST(BitField, TakesFieldsShiftedDown)
{
    EXPECT_EQ(bits(0xA5, 4, 4), 0x0A);
    EXPECT_EQ(bits(0xA5, 0, 4), 0x05);
    EXPECT_EQ(bits(0xA5, 2, 3), 0x01);
    EXPECT_EQ(bits(0xFF, 7, 1), 0x01);
}

TEST(BitField, FieldReachingBeyondTheByteHasTheBitsThereAre)
{
    EXPECT_EQ(bits(0xA5, 4, 8), 0x0A);
    EXPECT_EQ(bits(0xA5, 7, 2), 0x01);
}

TEST(BitField, WidthOfEightAndMoreTakesAllBits)
{
    EXPECT_EQ(bits(0xA5, 0, 7), 0x25);
    EXPECT_EQ(bits(0xA5, 0, 8), 0xA5);
    EXPECT_EQ(bits(0xA5, 0, 9), 0xA5);
    EXPECT_EQ(bits(0xA5, 0, 12), 0xA5);
    EXPECT_EQ(bits(0xA5, 0, 0xFFFFFFFFU), 0xA5);
}

TEST(BitField, WidthZeroIsZero)
{
    EXPECT_EQ(bits(0xFF, 0, 0), 0);
    EXPECT_EQ(bits(0xFF, 5, 0), 0);
}

TEST(BitField, PositionBeyondTheByteIsZero)
{
    for (const unsigned int position : {8U, 9U, 31U, 32U, 33U, 64U, 0xFFFFFFFFU}) {
        EXPECT_EQ(bits(0xFF, position, 1), 0) << position;
        EXPECT_EQ(bits(0xFF, position, 8), 0) << position;
    }
}

TEST(BitField, IntLiteralCountsAsItsLowByte)
{
    EXPECT_EQ(get_bit(0xA5, 0, 1), 1);
    EXPECT_EQ(get_bit(0xA5, 1, 1), 0);
    EXPECT_EQ(get_bit(0xA5, 4, 4), 0x0A);
    EXPECT_EQ(get_bit(0xA5, 8, 1), 0);
    EXPECT_EQ(get_bit(0xA5, 0, 0), 0);
    EXPECT_EQ(get_bit(0xA5, 0, 12), 0xA5);
    EXPECT_EQ(get_bit(0x1A5, 0, 12), 0xA5);
    EXPECT_EQ(get_bit(-1, 4, 4), 0x0F);
    static_assert(std::is_same_v<decltype(get_bit(0xA5, 0, 1)), unsigned char>);
}
