// SPDX-License-Identifier: Apache-2.0
// Names, primitives and scans of the event file store.
#include <cerrno>
#include <filesystem>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "StoreFixture.h"

using namespace testing_support;

namespace {

class StoreScan : public StoreTest {
protected:
    /// Code and address of a search in a file with these bytes.
    std::pair<unsigned int, unsigned long> searchIn(const Bytes& bytes, unsigned short id)
    {
        writeFile(working(), bytes);
        unsigned long addr = 4711;
        const unsigned int code = store.searchRecord(working(), id, found, addr);
        return {code, addr};
    }

    std::pair<unsigned int, unsigned long> tailOf(const Bytes& bytes)
    {
        writeFile(working(), bytes);
        unsigned long addr = 4711;
        const unsigned int code = store.getTailAddr(SB, addr);
        return {code, addr};
    }

    std::pair<unsigned int, unsigned long> lastOf(const Bytes& bytes)
    {
        writeFile(working(), bytes);
        unsigned long addr = 4711;
        const unsigned int code = store.getLastRecAddr(SB, addr);
        return {code, addr};
    }

    Message found;
};

using Result = std::pair<unsigned int, unsigned long>;

}

TEST_F(StoreScan, NamesTheFilesOfABoard)
{
    EXPECT_EQ(store.getFileName(3, 5, 0), root.at("/var/tav/fmem/ipmi/sb3_bmc_sel5"));
    EXPECT_EQ(store.getFileName(3, 5, 1), root.at("/var/tav/fmem/ipmi/sb3_bmc_sel5"));
    EXPECT_EQ(store.getFileName(12, 0, 0), root.at("/tmp/sb12_bmc_sel0"));
    EXPECT_EQ(store.getFileName(12, 0, 1), root.at("/var/tav/fmem/ipmi/sb12_bmc_sel0"));
    EXPECT_EQ(store.getFileName(12, 0, -1), root.at("/var/tav/fmem/ipmi/sb12_bmc_sel0"));
    EXPECT_EQ(store.getFileName(255, -1, 0), root.at("/var/tav/fmem/ipmi/sb255_bmc_sel-1"));
    EXPECT_EQ(store.getFileName(0, 10, 7), root.at("/var/tav/fmem/ipmi/sb0_bmc_sel10"));
}

TEST_F(StoreScan, PrimitivesGiveTheResultsOfTheSystem)
{
    writeFile(working(), "abcdef");
    const int fd = store.openFile(working());
    ASSERT_GE(fd, 0);
    EXPECT_NE(::fcntl(fd, F_GETFD) & FD_CLOEXEC, 0);
    EXPECT_EQ(store.lseek(fd, 2, SEEK_SET), 2);
    char text[8] = {};
    EXPECT_EQ(store.read(fd, text, 3), 3);
    EXPECT_STREQ(text, "cde");
    EXPECT_EQ(store.read(fd, text, 8), 1);
    EXPECT_EQ(store.read(fd, text, 8), 0);
    EXPECT_EQ(store.closeFile(fd), 0);
    EXPECT_EQ(trace.lines(), Lines());
}

TEST_F(StoreScan, PrimitivesTraceTheirFailures)
{
    EXPECT_LT(store.openFile(root.at("/none")), 0);
    EXPECT_EQ(trace.take(), Lines({openFailed(root.at("/none"), ENOENT)}));
    EXPECT_LT(store.lseek(-1, 0, SEEK_SET), 0);
    EXPECT_EQ(trace.take(), Lines({line("lseek failed: errno 9")}));
    char byte = 0;
    EXPECT_LT(store.read(-1, &byte, 1), 0);
    EXPECT_EQ(trace.take(), Lines({line("read failed: errno 9")}));
    EXPECT_LT(store.closeFile(-1), 0);
    EXPECT_EQ(trace.take(), Lines({line("close failed: errno 9")}));
}

TEST_F(StoreScan, LongTracesAreCut)
{
    store.writeTrace(7, 20003, "%s-%d", std::string(300, 'a').c_str(), 1);
    EXPECT_EQ(trace.take(), Lines({"1:83:0x1000 level 7: " + std::string(119, 'a')}));
    store.writeTrace(0, 20003, "%s-%d", "short", 1);
    EXPECT_EQ(trace.take(), Lines({line("short-1")}));
    const std::string path = "/" + std::string(300, 'b');
    EXPECT_LT(store.openFile(path), 0);
    EXPECT_EQ(trace.take(), Lines({openFailed(path.substr(0, 255), ENAMETOOLONG)}));
}

