// SPDX-License-Identifier: Apache-2.0
#include <recordkit/sel/SELEntry.h>

#include <gtest/gtest.h>

#include "support/Bytes.h"
#include "support/Failures.h"

using TAVLib::RecordKit::SELEntry;
using namespace testing_support;

namespace {

/// An image of 18 bytes whose record bytes are 00h to 0Fh.
const Bytes COUNTING = Bytes({0x34, 0x12}) + sequence(16);

/// A complete image with these generator id bytes.
Bytes withGenerator(unsigned char id1, unsigned char id2)
{
    Bytes image(18, 0);
    image[9] = id1;
    image[10] = id2;
    return image;
}

std::string lengthError(int held, int needed)
{
    return "1:83:0x0900 act 1 det 0x0B00 msg 20008 (SELEntry, " + std::to_string(held) + ", " +
           std::to_string(needed) + ")";
}

const unsigned char CONTROLLER_20_IDS[] = {0x01, 0x37, 0x41};
const unsigned char CONTROLLER_24_IDS[] = {0x5F, 0x71, 0x81};

bool isListed(unsigned int id)
{
    for (const unsigned char each : {0x01, 0x37, 0x41, 0x5F, 0x71, 0x81}) {
        if (each == id) {
            return true;
        }
    }
    return false;
}

}

TEST(SELEntry, FreshEntryHoldsTwoZeroBytes)
{
    EXPECT_EQ(imageOf(SELEntry()), Bytes({0, 0}));
}

TEST(SELEntry, TakesEachLengthFromTwoToEighteen)
{
    for (std::size_t length = 2; length <= 18; ++length) {
        const auto entry = fromBytes<SELEntry>(part(COUNTING, 0, length));
        EXPECT_EQ(entry.getSerializedSize(), length);
        EXPECT_EQ(imageOf(entry), part(COUNTING, 0, length));
    }
}

TEST(SELEntry, IgnoresWhatLiesBeyondEighteenBytes)
{
    for (const std::size_t length : {19U, 40U, 300U}) {
        SELEntry entry;
        EXPECT_TRUE(load(entry, sequence(length, 7)));
        EXPECT_EQ(imageOf(entry), sequence(18, 7));
    }
}

TEST(SELEntry, RefusesFewerThanTwoBytesWithATraceLine)
{
    auto entry = fromBytes<SELEntry>(COUNTING);
    for (std::size_t length = 0; length < 2; ++length) {
        TraceCapture trace;
        EXPECT_FALSE(load(entry, Bytes(length, 0xEE)));
        EXPECT_EQ(trace.lines(), Lines({"1:83:0x0900 level 0: SELEntry::setSerialized: " +
                                        std::to_string(length) + " where 2 is needed"}));
        EXPECT_EQ(imageOf(entry), COUNTING);
    }
}

TEST(SELEntry, ShorterImageShortensTheRecord)
{
    auto entry = fromBytes<SELEntry>(COUNTING);
    EXPECT_TRUE(load(entry, {0xAA, 0xBB, 0xCC}));
    EXPECT_EQ(imageOf(entry), Bytes({0xAA, 0xBB, 0xCC}));
}

TEST(SELEntry, NeedsABufferOfItsSize)
{
    const auto entry = fromBytes<SELEntry>(COUNTING);
    Bytes buffer(18, 0xEE);
    TraceCapture trace;
    EXPECT_EQ(entry.getSerialized(buffer.data(), 17), 0U);
    EXPECT_EQ(buffer, Bytes(18, 0xEE));
    EXPECT_EQ(trace.take(),
              Lines({"1:83:0x0900 level 0: SELEntry::getSerialized: 17 where 18 is needed"}));
    EXPECT_EQ(entry.getSerialized(buffer.data(), 18), 18U);
    EXPECT_EQ(buffer, COUNTING);
    EXPECT_EQ(trace.lines(), Lines());
}

