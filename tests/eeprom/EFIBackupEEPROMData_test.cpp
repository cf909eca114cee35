// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <recordkit/eeprom/EFIBackupEEPROMData.h>

#include "MemoryEEPROMs.h"

using namespace TAVLib::RecordKit;
using namespace testing_support;

namespace {

const std::string SERIAL = "SERIAL-01234";

/// A record of that system with these flag bytes set.
Bytes record(const std::map<std::size_t, unsigned char>& flags = {})
{
    Bytes bytes(144, 0);
    std::copy(SERIAL.begin(), SERIAL.end(), bytes.begin() + 2);
    for (const auto& [at, flag] : flags) {
        bytes[at] = flag;
    }
    return withSum(bytes, 0);
}

class EFIBackup : public testing::Test {
protected:
    EFIBackup()
    {
        EFIBackupEEPROMIndex::IndexState = 0xFF;
        for (auto& flags : EFIBackupEEPROMIndex::clrinfo) {
            flags = 0;
        }
    }
    /// Valid, with a record that has these flags.
    void prepare(const std::map<std::size_t, unsigned char>& flags)
    {
        backup.setIndexData(true, SERIAL);
        eeproms.put(10, 0, record(flags));
        ASSERT_TRUE(backup.checkIndexData(SERIAL));
        eeproms.takeAccesses();
    }
    Bytes recordNow() { return eeproms.get(10, 0, 144); }

    MemoryEEPROMs eeproms;
    EFIBackupEEPROMData backup{eeproms};
};

std::string error(const std::string& text)
{
    return eepromError(2, 3, 20031, text);
}

const std::string CODES = "(ActCode=0x12 DetCode=0x0345 ";

}

TEST_F(EFIBackup, NothingIsMovedWhileTheStoreIsNotValid)
{
    unsigned char data[4] = {1, 2, 3, 4};
    EXPECT_FALSE(backup.isValid());
    EXPECT_EQ(backup.write(0, 0, 0, 4, data), 0U);
    EXPECT_EQ(backup.read(0, 0, 0, 4, data), 0U);
    EXPECT_EQ(backup.clearExecute(0, 0), 0);
    EXPECT_EQ(eeproms.takeAccesses(), Lines());
    EXPECT_EQ(Bytes(data, data + 4), Bytes({1, 2, 3, 4}));
}

TEST_F(EFIBackup, NewRecordIsWrittenWithTheZeroesBehindIt)
{
    eeproms.put(10, 0, Bytes(300, 0xEE));
    backup.setIndexData(true, SERIAL + "-more");
    EXPECT_TRUE(backup.isValid());
    EXPECT_EQ(eeproms.takeAccesses(), Lines({"w10@0+144", "w10@144+112"}));
    EXPECT_EQ(recordNow(), record());
    EXPECT_EQ(eeproms.get(10, 144, 156), Bytes(112, 0) + Bytes(44, 0xEE));
}

TEST_F(EFIBackup, BytesAreMovedOnTheEEPROMOfTheBank)
{
    backup.setIndexData(true, SERIAL);
    eeproms.takeAccesses();
    unsigned char data[4] = {1, 2, 3, 4};
    EXPECT_EQ(backup.write(1, 2, 0x1234, 4, data), 4U);
    unsigned char out[4] = {};
    EXPECT_EQ(backup.read(1, 2, 0x1234, 4, out), 4U);
    EXPECT_EQ(Bytes(out, out + 4), Bytes({1, 2, 3, 4}));
    EXPECT_EQ(eeproms.takeAccesses(), Lines({"w17@4660+4", "r17@4660+4"}));
}

