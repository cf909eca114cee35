// SPDX-License-Identifier: Apache-2.0
#include <recordkit/sel/BMCSELEntryMessage.h>

#include <gtest/gtest.h>

#include "support/Bytes.h"
#include "support/Failures.h"

using TAVLib::RecordKit::BMCSELEntryMessage;
using TAVLib::RecordKit::OEMSELEntry;
using namespace testing_support;

namespace {

const Bytes RECORD = sequence(18, 1);
const Bytes EXTENDED = sequence(56, 0x80);
const Bytes BLOCK = Bytes({13}) + part(EXTENDED, 0, 13) + Bytes(55, 0) + part(EXTENDED, 13, 43);
const Bytes TRAILER = {0xA0, 0xA1, 0xA2, 0xA3, 0xA4, 0xA5, 0xA6, 0xA7};
const Bytes COMPLETE = RECORD + BLOCK + TRAILER;

/// A complete message with this block bitmask and trailer.
BMCSELEntryMessage withBitmasks(const Bytes& blockBitmask, const Bytes& trailer)
{
    return fromBytes<BMCSELEntryMessage>(RECORD + Bytes(69, 0) + blockBitmask + Bytes(41, 0) +
                                         trailer);
}

}

TEST(BMCSELEntryMessage, FreshEntryHoldsTwoZeroBytes)
{
    EXPECT_EQ(imageOf(BMCSELEntryMessage()), Bytes({0, 0}));
}

TEST(BMCSELEntryMessage, TakesEachLengthUpToHundredThirtyEight)
{
    for (std::size_t length = 2; length <= 138; ++length) {
        EXPECT_EQ(imageOf(fromBytes<BMCSELEntryMessage>(part(COMPLETE, 0, length))),
                  part(COMPLETE, 0, length));
    }
}

TEST(BMCSELEntryMessage, IgnoresWhatLiesBeyondHundredThirtyEightBytes)
{
    for (const std::size_t extra : {1U, 12U}) {
        EXPECT_EQ(imageOf(fromBytes<BMCSELEntryMessage>(COMPLETE + Bytes(extra, 0xEE))), COMPLETE);
    }
}

TEST(BMCSELEntryMessage, ImageWithoutATrailerKeepsTheTrailerHeld)
{
    auto message = fromBytes<BMCSELEntryMessage>(COMPLETE);
    EXPECT_TRUE(load(message, Bytes(130, 0x55)));
    EXPECT_EQ(imageOf(message), Bytes(130, 0x55) + TRAILER);
    EXPECT_TRUE(load(message, Bytes(50, 0x44)));
    EXPECT_EQ(imageOf(message), Bytes(50, 0x44) + TRAILER);
}

TEST(BMCSELEntryMessage, RecordAloneKeepsBlockAndTrailerHeld)
{
    auto message = fromBytes<BMCSELEntryMessage>(COMPLETE);
    EXPECT_TRUE(load(message, Bytes(18, 0x55)));
    EXPECT_EQ(imageOf(message), Bytes(18, 0x55) + BLOCK + TRAILER);
}

TEST(BMCSELEntryMessage, ShorterTrailerShortensTheImage)
{
    auto message = fromBytes<BMCSELEntryMessage>(COMPLETE);
    EXPECT_TRUE(load(message, Bytes(137, 0x55)));
    EXPECT_EQ(message.getSerializedSize(), 137U);
    EXPECT_EQ(imageOf(message), Bytes(137, 0x55));
}

TEST(BMCSELEntryMessage, RefusesFewerThanTwoBytesWithThreeTraceLines)
{
    auto message = fromBytes<BMCSELEntryMessage>(COMPLETE);
    TraceCapture trace;
    EXPECT_FALSE(load(message, {0x01}));
    EXPECT_EQ(trace.lines(),
              Lines({"1:83:0x0900 level 0: SELEntry::setSerialized: 1 where 2 is needed",
                     "1:83:0x1300 level 0: failed: "
                     "BMCSELEntry::setSerialized(SELEntry::setSerialized)",
                     "1:83:0x1400 level 0: failed: "
                     "BMCSELEntryMessage::setSerialized(BMCSELEntry::setSerialized)"}));
    EXPECT_EQ(imageOf(message), COMPLETE);
}

