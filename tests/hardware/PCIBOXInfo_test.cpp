// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <recordkit/hardware/PCIBOXInfo.h>
#include <recordkit/serial/PaddedImage.h>

#include "support/Bytes.h"
#include "support/Failures.h"

using TAVLib::setSerializedPadded;
using TAVLib::RecordKit::PCIBOXInfo;
using namespace testing_support;

namespace {

using Numbers = std::vector<int>;

/// A header with a PEXU and this many link cards.
Bytes header(unsigned char cards, unsigned char pexu = 0x01)
{
    return Bytes({0x07, 1, 2, 3, 4, 5, 6, 7, pexu, 9, 10, 11, cards});
}

/// Two cards: one with two slots, one that is not connected with one.
const Bytes BOX =
    header(2) + Bytes({4, 1, 2, 0x34, 0x12, 0x78, 0x56}) + Bytes({255, 3, 1, 0xBC, 0x9A});

std::string outOfRange(const std::string& what, int index, int size)
{
    return "1:83:0x0D00 level 0: isParamError(" + what +
           "): out of range:" + std::to_string(index) + ", size=" + std::to_string(size);
}

Numbers slotsOf(const PCIBOXInfo& box, int card)
{
    Numbers slots = {9};
    box.getPCISlots(card, slots);
    return slots;
}

Numbers cardsOf(const PCIBOXInfo& box)
{
    Numbers cards = {9};
    box.getLinkCards(cards);
    return cards;
}

}

TEST(PCIBOXInfo, ReadsCardsAndSlots)
{
    const TraceCapture trace;
    const auto box = fromBytes<PCIBOXInfo>(BOX);
    EXPECT_EQ(cardsOf(box), Numbers({0, 1}));
    EXPECT_EQ(box.getConnectedId(0), 4);
    EXPECT_TRUE(box.isConnected(0));
    EXPECT_EQ(box.getPortNo(0), 1);
    EXPECT_EQ(box.getPCISlotStatus(0, 0), 0x1234);
    EXPECT_EQ(box.getPCISlotStatus(0, 1), 0x5678);
    EXPECT_EQ(box.getConnectedId(1), 255);
    EXPECT_FALSE(box.isConnected(1));
    EXPECT_EQ(box.getPortNo(1), 3);
    EXPECT_EQ(box.getPCISlotStatus(1, 0), 0x9ABC);
    EXPECT_EQ(slotsOf(box, 0), Numbers({0, 1}));
    EXPECT_EQ(slotsOf(box, 1), Numbers({0}));
    EXPECT_FALSE(box.isParamError(0, 1));
    EXPECT_EQ(imageOf(box), BOX);
    EXPECT_EQ(trace.lines(), Lines());
}

TEST(PCIBOXInfo, EachFlagHasItsBit)
{
    for (unsigned int bit = 0; bit < 8; ++bit) {
        Bytes image(13, 0);
        image[0] = static_cast<unsigned char>(1U << bit);
        image[8] = static_cast<unsigned char>(0x80U >> bit);
        const auto box = fromBytes<PCIBOXInfo>(image);
        EXPECT_EQ(box.isPresent(), bit == 0);
        EXPECT_EQ(box.isPowerON(), bit == 1);
        EXPECT_EQ(box.isFault(), bit == 2);
        EXPECT_EQ(box.isPEXUPresent(), bit == 7);
        EXPECT_EQ(box.isPEXUPowerON(), bit == 6);
        EXPECT_EQ(box.isPEXUFault(), bit == 5);
    }
}

TEST(PCIBOXInfo, WithoutAPEXUThereAreNoCards)
{
    const Bytes image = header(4, 0xFE);
    const auto box = fromBytes<PCIBOXInfo>(image);
    EXPECT_EQ(cardsOf(box), Numbers());
    EXPECT_EQ(box.getSerializedSize(), 13U);
    // The count stays in the image.
    EXPECT_EQ(imageOf(box), image);
    EXPECT_EQ(imageOf(PCIBOXInfo()), Bytes(13, 0));
}