TEST_F(EFIBackup, RecordIsKnownByChecksumAndSerial)
{
    eeproms.put(10, 0, record({{16, 0x11}}));
    EXPECT_TRUE(backup.checkIndexData(SERIAL));
    EXPECT_EQ(eeproms.takeAccesses(), Lines({"r10@0+144"}));
    EXPECT_EQ(EFIBackupEEPROMIndex::clrinfo[0], 0x11);
    // Knowing it does not make the store valid.
    EXPECT_FALSE(backup.isValid());
    EXPECT_FALSE(backup.checkIndexData("SERIAL-01235"));
    EXPECT_FALSE(backup.checkIndexData("XERIAL-01234"));
    eeproms.at(10)[99] ^= 1;
    EXPECT_FALSE(backup.checkIndexData(SERIAL));
    // The flags of a refused record are not adopted.
    EXPECT_EQ(EFIBackupEEPROMIndex::clrinfo[0], 0x11);
}

TEST_F(EFIBackup, MakingItInvalidLeavesTheRecord)
{
    backup.setIndexData(true, SERIAL);
    eeproms.takeAccesses();
    backup.setIndexData(false, "");
    EXPECT_FALSE(backup.isValid());
    EXPECT_EQ(eeproms.takeAccesses(), Lines());
    EXPECT_TRUE(backup.checkIndexData(SERIAL));
    EXPECT_FALSE(backup.isValid());
}

TEST_F(EFIBackup, ChecksumGoesFirst)
{
    prepare({});
    backup.writeIndexData(2, 1, 7);
    EXPECT_EQ(eeproms.takeAccesses(), Lines({"w10@0+1", "w10@91+1"}));
    backup.writeIndexData(2, 1);
    EXPECT_EQ(eeproms.takeAccesses(), Lines({"w10@0+1", "w10@88+8"}));
    EXPECT_EQ(backup.writeIndexData(), 112);
    EXPECT_EQ(eeproms.takeAccesses(), Lines({"w10@0+144", "w10@144+112"}));
    // A block above 15 has the byte that the formula yields, as long as it is inside the record.
    EXPECT_EQ(backup.writeIndexData(3, 3, 15), 1);
    EXPECT_EQ(eeproms.takeAccesses(), Lines({"w10@0+1", "w10@143+1"}));
    EXPECT_EQ(backup.writeIndexData(0, 0, 255), 1);
    EXPECT_EQ(eeproms.takeAccesses(), Lines({"w10@0+1", "w10@143+1"}));
    EXPECT_EQ(backup.writeIndexData(0, 0, -32), 1);
    EXPECT_EQ(eeproms.takeAccesses(), Lines({"w10@0+1", "w10@0+1"}));
    // Beyond it, nothing is written: not even the checksum.
    for (const int n : {16, 255, 2147483647, -34, -300, -2147483647 - 1}) {
        EXPECT_EQ(backup.writeIndexData(n < -34 || n > 0 ? 3 : 0, n > 0 ? 3 : 0, n), 0) << n;
        EXPECT_EQ(eeproms.takeAccesses(), Lines()) << n;
    }
}

TEST_F(EFIBackup, FlagOfABlockIsCleared)
{
    prepare({{16, 0x11}, {64, 0x11}});
    EXPECT_EQ(backup.resetClearFlag(1, 2, 4095), 0);
    EXPECT_EQ(eeproms.takeAccesses(), Lines({"r10@0+144", "w10@0+1", "w10@64+1"}));
    EXPECT_EQ(recordNow(), record({{16, 0x11}, {64, 0x01}}));
    EXPECT_EQ(backup.resetClearFlag(1, 2, 4096), 0);
    EXPECT_EQ(recordNow(), record({{16, 0x11}}));
}

TEST_F(EFIBackup, BlockIsMarked)
{
    prepare({{16, 0x11}});
    eeproms.put(10, 144, Bytes(112, 0x5A));
    Bytes expected = eeproms.at(10);
    EXPECT_EQ(backup.markBlock(1, 2, 4095), 0);
    EXPECT_EQ(eeproms.takeAccesses(), Lines({"r10@0+144", "w10@0+1", "w10@64+1"}));
    expected[0] -= 0x10;
    expected[64] = 0x10;
    EXPECT_EQ(eeproms.at(10), expected);
    EXPECT_EQ(backup.markBlock(1, 2, 61440), 0);
    EXPECT_EQ(eeproms.takeAccesses(), Lines({"r10@0+144", "w10@0+1", "w10@71+1"}));
    expected[0] -= 0x01;
    expected[71] = 0x01;
    EXPECT_EQ(eeproms.at(10), expected);
    // Once more changes nothing.
    EXPECT_EQ(backup.markBlock(1, 2, 65535), 0);
    EXPECT_EQ(eeproms.at(10), expected);
    EXPECT_TRUE(backup.checkIndexData(SERIAL));
}

