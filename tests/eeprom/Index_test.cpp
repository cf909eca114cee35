// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <recordkit/eeprom/EFIBackupEEPROMIndex.h>
#include <recordkit/eeprom/PanelEEPROMIndex.h>

#include "MemoryEEPROMs.h"

using namespace TAVLib::RecordKit;
using namespace testing_support;

namespace {

void fill(PanelEEPROMIndex& index, const Bytes& bytes)
{
    std::copy(bytes.begin(), bytes.end(), index.getIndexData());
}

Bytes bytesOf(PanelEEPROMIndex& index)
{
    return Bytes(index.getIndexData(), index.getIndexData() + 16);
}

Bytes recordOf(const EFIBackupEEPROMIndex& index)
{
    return Bytes(index.getIndexData(), index.getIndexData() + 144);
}

class EFIIndex : public testing::Test {
protected:
    EFIIndex()
    {
        index.setIndexValidFlag(false, "");
        EFIBackupEEPROMIndex::IndexState = 0xFF;
    }
    EFIBackupEEPROMIndex index;
};

}

TEST(PanelEEPROMIndex, KnowsItsPlace)
{
    const PanelEEPROMIndex index;
    EXPECT_STREQ(index.getIndexDataFileName(), "/etc/default/config/panelindex.dat");
    EXPECT_EQ(index.getIndexEEPROMID(), 4);
    EXPECT_EQ(index.getIndexOffset(), 512U);
    EXPECT_EQ(index.getIndexSize(), 16U);
    EXPECT_EQ(index.getIndexHeadNumber(), 0);
    EXPECT_EQ(index.getIndexLastNumber(), 26);
}

TEST(PanelEEPROMIndex, ReadsAnEntry)
{
    PanelEEPROMIndex index;
    EXPECT_EQ(bytesOf(index), Bytes(16, 0));
    fill(index, {1, 0, 0, 7, 0x12, 0x34, 0x56, 0x78, 0, 0, 0, 0, 0, 0, 0, 0});
    EXPECT_TRUE(index.isIndex());
    EXPECT_EQ(index.getAreaEEPROMID(), 4);
    EXPECT_EQ(index.getAreaNumber(), 7);
    EXPECT_EQ(index.getAreaOffset(), 0x1234);
    EXPECT_EQ(index.getAreaSize(), 0x5678);
    for (const unsigned char selector : {1, 0x80, 0xFF}) {
        index.getIndexData()[2] = selector;
        EXPECT_EQ(index.getAreaEEPROMID(), 5);
    }
    for (const unsigned char flag : {0, 2, 0x81, 0xFF}) {
        index.getIndexData()[0] = flag;
        EXPECT_FALSE(index.isIndex());
    }
}

TEST(PanelEEPROMIndex, FlagLeavesTheChecksum)
{
    PanelEEPROMIndex index;
    fill(index, sequence(16, 9));
    index.setIndexValidFlag(true);
    EXPECT_EQ(bytesOf(index), Bytes({1}) + sequence(15, 10));
    index.setIndexValidFlag(false);
    EXPECT_EQ(bytesOf(index), Bytes({0}) + sequence(15, 10));
}

TEST(PanelEEPROMIndex, ChecksumCompletesTheSum)
{
    PanelEEPROMIndex index;
    index.setChecksum();
    EXPECT_EQ(index.getIndexData()[15], 0);
    EXPECT_TRUE(index.isChecksum());
    // Bytes that add up to 1F3h.
    fill(index, {0xFF, 0xF4, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0x55});
    EXPECT_FALSE(index.isChecksum());
    index.setChecksum();
    EXPECT_EQ(index.getIndexData()[15], 0x0D);
    EXPECT_TRUE(index.isChecksum());
    for (std::size_t byte = 0; byte < 16; ++byte) {
        index.getIndexData()[byte] ^= 0x10;
        EXPECT_FALSE(index.isChecksum()) << byte;
        index.getIndexData()[byte] ^= 0x10;
    }
}

TEST_F(EFIIndex, EEPROMsAreNumberedByPartitionAndBank)
{
    unsigned int expected = 11;
    for (unsigned int p = 0; p < 4; ++p) {
        for (unsigned int b = 0; b < 4; ++b) {
            EXPECT_EQ(index.getAreaEEPROMID(p, b), expected++);
        }
    }
    EXPECT_EQ(index.getAreaEEPROMID(4, 0), ~0U);
    EXPECT_EQ(index.getAreaEEPROMID(0, 4), ~0U);
    EXPECT_EQ(index.getAreaEEPROMID(~0U, ~0U), ~0U);
}

