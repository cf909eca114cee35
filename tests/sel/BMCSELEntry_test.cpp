// SPDX-License-Identifier: Apache-2.0
#include <recordkit/sel/BMCSELEntry.h>

#include <gtest/gtest.h>

#include <recordkit/host/Machine.h>

#include "support/Bytes.h"
#include "support/Failures.h"

using TAVLib::RecordKit::BMCSELEntry;
using TAVLib::RecordKit::OEMSELEntry;
using namespace testing_support;

namespace {

const Bytes RECORD = sequence(18, 1);
const Bytes EXTENDED = sequence(56, 0x80);

/// The block made from EXTENDED: count, event data, zeroes, the rest of the OEM data.
const Bytes BLOCK = Bytes({13}) + part(EXTENDED, 0, 13) + Bytes(55, 0) + part(EXTENDED, 13, 43);

std::string lengthError(int held, int needed)
{
    return "1:83:0x1300 act 1 det 0x0B00 msg 20008 (BMCSELEntry, " + std::to_string(held) + ", " +
           std::to_string(needed) + ")";
}

/// An entry with that many block bytes, zero except for the given ones from `at` on.
BMCSELEntry withBlock(std::size_t length, std::size_t at, const Bytes& bytes)
{
    Bytes block(112, 0);
    std::copy(bytes.begin(), bytes.end(), block.begin() + static_cast<long>(at));
    return fromBytes<BMCSELEntry>(RECORD + part(block, 0, length));
}

/// An OEM entry without an image.
class Mute : public OEMSELEntry {
public:
    unsigned int getSerialized(unsigned char*, unsigned int) const override { return 0; }
};

/// An OEM entry that claims an image larger than any.
class Huge : public OEMSELEntry {
public:
    unsigned int getSerializedSize() const override { return 257; }
};

const char* const CONVERT_FAILED =
    "1:83:0x1300 level 0: failed: convert from OEMSELEntry to BMCSELEntry";

}

TEST(BMCSELEntry, FreshEntryHoldsTwoZeroBytes)
{
    EXPECT_EQ(imageOf(BMCSELEntry()), Bytes({0, 0}));
}

TEST(BMCSELEntry, TakesEachLengthUpToHundredThirty)
{
    const Bytes complete = RECORD + BLOCK;
    for (std::size_t length = 2; length <= 130; ++length) {
        EXPECT_EQ(imageOf(fromBytes<BMCSELEntry>(part(complete, 0, length))),
                  part(complete, 0, length));
    }
    EXPECT_EQ(imageOf(fromBytes<BMCSELEntry>(complete + Bytes(9, 0xEE))), complete);
}

TEST(BMCSELEntry, RecordAloneKeepsTheBlockHeld)
{
    auto entry = fromBytes<BMCSELEntry>(RECORD + BLOCK);
    EXPECT_TRUE(load(entry, Bytes(18, 0x55)));
    EXPECT_EQ(imageOf(entry), Bytes(18, 0x55) + BLOCK);
    EXPECT_TRUE(load(entry, Bytes(10, 0x44)));
    EXPECT_EQ(imageOf(entry), Bytes(10, 0x44) + BLOCK);
}

TEST(BMCSELEntry, RefusesFewerThanTwoBytesWithTwoTraceLines)
{
    auto entry = fromBytes<BMCSELEntry>(RECORD + BLOCK);
    TraceCapture trace;
    EXPECT_FALSE(load(entry, {}));
    EXPECT_EQ(trace.lines(),
              Lines({"1:83:0x0900 level 0: SELEntry::setSerialized: 0 where 2 is needed",
                     "1:83:0x1300 level 0: failed: "
                     "BMCSELEntry::setSerialized(SELEntry::setSerialized)"}));
    EXPECT_EQ(imageOf(entry), RECORD + BLOCK);
}

TEST(BMCSELEntry, ImageLeavesTheOEMExtendedDataAlone)
{
    BMCSELEntry entry;
    ASSERT_TRUE(entry.OEMSELEntry::setSerialized((RECORD + EXTENDED).data(), 74));
    ASSERT_TRUE(load(entry, RECORD + Bytes(112, 0x11)));
    entry.convert();
    EXPECT_EQ(imageOf(entry), RECORD + BLOCK);
}

