// SPDX-License-Identifier: Apache-2.0
#include <recordkit/sel/OEMSELEntry.h>

#include <gtest/gtest.h>

#include <recordkit/host/Machine.h>

#include "support/Bytes.h"
#include "support/Failures.h"

using TAVLib::RecordKit::OEMSELEntry;
using namespace testing_support;

namespace {

const Bytes RECORD = sequence(18, 1);
const Bytes EXTENDED = sequence(56, 0x80);
const Bytes COMPLETE = RECORD + EXTENDED;

std::string lengthError(int held, int needed)
{
    return "1:83:0x0A00 act 1 det 0x0B00 msg 20008 (OEMSELEntry, " + std::to_string(held) + ", " +
           std::to_string(needed) + ")";
}

/// An entry with that many extended bytes, zero except for the given ones from `at` on.
OEMSELEntry withExtended(std::size_t length, std::size_t at, const Bytes& bytes)
{
    Bytes extended(56, 0);
    std::copy(bytes.begin(), bytes.end(), extended.begin() + static_cast<long>(at));
    return fromBytes<OEMSELEntry>(RECORD + part(extended, 0, length));
}

std::string fieldText(unsigned char typeLength, Bytes data, unsigned int maxLength)
{
    return OEMSELEntry().getFRUData(typeLength, data.data(), maxLength);
}

class MachineOf {
public:
    explicit MachineOf(int partitions)
    {
        TAVLib::host::Machine machine;
        machine.partitions = partitions;
        TAVLib::host::setMachine(machine);
    }
    ~MachineOf() { TAVLib::host::setMachine({}); }
    MachineOf(const MachineOf&) = delete;
    MachineOf& operator=(const MachineOf&) = delete;
};

}

TEST(OEMSELEntry, FreshEntryHoldsTwoZeroBytes)
{
    EXPECT_EQ(imageOf(OEMSELEntry()), Bytes({0, 0}));
}

TEST(OEMSELEntry, TakesEachLengthUpToSeventyFour)
{
    for (std::size_t length = 2; length <= 74; ++length) {
        EXPECT_EQ(imageOf(fromBytes<OEMSELEntry>(part(COMPLETE, 0, length))),
                  part(COMPLETE, 0, length));
    }
}

TEST(OEMSELEntry, IgnoresWhatLiesBeyondSeventyFourBytes)
{
    for (const std::size_t length : {75U, 100U}) {
        EXPECT_EQ(imageOf(fromBytes<OEMSELEntry>(sequence(length, 1))), sequence(74, 1));
    }
}

TEST(OEMSELEntry, RecordAloneKeepsTheExtendedDataHeld)
{
    auto entry = fromBytes<OEMSELEntry>(part(COMPLETE, 0, 60));
    EXPECT_TRUE(load(entry, Bytes(18, 0x55)));
    EXPECT_EQ(imageOf(entry), Bytes(18, 0x55) + part(EXTENDED, 0, 42));
    EXPECT_TRUE(load(entry, {0x77, 0x66}));
    EXPECT_EQ(imageOf(entry), Bytes({0x77, 0x66}) + part(EXTENDED, 0, 42));
}

TEST(OEMSELEntry, ShorterExtendedDataShortenTheImage)
{
    auto entry = fromBytes<OEMSELEntry>(COMPLETE);
    EXPECT_TRUE(load(entry, RECORD + Bytes({0x11})));
    EXPECT_EQ(imageOf(entry), RECORD + Bytes({0x11}));
}

TEST(OEMSELEntry, RefusesFewerThanTwoBytesWithTwoTraceLines)
{
    auto entry = fromBytes<OEMSELEntry>(COMPLETE);
    TraceCapture trace;
    EXPECT_FALSE(load(entry, {0x01}));
    EXPECT_EQ(trace.lines(),
              Lines({"1:83:0x0900 level 0: SELEntry::setSerialized: 1 where 2 is needed",
                     "1:83:0x0A00 level 0: failed: "
                     "OEMSELEntry::setSerialized(SELEntry::setSerialized)"}));
    EXPECT_EQ(imageOf(entry), COMPLETE);
}