TEST_F(StoreScan, SearchFindsTheFirstSlotWithTheId)
{
    Bytes file = fileOf(800);
    const Bytes twin = slotOf(5, 0x90);
    std::copy(twin.begin(), twin.end(), file.begin() + 700 * 138);
    for (const unsigned short id : {1, 2, 159, 160, 161, 320, 321, 799, 800}) {
        EXPECT_EQ(searchIn(file, id), Result(0, (id - 1U) * 138)) << id;
        EXPECT_EQ(imageOf(found), slotOf(id)) << id;
    }
    EXPECT_EQ(searchIn(file, 5), Result(0, 4 * 138));
    EXPECT_EQ(imageOf(found), slotOf(5));
    EXPECT_EQ(trace.lines(), Lines());
}

TEST_F(StoreScan, SearchThatFindsNothingEndsBehindTheFileAndLeavesTheRecord)
{
    found = fromBytes<Message>(slotOf(0x1234));
    EXPECT_EQ(searchIn(fileOf(800), 900), Result(15, FULL_FILE));
    EXPECT_EQ(searchIn(Bytes(), 1), Result(15, 0));
    EXPECT_EQ(searchIn(slotOf(1), 2), Result(15, 138));
    EXPECT_EQ(imageOf(found), slotOf(0x1234));
    EXPECT_EQ(trace.lines(), Lines());
}

TEST_F(StoreScan, SearchGoesOnBehindEightHundredSlots)
{
    const Bytes file = fileOf(800) + slotOf(1000) + slotOf(1001);
    EXPECT_EQ(searchIn(file, 1001), Result(0, 801 * 138));
    EXPECT_EQ(searchIn(file, 1002), Result(15, 802 * 138));
}

TEST_F(StoreScan, SearchInAMissingFileIsCodeFour)
{
    unsigned long addr = 4711;
    EXPECT_EQ(store.searchRecord(root.at("/none"), 1, found, addr), 4U);
    EXPECT_EQ(addr, 0U);
    EXPECT_EQ(trace.lines(), Lines({openFailed(root.at("/none"), ENOENT)}));
}

TEST_F(StoreScan, SearchInAFolderEndsWithATracedReadError)
{
    unsigned long addr = 4711;
    EXPECT_EQ(store.searchRecord(root.at("/tmp"), 1, found, addr), 15U);
    EXPECT_EQ(addr, 0U);
    EXPECT_EQ(trace.lines(), Lines({line("read failed: errno 21")}));
}

TEST_F(StoreScan, SearchInAPipeFailsToPosition)
{
    ASSERT_EQ(::mkfifo(working().c_str(), 0600), 0);
    const int fd = ::open(working().c_str(), O_RDWR | O_NONBLOCK);
    ASSERT_GE(fd, 0);
    const Bytes slots = slotOf(1) + slotOf(2);
    ASSERT_EQ(::write(fd, slots.data(), slots.size()), static_cast<ssize_t>(slots.size()));
    unsigned long addr = 0;
    EXPECT_EQ(store.searchRecord(working(), 2, found, addr), 8U);
    EXPECT_EQ(addr, 138U);
    EXPECT_EQ(trace.take(), Lines({line("lseek failed: errno 29")}));
    // The first slot was read from the pipe, the second one is still there.
    EXPECT_EQ(store.searchRecord(working(), 2, found, addr), 0U);
    EXPECT_EQ(addr, 0U);
    ::close(fd);
}

TEST_F(StoreScan, ShortLastSlotIsStillParsed)
{
    const Bytes file = part(fileOf(800), 0, 1000); // seven slots and 34 bytes
    EXPECT_EQ(searchIn(file, 8), Result(0, 966));
    EXPECT_EQ(imageOf(found), part(slotOf(8), 0, 34) + Bytes(104, 0));
    EXPECT_EQ(searchIn(file, 9), Result(15, 1104));
    EXPECT_EQ(searchIn(part(fileOf(800), 0, 970), 8), Result(0, 966));
    EXPECT_EQ(searchIn(part(fileOf(800), 0, 970), 9), Result(15, 1104));
    EXPECT_EQ(trace.lines(), Lines());
}

