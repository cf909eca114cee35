// SPDX-License-Identifier: Apache-2.0
#include <recordkit/serial/ByteOrder.h>

#include <gtest/gtest.h>

namespace {

constexpr unsigned char BYTES[] = {0xF1, 0xE2, 0xD3, 0xC4};

}

TEST(ByteOrder, ReadsTheLeastSignificantByteFirst)
{
    EXPECT_EQ(TAVLib::readLE16(BYTES), 0xE2F1);
    EXPECT_EQ(TAVLib::readLE32(BYTES), 0xC4D3E2F1U);
}

TEST(ByteOrder, ReadsTheMostSignificantByteFirst)
{
    EXPECT_EQ(TAVLib::readBE16(BYTES), 0xF1E2);
    EXPECT_EQ(TAVLib::readBE32(BYTES), 0xF1E2D3C4U);
}

TEST(ByteOrder, WritesTwoBytesInEitherOrder)
{
    unsigned char bytes[] = {0, 0, 0};
    TAVLib::writeLE16(0xF1E2, bytes);
    EXPECT_EQ(bytes[0], 0xE2);
    EXPECT_EQ(bytes[1], 0xF1);
    TAVLib::writeBE16(0xF1E2, bytes);
    EXPECT_EQ(bytes[0], 0xF1);
    EXPECT_EQ(bytes[1], 0xE2);
    EXPECT_EQ(bytes[2], 0);
}
