// SPDX-License-Identifier: Apache-2.0
#include <recordkit/sel/BMCMemoryImage.h>

#include <gtest/gtest.h>

#include "support/Bytes.h"
#include "support/Failures.h"

using TAVLib::RecordKit::BMCMemoryImage;
using namespace testing_support;

TEST(BMCMemoryImage, TakesAnyLengthUpToHundredThirtyOne)
{
    for (const std::size_t length : {0U, 1U, 130U, 131U}) {
        BMCMemoryImage log;
        EXPECT_TRUE(load(log, sequence(length, 9)));
        EXPECT_EQ(log.getSerializedSize(), length);
        EXPECT_EQ(imageOf(log), sequence(length, 9));
    }
}

TEST(BMCMemoryImage, IgnoresWhatLiesBeyondHundredThirtyOneBytes)
{
    for (const std::size_t length : {132U, 300U}) {
        EXPECT_EQ(imageOf(fromBytes<BMCMemoryImage>(sequence(length, 9))), sequence(131, 9));
    }
}

TEST(BMCMemoryImage, EmptyImageReplacesALongerOne)
{
    auto log = fromBytes<BMCMemoryImage>(sequence(20));
    EXPECT_TRUE(load(log, {}));
    EXPECT_EQ(log.getSerializedSize(), 0U);
}

TEST(BMCMemoryImage, NeedsABufferOfItsSize)
{
    const auto log = fromBytes<BMCMemoryImage>(sequence(5));
    Bytes buffer(5, 0xEE);
    TraceCapture trace;
    EXPECT_EQ(log.getSerialized(buffer.data(), 4), 0U);
    EXPECT_EQ(buffer, Bytes(5, 0xEE));
    EXPECT_EQ(trace.take(),
              Lines({"1:83:0x1600 level 0: BMCMemoryImage::getSerialized: 4 where 5 is needed"}));
    EXPECT_EQ(log.getSerialized(buffer.data(), 5), 5U);
    EXPECT_EQ(trace.lines(), Lines());
}

TEST(BMCMemoryImage, LongestImageNeedsABufferOfHundredThirtyOne)
{
    const auto image = fromBytes<BMCMemoryImage>(sequence(131));
    Bytes buffer(131, 0xEE);
    TraceCapture trace;
    EXPECT_EQ(image.getSerialized(buffer.data(), 130), 0U);
    EXPECT_EQ(trace.lines(), Lines({"1:83:0x1600 level 0: BMCMemoryImage::getSerialized: "
                                    "130 where 131 is needed"}));
}