TEST(BMCSELEntryMessage, NeedsABufferOfItsSize)
{
    const auto message = fromBytes<BMCSELEntryMessage>(COMPLETE);
    Bytes buffer(138, 0xEE);
    TraceCapture trace;
    EXPECT_EQ(message.getSerialized(buffer.data(), 137), 0U);
    EXPECT_EQ(buffer, Bytes(138, 0xEE));
    EXPECT_EQ(trace.lines(), Lines({"1:83:0x1400 level 0: BMCSELEntryMessage::getSerialized: "
                                    "137 where 138 is needed"}));
    EXPECT_EQ(message.getSerialized(buffer.data(), 138), 138U);
    EXPECT_EQ(buffer, COMPLETE);
}

TEST(BMCSELEntryMessage, ClaimsOfADerivedClassAreFilledWithZeroes)
{
    class Larger : public BMCSELEntryMessage {
    public:
        unsigned int getSerializedSize() const override { return 150; }
    };
    const auto message = fromBytes<Larger>(COMPLETE);
    Bytes buffer(151, 0xEE);
    EXPECT_EQ(message.getSerialized(buffer.data(), 151), 150U);
    EXPECT_EQ(buffer, COMPLETE + Bytes(12, 0) + Bytes({0xEE}));
}

TEST(BMCSELEntryMessage, ConvertCompletesTheTrailerAndResetsOnlyItsKind)
{
    auto source = fromBytes<OEMSELEntry>(RECORD + EXTENDED);
    auto message = fromBytes<BMCSELEntryMessage>(Bytes(130, 0x55) + TRAILER);
    EXPECT_EQ(message.convert(source), 1);
    EXPECT_EQ(imageOf(message), RECORD + BLOCK + Bytes({0}) + part(TRAILER, 1, 7));

    BMCSELEntryMessage fresh;
    EXPECT_EQ(fresh.convert(source), 1);
    EXPECT_EQ(imageOf(fresh), RECORD + BLOCK + Bytes(8, 0));
}

TEST(BMCSELEntryMessage, ConvertsItsOwnExtendedData)
{
    auto message = fromBytes<BMCSELEntryMessage>(RECORD + Bytes(112, 0x55) + TRAILER);
    ASSERT_TRUE(message.OEMSELEntry::setSerialized((RECORD + EXTENDED).data(), 74));
    message.convert();
    EXPECT_EQ(imageOf(message), RECORD + BLOCK + Bytes({0}) + part(TRAILER, 1, 7));
}

TEST(BMCSELEntryMessage, FailedConvertHasResetTheTrailerAlready)
{
    class Mute : public OEMSELEntry {
    public:
        unsigned int getSerialized(unsigned char*, unsigned int) const override { return 0; }
    };
    auto message = fromBytes<BMCSELEntryMessage>(COMPLETE);
    Mute source;
    TraceCapture trace;
    EXPECT_EQ(message.convert(source), 0);
    EXPECT_EQ(imageOf(message), RECORD + Bytes(112, 0) + Bytes({0}) + part(TRAILER, 1, 7));
    EXPECT_EQ(trace.lines().size(), 1U);
}

TEST(BMCSELEntryMessage, TrailerKindOneHasItsOwnBitmask)
{
    auto message = withBitmasks({0x0D, 0x00}, {1, 0, 0x02, 0x00, 0, 0, 0, 0});
    EXPECT_EQ(message.getPartitionBitmask(), 0x0002);
    EXPECT_FALSE(message.isPartitionValid(0));
    EXPECT_TRUE(message.isPartitionValid(1));
    EXPECT_FALSE(message.isPartitionValid(2));
}

TEST(BMCSELEntryMessage, TrailerBitmaskIsLowByteFirstAndBoundByThePartitions)
{
    auto message = withBitmasks({0, 0}, {1, 0, 0x34, 0x12, 0, 0, 0, 0});
    EXPECT_EQ(message.getPartitionBitmask(), 0x1234);
    EXPECT_TRUE(message.isPartitionValid(2));
    EXPECT_FALSE(message.isPartitionValid(4)); // its bit is set, but there are four partitions
}

TEST(BMCSELEntryMessage, OtherTrailerKindsLeaveTheBlocksBitmask)
{
    for (const unsigned char kind : {0, 2, 0x81, 0xFF}) {
        auto message = withBitmasks({0x0D, 0x00}, {kind, 0, 0x02, 0x00, 0, 0, 0, 0});
        EXPECT_EQ(message.getPartitionBitmask(), 0x000D) << int(kind);
        EXPECT_TRUE(message.isPartitionValid(0));
        EXPECT_FALSE(message.isPartitionValid(1));
    }
}