TEST_F(StoreScan, LastSlotWithoutARecordIdIsCodeTen)
{
    EXPECT_EQ(searchIn(part(fileOf(800), 0, 969), 9), Result(10, 966));
    EXPECT_EQ(trace.take(), Lines({line("searchRecord")}));
    EXPECT_EQ(searchIn(part(fileOf(800), 0, 968), 9), Result(10, 966));
    EXPECT_EQ(trace.take(), Lines({line("searchRecord")}));
    EXPECT_EQ(searchIn(part(fileOf(800), 0, 967), 9), Result(10, 966));
    EXPECT_EQ(trace.take(),
              Lines({"1:83:0x0900 level 0: SELEntry::setSerialized: 1 where 2 is needed",
                     "1:83:0x1300 level 0: failed: "
                     "BMCSELEntry::setSerialized(SELEntry::setSerialized)",
                     "1:83:0x1400 level 0: failed: "
                     "BMCSELEntryMessage::setSerialized(BMCSELEntry::setSerialized)",
                     line("searchRecord")}));
}

TEST_F(StoreScan, TailIsTheFirstEmptySlot)
{
    for (const std::size_t count : {0U, 1U, 2U, 159U, 160U, 161U, 400U, 798U, 799U}) {
        EXPECT_EQ(tailOf(fileOf(count)), Result(0, count * 138)) << count;
    }
    EXPECT_EQ(trace.lines(), Lines());
}

TEST_F(StoreScan, FullFileIsCodeTwo)
{
    EXPECT_EQ(tailOf(fileOf(800)), Result(2, FULL_FILE));
}

TEST_F(StoreScan, FullFileOfAnotherSizeIsNotFound)
{
    EXPECT_EQ(tailOf(part(fileOf(800), 0, 799 * 138)), Result(15, 799 * 138));
    EXPECT_EQ(tailOf(fileOf(800) + slotOf(801)), Result(15, 801 * 138));
    EXPECT_EQ(tailOf(Bytes()), Result(15, 0));
    // A short last slot brings the search to the same end as a full file.
    EXPECT_EQ(tailOf(part(fileOf(800), 0, FULL_FILE - 100)), Result(2, FULL_FILE));
}

TEST_F(StoreScan, TailThatIsNotAllEmptyIsDamaged)
{
    for (const long byte : {0L, 1L, 4L, 137L}) {
        Bytes file = fileOf(3);
        file[static_cast<std::size_t>(3 * 138 + byte)] = 0xFE;
        EXPECT_EQ(tailOf(file), Result(3, 3 * 138)) << byte;
    }
    EXPECT_EQ(tailOf(part(fileOf(3), 0, 3 * 138 + 60)), Result(3, 3 * 138));
    EXPECT_EQ(trace.lines(), Lines());
}

TEST_F(StoreScan, TailOfAMissingWorkingFileIsCodeFour)
{
    unsigned long addr = 4711;
    EXPECT_EQ(store.getTailAddr(SB, addr), 4U);
    EXPECT_EQ(addr, 0U);
    EXPECT_EQ(trace.lines(), Lines({openFailed(working(), ENOENT)}));
}

TEST_F(StoreScan, TailOfAnyFileTracesOnlyOtherCodes)
{
    unsigned long addr = 0;
    writeFile(kept(4), fileOf(2));
    EXPECT_EQ(store.getTailAddrEx(SB, 4, addr, 1), 0U);
    EXPECT_EQ(addr, 2U * 138);
    writeFile(kept(4), fileOf(800));
    EXPECT_EQ(store.getTailAddrEx(SB, 4, addr, 0), 2U);
    Bytes damaged = fileOf(2);
    damaged[2 * 138] = 0;
    writeFile(kept(0), damaged);
    EXPECT_EQ(store.getTailAddrEx(SB, 0, addr, 1), 3U);
    EXPECT_EQ(addr, 2U * 138);
    EXPECT_EQ(trace.take(), Lines());

    writeFile(kept(4), slotOf(1));
    EXPECT_EQ(store.getTailAddrEx(SB, 4, addr, 1), 15U);
    EXPECT_EQ(trace.take(), Lines({line("BMCSELDataFile::getTailAddrEx SB#1 sel4 ret(15)")}));
    EXPECT_EQ(store.getTailAddrEx(SB, 5, addr, 1), 4U);
    EXPECT_EQ(trace.take(), Lines({openFailed(kept(5), ENOENT),
                                   line("BMCSELDataFile::getTailAddrEx SB#1 sel5 ret(4)")}));
}

