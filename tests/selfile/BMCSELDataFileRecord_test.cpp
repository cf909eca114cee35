// SPDX-License-Identifier: Apache-2.0
// Records written to and read from the event file store.
#include <cerrno>
#include <filesystem>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include "StoreFixture.h"

using namespace testing_support;

namespace {

const Bytes UNTOUCHED = slotOf(0x7777, 0x33);

class StoreRecord : public StoreTest {
protected:
    Message out = fromBytes<Message>(UNTOUCHED);
};

using StoreWrite = StoreRecord;
using StoreRead = StoreRecord;
using StoreFirst = StoreRecord;
using StoreLast = StoreRecord;
using StoreByNumber = StoreRecord;

/// Puts a socket in the place of a file: it may be read, but open(2) refuses it.
void makeSocket(const std::string& path)
{
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    ASSERT_LT(path.size(), sizeof address.sun_path);
    path.copy(address.sun_path, path.size());
    const int fd = ::socket(AF_UNIX, SOCK_STREAM, 0);
    ASSERT_EQ(::bind(fd, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    ::close(fd);
}

}

TEST_F(StoreWrite, AppendsBehindTheLastRecord)
{
    writeFile(working(), fileOf(2));
    auto record = fromBytes<Message>(slotOf(77));
    EXPECT_EQ(store.writeRecord(SB, record), 1);
    Bytes expected = fileOf(2);
    const Bytes slot = slotOf(77);
    std::copy(slot.begin(), slot.end(), expected.begin() + 2 * 138);
    EXPECT_EQ(readFile(working()), expected);
    EXPECT_EQ(trace.lines(), Lines());
}

TEST_F(StoreWrite, FillsEightHundredSlotsAndNoMore)
{
    store.truncate(SB, 0, 0);
    for (unsigned int id = 1; id <= 800; ++id) {
        auto record = fromBytes<Message>(slotOf(id));
        ASSERT_EQ(store.writeRecord(SB, record), 1) << id;
    }
    EXPECT_EQ(readFile(working()), fileOf(800));
    auto record = fromBytes<Message>(slotOf(801));
    EXPECT_EQ(store.writeRecord(SB, record), 0);
    EXPECT_EQ(readFile(working()), fileOf(800));
    EXPECT_EQ(store.fullEntryCheck(SB), 2U);
    EXPECT_EQ(trace.lines(), Lines());
}

TEST_F(StoreWrite, StoresOnlyCompleteRecords)
{
    writeFile(working(), fileOf(2));
    for (const std::size_t length : {2U, 18U, 130U, 137U}) {
        auto record = fromBytes<Message>(part(slotOf(77), 0, length));
        EXPECT_EQ(store.writeRecord(SB, record), 0) << length;
    }
    EXPECT_EQ(readFile(working()), fileOf(2));
    EXPECT_EQ(trace.lines(), Lines());
}

TEST_F(StoreWrite, NeedsAWorkingFileAndDoesNotCreateIt)
{
    auto record = fromBytes<Message>(slotOf(77));
    EXPECT_EQ(store.writeRecord(SB, record), 0);
    EXPECT_FALSE(fileExists(working()));
}

TEST_F(StoreWrite, DamagedTailIsLeftAlone)
{
    Bytes damaged = fileOf(2);
    damaged[2 * 138 + 50] = 0;
    writeFile(working(), damaged);
    auto record = fromBytes<Message>(slotOf(77));
    EXPECT_EQ(store.writeRecord(SB, record), 0);
    EXPECT_EQ(readFile(working()), damaged);
}

TEST_F(StoreWrite, FileThatCannotBeWrittenIsTraced)
{
    writeFile(root.at("/tmp/target"), fileOf(2));
    std::filesystem::create_symlink(root.at("/tmp/target"), working());
    auto record = fromBytes<Message>(slotOf(77));
    EXPECT_EQ(store.writeRecord(SB, record), 0);
    EXPECT_EQ(trace.lines(), Lines({line("writeRecord")}));
    EXPECT_EQ(readFile(root.at("/tmp/target")), fileOf(2));
}

TEST_F(StoreWrite, RecordIdFFFFIsStoredAndDamagesTheTail)
{
    writeFile(working(), fileOf(2));
    auto record = fromBytes<Message>(slotOf(0xFFFF));
    EXPECT_EQ(store.writeRecord(SB, record), 1);
    EXPECT_EQ(store.fullEntryCheck(SB), 3U);
}

TEST_F(StoreRead, FindsARecordInTheWorkingFile)
{
    writeFile(working(), fileOf(3, 10));
    for (const unsigned short id : {10, 11, 12}) {
        EXPECT_EQ(store.readRecord(SB, id, out), 0U);
        EXPECT_EQ(imageOf(out), slotOf(id));
    }
    EXPECT_EQ(trace.lines(), Lines());
}

TEST_F(StoreRead, FindsARecordInARotatedFile)
{
    writeFile(working(), fileOf(3, 10));
    writeFile(kept(1), fileOf(800, 900));
    EXPECT_EQ(store.readRecord(SB, 1000, out), 0U);
    EXPECT_EQ(imageOf(out), slotOf(1000));
    EXPECT_EQ(store.readRecord(SB, 900, out), 0U);
    EXPECT_EQ(store.readRecord(SB, 1699, out), 0U);
    EXPECT_EQ(trace.lines(), Lines());
}

TEST_F(StoreRead, MissingRotatedFileEndsTheSearchWithCodeFour)
{
    writeFile(working(), fileOf(3, 10));
    writeFile(kept(1), fileOf(800, 900));
    for (const unsigned short id : {5, 9, 13, 899, 1700}) {
        EXPECT_EQ(store.readRecord(SB, id, out), 4U) << id;
        EXPECT_EQ(trace.take(), Lines({openFailed(kept(2), ENOENT)}));
    }
    EXPECT_EQ(imageOf(out), UNTOUCHED);
}

TEST_F(StoreRead, MissingWorkingFileIsCodeFour)
{
    writeFile(kept(1), fileOf(800, 900));
    EXPECT_EQ(store.readRecord(SB, 1000, out), 4U);
}

TEST_F(StoreRead, EmptyWorkingFileIsCodeOneWhateverTheChainHolds)
{
    writeFile(working(), fileOf(0));
    writeFile(kept(1), fileOf(800, 900));
    EXPECT_EQ(store.readRecord(SB, 1000, out), 1U);
    EXPECT_EQ(store.readRecord(SB, 0xFFFF, out), 1U);
    EXPECT_EQ(imageOf(out), UNTOUCHED);
}

TEST_F(StoreRead, FullWorkingFileHidesEveryRecord)
{
    writeFile(working(), fileOf(800));
    writeFile(kept(1), fileOf(800, 900));
    EXPECT_EQ(store.readRecord(SB, 5, out), 15U);
    EXPECT_EQ(store.readRecord(SB, 1000, out), 15U);
    EXPECT_EQ(imageOf(out), UNTOUCHED);
}

TEST_F(StoreRead, SearchesAllSevenRotatedFiles)
{
    writeFile(working(), fileOf(3, 10000));
    for (int i = 1; i <= 7; ++i) {
        writeFile(kept(i), fileOf(800, 9000 - static_cast<unsigned int>(i) * 1000));
    }
    EXPECT_EQ(store.readRecord(SB, 2001, out), 0U);
    EXPECT_EQ(imageOf(out), slotOf(2001));
    EXPECT_EQ(store.readRecord(SB, 1, out), 15U);
    EXPECT_EQ(trace.lines(), Lines());
}

TEST_F(StoreRead, IdsMayWrapInsideAFile)
{
    writeFile(working(), fileOf(3, 1000));
    writeFile(kept(1), fileOf(800, 65000)); // 65000 to 65534, then 0 to 264
    for (const unsigned short id : {65000, 65100, 65534, 0, 100, 264}) {
        EXPECT_EQ(store.readRecord(SB, id, out), 0U) << id;
        EXPECT_EQ(imageOf(out), slotOf(id)) << id;
    }
    for (const unsigned short id : {265, 300, 64999}) {
        EXPECT_EQ(store.readRecord(SB, id, out), 4U) << id;
    }
}

TEST_F(StoreRead, IdsMayWrapInsideTheWorkingFile)
{
    writeFile(working(), fileOf(5, 65533)); // 65533, 65534, 0, 1, 2
    EXPECT_EQ(store.readRecord(SB, 65534, out), 0U);
    EXPECT_EQ(store.readRecord(SB, 2, out), 0U);
    EXPECT_EQ(store.readRecord(SB, 3, out), 4U);
}

TEST_F(StoreRead, IdInTheRangeThatIsMissingIsNotFound)
{
    Bytes file = fileOf(3, 10);
    const Bytes slot = slotOf(20);
    std::copy(slot.begin(), slot.end(), file.begin() + 138);
    writeFile(working(), file);
    EXPECT_EQ(store.readRecord(SB, 11, out), 15U);
    EXPECT_EQ(imageOf(out), UNTOUCHED);
}

TEST_F(StoreRead, IdFFFFIsNeverRead)
{
    writeFile(working(), fileOf(3, 10));
    EXPECT_EQ(store.readRecord(SB, 0xFFFF, out), 4U);
    // Not even where the range takes it in: the first such slot is an empty one.
    writeFile(working(), fileOf(5, 65533));
    EXPECT_EQ(store.readRecord(SB, 0xFFFF, out), 0U);
    EXPECT_EQ(imageOf(out), Bytes(138, 0xFF));
}

TEST_F(StoreRead, DamagedWorkingFileIsNotFound)
{
    Bytes damaged = fileOf(3);
    damaged[3 * 138] = 0;
    writeFile(working(), damaged);
    EXPECT_EQ(store.readRecord(SB, 2, out), 15U);
}

TEST_F(StoreRead, ShortFilesAreCodeTen)
{
    writeFile(working(), Bytes());
    EXPECT_EQ(store.readRecord(SB, 2, out), 10U);
    writeFile(working(), part(fileOf(800), 0, 1000));
    EXPECT_EQ(store.readRecord(SB, 2, out), 10U);
    writeFile(working(), fileOf(3, 10));
    writeFile(kept(1), part(fileOf(800, 900), 0, FULL_FILE - 1));
    EXPECT_EQ(store.readRecord(SB, 1000, out), 10U);
    std::filesystem::remove(kept(1));
    std::filesystem::create_directory(kept(1));
    trace.take();
    EXPECT_EQ(store.readRecord(SB, 1000, out), 10U);
    EXPECT_EQ(trace.lines(), Lines({line("read failed: errno 21")}));
    EXPECT_EQ(imageOf(out), UNTOUCHED);
}

TEST_F(StoreFirst, ReadsTheOldestRecord)
{
    writeFile(working(), fileOf(3, 10));
    EXPECT_EQ(store.readFirstRecord(SB, out), 1);
    EXPECT_EQ(imageOf(out), slotOf(10));
    writeFile(kept(2), fileOf(800, 500));
    EXPECT_EQ(store.readFirstRecord(SB, out), 1);
    EXPECT_EQ(imageOf(out), slotOf(500));
    writeFile(kept(7), fileOf(1, 100));
    EXPECT_EQ(store.readFirstRecord(SB, out), 1);
    EXPECT_EQ(imageOf(out), slotOf(100));
}

TEST_F(StoreFirst, HighestFileDecidesEvenWhenItIsEmpty)
{
    writeFile(working(), fileOf(3, 10));
    writeFile(kept(7), fileOf(0));
    EXPECT_EQ(store.readFirstRecord(SB, out), 0);
    EXPECT_EQ(imageOf(out), UNTOUCHED);
}

TEST_F(StoreFirst, NoFileOrAShortFileIsZero)
{
    EXPECT_EQ(store.readFirstRecord(SB, out), 0);
    writeFile(working(), part(slotOf(1), 0, 137));
    EXPECT_EQ(store.readFirstRecord(SB, out), 0);
    EXPECT_EQ(imageOf(out), UNTOUCHED);
}

TEST_F(StoreFirst, FileThatMayNotBeReadIsZero)
{
    std::filesystem::remove_all(root.at("/var/tav"));
    writeFile(root.at("/var/tav"), "a file where a folder should be");
    writeFile(working(), fileOf(3, 10));
    EXPECT_EQ(store.readFirstRecord(SB, out), 0);
    EXPECT_EQ(imageOf(out), UNTOUCHED);
}

TEST_F(StoreFirst, FileThatCannotBeOpenedIsOneWithTheRecordUntouched)
{
    makeSocket(kept(3));
    EXPECT_EQ(store.readFirstRecord(SB, out), 1);
    EXPECT_EQ(imageOf(out), UNTOUCHED);
    EXPECT_EQ(trace.lines(), Lines({openFailed(kept(3), ENXIO)}));
}

TEST_F(StoreLast, ReadsTheNewestRecordOfOneFile)
{
    writeFile(kept(3), fileOf(800, 500));
    EXPECT_EQ(store.readLastRecordEx(SB, 3, out, 1), 1);
    EXPECT_EQ(imageOf(out), slotOf(1299));
    writeFile(kept(0), fileOf(1, 42));
    EXPECT_EQ(store.readLastRecordEx(SB, 0, out, 1), 1);
    EXPECT_EQ(imageOf(out), slotOf(42));
    EXPECT_EQ(trace.lines(), Lines());
}

TEST_F(StoreLast, EmptyDamagedOrMissingFileIsZero)
{
    writeFile(working(), fileOf(0));
    EXPECT_EQ(store.readLastRecordEx(SB, 0, out, 0), 0);
    Bytes damaged = fileOf(3);
    damaged[3 * 138] = 0;
    writeFile(working(), damaged);
    EXPECT_EQ(store.readLastRecordEx(SB, 0, out, 0), 0);
    EXPECT_EQ(store.readLastRecordEx(SB, 5, out, 1), 0);
    EXPECT_EQ(imageOf(out), UNTOUCHED);
}

TEST_F(StoreLast, ReadsTheWorkingFileFirstAndThenTheNewestRotatedOne)
{
    writeFile(working(), fileOf(3, 10));
    writeFile(kept(1), fileOf(800, 500));
    EXPECT_EQ(store.readLastRecord(SB, out), 1);
    EXPECT_EQ(imageOf(out), slotOf(12));
    writeFile(working(), fileOf(0));
    EXPECT_EQ(store.readLastRecord(SB, out), 1);
    EXPECT_EQ(imageOf(out), slotOf(1299));
}

TEST_F(StoreLast, ReadsAFullWorkingFile)
{
    writeFile(working(), fileOf(800, 10));
    EXPECT_EQ(store.readLastRecord(SB, out), 1);
    EXPECT_EQ(imageOf(out), slotOf(809));
}

TEST_F(StoreLast, NothingThereIsZero)
{
    writeFile(working(), fileOf(0));
    EXPECT_EQ(store.readLastRecord(SB, out), 0);
    EXPECT_EQ(imageOf(out), UNTOUCHED);
}

TEST_F(StoreByNumber, CountsFromTheOldestRecord)
{
    writeFile(working(), fileOf(5, 2000));
    writeFile(kept(1), fileOf(800, 1000));
    writeFile(kept(2), fileOf(800, 100));
    const struct {
        unsigned short logNum;
        unsigned int id;
    } expected[] = {{1, 100},     {2, 101},     {800, 899},  {801, 1000},
                    {1600, 1799}, {1601, 2000}, {1605, 2004}};
    for (const auto& each : expected) {
        EXPECT_EQ(store.readStoredRecord(SB, each.logNum, out), 0U) << each.logNum;
        EXPECT_EQ(imageOf(out), slotOf(each.id)) << each.logNum;
    }
    EXPECT_EQ(trace.lines(), Lines());
}

TEST_F(StoreByNumber, NumberBeyondTheTotalIsNotFound)
{
    writeFile(working(), fileOf(5, 2000));
    writeFile(kept(1), fileOf(800, 1000));
    EXPECT_EQ(store.readStoredRecord(SB, 805, out), 0U);
    out = fromBytes<Message>(UNTOUCHED);
    EXPECT_EQ(store.readStoredRecord(SB, 806, out), 15U);
    EXPECT_EQ(trace.take(), Lines({line("BMCSELDataFile::readStoredRecord logNum over(806)")}));
    EXPECT_EQ(imageOf(out), UNTOUCHED);
}

TEST_F(StoreByNumber, NumberZeroIsAMismatch)
{
    writeFile(working(), fileOf(5, 2000));
    EXPECT_EQ(store.readStoredRecord(SB, 0, out), 15U);
    EXPECT_EQ(trace.take(), Lines({line("BMCSELDataFile::readStoredRecord SB#1 SEL entry total is "
                                        "mismatch(5)")}));
    EXPECT_EQ(imageOf(out), UNTOUCHED);
}

TEST_F(StoreByNumber, EmptyLogIsNotFound)
{
    writeFile(working(), fileOf(0));
    EXPECT_EQ(store.readStoredRecord(SB, 1, out), 15U);
    EXPECT_EQ(trace.take(),
              Lines({line("BMCSELDataFile::readStoredRecord SB#1 SEL entry is not exists")}));
}

TEST_F(StoreByNumber, FailureToCountIsItsCode)
{
    std::filesystem::remove_all(root.at("/var/tav"));
    writeFile(root.at("/var/tav"), "a file where a folder should be");
    EXPECT_EQ(store.readStoredRecord(SB, 1, out), 14U);
    EXPECT_EQ(trace.take(),
              Lines({line("BMCSELDataFile::getEntryNumEx SB#1 sel1 stat(20)"),
                     line("BMCSELDataFile::readStoredRecord SB#1 failed to get SEL entry num")}));
}

TEST_F(StoreByNumber, FilesThatCountNothingArePassedOver)
{
    writeFile(working(), fileOf(2, 2000));
    Bytes damaged = fileOf(3);
    damaged[3 * 138] = 0;
    writeFile(kept(1), damaged);
    writeFile(kept(2), fileOf(1, 100));
    EXPECT_EQ(store.readStoredRecord(SB, 1, out), 0U);
    EXPECT_EQ(imageOf(out), slotOf(100));
    EXPECT_EQ(store.readStoredRecord(SB, 2, out), 0U);
    EXPECT_EQ(imageOf(out), slotOf(2000));
}

TEST_F(StoreRecord, LeavesNoDescriptorOpen)
{
    writeFile(working(), fileOf(5, 2000));
    writeFile(kept(1), fileOf(800, 1000));
    const std::size_t before = openDescriptors();
    store.readRecord(SB, 1000, out);
    store.readRecord(SB, 3000, out);
    store.readFirstRecord(SB, out);
    store.readLastRecord(SB, out);
    store.readStoredRecord(SB, 1, out);
    store.writeRecord(SB, out);
    EXPECT_EQ(openDescriptors(), before);
}
