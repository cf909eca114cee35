// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <recordkit/hardware/GSPBBoardInfo.h>
#include <recordkit/serial/PaddedImage.h>

#include "support/Bytes.h"
#include "support/Failures.h"

using TAVLib::RecordKit::GSPBBoardInfo;
using namespace testing_support;

namespace {

using Numbers = std::vector<int>;

const Bytes HEADER = {0x0F, 1, 2, 3, 0x42, 5, 6, 7};

/// Two GbE ports, one SAS port, two PCI box ports.
const Bytes BOARD = HEADER + Bytes({2, 0x34, 0x12, 0x78, 0x56}) + Bytes({1, 0xBC, 0x9A}) +
                    Bytes({2, 0xFF, 2, 3, 0xFF});

std::string notFound(const std::string& method, const std::string& element)
{
    return "1:83:0x0F00 act 1 det 0x0B00 msg 20010 (" + method + ", not found " + element + ")";
}

struct Ports {
    Numbers gbe = {9};
    Numbers sas = {9};
    Numbers boxes = {9};
};

Ports portsOf(GSPBBoardInfo& board)
{
    Ports ports;
    board.getGbEPorts(ports.gbe);
    board.getSASPorts(ports.sas);
    board.getPCIBoxPorts(ports.boxes);
    return ports;
}

}

TEST(GSPBBoardInfo, ReadsItsThreeLists)
{
    auto board = fromBytes<GSPBBoardInfo>(BOARD);
    EXPECT_EQ(board.getBoardType(), 0x42);
    EXPECT_EQ(board.getGbEPortStatus(0), 0x1234);
    EXPECT_EQ(board.getGbEPortStatus(1), 0x5678);
    EXPECT_EQ(board.getSASPortStatus(0), 0x9ABC);
    EXPECT_EQ(board.getConnectedPCIBox(0), -1);
    EXPECT_EQ(board.getConnectedLogicalPCIBox(0), 2);
    EXPECT_EQ(board.getConnectedPCIBox(1), 3);
    EXPECT_EQ(board.getConnectedLogicalPCIBox(1), -1);
    const Ports ports = portsOf(board);
    EXPECT_EQ(ports.gbe, Numbers({0, 1}));
    EXPECT_EQ(ports.sas, Numbers({0}));
    EXPECT_EQ(ports.boxes, Numbers({0, 1}));
    EXPECT_EQ(board.getSerializedSize(), BOARD.size());
    EXPECT_EQ(imageOf(board), BOARD);
}

TEST(GSPBBoardInfo, EachFlagHasItsBit)
{
    for (unsigned int bit = 0; bit < 8; ++bit) {
        Bytes image(11, 0);
        image[0] = static_cast<unsigned char>(1U << bit);
        const auto board = fromBytes<GSPBBoardInfo>(image);
        EXPECT_EQ(board.isInstalled(), bit == 0);
        EXPECT_EQ(board.isPowerOn(), bit == 1);
        EXPECT_EQ(board.isFault(), bit == 2);
        EXPECT_EQ(board.isDivided(), bit == 3);
    }
}

TEST(GSPBBoardInfo, EmptyListsRoundTrip)
{
    const Bytes image = HEADER + Bytes(3, 0);
    auto board = fromBytes<GSPBBoardInfo>(image);
    EXPECT_EQ(imageOf(board), image);
    const Ports ports = portsOf(board);
    EXPECT_EQ(ports.gbe.size() + ports.sas.size() + ports.boxes.size(), 0U);
    EXPECT_EQ(imageOf(GSPBBoardInfo()), Bytes(11, 0));
}

TEST(GSPBBoardInfo, PortsThatAreNotThereThrow)
{
    for (const Bytes& image : {BOARD, HEADER + Bytes(3, 0)}) {
        const auto board = fromBytes<GSPBBoardInfo>(image);
        const unsigned int gbe = image == BOARD ? 2 : 0;
        const unsigned int sas = image == BOARD ? 1 : 0;
        EXPECT_EQ(thrownBy([&] { board.getGbEPortStatus(gbe); }),
                  notFound("getGbEPortStatus()", "GbE Port"));
        EXPECT_EQ(thrownBy([&] { board.getSASPortStatus(sas); }),
                  notFound("getSASPortStatus()", "SAS Port"));
        EXPECT_EQ(thrownBy([&] { board.getConnectedPCIBox(gbe); }),
                  notFound("getConnectedPCIBox()", "PCI_Box Port"));
        EXPECT_EQ(thrownBy([&] { board.getConnectedLogicalPCIBox(gbe); }),
                  notFound("getConnectedLogicalPCIBox()", "PCI_Box Port"));
        EXPECT_EQ(thrownBy([&] { board.getConnectedPCIBox(~0U); }),
                  notFound("getConnectedPCIBox()", "PCI_Box Port"));
    }
}