TEST_F(EFIBackup, ChecksumOfAMarkIsThatOfTheWholeRecord)
{
    prepare({});
    EXPECT_EQ(backup.markBlock(3, 3, 0xF000), 0);
    // 0x53 + 0x45 + 0x52 + 0x49 + 0x41 + 0x4C + 0x2D + 0x30 + 0x31 + 0x32 + 0x33 + 0x34, and 0x01.
    EXPECT_EQ(eeproms.get(10, 0, 1), Bytes({0x18}));
    EXPECT_EQ(eeproms.get(10, 143, 1), Bytes({0x01}));
}

TEST_F(EFIBackup, MarkKeepsAndAdoptsTheFlagsOnTheDevice)
{
    prepare({{24, 0x10}});
    // What somebody else wrote since.
    eeproms.put(10, 0, record({{16, 0x01}, {64, 0x10}}));
    EXPECT_EQ(backup.markBlock(1, 2, 4096), 0);
    EXPECT_EQ(recordNow(), record({{16, 0x01}, {64, 0x11}}));
    eeproms.takeAccesses();
    EXPECT_EQ(backup.clearExecute(0, 1), 0);
    EXPECT_EQ(eeproms.takeAccesses(), Lines());
    EXPECT_EQ(backup.clearExecute(0, 0), 0);
    EXPECT_EQ(eeproms.takeAccesses(), Lines({"w11@4096+4096", "r10@0+144", "w10@0+1", "w10@16+1"}));
    EXPECT_EQ(recordNow(), record({{64, 0x11}}));
}

TEST_F(EFIBackup, MarksOfAnyObjectOfTheProcessAreErased)
{
    prepare({});
    EFIBackupEEPROMData other(eeproms);
    EXPECT_EQ(other.markBlock(1, 2, 0), 0);
    EXPECT_EQ(other.markBlock(1, 2, 0xF000), 0);
    eeproms.takeAccesses();
    EXPECT_EQ(backup.clearExecute(1, 2), 0);
    EXPECT_EQ(eeproms.takeAccesses(),
              Lines({"w17@0+4096", "r10@0+144", "w10@0+1", "w10@64+1", "w17@61440+4096",
                     "r10@0+144", "w10@0+1", "w10@71+1"}));
    EXPECT_EQ(recordNow(), record({}));
}

TEST_F(EFIBackup, MarksOfAnotherProcessAreErasedAfterTheRecordIsRead)
{
    prepare({});
    eeproms.put(10, 0, record({{64, 0x10}}));
    EXPECT_EQ(backup.clearExecute(1, 2), 0);
    EXPECT_EQ(eeproms.takeAccesses(), Lines());
    EXPECT_TRUE(backup.checkIndexData(SERIAL));
    EXPECT_EQ(backup.clearExecute(1, 2), 0);
    EXPECT_EQ(eeproms.takeAccesses(),
              Lines({"r10@0+144", "w17@0+4096", "r10@0+144", "w10@0+1", "w10@64+1"}));
}