TEST(SELEntry, PrintsTheRecordAsLowerCaseHex)
{
    EXPECT_EQ(fromBytes<SELEntry>(COUNTING).printSELData(), "000102030405060708090a0b0c0d0e0f");
    EXPECT_EQ(fromBytes<SELEntry>(Bytes(18, 0xFA)).printSELData(),
              "fafafafafafafafafafafafafafafafa");
}

TEST(SELEntry, PrintsOnlyACompleteRecord)
{
    for (const std::size_t length : {2U, 17U}) {
        const auto entry = fromBytes<SELEntry>(part(COUNTING, 0, length));
        EXPECT_EQ(thrownBy([&] { entry.printSELData(); }),
                  lengthError(static_cast<int>(length) - 2, 16));
    }
}

TEST(SELEntry, GivesRecordBytesByTheirNumber)
{
    const auto entry = fromBytes<SELEntry>(COUNTING);
    for (int pos = 1; pos <= 16; ++pos) {
        EXPECT_EQ(entry.getSpecifiedBytePosData(pos), pos - 1);
    }
    EXPECT_EQ(thrownBy([&] { entry.getSpecifiedBytePosData(17); }), lengthError(16, 17));
    EXPECT_EQ(thrownBy([&] { entry.getSpecifiedBytePosData(2147483647); }),
              lengthError(16, 2147483647));
}

TEST(SELEntry, BytePositionHasNoLowerBound)
{
    const auto entry = fromBytes<SELEntry>(COUNTING);
    EXPECT_EQ(entry.getSpecifiedBytePosData(0), 0x12);
    EXPECT_EQ(entry.getSpecifiedBytePosData(-1), 0x34);
    EXPECT_EQ(SELEntry().getSpecifiedBytePosData(0), 0);
}

TEST(SELEntry, BytePositionBeforeTheImageIsZero)
{
    const auto entry = fromBytes<SELEntry>(Bytes(18, 0xFF));
    EXPECT_EQ(entry.getSpecifiedBytePosData(-2), 0);
    EXPECT_EQ(entry.getSpecifiedBytePosData(-2147483647 - 1), 0);
}

TEST(SELEntry, BytePositionIsBoundByTheRecordHeld)
{
    const auto entry = fromBytes<SELEntry>(part(COUNTING, 0, 10));
    EXPECT_EQ(entry.getSpecifiedBytePosData(8), 7);
    EXPECT_EQ(thrownBy([&] { entry.getSpecifiedBytePosData(9); }), lengthError(8, 9));
}

TEST(SELEntry, EmptyRecordAnswersNothing)
{
    const auto entry = fromBytes<SELEntry>({0x01, 0x00});
    EXPECT_EQ(thrownBy([&] { entry.printSELData(); }), lengthError(0, 16));
    EXPECT_EQ(thrownBy([&] { entry.getSpecifiedBytePosData(1); }), lengthError(0, 1));
    EXPECT_EQ(thrownBy([&] { entry.getSlaveAddress(); }), lengthError(0, 8));
    EXPECT_EQ(thrownBy([&] { entry.getLUN(); }), lengthError(0, 9));
}

TEST(SELEntry, SlaveAddressIsTheEvenGeneratorId)
{
    for (unsigned int id = 0; id < 0x100; id += 2) {
        const auto entry = fromBytes<SELEntry>(withGenerator(static_cast<unsigned char>(id), 0xFE));
        EXPECT_EQ(entry.getSlaveAddress(), id);
        EXPECT_EQ(entry.getLUN(), 2);
    }
}

TEST(SELEntry, ListedSoftwareIdsStandForAController)
{
    for (const unsigned char id : CONTROLLER_20_IDS) {
        EXPECT_EQ(fromBytes<SELEntry>(withGenerator(id, 0)).getSlaveAddress(), 0x20) << int(id);
    }
    for (const unsigned char id : CONTROLLER_24_IDS) {
        EXPECT_EQ(fromBytes<SELEntry>(withGenerator(id, 0)).getSlaveAddress(), 0x24) << int(id);
    }
}