TEST_F(EFIIndex, FlagsHaveTheirNibbles)
{
    index.setClrFlag(0, 0, 1, true);
    EXPECT_EQ(recordOf(index)[16], 0x01);
    index.setClrFlag(0, 0, 0, true);
    EXPECT_EQ(recordOf(index)[16], 0x11);
    EXPECT_EQ(EFIBackupEEPROMIndex::clrinfo[0], 0x11);
    EXPECT_TRUE(index.getClrBlockState(0, 0, 1));
    index.setClrFlag(0, 0, 1, false);
    EXPECT_EQ(recordOf(index)[16], 0x10);
    EXPECT_FALSE(index.getClrBlockState(0, 0, 1));
    EXPECT_TRUE(index.getClrBlockState(0, 0, 0));
}

TEST_F(EFIIndex, EveryFlagIsOnItsOwn)
{
    for (unsigned int p = 0; p < 4; ++p) {
        for (unsigned int b = 0; b < 4; ++b) {
            for (unsigned int n = 0; n < 16; ++n) {
                index.setIndexValidFlag(false, "");
                index.setClrFlag(p, b, n, true);
                Bytes expected(144, 0);
                const std::size_t at = 16 + 8 * (4 * p + b) + n / 2;
                expected[at] = n % 2 != 0 ? 0x01 : 0x10;
                EXPECT_EQ(recordOf(index), expected);
                EXPECT_EQ(index.getIndexPoint(static_cast<int>(p), static_cast<int>(b),
                                              static_cast<int>(n)),
                          static_cast<int>(at));
                unsigned int pending = 0;
                for (unsigned int each = 0; each < 256; ++each) {
                    pending += index.getClrBlockState(each / 64, each / 16 % 4, each % 16) ? 1 : 0;
                }
                EXPECT_EQ(pending, 1U);
                EXPECT_TRUE(index.getClrBlockState(p, b, n));
            }
        }
    }
    EXPECT_EQ(index.getIndexPoint(2, 1, 7), 91);
    EXPECT_EQ(index.getIndexChecksumPoint(), 0);
}

TEST_F(EFIIndex, FlagByteComesFromTheSharedCopy)
{
    // Only the record has another flag in the byte; the copy does not.
    index.getIndexData()[16] = 0x10;
    index.setClrFlag(0, 0, 1, true);
    EXPECT_EQ(recordOf(index)[16], 0x01);
    // Any nibble but 0 is pending, and is kept unchanged.
    EFIBackupEEPROMIndex::clrinfo[0] = 0xC0;
    EXPECT_TRUE(index.getClrBlockState(0, 0, 0));
    index.setClrFlag(0, 0, 1, true);
    EXPECT_EQ(recordOf(index)[16], 0xC1);
}

TEST_F(EFIIndex, BlocksAboveFifteenHaveAByteOfALaterGroup)
{
    // Group 1 begins at byte 24: block 16 of group 0 is block 0 of group 1.
    index.setClrFlag(0, 0, 16, true);
    EXPECT_EQ(recordOf(index)[24], 0x10);
    EXPECT_EQ(EFIBackupEEPROMIndex::clrinfo[8], 0x10);
    EXPECT_TRUE(index.getClrBlockState(0, 0, 16));
    EXPECT_TRUE(index.getClrBlockState(0, 1, 0));
    index.setClrFlag(0, 1, 1, true);
    EXPECT_TRUE(index.getClrBlockState(0, 0, 17));
    index.setClrFlag(0, 0, 16, false);
    EXPECT_EQ(recordOf(index)[24], 0x01);
    // The last flag of the record, from its first group and from its last one.
    index.setClrFlag(0, 0, 255, true);
    EXPECT_EQ(recordOf(index)[143], 0x01);
    EXPECT_TRUE(index.getClrBlockState(3, 3, 15));
    EXPECT_TRUE(index.getClrBlockState(2, 3, 79));
    EXPECT_EQ(index.getIndexPoint(0, 0, 255), 143);
    EXPECT_EQ(index.getIndexPoint(2, 3, 79), 143);
}