TEST_F(EFIBackup, BlockThatCouldNotBeMarkedIsNotErased)
{
    for (const std::size_t access : {1, 2, 3}) {
        prepare({{16, 0x10}});
        eeproms.failAt(access);
        EXPECT_NE(thrownBy([&] { backup.markBlock(1, 2, 0); }), "nothing");
        eeproms.failNoMore();
        eeproms.takeAccesses();
        EXPECT_EQ(backup.clearExecute(1, 2), 0);
        EXPECT_EQ(eeproms.takeAccesses(), Lines()) << access;
        // Nor does the object's own record have the flag, or a checksum for it.
        backup.writeIndexData();
        EXPECT_EQ(recordNow(), record({{16, 0x10}}));
    }
    // One that was pending before stays so.
    for (const std::size_t access : {2, 3}) {
        prepare({});
        eeproms.put(10, 0, record({{64, 0x10}}));
        eeproms.failAt(access);
        EXPECT_NE(thrownBy([&] { backup.markBlock(1, 2, 0); }), "nothing");
        eeproms.failNoMore();
        EXPECT_EQ(backup.clearExecute(1, 2), 0);
        EXPECT_EQ(eeproms.get(17, 0, 1), Bytes({0xFF})) << access;
        EXPECT_EQ(recordNow(), record({}));
        eeproms.put(17, 0, Bytes({0}));
    }
}

TEST_F(EFIBackup, AddressBeyondTheLastBlockChangesNoFlag)
{
    std::map<std::size_t, unsigned char> all;
    for (std::size_t at = 16; at < 144; ++at) {
        all[at] = 0x11;
    }
    prepare(all);
    eeproms.put(10, 144, Bytes(112, 0x5A));
    for (const unsigned int address : {65536U, 131072U, 0xFFFFFFFFU}) {
        EXPECT_EQ(backup.resetClearFlag(3, 3, address), 0);
        EXPECT_EQ(recordNow(), record(all));
    }
    EXPECT_EQ(eeproms.get(10, 144, 112), Bytes(112, 0x5A));
}

TEST_F(EFIBackup, PendingBlocksAreErasedOneAfterTheOther)
{
    prepare({{64, 0x10}, {71, 0x01}, {16, 0x11}});
    eeproms.put(17, 0, Bytes(65536, 0x77));
    EXPECT_EQ(backup.clearExecute(1, 2), 0);
    EXPECT_EQ(eeproms.takeAccesses(),
              Lines({"w17@0+4096", "r10@0+144", "w10@0+1", "w10@64+1", "w17@61440+4096",
                     "r10@0+144", "w10@0+1", "w10@71+1"}));
    EXPECT_EQ(eeproms.get(17, 0, 4097), Bytes(4096, 0xFF) + Bytes({0x77}));
    EXPECT_EQ(eeproms.get(17, 61439, 4097), Bytes({0x77}) + Bytes(4096, 0xFF));
    EXPECT_EQ(recordNow(), record({{16, 0x11}}));
    // Nothing is left to do.
    EXPECT_EQ(backup.clearExecute(1, 2), 0);
    EXPECT_EQ(eeproms.takeAccesses(), Lines());
}

TEST_F(EFIBackup, EveryDeviceFailureCarriesItsCodes)
{
    prepare({{64, 0x11}});
    unsigned char data[4] = {};
    const auto failing = [&](std::size_t access, const std::function<void()>& action) {
        eeproms.failAt(access);
        const std::string thrown = thrownBy(action);
        eeproms.failNoMore();
        return thrown;
    };
    EXPECT_EQ(
        failing(1, [&] { backup.write(1, 2, 0x1234, 4, data); }),
        error("EFIBackup write: write error." + CODES + "select=0x11 offset=0x1234 length=0x4)"));
    EXPECT_EQ(
        failing(1, [&] { backup.read(1, 2, 0x1234, 4, data); }),
        error("EFIBackup read: read error." + CODES + "select=0x11 offset=0x1234 length=0x4)"));
    EXPECT_EQ(failing(1, [&] { backup.checkIndexData(SERIAL); }),
              error("EFIBackup checkIndexData: read error." + CODES + "select=0xa)"));
    const std::string indexWrite =
        error("EFIBackup writeIndexData: write error." + CODES + "select=0xa");
    for (const std::size_t access : {1, 2}) {
        EXPECT_EQ(failing(access, [&] { backup.writeIndexData(); }), indexWrite);
        EXPECT_EQ(failing(access, [&] { backup.writeIndexData(0, 0, 0); }), indexWrite);
        EXPECT_EQ(failing(access, [&] { backup.writeIndexData(0, 0); }), indexWrite);
    }
    EXPECT_EQ(failing(1, [&] { backup.resetClearFlag(1, 2, 0); }),
              error("EFIBackup resetClearFlag: read error." + CODES + "select=0xa)"));
    EXPECT_EQ(failing(1, [&] { backup.markBlock(1, 2, 0); }),
              error("EFIBackup markBlock: read error." + CODES + "select=0xa)"));
    for (const std::size_t access : {2, 3}) {
        EXPECT_EQ(failing(access, [&] { backup.resetClearFlag(1, 2, 0); }), indexWrite);
        EXPECT_EQ(failing(access, [&] { backup.markBlock(1, 2, 0); }), indexWrite);
    }
}