TEST(BMCSELEntry, NeedsABufferOfItsSize)
{
    const auto entry = fromBytes<BMCSELEntry>(RECORD + BLOCK);
    Bytes buffer(130, 0xEE);
    TraceCapture trace;
    EXPECT_EQ(entry.getSerialized(buffer.data(), 129), 0U);
    EXPECT_EQ(buffer, Bytes(130, 0xEE));
    EXPECT_EQ(trace.lines(),
              Lines({"1:83:0x1300 level 0: BMCSELEntry::getSerialized: 129 where 130 is needed"}));
    EXPECT_EQ(entry.getSerialized(buffer.data(), 130), 130U);
    EXPECT_EQ(buffer, RECORD + BLOCK);
}

TEST(BMCSELEntry, ConvertsItsOwnExtendedData)
{
    auto entry = fromBytes<BMCSELEntry>(RECORD + Bytes(112, 0xEE));
    ASSERT_TRUE(entry.OEMSELEntry::setSerialized((RECORD + EXTENDED).data(), 74));
    entry.convert();
    EXPECT_EQ(imageOf(entry), RECORD + BLOCK);
}

TEST(BMCSELEntry, ConvertsFreshExtendedDataToZeroes)
{
    BMCSELEntry entry;
    entry.convert();
    EXPECT_EQ(imageOf(entry), Bytes({0, 0, 13}) + Bytes(111, 0));
}

TEST(BMCSELEntry, ConvertsAnOEMEntry)
{
    auto source = fromBytes<OEMSELEntry>(RECORD + EXTENDED);
    auto entry = fromBytes<BMCSELEntry>(Bytes(130, 0xEE));
    TraceCapture trace;
    EXPECT_EQ(entry.convert(source), 1);
    EXPECT_EQ(imageOf(entry), RECORD + BLOCK);
    EXPECT_EQ(trace.lines(), Lines());
}

TEST(BMCSELEntry, ConvertsMissingExtendedBytesToZeroes)
{
    auto source = fromBytes<OEMSELEntry>(RECORD + Bytes({0x71, 0x72}));
    BMCSELEntry entry;
    EXPECT_EQ(entry.convert(source), 1);
    EXPECT_EQ(imageOf(entry), RECORD + Bytes({13, 0x71, 0x72}) + Bytes(109, 0));
}

TEST(BMCSELEntry, ConvertLooksForOEMDataBehindACompleteRecord)
{
    // A source keeps its extended data when a shorter record comes; its image then has them
    // earlier, and the bytes at their usual place are read anyway.
    auto source = fromBytes<OEMSELEntry>(RECORD + EXTENDED);
    ASSERT_TRUE(load(source, part(RECORD, 0, 10)));
    BMCSELEntry entry;
    EXPECT_EQ(entry.convert(source), 1);
    const Bytes moved = part(EXTENDED, 8, 48) + Bytes(8, 0);
    EXPECT_EQ(imageOf(entry), part(RECORD, 0, 10) + Bytes({13}) + part(moved, 0, 13) +
                                  Bytes(55, 0) + part(moved, 13, 43));
}

TEST(BMCSELEntry, SourceWithoutAnImageClearsTheBlockAndKeepsTheRest)
{
    auto entry = fromBytes<BMCSELEntry>(RECORD + BLOCK);
    Mute mute;
    Huge huge;
    for (OEMSELEntry* const source :
         {static_cast<OEMSELEntry*>(&mute), static_cast<OEMSELEntry*>(&huge)}) {
        TraceCapture trace;
        EXPECT_EQ(entry.convert(*source), 0);
        EXPECT_EQ(trace.lines(), Lines({CONVERT_FAILED}));
        EXPECT_EQ(imageOf(entry), RECORD + Bytes(112, 0));
    }
}