TEST_F(EFIIndex, BlocksBeyondTheRecordHaveNoFlag)
{
    const Bytes before = recordOf(index);
    const struct {
        unsigned int p, b, n;
    } rows[] = {{3, 3, 16}, {3, 3, 17}, {2, 3, 80}, {0, 0, 256}, {0, 0, 0xFFFFF}, {3, 3, ~0U}};
    for (const auto& row : rows) {
        index.setClrFlag(row.p, row.b, row.n, true);
        EXPECT_FALSE(index.getClrBlockState(row.p, row.b, row.n)) << row.n;
    }
    EXPECT_EQ(recordOf(index), before);
    for (const auto& flags : EFIBackupEEPROMIndex::clrinfo) {
        EXPECT_EQ(flags, 0);
    }
    EXPECT_EQ(index.getIndexPoint(3, 3, 16), 144);
    EXPECT_EQ(index.getIndexPoint(0, 0, 256), 144);
    EXPECT_EQ(index.getIndexPoint(0, 0, -32), 0);
}

TEST_F(EFIIndex, PartitionsAndBanksBeyondThreeWrapAround)
{
    index.setClrFlag(5, 6, 2, true);
    EXPECT_TRUE(index.getClrBlockState(1, 2, 2));
    EXPECT_EQ(index.getIndexPoint(5, 6, 2), index.getIndexPoint(1, 2, 2));
}

TEST_F(EFIIndex, BlocksAreOfFourKilobytes)
{
    EXPECT_EQ(index.getClrBlockNumber(0), 0U);
    EXPECT_EQ(index.getClrBlockNumber(4095), 0U);
    EXPECT_EQ(index.getClrBlockNumber(4096), 1U);
    EXPECT_EQ(index.getClrBlockNumber(65535), 15U);
    EXPECT_EQ(index.getClrBlockNumber(65536), 16U);
    unsigned int start = 0;
    unsigned int end = 0;
    index.getClrBlockAddress(15, start, end);
    EXPECT_EQ(start, 61440U);
    EXPECT_EQ(end, 65535U);
}

TEST_F(EFIIndex, RecordNamesASystem)
{
    index.setIndexValidFlag(true, "SERIAL-01234-and-more");
    EXPECT_EQ(part(recordOf(index), 2, 14), textBytes("SERIAL-01234") + Bytes(2, 0));
    EXPECT_TRUE(index.isChecksum());
    EXPECT_TRUE(index.checkSerialInfo("SERIAL-01234"));
    EXPECT_TRUE(index.checkSerialInfo("SERIAL-01234-other"));
    EXPECT_FALSE(index.checkSerialInfo("SERIAL-01235"));
    EXPECT_FALSE(index.checkSerialInfo("SERIAL-0123"));
    EXPECT_FALSE(index.checkSerialInfo(""));
    EXPECT_EQ(recordOf(index), withSum(recordOf(index), 0));
    // A short one is filled up with zeroes, and never matches itself.
    index.setIndexValidFlag(true, "AB");
    EXPECT_EQ(part(recordOf(index), 2, 12), textBytes("AB") + Bytes(10, 0));
    EXPECT_FALSE(index.checkSerialInfo("AB"));
    EXPECT_FALSE(index.checkSerialInfo(std::string("AB") + std::string(9, '\0')));
    EXPECT_TRUE(index.checkSerialInfo(std::string("AB") + std::string(10, '\0')));
}

TEST_F(EFIIndex, InvalidRecordIsAllZeroAndPassesTheChecksum)
{
    index.setClrFlag(1, 1, 1, true);
    index.setIndexValidFlag(false, "SERIAL-01234");
    EXPECT_EQ(recordOf(index), Bytes(144, 0));
    EXPECT_TRUE(index.isChecksum());
    // The shared copy is cleared in both cases.
    EXPECT_FALSE(index.getClrBlockState(1, 1, 1));
    index.setClrFlag(1, 1, 1, true);
    index.setIndexValidFlag(true, "SERIAL-01234");
    EXPECT_FALSE(index.getClrBlockState(1, 1, 1));
}

TEST_F(EFIIndex, StateAndFlagsOutliveTheObjects)
{
    EXPECT_FALSE(index.getIndexState());
    {
        EFIBackupEEPROMIndex other;
        other.setIndexState(true);
        other.setClrFlag(2, 2, 2, true);
    }
    EXPECT_TRUE(index.getIndexState());
    EXPECT_TRUE(index.getClrBlockState(2, 2, 2));
    index.setIndexState(false);
    EXPECT_FALSE(EFIBackupEEPROMIndex().getIndexState());
    index.getIndexData()[16] = 0x01;
    index.expandClrFlags();
    EXPECT_TRUE(EFIBackupEEPROMIndex().getClrBlockState(0, 0, 1));
    EXPECT_FALSE(EFIBackupEEPROMIndex().getClrBlockState(2, 2, 2));
}