TEST(SELEntry, LUNIsTheLowBitsOfTheSecondGeneratorByte)
{
    for (const unsigned char id : {0x20, 0x01, 0x37, 0x41, 0x71, 0x81}) {
        for (unsigned int second = 0; second < 0x100; ++second) {
            EXPECT_EQ(
                fromBytes<SELEntry>(withGenerator(id, static_cast<unsigned char>(second))).getLUN(),
                second & 3);
        }
    }
}

TEST(SELEntry, SoftwareId5FIsPinnedToLUNOne)
{
    for (unsigned int second = 0; second < 0x100; ++second) {
        EXPECT_EQ(
            fromBytes<SELEntry>(withGenerator(0x5F, static_cast<unsigned char>(second))).getLUN(),
            1);
    }
}

TEST(SELEntry, EveryOtherSoftwareIdThrows)
{
    for (unsigned int id = 1; id < 0x100; id += 2) {
        if (isListed(id)) {
            continue;
        }
        const auto entry = fromBytes<SELEntry>(withGenerator(static_cast<unsigned char>(id), 0x99));
        EXPECT_EQ(thrownBy([&] { entry.getSlaveAddress(); }),
                  "1:83:0x0900 act 1 det 0x0B01 msg 20030 (Get Slave Address, GeneratorID_byte1, " +
                      std::to_string(id) + ")");
        // The label names the first byte, the value is the second one's.
        EXPECT_EQ(thrownBy([&] { entry.getLUN(); }),
                  "1:83:0x0900 act 1 det 0x0B01 msg 20030 (Get LUN, GeneratorID_byte1, 153)");
    }
}

TEST(SELEntry, SlaveAddressNeedsTheFirstGeneratorByte)
{
    const Bytes image = withGenerator(0x20, 0x03);
    EXPECT_EQ(fromBytes<SELEntry>(part(image, 0, 10)).getSlaveAddress(), 0x20);
    const auto entry = fromBytes<SELEntry>(part(image, 0, 9));
    EXPECT_EQ(thrownBy([&] { entry.getSlaveAddress(); }), lengthError(7, 8));
}

TEST(SELEntry, LUNNeedsBothGeneratorBytes)
{
    const Bytes image = withGenerator(0x20, 0x03);
    EXPECT_EQ(fromBytes<SELEntry>(part(image, 0, 11)).getLUN(), 3);
    const auto entry = fromBytes<SELEntry>(part(image, 0, 10));
    EXPECT_EQ(thrownBy([&] { entry.getLUN(); }), lengthError(8, 9));
}

TEST(SELEntry, RecordBytesHaveTheirIPMINumbers)
{
    // IPMI v2.0, sections 32.1 to 32.3.
    EXPECT_EQ(SELEntry::RECORD_ID, 1);
    EXPECT_EQ(SELEntry::RECORD_TYPE, 3);
    EXPECT_EQ(SELEntry::TIMESTAMP, 4);
    EXPECT_EQ(SELEntry::GENERATOR_ID_1, 8);
    EXPECT_EQ(SELEntry::GENERATOR_ID_2, 9);
    EXPECT_EQ(SELEntry::EVM_REVISION, 10);
    EXPECT_EQ(SELEntry::SENSOR_TYPE, 11);
    EXPECT_EQ(SELEntry::SENSOR_NUMBER, 12);
    EXPECT_EQ(SELEntry::EVENT_TYPE, 13);
    EXPECT_EQ(SELEntry::EVENT_DATA_1, 14);
    EXPECT_EQ(SELEntry::OEM_MANUFACTURER_ID, 8);
    EXPECT_EQ(SELEntry::OEM_TIMESTAMPED_DATA, 11);
    EXPECT_EQ(SELEntry::OEM_UNTIMESTAMPED_DATA, 4);
    EXPECT_EQ(SELEntry::SYSTEM_EVENT_RECORD, 0x02);
    EXPECT_EQ(SELEntry::FIRST_OEM_TIMESTAMPED_RECORD, 0xC0);
    EXPECT_EQ(SELEntry::FIRST_OEM_UNTIMESTAMPED_RECORD, 0xE0);
}
