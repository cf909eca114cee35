// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <recordkit/hardware/IOUBoardInfo.h>
#include <recordkit/hardware/SASUBoardInfo.h>
#include <recordkit/hardware/SBBoardInfo.h>

#include "support/Bytes.h"
#include "support/Failures.h"

using namespace TAVLib::RecordKit;
using namespace testing_support;

namespace {

using Numbers = std::vector<int>;

/// A board with three slots.
const Bytes BOARD = {0x0F, 1, 2, 3, 0x42, 5, 6, 7, 3, 0x34, 0x12, 0xFF, 0x00, 0x00, 0xFF};

template <typename Board> struct Expected;
template <> struct Expected<IOUBoardInfo> {
    static constexpr const char* LOCATION = "0x0600";
};
template <> struct Expected<SASUBoardInfo> {
    static constexpr const char* LOCATION = "0x1800";
};

template <typename Board> class SlotBoard : public testing::Test {
protected:
    static std::string notFound()
    {
        return std::string("1:83:") + Expected<Board>::LOCATION +
               " act 1 det 0x0B00 msg 20010 (getPCISlotStatus(), not found PCISlot)";
    }
    static std::string tooShort(const std::string& text)
    {
        return std::string("1:83:") + Expected<Board>::LOCATION + " level 0: " + text;
    }
};
using Boards = testing::Types<IOUBoardInfo, SASUBoardInfo>;
TYPED_TEST_SUITE(SlotBoard, Boards, );

Numbers slotsOf(TAVLib::RecordKit::SlotBoardInfo& board)
{
    Numbers slots = {7, 7};
    board.getPCISlots(slots);
    return slots;
}

}

TYPED_TEST(SlotBoard, ReadsFlagsTypeAndSlots)
{
    auto board = fromBytes<TypeParam>(BOARD);
    EXPECT_EQ(board.getBoardType(), 0x42);
    EXPECT_EQ(slotsOf(board), Numbers({0, 1, 2}));
    EXPECT_EQ(board.getPCISlotStatus(0), 0x1234);
    EXPECT_EQ(board.getPCISlotStatus(1), 0x00FF);
    EXPECT_EQ(board.getPCISlotStatus(2), 0xFF00);
    EXPECT_EQ(board.getSerializedSize(), 15U);
    EXPECT_EQ(imageOf(board), BOARD);
}

TYPED_TEST(SlotBoard, EachFlagHasItsBit)
{
    for (unsigned int bit = 0; bit < 8; ++bit) {
        Bytes image(9, 0);
        image[0] = static_cast<unsigned char>(1U << bit);
        const auto board = fromBytes<TypeParam>(image);
        EXPECT_EQ(board.isInstalled(), bit == 0);
        EXPECT_EQ(board.isPowerOn(), bit == 1);
        EXPECT_EQ(board.isFault(), bit == 2);
    }
}

TYPED_TEST(SlotBoard, NewBoardHasNoSlots)
{
    TypeParam board;
    EXPECT_EQ(slotsOf(board), Numbers());
    EXPECT_EQ(imageOf(board), Bytes(9, 0));
    EXPECT_EQ(thrownBy([&] { board.getPCISlotStatus(0); }), this->notFound());
}

TYPED_TEST(SlotBoard, SlotThatIsNotThereThrows)
{
    const auto board = fromBytes<TypeParam>(BOARD);
    EXPECT_EQ(thrownBy([&] { board.getPCISlotStatus(2); }), "nothing");
    EXPECT_EQ(thrownBy([&] { board.getPCISlotStatus(3); }), this->notFound());
    EXPECT_EQ(thrownBy([&] { board.getPCISlotStatus(~0U); }), this->notFound());
}

TYPED_TEST(SlotBoard, ShortImagesAreTracedAndChangeNothing)
{
    TraceCapture trace;
    auto board = fromBytes<TypeParam>(BOARD);
    Bytes other = BOARD;
    other[4] = 0x99;
    EXPECT_FALSE(board.setSerialized(other.data(), 14));
    EXPECT_EQ(trace.take(), Lines({this->tooShort("setSerialized: 14 where 15 is needed")}));
    EXPECT_EQ(imageOf(board), BOARD);
    EXPECT_TRUE(board.setSerialized(other.data(), 15));
    EXPECT_EQ(board.getBoardType(), 0x99);
    // Bytes after the image are ignored.
    EXPECT_TRUE(load(board, BOARD + Bytes({1, 2, 3})));
    EXPECT_EQ(imageOf(board), BOARD);
    EXPECT_EQ(trace.take(), Lines());
}

TYPED_TEST(SlotBoard, ShortBuffersAreTracedAndStayUntouched)
{
    TraceCapture trace;
    const auto board = fromBytes<TypeParam>(BOARD);
    Bytes buffer(16, 0xEE);
    EXPECT_EQ(board.getSerialized(buffer.data(), 14), 0U);
    EXPECT_EQ(trace.take(), Lines({this->tooShort("getSerialized: 14 where 15 is needed")}));
    EXPECT_EQ(buffer, Bytes(16, 0xEE));
    EXPECT_EQ(board.getSerialized(buffer.data(), 16), 15U);
    EXPECT_EQ(buffer, BOARD + Bytes({0xEE}));
}

