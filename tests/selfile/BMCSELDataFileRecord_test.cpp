// SPDX-License-Identifier: Apache-2.0
// Records written to and read from the event file store.
#include <cerrno>
#include <fcntl.h>
#include <filesystem>
#include <functional>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>
#include <utility>

#include <recordkit/host/TraceLog.h>

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

TEST_F(StoreWrite, FilesOfAnotherSizeTakeARecordWhereTheyHaveAnEmptySlot)
{
    auto record = fromBytes<Message>(slotOf(77));
    const struct {
        Bytes before;
        std::size_t slot;
    } rows[] = {{part(fileOf(5), 0, 6 * SLOT), 5},
                {part(fileOf(0), 0, SLOT), 0},
                {fileOf(800) + Bytes(SLOT, 0xFF), 800},
                {fileOf(800) + slotOf(1) + Bytes(2 * SLOT, 0xFF), 801},
                {part(fileOf(5), 0, 6 * SLOT + 100), 5}};
    for (const auto& row : rows) {
        writeFile(working(), row.before);
        EXPECT_EQ(store.writeRecord(SB, record), 1) << row.slot;
        Bytes expected = row.before;
        const Bytes slot = slotOf(77);
        std::copy(slot.begin(), slot.end(), expected.begin() + static_cast<long>(row.slot * SLOT));
        EXPECT_EQ(readFile(working()), expected) << row.slot;
    }
    EXPECT_EQ(trace.lines(), Lines());
}

TEST_F(StoreWrite, FilesOfAnotherSizeWithoutAnEmptySlotStayAsTheyAre)
{
    auto record = fromBytes<Message>(slotOf(77));
    for (const Bytes& file :
         {Bytes(), slotOf(1), part(fileOf(5), 0, 5 * SLOT), part(fileOf(5), 0, 5 * SLOT + 137),
          fileOf(800) + slotOf(801), part(fileOf(800), 0, FULL_FILE - 1)}) {
        writeFile(working(), file);
        EXPECT_EQ(store.writeRecord(SB, record), 0) << file.size();
        EXPECT_EQ(readFile(working()), file);
        EXPECT_EQ(trace.take(), Lines());
    }
    // The last bytes do not reach a record id.
    writeFile(working(), part(fileOf(5), 0, 5 * SLOT + 3));
    EXPECT_EQ(store.writeRecord(SB, record), 0);
    EXPECT_EQ(trace.take(), Lines({line("searchRecord")}));
    // One byte is refused as an image, too, and that once.
    writeFile(working(), part(fileOf(5), 0, 5 * SLOT + 1));
    EXPECT_EQ(store.writeRecord(SB, record), 0);
    const Lines lines = trace.take();
    ASSERT_EQ(lines.size(), 4U);
    EXPECT_EQ(lines[0], "1:83:0x0900 level 0: SELEntry::setSerialized: 1 where 2 is needed");
    EXPECT_EQ(lines[3], line("searchRecord"));
}

TEST_F(StoreWrite, FolderInThePlaceOfTheFileIsReportedByTheSearch)
{
    std::filesystem::create_directory(working());
    auto record = fromBytes<Message>(slotOf(77));
    EXPECT_EQ(store.writeRecord(SB, record), 0);
    EXPECT_EQ(trace.lines(), Lines({line("read failed: errno 21")}));
}