TEST_F(StoreScan, TailThatCannotBeReachedOrReadIsTracedWithItsCode)
{
    unsigned long addr = 0;
    ASSERT_EQ(::mkfifo(kept(4).c_str(), 0600), 0);
    const int fd = ::open(kept(4).c_str(), O_RDWR | O_NONBLOCK);
    ASSERT_GE(fd, 0);
    const Bytes slot = slotOf(1);
    ASSERT_EQ(::write(fd, slot.data(), slot.size()), static_cast<ssize_t>(slot.size()));
    EXPECT_EQ(store.getTailAddrEx(SB, 4, addr, 1), 8U);
    EXPECT_EQ(addr, SLOT);
    EXPECT_EQ(trace.take(), Lines({line("lseek failed: errno 29"),
                                   line("BMCSELDataFile::getTailAddrEx SB#1 sel4 ret(8)")}));
    ::close(fd);
    writeFile(kept(5), part(fileOf(2), 0, 2 * SLOT + 3));
    EXPECT_EQ(store.getTailAddrEx(SB, 5, addr, 1), 10U);
    EXPECT_EQ(addr, 2 * SLOT);
    EXPECT_EQ(trace.take(), Lines({line("searchRecord"),
                                   line("BMCSELDataFile::getTailAddrEx SB#1 sel5 ret(10)")}));
}

TEST_F(StoreScan, TraceUnderAMessageThatTakesMoreThanATextHasNothingElse)
{
    const struct {
        int message;
        const char* text;
    } rows[] = {{20003, "text"},
                {20004, "text"},
                {20008, "text: 0 where 0 is needed"},
                {20010, "text: "},
                {20011, "text failed: errno 0"},
                {20019, "refused: text"},
                {20027, "text: bad value 0"},
                {20030, "text: not given by  0"},
                {20034, "text: 0 is beyond the table"},
                {4711, "unknown message"}};
    for (const auto& row : rows) {
        store.writeTrace(7, row.message, "%s", "text");
        EXPECT_EQ(trace.take(), Lines({std::string("1:83:0x1000 level 7: ") + row.text}));
    }
}

TEST_F(StoreScan, LastRecordIsTheSlotBeforeTheTail)
{
    EXPECT_EQ(lastOf(fileOf(1)), Result(0, 0));
    EXPECT_EQ(lastOf(fileOf(2)), Result(0, 138));
    EXPECT_EQ(lastOf(fileOf(799)), Result(0, 798 * 138));
}

TEST_F(StoreScan, EmptyFileHasNoLastRecord)
{
    EXPECT_EQ(lastOf(fileOf(0)).first, 1U);
}

TEST_F(StoreScan, FullWorkingFileHidesItsLastRecord)
{
    EXPECT_EQ(lastOf(fileOf(800)).first, 2U);
}

TEST_F(StoreScan, FileWithoutAnEmptySlotHasItsLastRecordInTheLastSlot)
{
    EXPECT_EQ(lastOf(part(fileOf(800), 0, 1000)), Result(0, 110262));
    EXPECT_EQ(lastOf(Bytes()), Result(0, 110262));
}

TEST_F(StoreScan, OtherCodesOfTheTailPassThrough)
{
    unsigned long addr = 0;
    EXPECT_EQ(store.getLastRecAddr(SB, addr), 4U);
    Bytes damaged = fileOf(2);
    damaged[2 * 138] = 0;
    EXPECT_EQ(lastOf(damaged).first, 3U);
    EXPECT_EQ(lastOf(part(fileOf(800), 0, 969)).first, 10U);
}

namespace {

class StoreCount : public StoreTest {
protected:
    unsigned int count() { return store.getEntryNumEx(SB, total, lastFileNo, counts); }