TEST_F(EFIBackup, ClearingStopsAtTheFirstFailureAndHoldsNoLock)
{
    const std::string indexWrite =
        error("EFIBackup writeIndexData: write error." + CODES + "select=0xa");
    const std::string failures[] = {
        error("EFIBackup clearExecute: initialize error." + CODES + "select=0x11)"),
        error("EFIBackup resetClearFlag: read error." + CODES + "select=0xa)"), indexWrite,
        indexWrite};
    for (std::size_t access = 1; access <= 8; ++access) {
        prepare({{64, 0x11}});
        eeproms.failAt(access);
        EXPECT_EQ(thrownBy([&] { backup.clearExecute(1, 2); }), failures[(access - 1) % 4])
            << access;
        eeproms.failNoMore();
        // The first block is done where the second one failed.
        const Bytes now = recordNow();
        EXPECT_EQ(now[64], access <= 4 ? 0x11 : 0x01) << access;
        eeproms.takeAccesses();
        // No lock is left: the next one goes through, on what the copy says is pending.
        EXPECT_EQ(backup.resetClearFlag(0, 0, 0), 0);
        EXPECT_EQ(backup.clearExecute(1, 2), 0);
    }
}

TEST_F(EFIBackup, OtherExceptionsPassThroughAndHoldNoLock)
{
    prepare({{64, 0x11}});
    unsigned char data[4] = {};
    const std::function<void()> operations[] = {
        [&] { backup.write(1, 2, 0, 4, data); }, [&] { backup.read(1, 2, 0, 4, data); },
        [&] { backup.checkIndexData(SERIAL); },  [&] { backup.setIndexData(true, SERIAL); },
        [&] { backup.writeIndexData(0, 0); },    [&] { backup.resetClearFlag(0, 0, 0); },
        [&] { backup.markBlock(0, 0, 0); },      [&] { backup.clearExecute(1, 2); },
    };
    const std::size_t accesses[] = {1, 1, 1, 2, 2, 3, 3, 8};
    for (std::size_t i = 0; i < std::size(operations); ++i) {
        for (std::size_t n = 1; n <= accesses[i]; ++n) {
            SCOPED_TRACE("operation " + std::to_string(i) + ", access " + std::to_string(n));
            eeproms.put(10, 0, record({{64, 0x11}}));
            ASSERT_TRUE(backup.checkIndexData(SERIAL));
            eeproms.failOtherwiseAt(n);
            EXPECT_THROW(operations[i](), OtherFailure);
            eeproms.failNoMore();
        }
    }
    // No lock is left.
    eeproms.put(10, 0, record({{64, 0x11}}));
    ASSERT_TRUE(backup.checkIndexData(SERIAL));
    EXPECT_EQ(backup.clearExecute(1, 2), 0);
    EXPECT_EQ(eeproms.get(10, 64, 1), Bytes({0}));
}

TEST_F(EFIBackup, FailedRecordLeavesTheStoreInvalid)
{
    eeproms.failAt(2);
    EXPECT_EQ(thrownBy([&] { backup.setIndexData(true, SERIAL); }).substr(41, 24),
              "EFIBackup writeIndexData");
    EXPECT_FALSE(backup.isValid());
    EXPECT_FALSE(backup.checkIndexData("other"));
}

