// SPDX-License-Identifier: Apache-2.0
#include <recordkit/serial/PartitionInfo.h>

#include <gtest/gtest.h>

#include "support/Bytes.h"
#include "support/Failures.h"

using TAVLib::RecordKit::PartitionInfo;
using namespace testing_support;

namespace {

Bytes nodeIds(PartitionInfo& info)
{
    Bytes ids = {0xAA, 0xBB};
    info.getNodeIds(ids);
    return ids;
}

}

TEST(PartitionInfo, NewObjectHasNoNodes)
{
    PartitionInfo info;
    EXPECT_EQ(imageOf(info), Bytes({0, 0}));
    EXPECT_EQ(nodeIds(info), Bytes());
}

TEST(PartitionInfo, GivesNodeIdsInImageOrder)
{
    auto info = fromBytes<PartitionInfo>({0x77, 3, 0x30, 0x10, 0x20});
    EXPECT_EQ(info.getSerializedSize(), 5U);
    EXPECT_EQ(imageOf(info), Bytes({0x77, 3, 0x30, 0x10, 0x20}));
    EXPECT_EQ(nodeIds(info), Bytes({0x30, 0x10, 0x20}));
}

TEST(PartitionInfo, TakesTwelveNodesAndRefusesThirteen)
{
    TraceCapture trace;
    PartitionInfo info;
    const Bytes twelve = Bytes({1, 12}) + sequence(12, 0x40);
    EXPECT_TRUE(load(info, twelve));
    EXPECT_EQ(imageOf(info), twelve);
    EXPECT_FALSE(load(info, Bytes({9, 13}) + sequence(12)));
    EXPECT_EQ(imageOf(info), twelve);
    EXPECT_EQ(trace.lines(), Lines());
}

TEST(PartitionInfo, TakesLengthsTwoToFourteen)
{
    PartitionInfo info;
    EXPECT_TRUE(load(info, {5, 0}));
    EXPECT_EQ(nodeIds(info), Bytes());
    EXPECT_EQ(imageOf(info), Bytes({5, 0}));
    EXPECT_TRUE(load(info, Bytes({6, 1}) + Bytes(12, 0x33)));
    EXPECT_EQ(imageOf(info), Bytes({6, 1, 0x33}));

    EXPECT_FALSE(load(info, {5}));
    EXPECT_FALSE(load(info, {}));
    EXPECT_FALSE(load(info, Bytes({5, 1}) + Bytes(13, 0x44)));
    EXPECT_EQ(imageOf(info), Bytes({6, 1, 0x33}));
}

TEST(PartitionInfo, CountIsTrustedBeyondTheGivenLength)
{
    PartitionInfo info;
    const Bytes image = {0, 3, 0x10, 0x11, 0x12};
    EXPECT_TRUE(info.setSerialized(image.data(), 2));
    EXPECT_EQ(nodeIds(info), Bytes({0x10, 0x11, 0x12}));
}

TEST(PartitionInfo, NeedsABufferOfItsSize)
{
    const auto info = fromBytes<PartitionInfo>({0, 2, 0x10, 0x11});
    Bytes buffer(4, 0xEE);
    EXPECT_EQ(info.getSerialized(buffer.data(), 3), 0U);
    EXPECT_EQ(buffer, Bytes(4, 0xEE));
    EXPECT_EQ(info.getSerialized(buffer.data(), 4), 4U);
    EXPECT_EQ(buffer, Bytes({0, 2, 0x10, 0x11}));
}

TEST(PartitionInfo, TracesNothing)
{
    const TraceCapture trace;
    PartitionInfo partition;
    EXPECT_FALSE(load(partition, {1}));
    EXPECT_FALSE(load(partition, Bytes(15, 0)));
    EXPECT_FALSE(load(partition, {1, 13}));
    unsigned char buffer[1] = {};
    EXPECT_EQ(partition.getSerialized(buffer, 1), 0U);
    EXPECT_EQ(trace.lines(), Lines());
}