TEST(BMCSELEntryMessage, TrailerKindOneNeverAsksForTheBlock)
{
    auto message =
        fromBytes<BMCSELEntryMessage>(RECORD + Bytes(112, 0) + Bytes({1, 0, 0x08, 0, 0, 0, 0, 0}));
    ASSERT_TRUE(load(message, RECORD + Bytes({0x11})));
    EXPECT_EQ(message.getPartitionBitmask(), 8);
    EXPECT_TRUE(message.isPartitionValid(3));
}

TEST(BMCSELEntryMessage, OtherTrailerKindsNeedTheBlock)
{
    auto message = fromBytes<BMCSELEntryMessage>(RECORD + Bytes(70, 0));
    const std::string expected = "1:83:0x1300 act 1 det 0x0B00 msg 20008 (BMCSELEntry, 70, 71)";
    EXPECT_EQ(thrownBy([&] { message.getPartitionBitmask(); }), expected);
    EXPECT_EQ(thrownBy([&] { message.isPartitionValid(9); }), expected);
}

TEST(BMCSELEntryMessage, SerialNumberHasSixteenBytesForTrailerKindOne)
{
    const Bytes field = Bytes({0xD4}) + textBytes("0123456789ABCDEFGHIJ");
    const Bytes head = RECORD + Bytes(90, 0) + field + Bytes(1, 0);
    auto ofKindOne = fromBytes<BMCSELEntryMessage>(head + Bytes({1, 0, 0, 0, 0, 0, 0, 0}));
    EXPECT_EQ(ofKindOne.getSerialNo(), "0123456789ABCDEF");
    auto ofKindZero = fromBytes<BMCSELEntryMessage>(head + Bytes(8, 0));
    EXPECT_EQ(ofKindZero.getSerialNo(), "0123456789AB");
}

TEST(BMCSELEntryMessage, EventDataGiveBackTheConvertedOEMImage)
{
    auto source = fromBytes<OEMSELEntry>(RECORD + EXTENDED);
    BMCSELEntryMessage message;
    ASSERT_EQ(message.convert(source), 1);
    Bytes out(75, 0xEE);
    EXPECT_EQ(message.getEventData(out.data()), 74U);
    EXPECT_EQ(out, RECORD + EXTENDED + Bytes({0xEE}));
}

TEST(BMCSELEntryMessage, EventDataOfTrailerKindOneAreTheWholeImage)
{
    auto message = fromBytes<BMCSELEntryMessage>(RECORD + BLOCK + Bytes({1, 0, 0, 0, 0, 0, 0, 0}));
    Bytes out(131, 0xEE);
    EXPECT_EQ(message.getEventData(out.data()), 130U);
    EXPECT_EQ(out, RECORD + BLOCK + Bytes({0xEE}));
}

TEST(BMCSELEntryMessage, EventDataOfAShortRecordStillHaveTheirPlaces)
{
    auto message = fromBytes<BMCSELEntryMessage>(COMPLETE);
    ASSERT_TRUE(load(message, {0x77, 0x66}));
    Bytes out(74, 0xEE);
    EXPECT_EQ(message.getEventData(out.data()), 74U);
    EXPECT_EQ(out, Bytes({0x77, 0x66}) + Bytes(16, 0) + EXTENDED);
}

TEST(BMCSELEntryMessage, EventDataOfAShortBlockAreZeroWhereItEnds)
{
    for (const std::size_t held : {1U, 7U, 14U, 69U, 70U, 111U}) {
        // The bytes of the event before are still in the storage, and do not show.
        auto message = fromBytes<BMCSELEntryMessage>(Bytes(130, 0x99) + TRAILER);
        ASSERT_TRUE(load(message, RECORD + part(BLOCK, 0, held)));
        Bytes block = part(BLOCK, 0, held);
        block.resize(112, 0);
        Bytes out(75, 0xEE);
        EXPECT_EQ(message.getEventData(out.data()), 74U);
        EXPECT_EQ(out, RECORD + part(block, 1, 13) + part(block, 69, 43) + Bytes({0xEE})) << held;
    }
}

TEST(BMCSELEntryMessage, EventDataOfAFreshEntryAreZero)
{
    Bytes out(75, 0xEE);
    EXPECT_EQ(BMCSELEntryMessage().getEventData(out.data()), 74U);
    EXPECT_EQ(out, Bytes(74, 0) + Bytes({0xEE}));
}