TEST_F(EFIBackup, ThrownTextIsCutAtTheBuffer)
{
    EXPECT_EQ(thrownBy([&] { backup.setThrow(99, "%s", std::string(400, 'x').c_str()); }),
              error(std::string(255, 'x')));
}

namespace {

// Taken before any test ran.
const unsigned char STATE_AT_START = EFIBackupEEPROMIndex::IndexState;

}

TEST(EFIBackupProcess, BeginsWithAStateThatIsNotKnown)
{
    EXPECT_EQ(STATE_AT_START, 0xFF);
    MemoryEEPROMs eeproms;
    EFIBackupEEPROMIndex::IndexState = STATE_AT_START;
    EXPECT_FALSE(EFIBackupEEPROMData(eeproms).isValid());
    EFIBackupEEPROMIndex::IndexState = 2;
    EXPECT_FALSE(EFIBackupEEPROMData(eeproms).isValid());
}

TEST_F(EFIBackup, BlocksAboveFifteenAreThoseOfALaterGroup)
{
    prepare({{24, 0x11}, {16, 0x11}});
    // Block 16 of the first EEPROM has the flag of block 0 of the second.
    EXPECT_EQ(backup.resetClearFlag(0, 0, 65536), 0);
    EXPECT_EQ(eeproms.takeAccesses(), Lines({"r10@0+144", "w10@0+1", "w10@24+1"}));
    EXPECT_EQ(recordNow(), record({{24, 0x01}, {16, 0x11}}));
    EXPECT_EQ(backup.markBlock(0, 0, 65536), 0);
    EXPECT_EQ(eeproms.takeAccesses(), Lines({"r10@0+144", "w10@0+1", "w10@24+1"}));
    EXPECT_EQ(recordNow(), record({{24, 0x11}, {16, 0x11}}));
}

TEST_F(EFIBackup, DamagedRecordIsNotMadeSoundByABlockWithoutAFlag)
{
    prepare({{16, 0x11}});
    eeproms.at(10)[99] ^= 1;
    const Bytes damaged = recordNow();
    EXPECT_EQ(backup.resetClearFlag(3, 3, 65536), 0);
    EXPECT_EQ(backup.markBlock(3, 3, 65536), 0);
    EXPECT_EQ(backup.markBlock(0, 0, 0xFFFFFFFF), 0);
    EXPECT_EQ(eeproms.takeAccesses(), Lines({"r10@0+144", "r10@0+144", "r10@0+144"}));
    EXPECT_EQ(recordNow(), damaged);
    EXPECT_FALSE(backup.checkIndexData(SERIAL));
}

TEST_F(EFIBackup, PartitionsAndBanksAboveThreeHaveNoEEPROM)
{
    prepare({{16, 0x10}});
    // The device is asked for number -1, and its answer is passed on.
    unsigned char data[4] = {1, 2, 3, 4};
    eeproms.failAt(1, true);
    EXPECT_EQ(thrownBy([&] { backup.write(4, 0, 0, 4, data); }),
              error("EFIBackup write: write error." + CODES +
                    "select=0xffffffff offset=0x0 length=0x4)"));
    EXPECT_EQ(
        thrownBy([&] { backup.read(0, 4, 1, 4, data); }),
        error("EFIBackup read: read error." + CODES + "select=0xffffffff offset=0x1 length=0x4)"));
    eeproms.takeAccesses();
    // Flags go by the low two bits, EEPROMs do not.
    EXPECT_EQ(thrownBy([&] { backup.clearExecute(4, 0); }),
              error("EFIBackup clearExecute: initialize error." + CODES + "select=0xffffffff)"));
    EXPECT_EQ(eeproms.takeAccesses(), Lines({"w-1@0+4096"}));
    eeproms.failNoMore();
    EXPECT_EQ(recordNow(), record({{16, 0x10}}));
    EXPECT_EQ(backup.resetClearFlag(4, 4, 0), 0);
    EXPECT_EQ(recordNow(), record({}));
    EXPECT_EQ(backup.markBlock(7, 5, 4096), 0);
    EXPECT_EQ(recordNow(), record({{120, 0x01}}));
}