TYPED_TEST(SlotBoard, EveryNumberOfSlotsRoundTrips)
{
    for (unsigned int slots = 0; slots <= 255; ++slots) {
        Bytes image = Bytes(8, 0x55) + Bytes({static_cast<unsigned char>(slots)}) +
                      sequence(2 * slots, slots);
        auto board = fromBytes<TypeParam>(image);
        EXPECT_EQ(imageOf(board), image);
        EXPECT_EQ(slotsOf(board).size(), slots);
        // A board with fewer slots afterwards forgets the others.
        EXPECT_TRUE(load(board, BOARD));
        EXPECT_EQ(slotsOf(board).size(), 3U);
    }
}

TEST(IOUBoardInfo, CanBeDivided)
{
    Bytes image(9, 0);
    EXPECT_FALSE(fromBytes<IOUBoardInfo>(image).isDivided());
    image[0] = 0x08;
    EXPECT_TRUE(fromBytes<IOUBoardInfo>(image).isDivided());
    image[0] = 0xF7;
    EXPECT_FALSE(fromBytes<IOUBoardInfo>(image).isDivided());
}

TEST(SBBoardInfo, ReadsTypeAndSockets)
{
    Bytes image(96, 0);
    image[4] = 0x42;
    image[8] = 0x83;
    image[16] = 0xFF;
    image[17] = 0x01;
    image[18] = 0x80;
    image[19] = 0x11;
    image[20] = 0xFF; // after the map
    const auto board = fromBytes<SBBoardInfo>(image);
    EXPECT_EQ(board.getBoardType(), 0x42);
    EXPECT_EQ(board.getCPUSocketNum(), 3U);
    EXPECT_EQ(board.getDIMMSocketNum(), 12U);
    EXPECT_EQ(SBBoardInfo::CPU_1, 1U);
    EXPECT_EQ(SBBoardInfo::DIMM_31, 31U);
    EXPECT_EQ(imageOf(board), image);
}

TEST(SBBoardInfo, StatusWordsAreLowByteFirst)
{
    const auto board = fromBytes<SBBoardInfo>(sequence(96));
    EXPECT_EQ(board.getCPUStatus(SBBoardInfo::CPU_0), 0x0D0C);
    EXPECT_EQ(board.getCPUStatus(SBBoardInfo::CPU_1), 0x0F0E);
    for (unsigned int dimm = 0; dimm < 32; ++dimm) {
        const unsigned int low = 32 + 2 * dimm;
        EXPECT_EQ(board.getDIMMStatus(static_cast<SBBoardInfo::DIMMIndex>(dimm)),
                  (low + 1) << 8 | low);
    }
}

TEST(SBBoardInfo, SocketsBeyondTheTablesThrow)
{
    const SBBoardInfo board;
    const auto cpu = [&board](unsigned int index) {
        return thrownBy([&] { board.getCPUStatus(static_cast<SBBoardInfo::CPUIndex>(index)); });
    };
    const auto dimm = [&board](unsigned int index) {
        return thrownBy([&] { board.getDIMMStatus(static_cast<SBBoardInfo::DIMMIndex>(index)); });
    };
    EXPECT_EQ(cpu(1), "nothing");
    EXPECT_EQ(cpu(2), "1:83:0x0500 act 1 det 0x0B00 msg 20034 (getCPUStatus(cpuNum), 2)");
    EXPECT_EQ(dimm(31), "nothing");
    EXPECT_EQ(dimm(32), "1:83:0x0500 act 1 det 0x0B00 msg 20034 (getDIMMStatus(dimmNum), 32)");
    // A negative index is a large one.
    EXPECT_EQ(cpu(static_cast<unsigned int>(-1)).substr(0, 62),
              "1:83:0x0500 act 1 det 0x0B00 msg 20034 (getCPUStatus(cpuNum), ");
    EXPECT_EQ(dimm(static_cast<unsigned int>(-1)).substr(0, 11), "1:83:0x0500");
}

TEST(SBBoardInfo, UnsupportedBoardIsBitFourOfTheStatus)
{
    Bytes image(96, 0);
    image[0] = 0xEF;
    EXPECT_FALSE(fromBytes<SBBoardInfo>(image).isUnsupportedSB());
    EXPECT_EQ(fromBytes<SBBoardInfo>(image).getBoardStatus(), 0xEF);
    image[0] = 0x10;
    EXPECT_TRUE(fromBytes<SBBoardInfo>(image).isUnsupportedSB());
}

namespace {

class OtherStatus : public SBBoardInfo {
public:
    unsigned char getBoardStatus() const override { return 0x10; }
};

}

TEST(SBBoardInfo, StatusByteCanBeOverridden)
{
    EXPECT_TRUE(OtherStatus().isUnsupportedSB());
    EXPECT_FALSE(SBBoardInfo().isUnsupportedSB());
}

TEST(SBBoardInfo, SocketCountIsThatOfItsByteAlone)
{
    Bytes image(96, 0);
    image[7] = 0xFF;
    image[9] = 0xFF;
    EXPECT_EQ(fromBytes<SBBoardInfo>(image).getCPUSocketNum(), 0U);
    image[8] = 0xA1;
    EXPECT_EQ(fromBytes<SBBoardInfo>(image).getCPUSocketNum(), 3U);
    EXPECT_EQ(fromBytes<SBBoardInfo>(image).getDIMMSocketNum(), 0U);
    image[15] = 0xFF;
    image[20] = 0xFF;
    EXPECT_EQ(fromBytes<SBBoardInfo>(image).getDIMMSocketNum(), 0U);
}