    unsigned short total = 4711;
    unsigned short lastFileNo = 4711;
    std::vector<unsigned short> counts = {1, 2, 3};
};

using Counts = std::vector<unsigned short>;

}

TEST_F(StoreCount, CountsTheChainByIndex)
{
    writeFile(working(), fileOf(5));
    writeFile(kept(1), fileOf(800));
    writeFile(kept(2), fileOf(800));
    EXPECT_EQ(count(), 0U);
    EXPECT_EQ(counts, Counts({5, 800, 800}));
    EXPECT_EQ(total, 1605);
    EXPECT_EQ(lastFileNo, 2);
    EXPECT_EQ(trace.lines(), Lines());
}

TEST_F(StoreCount, CountsSevenRotatedFiles)
{
    writeFile(working(), fileOf(800));
    for (int i = 1; i <= 7; ++i) {
        writeFile(kept(i), fileOf(800));
    }
    writeFile(kept(8), fileOf(800));
    EXPECT_EQ(count(), 0U);
    EXPECT_EQ(counts, Counts(8, 800));
    EXPECT_EQ(total, 6400);
    EXPECT_EQ(lastFileNo, 7);
}

TEST_F(StoreCount, BackupIsNotCounted)
{
    writeFile(working(), fileOf(5));
    writeFile(kept(0), fileOf(800));
    EXPECT_EQ(count(), 0U);
    EXPECT_EQ(counts, Counts({5}));
    EXPECT_EQ(lastFileNo, 0);
}

TEST_F(StoreCount, MissingFileEndsTheChain)
{
    writeFile(working(), fileOf(5));
    writeFile(kept(1), fileOf(800));
    writeFile(kept(3), fileOf(800));
    EXPECT_EQ(count(), 0U);
    EXPECT_EQ(counts, Counts({5, 800}));
    EXPECT_EQ(trace.lines(), Lines());
}

TEST_F(StoreCount, FileOfAnotherSizeEndsTheChain)
{
    writeFile(working(), fileOf(5));
    writeFile(kept(1), fileOf(800));
    writeFile(kept(3), fileOf(800));
    for (const std::size_t size : {FULL_FILE - 1, FULL_FILE + 1, std::size_t{0}}) {
        Bytes other = fileOf(800);
        other.resize(size);
        writeFile(kept(2), other);
        EXPECT_EQ(count(), 0U);
        EXPECT_EQ(counts, Counts({5, 800}));
        EXPECT_EQ(lastFileNo, 1);
    }
    EXPECT_EQ(trace.lines(), Lines());
}

TEST_F(StoreCount, DamagedFileCountsNothingAndTheChainGoesOn)
{
    writeFile(working(), fileOf(5));
    Bytes damaged = fileOf(400);
    damaged[400 * 138] = 0;
    writeFile(kept(1), damaged);
    writeFile(kept(2), fileOf(3));
    EXPECT_EQ(count(), 0U);
    EXPECT_EQ(counts, Counts({5, 0, 3}));
    EXPECT_EQ(total, 8);
    EXPECT_EQ(trace.lines(), Lines({line("BMCSELDataFile::getEntryNumEx SB#1 sel1 ret(3)")}));
}

TEST_F(StoreCount, WorkingFileWithoutATailCountsNothing)
{
    writeFile(kept(1), fileOf(800));
    EXPECT_EQ(count(), 0U);
    EXPECT_EQ(counts, Counts({0, 800}));
    EXPECT_EQ(trace.take(), Lines({openFailed(working(), ENOENT),
                                   line("BMCSELDataFile::getTailAddrEx SB#1 sel0 ret(4)"),
                                   line("BMCSELDataFile::getEntryNumEx(tmp) SB#1 sel1 ret(4)")}));
}

TEST_F(StoreCount, StatFailureIsCodeFourteen)
{
    writeFile(working(), fileOf(5));
    std::filesystem::remove_all(root.at("/var/tav"));
    writeFile(root.at("/var/tav"), "a file where a folder should be");
    EXPECT_EQ(count(), 14U);
    EXPECT_EQ(lastFileNo, 1);
    EXPECT_EQ(total, 4711);
    EXPECT_EQ(counts, Counts({1, 2, 3}));
    EXPECT_EQ(trace.lines(), Lines({line("BMCSELDataFile::getEntryNumEx SB#1 sel1 stat(20)")}));
    EXPECT_EQ(store.getEntryNum(SB, total, lastFileNo), 14U);
}