TEST(BMCSELEntry, SetsAPartNumberOfEighteenCharacters)
{
    auto entry = fromBytes<BMCSELEntry>(RECORD + Bytes(112, 0xEE));
    std::string partNo = "ABCDEFGHIJKLMNOPQR";
    TraceCapture trace;
    entry.setPartNo(partNo);
    EXPECT_EQ(imageOf(entry),
              RECORD + Bytes(71, 0xEE) + Bytes({0xD2}) + textBytes(partNo) + Bytes(22, 0xEE));
    EXPECT_EQ(entry.getPartNo(), partNo);
    EXPECT_EQ(trace.lines(), Lines());
}

TEST(BMCSELEntry, PadsAShorterPartNumberWithZeroes)
{
    auto entry = fromBytes<BMCSELEntry>(RECORD + Bytes(112, 0xEE));
    std::string partNo = "P-1";
    entry.setPartNo(partNo);
    EXPECT_EQ(imageOf(entry), RECORD + Bytes(71, 0xEE) + Bytes({0xD2, 'P', '-', '1'}) +
                                  Bytes(15, 0) + Bytes(22, 0xEE));
    EXPECT_EQ(entry.getPartNo(), "P-1");
    std::string none;
    entry.setPartNo(none);
    EXPECT_EQ(entry.getPartNo(), "");
}

TEST(BMCSELEntry, RefusesAPartNumberOfNineteenCharacters)
{
    auto entry = fromBytes<BMCSELEntry>(RECORD + BLOCK);
    std::string partNo = "ABCDEFGHIJKLMNOPQRS";
    TraceCapture trace;
    entry.setPartNo(partNo);
    EXPECT_EQ(trace.lines(),
              Lines({"1:83:0x1300 level 0: failed: set New Part Number because of length over."}));
    EXPECT_EQ(imageOf(entry), RECORD + BLOCK);
}

TEST(BMCSELEntry, PartitionBitmaskNeedsSeventyOneBytes)
{
    EXPECT_EQ(withBlock(71, 69, {0x34, 0x12}).getPartitionBitmask(), 0x1234);
    auto entry = withBlock(70, 69, {0x34});
    EXPECT_EQ(thrownBy([&] { entry.getPartitionBitmask(); }), lengthError(70, 71));
    EXPECT_EQ(thrownBy([&] { entry.isPartitionValid(0); }), lengthError(70, 71));
}

TEST(BMCSELEntry, PartitionIsValidWhenItExistsAndItsBitIsSet)
{
    auto entry = withBlock(112, 69, {0xF5, 0xFF});
    EXPECT_TRUE(entry.isPartitionValid(0));
    EXPECT_FALSE(entry.isPartitionValid(1));
    EXPECT_TRUE(entry.isPartitionValid(2));
    EXPECT_FALSE(entry.isPartitionValid(3));
    EXPECT_FALSE(entry.isPartitionValid(4)); // its bit is set, but there are four partitions
}

TEST(BMCSELEntry, PartNumberNeedsNinetyBytes)
{
    const Bytes field = Bytes({0xC4}) + textBytes("PART");
    EXPECT_EQ(withBlock(90, 71, field).getPartNo(), "PART");
    auto entry = withBlock(89, 71, field);
    EXPECT_EQ(thrownBy([&] { entry.getPartNo(); }), lengthError(89, 90));
}

TEST(BMCSELEntry, SerialNumberNeedsHundredThreeBytes)
{
    const Bytes field = Bytes({0xC6}) + textBytes("SERIAL");
    EXPECT_EQ(withBlock(103, 90, field).getSerialNo(12), "SERIAL");
    EXPECT_EQ(withBlock(103, 90, field).getSerialNo(3), "SER");
    auto entry = withBlock(102, 90, field);
    EXPECT_EQ(thrownBy([&] { entry.getSerialNo(12); }), lengthError(102, 103));
}

TEST(BMCSELEntry, SerialNumberEndsWithTheBlock)
{
    auto entry = withBlock(112, 90, Bytes({0xFF}) + Bytes(21, 'x'));
    EXPECT_EQ(entry.getSerialNo(21), std::string(21, 'x'));
    EXPECT_EQ(entry.getSerialNo(22), std::string(21, 'x'));
    EXPECT_EQ(entry.getSerialNo(4000000000U), std::string(21, 'x'));
}