TEST(PCIBOXInfo, BadCardsAndSlotsAreTracedAndNeutral)
{
    TraceCapture trace;
    const auto box = fromBytes<PCIBOXInfo>(BOX);
    EXPECT_EQ(box.getPCISlotStatus(0, 5), 0);
    EXPECT_EQ(trace.take(), Lines({outOfRange("slotNum", 5, 2)}));
    EXPECT_EQ(box.getPCISlotStatus(0, 2), 0);
    EXPECT_EQ(trace.take(), Lines({outOfRange("slotNum", 2, 2)}));
    EXPECT_EQ(box.getPCISlotStatus(0, -1), 0);
    EXPECT_EQ(trace.take(), Lines({outOfRange("slotNum", -1, 2)}));
    EXPECT_EQ(box.getConnectedId(-1), 255);
    EXPECT_EQ(trace.take(), Lines({outOfRange("lnkc", -1, 2)}));
    EXPECT_EQ(box.getPortNo(2), 255);
    EXPECT_EQ(trace.take(), Lines({outOfRange("lnkc", 2, 2)}));
    EXPECT_FALSE(box.isConnected(2));
    EXPECT_EQ(trace.take(), Lines({outOfRange("lnkc", 2, 2)}));
    EXPECT_EQ(slotsOf(box, 2), Numbers());
    EXPECT_EQ(trace.take(), Lines({outOfRange("lnkc", 2, 2)}));
    EXPECT_TRUE(box.isParamError(-5, -5));
    EXPECT_EQ(trace.take(), Lines({outOfRange("lnkc", -5, 2)}));
}

TEST(PCIBOXInfo, CardWithoutSlotsCountsAsAParameterError)
{
    TraceCapture trace;
    const auto box = fromBytes<PCIBOXInfo>(header(1) + Bytes({7, 8, 0}));
    EXPECT_EQ(cardsOf(box), Numbers({0}));
    EXPECT_EQ(box.getConnectedId(0), 255);
    EXPECT_EQ(box.getPortNo(0), 255);
    EXPECT_EQ(slotsOf(box, 0), Numbers());
    EXPECT_EQ(trace.take(), Lines(3, outOfRange("slotNum", 0, 0)));
}

TEST(PCIBOXInfo, CheckCountsOneByteForASlot)
{
    TraceCapture trace;
    const Bytes image = header(1) + Bytes({4, 1, 2, 0x34, 0x12, 0x78, 0x56});
    ASSERT_EQ(image.size(), 20U);
    PCIBOXInfo box;
    // 13 + 3 + 2 bytes pass, and the words are read anyway.
    EXPECT_FALSE(box.setSerialized(image.data(), 17));
    EXPECT_EQ(trace.take(), Lines({"1:83:0x0D00 level 0: setSerialized: 17 where 18 is needed"}));
    EXPECT_EQ(imageOf(box), Bytes(13, 0));
    EXPECT_TRUE(box.setSerialized(image.data(), 18));
    EXPECT_EQ(box.getPCISlotStatus(0, 1), 0x5678);
    EXPECT_EQ(box.getSerializedSize(), 20U);
    // From a padded copy, what the image lacks is zero.
    ASSERT_TRUE(setSerializedPadded(box, part(image, 0, 18)));
    EXPECT_EQ(box.getPCISlotStatus(0, 0), 0x1234);
    EXPECT_EQ(box.getPCISlotStatus(0, 1), 0);
}

TEST(PCIBOXInfo, CheckCountsTheSlotsOfEachCard)
{
    TraceCapture trace;
    const Bytes image =
        header(2) + Bytes({4, 1, 1, 0x34, 0x12, 5, 2, 3, 0x78, 0x56, 0xBC, 0x9A, 0xF0, 0xDE});
    ASSERT_EQ(image.size(), 27U);
    PCIBOXInfo box;
    EXPECT_FALSE(box.setSerialized(image.data(), 22));
    EXPECT_EQ(trace.take(), Lines({"1:83:0x0D00 level 0: setSerialized: 22 where 23 is needed"}));
    EXPECT_EQ(imageOf(box), Bytes(13, 0));
    EXPECT_TRUE(box.setSerialized(image.data(), 23));
    EXPECT_EQ(imageOf(box), image);
}

TEST(PCIBOXInfo, ImagesBelowTheHeaderAreRefused)
{
    TraceCapture trace;
    PCIBOXInfo box;
    ASSERT_TRUE(load(box, BOX));
    for (std::size_t length = 0; length <= 12; ++length) {
        EXPECT_FALSE(load(box, part(header(200), 0, length)));
        EXPECT_EQ(trace.take(), Lines({"1:83:0x0D00 level 0: setSerialized: " +
                                       std::to_string(length) + " where 13 is needed"}));
    }
    EXPECT_EQ(imageOf(box), BOX);
}