TEST_F(StoreCount, ShortFormGivesTotalAndLastFile)
{
    writeFile(working(), fileOf(5));
    writeFile(kept(1), fileOf(800));
    EXPECT_EQ(store.getEntryNum(SB, total, lastFileNo), 0U);
    EXPECT_EQ(total, 805);
    EXPECT_EQ(lastFileNo, 1);
}

using StoreTruncate = StoreTest;

TEST_F(StoreTruncate, LeavesExactlyEightHundredEmptySlots)
{
    writeFile(working(), Bytes(200000, 0x11));
    EXPECT_EQ(store.truncate(SB, 0, 0), 0U);
    EXPECT_EQ(readFile(working()), Bytes(FULL_FILE, 0xFF));
    writeFile(kept(3), "short");
    EXPECT_EQ(store.truncate(SB, 3, 0), 0U);
    EXPECT_EQ(readFile(kept(3)), Bytes(FULL_FILE, 0xFF));
    EXPECT_EQ(trace.lines(), Lines());
}

TEST_F(StoreTruncate, CreatesAMissingFile)
{
    EXPECT_EQ(store.truncate(SB, 0, 1), 0U);
    EXPECT_EQ(readFile(kept(0)), Bytes(FULL_FILE, 0xFF));
    unsigned long addr = 4711;
    EXPECT_EQ(store.getTailAddrEx(SB, 0, addr, 1), 0U);
    EXPECT_EQ(addr, 0U);
}

TEST_F(StoreTruncate, FailureIsCodeSix)
{
    std::filesystem::remove_all(root.at("/tmp"));
    EXPECT_EQ(store.truncate(SB, 0, 0), 6U);
    EXPECT_EQ(trace.lines(), Lines({cut("BMCSELDataFile::truncate " + working() + " ")}));
}

using StoreFullCheck = StoreTest;

TEST_F(StoreFullCheck, TellsTheStateOfTheWorkingFile)
{
    writeFile(working(), fileOf(799));
    EXPECT_EQ(store.fullEntryCheck(SB), 0U);
    writeFile(working(), fileOf(800));
    EXPECT_EQ(store.fullEntryCheck(SB), 2U);
    Bytes damaged = fileOf(2);
    damaged[2 * 138] = 0;
    writeFile(working(), damaged);
    EXPECT_EQ(store.fullEntryCheck(SB), 3U);
    EXPECT_EQ(readFile(working()), damaged);
    EXPECT_EQ(trace.lines(), Lines());
}

TEST_F(StoreFullCheck, CreatesAMissingFile)
{
    EXPECT_EQ(store.fullEntryCheck(SB), 0U);
    EXPECT_EQ(readFile(working()), Bytes(FULL_FILE, 0xFF));
}

TEST_F(StoreFullCheck, RewritesAFileOfAnotherSize)
{
    for (const std::size_t size : {std::size_t{0}, FULL_FILE - 1, FULL_FILE + 1}) {
        Bytes other = fileOf(800);
        other.resize(size);
        writeFile(working(), other);
        EXPECT_EQ(store.fullEntryCheck(SB), 0U);
        EXPECT_EQ(readFile(working()), Bytes(FULL_FILE, 0xFF));
    }
}

TEST_F(StoreFullCheck, FailuresAreCodesSixAndFourteen)
{
    std::filesystem::remove_all(root.at("/tmp"));
    EXPECT_EQ(store.fullEntryCheck(SB), 6U);
    writeFile(root.at("/tmp"), "a file where a folder should be");
    EXPECT_EQ(store.fullEntryCheck(SB), 14U);
}

TEST_F(StoreScan, LeavesNoDescriptorOpen)
{
    writeFile(kept(1), fileOf(800));
    const std::size_t before = openDescriptors();
    searchIn(fileOf(5), 3);
    searchIn(part(fileOf(800), 0, 969), 900);
    unsigned short total = 0;
    unsigned short lastFileNo = 0;
    store.getEntryNum(SB, total, lastFileNo);
    store.fullEntryCheck(SB);
    EXPECT_EQ(openDescriptors(), before);
}