TEST(OEMSELEntry, NeedsABufferOfItsSize)
{
    const auto entry = fromBytes<OEMSELEntry>(COMPLETE);
    Bytes buffer(74, 0xEE);
    TraceCapture trace;
    EXPECT_EQ(entry.getSerialized(buffer.data(), 73), 0U);
    EXPECT_EQ(buffer, Bytes(74, 0xEE));
    EXPECT_EQ(trace.take(),
              Lines({"1:83:0x0A00 level 0: OEMSELEntry::getSerialized: 73 where 74 is needed"}));
    EXPECT_EQ(entry.getSerialized(buffer.data(), 74), 74U);
    EXPECT_EQ(buffer, COMPLETE);
    EXPECT_EQ(trace.lines(), Lines());
}

TEST(OEMSELEntry, ClaimsOfADerivedClassAreFilledWithZeroes)
{
    class Larger : public OEMSELEntry {
    public:
        unsigned int getSerializedSize() const override { return 100; }
    };
    const auto entry = fromBytes<Larger>(COMPLETE);
    Bytes buffer(101, 0xEE);
    EXPECT_EQ(entry.OEMSELEntry::getSerialized(buffer.data(), 101), 100U);
    EXPECT_EQ(buffer, COMPLETE + Bytes(26, 0) + Bytes({0xEE}));
}

TEST(OEMSELEntry, GivesEventDataByNumberFromOne)
{
    const auto entry = fromBytes<OEMSELEntry>(COMPLETE);
    for (int n = 1; n <= 56; ++n) {
        EXPECT_EQ(entry.getSpecifiedEventData(n), 0x80 + n - 1);
    }
    EXPECT_EQ(thrownBy([&] { entry.getSpecifiedEventData(57); }), lengthError(56, 57));
}

TEST(OEMSELEntry, EventDataIsBoundByTheBytesHeld)
{
    const auto entry = fromBytes<OEMSELEntry>(part(COMPLETE, 0, 18 + 5));
    EXPECT_EQ(entry.getSpecifiedEventData(5), 0x84);
    EXPECT_EQ(thrownBy([&] { entry.getSpecifiedEventData(6); }), lengthError(5, 6));
}

TEST(OEMSELEntry, EventDataBelowOneIsZero)
{
    const auto entry = fromBytes<OEMSELEntry>(Bytes(74, 0xFF));
    EXPECT_EQ(entry.getSpecifiedEventData(0), 0);
    EXPECT_EQ(entry.getSpecifiedEventData(-1), 0);
    EXPECT_EQ(entry.getSpecifiedEventData(-2147483647 - 1), 0);
}

TEST(OEMSELEntry, PartitionBitmaskIsLowByteFirst)
{
    EXPECT_EQ(withExtended(56, 13, {0x34, 0x12}).getPartitionBitmask(), 0x1234);
}

TEST(OEMSELEntry, PartitionBitmaskNeedsFifteenBytes)
{
    EXPECT_EQ(withExtended(15, 13, {0x05, 0x00}).getPartitionBitmask(), 5);
    auto entry = withExtended(14, 13, {0x05});
    EXPECT_EQ(thrownBy([&] { entry.getPartitionBitmask(); }), lengthError(14, 15));
    EXPECT_EQ(thrownBy([&] { entry.isPartitionValid(0); }), lengthError(14, 15));
    EXPECT_EQ(thrownBy([&] { entry.isPartitionValid(200); }), lengthError(14, 15));
}

TEST(OEMSELEntry, PartitionIsValidWhenItExistsAndItsBitIsSet)
{
    const MachineOf machine(3);
    auto entry = withExtended(56, 13, {0x0D, 0x00});
    EXPECT_TRUE(entry.isPartitionValid(0));
    EXPECT_FALSE(entry.isPartitionValid(1));
    EXPECT_TRUE(entry.isPartitionValid(2));
    EXPECT_FALSE(entry.isPartitionValid(3)); // its bit is set, but there is no partition 3
    EXPECT_FALSE(entry.isPartitionValid(255));
}