TEST(BMCSELEntryMessage, RecordAloneWhileABlockIsHeldCompletesTheTrailer)
{
    auto message = fromBytes<BMCSELEntryMessage>(RECORD + BLOCK + Bytes({0xA0, 0xA1, 0xA2}));
    ASSERT_EQ(message.getSerializedSize(), 133U);
    ASSERT_TRUE(load(message, part(COMPLETE, 0, 18)));
    // Bytes of the trailer that no image contained keep their value, here zero.
    EXPECT_EQ(imageOf(message), RECORD + BLOCK + Bytes({0xA0, 0xA1, 0xA2, 0, 0, 0, 0, 0}));
    BMCSELEntryMessage fresh;
    ASSERT_TRUE(load(fresh, RECORD));
    EXPECT_EQ(imageOf(fresh), RECORD); // the size is the used one: no trailer comes up
    for (const std::size_t shorter : {2U, 5U, 17U}) {
        ASSERT_TRUE(load(message, part(RECORD, 0, shorter)));
        EXPECT_EQ(imageOf(message),
                  part(RECORD, 0, shorter) + BLOCK + Bytes({0xA0, 0xA1, 0xA2, 0, 0, 0, 0, 0}));
    }
}

TEST(BMCSELEntryMessage, TrailerOfKindOneMayBeCutOffBeforeItsBitmask)
{
    const struct {
        Bytes trailer;
        unsigned short bitmask;
    } rows[] = {{{1}, 0}, {{1, 0xFF}, 0}, {{1, 0xFF, 0x05}, 0x0005}, {{1, 0xFF, 5, 4}, 0x0405}};
    for (const auto& row : rows) {
        auto message = fromBytes<BMCSELEntryMessage>(RECORD + BLOCK + row.trailer);
        EXPECT_EQ(message.getSerializedSize(), 130 + row.trailer.size());
        EXPECT_EQ(message.getPartitionBitmask(), row.bitmask);
        EXPECT_EQ(message.isPartitionValid(0), row.bitmask != 0);
        EXPECT_FALSE(message.isPartitionValid(1));
    }
}

TEST(BMCSELEntryMessage, PartNumberOfAShortBlockIsStoredAndNotHeld)
{
    auto message = fromBytes<BMCSELEntryMessage>(RECORD + part(BLOCK, 0, 80));
    std::string number = "PART-NUMBER-5678";
    message.setPartNo(number);
    // The field extends beyond the 80 bytes present: only its beginning is in the image.
    EXPECT_EQ(imageOf(message),
              RECORD + part(BLOCK, 0, 71) + Bytes({0xD2}) + textBytes("PART-NUM"));
    EXPECT_EQ(thrownBy([&] { message.getPartNo(); }),
              "1:83:0x1300 act 1 det 0x0B00 msg 20008 (BMCSELEntry, 80, 90)");
    message.convert();
    EXPECT_EQ(message.getSerializedSize(), 138U);
}

TEST(BMCSELEntryMessage, ConvertsTheImagesOfItsOwnKind)
{
    // OEM data are looked for from byte 18 of the source's image, whatever its class.
    const Bytes expected = RECORD + Bytes({13}) + part(BLOCK, 0, 13) + Bytes(55, 0) +
                           part(BLOCK, 13, 43) + Bytes(8, 0);
    auto entry = fromBytes<TAVLib::RecordKit::BMCSELEntry>(RECORD + BLOCK);
    BMCSELEntryMessage ofEntry;
    EXPECT_EQ(ofEntry.convert(entry), 1);
    EXPECT_EQ(imageOf(ofEntry), expected);
    auto source = fromBytes<BMCSELEntryMessage>(COMPLETE);
    BMCSELEntryMessage ofMessage;
    EXPECT_EQ(ofMessage.convert(source), 1);
    EXPECT_EQ(imageOf(ofMessage), expected);
    EXPECT_EQ(imageOf(source), COMPLETE);
}

TEST(BMCSELEntryMessage, ConvertsItselfToAnEmptyBlock)
{
    // The block is cleared before the source's image is taken, which then has none of its bytes.
    auto message = fromBytes<BMCSELEntryMessage>(COMPLETE);
    EXPECT_EQ(message.convert(static_cast<OEMSELEntry&>(message)), 1);
    EXPECT_EQ(imageOf(message),
              RECORD + Bytes({13}) + Bytes(111, 0) + Bytes({0}) + part(TRAILER, 1, 7));
}