TEST(GSPBBoardInfo, ShortImagesAreTracedAndChangeNothing)
{
    TraceCapture trace;
    auto board = fromBytes<GSPBBoardInfo>(BOARD);
    Bytes other = BOARD;
    other[4] = 0x99;
    const auto size = static_cast<unsigned int>(BOARD.size());
    EXPECT_FALSE(board.setSerialized(other.data(), size - 1));
    EXPECT_EQ(trace.take(), Lines({"1:83:0x0F00 level 0: setSerialized: 20 where 21 is needed"}));
    EXPECT_EQ(imageOf(board), BOARD);
    EXPECT_EQ(board.getConnectedPCIBox(1), 3);
    EXPECT_EQ(thrownBy([&] { board.getConnectedPCIBox(2); }).substr(0, 11), "1:83:0x0F00");
    Bytes buffer(32, 0xEE);
    EXPECT_EQ(board.getSerialized(buffer.data(), size - 1), 0U);
    EXPECT_EQ(trace.take(), Lines({"1:83:0x0F00 level 0: getSerialized: 20 where 21 is needed"}));
    EXPECT_EQ(buffer, Bytes(32, 0xEE));
}

TEST(GSPBBoardInfo, SecondImageAddsToThePCIBoxEntries)
{
    const Bytes first = HEADER + Bytes({0, 0, 1, 5, 6});
    const Bytes second = HEADER + Bytes({0, 0, 1, 7, 8});
    auto board = fromBytes<GSPBBoardInfo>(first);
    ASSERT_TRUE(load(board, second));
    // Entry 0 stays the first image's; the size still counts one.
    EXPECT_EQ(board.getConnectedPCIBox(0), 5);
    EXPECT_EQ(board.getConnectedLogicalPCIBox(0), 6);
    EXPECT_EQ(board.getConnectedPCIBox(1), 7);
    EXPECT_EQ(board.getConnectedLogicalPCIBox(1), 8);
    EXPECT_EQ(thrownBy([&] { board.getConnectedPCIBox(2); }),
              notFound("getConnectedPCIBox()", "PCI_Box Port"));
    EXPECT_EQ(board.getSerializedSize(), 13U);
    EXPECT_EQ(imageOf(board), first);
    EXPECT_EQ(portsOf(board).boxes, Numbers({0}));
}

TEST(GSPBBoardInfo, FewerPCIBoxesAfterwardsStillGiveAWholeImage)
{
    const Bytes three = HEADER + Bytes({0, 0, 3, 1, 2, 3, 4, 5, 6});
    auto board = fromBytes<GSPBBoardInfo>(three);
    ASSERT_TRUE(load(board, HEADER + Bytes({0, 0, 1, 7, 8})));
    EXPECT_EQ(imageOf(board), HEADER + Bytes({0, 0, 1, 1, 2}));
    EXPECT_EQ(board.getConnectedPCIBox(3), 7);
    // And the status words are only those of the last image.
    auto status = fromBytes<GSPBBoardInfo>(BOARD);
    ASSERT_TRUE(load(status, HEADER + Bytes(3, 0)));
    EXPECT_EQ(portsOf(status).gbe, Numbers());
    EXPECT_EQ(portsOf(status).sas, Numbers());
}

TEST(GSPBBoardInfo, CountsBeyondTheLengthAreReadFromThePadding)
{
    const TraceCapture trace;
    GSPBBoardInfo board;
    EXPECT_FALSE(TAVLib::setSerializedPadded(board, {}));
    EXPECT_FALSE(TAVLib::setSerializedPadded(board, HEADER + Bytes({255})));
    EXPECT_FALSE(TAVLib::setSerializedPadded(board, HEADER + Bytes({0, 255})));
    EXPECT_TRUE(TAVLib::setSerializedPadded(board, BOARD));
    EXPECT_EQ(imageOf(board), BOARD);
}

TEST(GSPBBoardInfo, LargestImageRoundTrips)
{
    Bytes image = HEADER + Bytes({255}) + sequence(510) + Bytes({255}) + sequence(510, 7) +
                  Bytes({255}) + sequence(510, 3);
    EXPECT_EQ(imageOf(fromBytes<GSPBBoardInfo>(image)), image);
    EXPECT_EQ(image.size(), 1541U);
}