TEST(PCIBOXInfo, ShortBuffersAreTracedAndStayUntouched)
{
    TraceCapture trace;
    const auto box = fromBytes<PCIBOXInfo>(BOX);
    Bytes buffer(32, 0xEE);
    EXPECT_EQ(box.getSerialized(buffer.data(), 24), 0U);
    EXPECT_EQ(trace.take(), Lines({"1:83:0x0D00 level 0: getSerialized: 24 where 25 is needed"}));
    EXPECT_EQ(buffer, Bytes(32, 0xEE));
}

TEST(PCIBOXInfo, SecondImageReplacesTheFirst)
{
    auto box = fromBytes<PCIBOXInfo>(BOX);
    const Bytes one = header(1) + Bytes({9, 9, 1, 1, 0});
    ASSERT_TRUE(load(box, one));
    EXPECT_EQ(imageOf(box), one);
    EXPECT_EQ(cardsOf(box), Numbers({0}));
}

TEST(PCIBOXInfo, LargestImageRoundTrips)
{
    Bytes image = header(255);
    for (unsigned int card = 0; card < 255; ++card) {
        image = image + Bytes({1, 2, 255}) + sequence(510, card);
    }
    ASSERT_EQ(image.size(), 130828U);
    EXPECT_EQ(imageOf(fromBytes<PCIBOXInfo>(image)), image);
}

TEST(PCIBOXInfo, CountsBeyondTheLengthAreReadFromThePadding)
{
    const TraceCapture trace;
    PCIBOXInfo box;
    // 255 blocks are declared and one begins, with 255 slots: the furthest read past an image.
    EXPECT_FALSE(setSerializedPadded(box, header(255) + Bytes({1, 2, 255})));
    EXPECT_FALSE(setSerializedPadded(box, header(255)));
    EXPECT_EQ(imageOf(box), Bytes(13, 0));
    // The loose check lets a block through whose words are not there.
    const Bytes loose = header(1) + Bytes({1, 2, 255}) + Bytes(255, 0x11);
    ASSERT_TRUE(setSerializedPadded(box, loose));
    EXPECT_EQ(box.getPCISlotStatus(0, 126), 0x1111);
    EXPECT_EQ(box.getPCISlotStatus(0, 127), 0x0011);
    EXPECT_EQ(box.getPCISlotStatus(0, 254), 0);
    EXPECT_EQ(box.getSerializedSize(), 526U);
}

TEST(PCIBOXInfo, RefusedImageLeavesTheCardsHeld)
{
    const Bytes head = {1, 0, 0, 0, 0, 0, 0, 0, 1, 0, 0, 0};
    const Bytes image = head + Bytes({1, 5, 6, 2, 0x34, 0x12, 0x78, 0x56});
    auto box = fromBytes<PCIBOXInfo>(image);
    const TraceCapture trace;
    EXPECT_FALSE(load(box, Bytes(12, 0)));
    EXPECT_FALSE(TAVLib::setSerializedPadded(box, head + Bytes({9, 1, 1, 1, 0, 0})));
    EXPECT_EQ(trace.lines().size(), 2U);
    EXPECT_EQ(imageOf(box), image);
    EXPECT_EQ(box.getConnectedId(0), 5);
    EXPECT_EQ(box.getPCISlotStatus(0, 1), 0x5678);
}

TEST(PCIBOXInfo, CardsGoWithThePEXU)
{
    const Bytes withPEXU = {1, 0, 0, 0, 0, 0, 0, 0, 1, 0, 0, 0, 1, 5, 6, 1, 0x34, 0x12};
    auto box = fromBytes<PCIBOXInfo>(withPEXU);
    ASSERT_EQ(box.getSerializedSize(), 18U);
    Bytes without = withPEXU;
    without[8] = 0;
    EXPECT_TRUE(load(box, without));
    EXPECT_EQ(imageOf(box), part(without, 0, 13));
    std::vector<int> cards = {9};
    box.getLinkCards(cards);
    EXPECT_EQ(cards, std::vector<int>());
    const TraceCapture trace;
    EXPECT_EQ(box.getConnectedId(0), 255);
    EXPECT_EQ(trace.lines(), Lines({"1:83:0x0D00 level 0: isParamError(lnkc): out of range:0, "
                                    "size=0"}));
}
