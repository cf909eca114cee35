// SPDX-License-Identifier: Apache-2.0
#include <recordkit/sel/BMCLog.h>

#include <gtest/gtest.h>

#include "support/Bytes.h"
#include "support/Failures.h"

using TAVLib::RecordKit::BMCLog;
using namespace testing_support;

TEST(BMCLog, TakesAnyLengthUpToHundredThirtyFive)
{
    for (const std::size_t length : {0U, 1U, 134U, 135U}) {
        BMCLog log;
        EXPECT_TRUE(load(log, sequence(length, 9)));
        EXPECT_EQ(log.getSerializedSize(), length);
        EXPECT_EQ(imageOf(log), sequence(length, 9));
    }
}

TEST(BMCLog, IgnoresWhatLiesBeyondHundredThirtyFiveBytes)
{
    for (const std::size_t length : {136U, 300U}) {
        EXPECT_EQ(imageOf(fromBytes<BMCLog>(sequence(length, 9))), sequence(135, 9));
    }
}

TEST(BMCLog, EmptyImageReplacesALongerOne)
{
    auto log = fromBytes<BMCLog>(sequence(20));
    EXPECT_TRUE(load(log, {}));
    EXPECT_EQ(log.getSerializedSize(), 0U);
}

TEST(BMCLog, NeedsABufferOfItsSize)
{
    const auto log = fromBytes<BMCLog>(sequence(5));
    Bytes buffer(5, 0xEE);
    TraceCapture trace;
    EXPECT_EQ(log.getSerialized(buffer.data(), 4), 0U);
    EXPECT_EQ(buffer, Bytes(5, 0xEE));
    EXPECT_EQ(trace.take(),
              Lines({"1:83:0x1600 level 0: BMCLog::getSerialized: 4 where 5 is needed"}));
    EXPECT_EQ(log.getSerialized(buffer.data(), 5), 5U);
    EXPECT_EQ(trace.lines(), Lines());
}