TEST(OEMSELEntry, PartitionBeyondTheBitmaskIsNotValid)
{
    const MachineOf machine(300);
    auto entry = withExtended(56, 13, {0xFF, 0xFF});
    EXPECT_TRUE(entry.isPartitionValid(15));
    for (const unsigned char partition : {16, 31, 32, 33, 255}) {
        EXPECT_FALSE(entry.isPartitionValid(partition)) << int(partition);
    }
}

TEST(OEMSELEntry, PartNumberNeedsThirtyFourBytes)
{
    const Bytes field = Bytes({0xD2}) + textBytes("PARTNUMBER-1234567");
    EXPECT_EQ(withExtended(34, 15, field).getPartNo(), "PARTNUMBER-1234567");
    auto entry = withExtended(33, 15, field);
    EXPECT_EQ(thrownBy([&] { entry.getPartNo(); }), lengthError(33, 34));
}

TEST(OEMSELEntry, PartNumberHasAtMostEighteenBytes)
{
    EXPECT_EQ(
        withExtended(56, 15, Bytes({0xFF}) + textBytes("ABCDEFGHIJKLMNOPQRSTUVWXYZ")).getPartNo(),
        "ABCDEFGHIJKLMNOPQR");
}

TEST(OEMSELEntry, SerialNumberHasAtMostTwelveBytes)
{
    EXPECT_EQ(withExtended(56, 34, Bytes({0xCF}) + textBytes("0123456789ABCDE")).getSerialNo(),
              "0123456789AB");
}

TEST(OEMSELEntry, SerialNumberNeedsOnlyFortyFiveBytes)
{
    const Bytes field = Bytes({0xCC}) + textBytes("0123456789AB");
    auto entry = withExtended(56, 34, field);
    EXPECT_TRUE(load(entry, RECORD + Bytes(34, 0) + Bytes({0xCC}) + textBytes("abcdefghij")));
    // The last two characters keep their earlier values.
    EXPECT_EQ(entry.getSerialNo(), "abcdefghijAB");

    auto shorter = withExtended(44, 34, part(field, 0, 10));
    EXPECT_EQ(thrownBy([&] { shorter.getSerialNo(); }), lengthError(44, 45));
}

TEST(OEMSELEntry, FieldOfLengthZeroOrOneIsEmpty)
{
    for (const unsigned int type : {0x00U, 0x40U, 0x80U, 0xC0U}) {
        EXPECT_EQ(fieldText(static_cast<unsigned char>(type), {'A', 'B'}, 18), "");
        EXPECT_EQ(fieldText(static_cast<unsigned char>(type | 1), {'A', 'B'}, 18), "");
    }
    EXPECT_EQ(fieldText(0xC2, {'A', 'B'}, 18), "AB");
    EXPECT_EQ(fieldText(0x02, {0x0A, 0xB0}, 18), "0AB0");
}

TEST(OEMSELEntry, BinaryFieldIsUpperCaseHex)
{
    EXPECT_EQ(fieldText(0x05, {0x01, 0xAB, 0x00, 0xFF, 0x10}, 18), "01AB00FF10");
    EXPECT_EQ(fieldText(0x05, {0x01, 0xAB, 0x00}, 3), "01AB00");
    EXPECT_EQ(fieldText(0x05, {0x01}, 1), "01");
    EXPECT_EQ(fieldText(0x05, {0x01}, 0), "");
}

TEST(OEMSELEntry, TextFieldEndsAtTheFirstZeroByte)
{
    EXPECT_EQ(fieldText(0xC5, {'A', 'B', 0, 'D', 'E'}, 18), "AB");
    EXPECT_EQ(fieldText(0xC5, {0, 'B', 'C', 'D', 'E'}, 18), "");
    EXPECT_EQ(fieldText(0xC5, {'A', 'B', 'C'}, 3), "ABC");
}

TEST(OEMSELEntry, BCDPlusAndPackedFieldsAreNotDecoded)
{
    EXPECT_EQ(fieldText(0x45, {0x12, 0x34, 0x56, 0x78, 0x9A}, 18), "");
    EXPECT_EQ(fieldText(0x85, {0x12, 0x34, 0x56, 0x78, 0x9A}, 18), "");
}