TEST_F(StoreWrite, MissingFileIsReportedAndNotCreated)
{
    auto record = fromBytes<Message>(slotOf(77));
    EXPECT_EQ(store.writeRecord(SB, record), 0);
    EXPECT_EQ(trace.lines(), Lines({openFailed(working(), ENOENT)}));
    EXPECT_EQ(listFolder(root.at("/tmp")), Lines());
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

TEST_F(StoreRead, IdFFFFIsSearchedLikeAnyOther)
{
    writeFile(working(), fileOf(3, 10));
    EXPECT_EQ(store.readRecord(SB, 0xFFFF, out), 4U);
    EXPECT_EQ(imageOf(out), UNTOUCHED);
    // If the range includes it, the first slot with that id is an empty one.
    writeFile(working(), fileOf(5, 65533));
    EXPECT_EQ(store.readRecord(SB, 0xFFFF, out), 0U);
    EXPECT_EQ(imageOf(out), Bytes(138, 0xFF));
}

TEST_F(StoreRead, ClearedRotatedFilesHaveIdFFFFAndNoOther)
{
    ASSERT_EQ(store.clearAllRecord(SB), 0U);
    EXPECT_EQ(store.readRecord(SB, 0xFFFF, out), 1U); // the working file is empty
    EXPECT_EQ(store.readRecord(SB, 5, out), 1U);
    writeFile(working(), fileOf(3, 10));
    EXPECT_EQ(store.readRecord(SB, 5, out), 15U); // all seven files are examined
    EXPECT_EQ(imageOf(out), UNTOUCHED);
    EXPECT_EQ(store.readRecord(SB, 0xFFFF, out), 0U);
    EXPECT_EQ(imageOf(out), Bytes(138, 0xFF));
    EXPECT_EQ(store.readRecord(SB, 12, out), 0U);
    EXPECT_EQ(trace.lines(), Lines());
}

TEST_F(StoreRead, RotatedFileThatCannotBePositionedIsCodeEight)
{
    writeFile(working(), fileOf(3, 10));
    ASSERT_EQ(::mkfifo(kept(1).c_str(), 0600), 0);
    const int fd = ::open(kept(1).c_str(), O_RDWR | O_NONBLOCK);
    ASSERT_GE(fd, 0);
    const Bytes slot = slotOf(900);
    ASSERT_EQ(::write(fd, slot.data(), slot.size()), static_cast<ssize_t>(slot.size()));
    EXPECT_EQ(store.readRecord(SB, 1000, out), 8U);
    EXPECT_EQ(trace.take(), Lines({line("lseek failed: errno 29")}));
    EXPECT_EQ(imageOf(out), UNTOUCHED);
    ::close(fd);
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

TEST_F(StoreLast, FallsBackToTheNewestRotatedFileWhereTheWorkingFileGivesNothing)
{
    writeFile(kept(1), fileOf(2, 500));
    writeFile(kept(2), fileOf(800, 100));
    // Missing, damaged, or without an end.
    EXPECT_EQ(store.readLastRecord(SB, out), 1);
    EXPECT_EQ(imageOf(out), slotOf(501));
    Bytes damaged = fileOf(3);
    damaged[3 * SLOT] = 0;
    for (const Bytes& file : {damaged, Bytes(), slotOf(9), fileOf(800) + slotOf(801)}) {
        out = fromBytes<Message>(UNTOUCHED);
        writeFile(working(), file);
        EXPECT_EQ(store.readLastRecord(SB, out), 1);
        EXPECT_EQ(imageOf(out), slotOf(501));
    }
    // No further: the second rotated file is not searched.
    writeFile(kept(1), fileOf(0));
    EXPECT_EQ(store.readLastRecord(SB, out), 0);
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

namespace {

/// A trace sink that lets something happen to the files while an operation is under way.
class Meanwhile {
public:
    /// `action` runs once, with the first trace line.
    explicit Meanwhile(std::function<void()> action)
        : before(TAVLib::host::setTraceSink([action, done = false](const auto&) mutable {
              if (!std::exchange(done, true)) {
                  action();
              }
          }))
    {
    }
    ~Meanwhile() { TAVLib::host::setTraceSink(before); }
    Meanwhile(const Meanwhile&) = delete;
    Meanwhile& operator=(const Meanwhile&) = delete;

private:
    TAVLib::host::TraceSink before;
};

/// A log whose third file is damaged: it is traced when it is counted, after the second one was.
class StoreMeanwhile : public StoreRecord {
protected:
    StoreMeanwhile()
    {
        writeFile(working(), fileOf(2, 2000));
        writeFile(kept(1), fileOf(800, 1000));
        writeFile(kept(2), Bytes(FULL_FILE, 0x11)); // full
        Bytes damaged = fileOf(3);
        damaged[3 * SLOT] = 0;
        writeFile(kept(3), damaged);
    }
    /// Reads log number 806, which is slot 5 of the second file, after something happened to it.
    unsigned int readAfter(const std::function<void()>& action)
    {
        const Meanwhile meanwhile(action);
        return store.readStoredRecord(SB, 806, out);
    }
};

}

TEST_F(StoreMeanwhile, FileThatIsGoneAfterCountingIsCodeFour)
{
    EXPECT_EQ(readAfter([] {}), 0U);
    EXPECT_EQ(imageOf(out), slotOf(1005));
    out = fromBytes<Message>(UNTOUCHED);
    EXPECT_EQ(readAfter([&] { std::filesystem::remove(kept(1)); }), 4U);
    EXPECT_EQ(imageOf(out), UNTOUCHED);
}

TEST_F(StoreMeanwhile, PipeInThePlaceOfACountedFileIsCodeEight)
{
    int fd = -1;
    EXPECT_EQ(readAfter([&] {
                  std::filesystem::remove(kept(1));
                  ASSERT_EQ(::mkfifo(kept(1).c_str(), 0600), 0);
                  fd = ::open(kept(1).c_str(), O_RDWR | O_NONBLOCK);
              }),
              8U);
    EXPECT_EQ(imageOf(out), UNTOUCHED);
    ::close(fd);
}

TEST_F(StoreMeanwhile, FolderInThePlaceOfACountedFileIsCodeTen)
{
    EXPECT_EQ(readAfter([&] {
                  std::filesystem::remove(kept(1));
                  std::filesystem::create_directory(kept(1));
              }),
              10U);
    EXPECT_EQ(imageOf(out), UNTOUCHED);
}

TEST_F(StoreMeanwhile, FileThatBecameShortAfterCountingGivesWhatItHasAndZeroes)
{
    EXPECT_EQ(readAfter([&] { std::filesystem::resize_file(kept(1), 5 * SLOT + 20); }), 0U);
    EXPECT_EQ(imageOf(out), part(slotOf(1005), 0, 20) + Bytes(118, 0));
    writeFile(kept(1), fileOf(800, 1000));
    EXPECT_EQ(readAfter([&] { std::filesystem::resize_file(kept(1), 100); }), 0U);
    EXPECT_EQ(imageOf(out), Bytes(138, 0));
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
