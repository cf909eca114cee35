// SPDX-License-Identifier: Apache-2.0
#include <recordkit/selfile/SELChainReader.h>

#include <fcntl.h>
#include <filesystem>
#include <unistd.h>

#include "StoreFixture.h"
#include "recordkit/selfile/SELFileScan.h"

using namespace testing_support;
using TAVLib::RecordKit::SELChainReader;
using TAVLib::RecordKit::SELFileScan;

namespace {

/// No test has a longer log; a walk that does not end by itself ends there, and fails.
constexpr std::size_t MOST_RECORDS = 100;

class ChainReader : public StoreTest {
protected:
    /// Each record as "log:file:slot:id".
    Lines walk(SELChainReader& reader) const
    {
        Lines lines;
        SELChainReader::Record record = {};
        while (lines.size() < MOST_RECORDS && reader.next(record)) {
            const unsigned int id = record.image[2] + 256U * record.image[3];
            lines.push_back(std::to_string(record.logNumber) + ":" +
                            std::to_string(record.fileIndex) + ":" + std::to_string(record.slot) +
                            ":" + std::to_string(id));
        }
        EXPECT_FALSE(reader.next(record));
        return lines;
    }
    Lines oldestFirst() const
    {
        SELChainReader reader(SB);
        return walk(reader);
    }
    Lines newestFirst() const
    {
        SELChainReader reader(SB, SELChainReader::NEWEST_FIRST);
        return walk(reader);
    }
    Lines damage() const
    {
        Lines lines;
        const SELChainReader reader(SB);
        for (const auto& each : reader.getDamage()) {
            lines.push_back(std::to_string(each.fileIndex) + " " + each.path + " " + each.text);
        }
        return lines;
    }
};

}

TEST_F(ChainReader, WalksFromTheOldestRecordToTheNewest)
{
    writeFile(working(), fileOf(2, 30));
    writeFile(kept(1), fileOf(1, 20));
    writeFile(kept(2), fileOf(2, 10));
    EXPECT_EQ(oldestFirst(), Lines({"1:2:0:10", "2:2:1:11", "3:1:0:20", "4:0:0:30", "5:0:1:31"}));
    EXPECT_EQ(damage(), Lines());
    EXPECT_EQ(SELChainReader(SB).getTotal(), 5U);
}

TEST_F(ChainReader, WalksFromTheNewestRecordToTheOldest)
{
    writeFile(working(), fileOf(2, 30));
    writeFile(kept(1), fileOf(1, 20));
    writeFile(kept(2), fileOf(2, 10));
    EXPECT_EQ(newestFirst(), Lines({"5:0:1:31", "4:0:0:30", "3:1:0:20", "2:2:1:11", "1:2:0:10"}));
}

TEST_F(ChainReader, GivesWholeRecords)
{
    writeFile(working(), fileOf(2, 30));
    SELChainReader reader(SB);
    SELChainReader::Record record = {};
    ASSERT_TRUE(reader.next(record));
    ASSERT_TRUE(reader.next(record));
    EXPECT_EQ(Bytes(record.image, record.image + 138), slotOf(31));
}

TEST_F(ChainReader, EmptyLogHasNoRecords)
{
    writeFile(working(), fileOf(0));
    EXPECT_EQ(oldestFirst(), Lines());
    EXPECT_EQ(newestFirst(), Lines());
    EXPECT_EQ(damage(), Lines());
}

TEST_F(ChainReader, AgreesWithTheStoreOnEveryLogNumber)
{
    writeFile(working(), fileOf(800, 7000));
    for (int i = 1; i <= 7; ++i) {
        writeFile(kept(i), fileOf(800, 7000 - static_cast<unsigned int>(i) * 800));
    }
    SELChainReader reader(SB);
    EXPECT_EQ(reader.getTotal(), 6400U);
    SELChainReader::Record record = {};
    unsigned int expected = 0;
    while (reader.next(record)) {
        ++expected;
        ASSERT_EQ(record.logNumber, expected);
        if (expected % 97 == 0 || expected == 1 || expected == 6400) {
            Message out;
            ASSERT_EQ(store.readStoredRecord(SB, static_cast<unsigned short>(expected), out), 0U);
            ASSERT_EQ(imageOf(out), Bytes(record.image, record.image + 138));
        }
    }
    EXPECT_EQ(expected, 6400U);
}

TEST_F(ChainReader, DamagedFileIsReportedAndTheWalkGoesOn)
{
    writeFile(working(), fileOf(1, 30));
    Bytes damaged = fileOf(2, 20);
    damaged[2 * 138] = 0;
    writeFile(kept(1), damaged);
    writeFile(kept(2), fileOf(1, 10));
    // Its records have no number: the store does not count them.
    EXPECT_EQ(oldestFirst(), Lines({"1:2:0:10", "0:1:0:20", "0:1:1:21", "2:0:0:30"}));
    EXPECT_EQ(newestFirst(), Lines({"2:0:0:30", "0:1:1:21", "0:1:0:20", "1:2:0:10"}));
    EXPECT_EQ(damage(), Lines({"1 " + kept(1) +
                               " slot 2 (offset 276) has record id FFFFh but is not empty"}));
    Message out;
    EXPECT_EQ(store.readStoredRecord(SB, 2, out), 0U);
    EXPECT_EQ(imageOf(out), slotOf(30));
}

TEST_F(ChainReader, FileOfAnotherSizeEndsTheChainAndIsReported)
{
    writeFile(working(), fileOf(1, 30));
    writeFile(kept(1), part(fileOf(2, 20), 0, FULL_FILE - 1));
    writeFile(kept(2), fileOf(1, 10));
    EXPECT_EQ(oldestFirst(), Lines({"1:0:0:30"}));
    EXPECT_EQ(damage(), Lines({"1 " + kept(1) + " 110399 bytes long, expected 110400"}));
}

TEST_F(ChainReader, UnreadableRotatedFileIsReportedAndTheWalkGoesOn)
{
    writeFile(working(), fileOf(1, 30));
    std::filesystem::create_directory(kept(1));
    writeFile(kept(2), fileOf(1, 10));
    EXPECT_EQ(oldestFirst(), Lines({"1:2:0:10", "2:0:0:30"}));
    EXPECT_EQ(damage(), Lines({"1 " + kept(1) + " cannot be read: Is a directory"}));
}

TEST_F(ChainReader, MissingWorkingFileIsReported)
{
    writeFile(kept(1), fileOf(1, 20));
    EXPECT_EQ(oldestFirst(), Lines({"1:1:0:20"}));
    EXPECT_EQ(damage(), Lines({"0 " + working() + " cannot be read: No such file or directory"}));
}

TEST_F(ChainReader, RecordsBehindTheTailAreReported)
{
    Bytes file = fileOf(2, 30);
    const Bytes stray = slotOf(99);
    std::copy(stray.begin(), stray.end(), file.begin() + 10 * 138);
    std::copy(stray.begin(), stray.end(), file.begin() + 12 * 138);
    writeFile(working(), file);
    EXPECT_EQ(oldestFirst(), Lines({"1:0:0:30", "2:0:1:31"}));
    EXPECT_EQ(damage(), Lines({"0 " + working() +
                               " 2 slots used behind the tail, from slot 10 (offset 1380) on"}));
    // The slot next to the tail counts too.
    std::copy(stray.begin(), stray.end(), file.begin() + 3 * 138);
    writeFile(working(), file);
    EXPECT_EQ(damage(), Lines({"0 " + working() +
                               " 3 slots used behind the tail, from slot 3 (offset 414) on"}));
}

TEST_F(ChainReader, RotationInTheMeantimeDoesNotMixFilesUp)
{
    writeFile(working(), fileOf(2, 30));
    writeFile(kept(1), fileOf(1, 20));
    writeFile(kept(2), fileOf(2, 10));
    SELChainReader reader(SB);
    ASSERT_EQ(store.shiftSelFile(SB, true), 0);
    // The rotated files are those that were opened; the working file is empty now.
    EXPECT_EQ(walk(reader), Lines({"1:2:0:10", "2:2:1:11", "3:1:0:20"}));
    EXPECT_EQ(oldestFirst(), Lines({"1:3:0:10", "2:3:1:11", "3:2:0:20", "4:1:0:30", "5:1:1:31"}));
}

TEST_F(ChainReader, EventsStoredInTheMeantimeAreNotGiven)
{
    writeFile(working(), fileOf(2, 30));
    SELChainReader reader(SB, SELChainReader::NEWEST_FIRST);
    auto record = fromBytes<Message>(slotOf(40));
    ASSERT_EQ(store.writeRecord(SB, record), 1);
    EXPECT_EQ(walk(reader), Lines({"2:0:1:31", "1:0:0:30"}));
}

TEST_F(ChainReader, TracesNothingAndLeavesNoDescriptorOpen)
{
    writeFile(kept(1), fileOf(1, 20));
    const std::size_t before = openDescriptors();
    oldestFirst();
    damage();
    EXPECT_EQ(openDescriptors(), before);
    EXPECT_EQ(trace.lines(), Lines());
}

TEST_F(ChainReader, JudgesEveryFileAsTheStoreDoes)
{
    std::vector<Bytes> files;
    for (const std::size_t count : {0U, 1U, 5U, 799U, 800U}) {
        files.push_back(fileOf(count));
        Bytes damaged = fileOf(count);
        damaged[std::min(count * SLOT + 7, FULL_FILE - 1)] ^= 0x55;
        files.push_back(damaged);
        for (const std::size_t size : {0U, 1U, 2U, 3U, 4U, 137U, 138U, 139U, 141U, 142U, 1000U,
                                       110262U, 110263U, 110266U, 110300U, 110399U}) {
            files.push_back(part(fileOf(count), 0, size));
        }
    }
    for (const Bytes& file : files) {
        writeFile(kept(4), file);
        unsigned long addr = 0;
        SELFileScan::Buffer buffer;
        EXPECT_EQ(SELFileScan(kept(4), buffer).getCode(), store.getTailAddrEx(SB, 4, addr, 1))
            << file.size();
    }
}

TEST_F(ChainReader, ScanClosesItsFileEvenAsDescriptorZero)
{
    writeFile(kept(4), fileOf(1));
    const int input = ::dup(STDIN_FILENO);
    ::close(STDIN_FILENO);
    {
        SELFileScan::Buffer buffer;
        const SELFileScan scan(kept(4), buffer);
        EXPECT_NE(::fcntl(STDIN_FILENO, F_GETFD), -1);
    }
    EXPECT_EQ(::fcntl(STDIN_FILENO, F_GETFD), -1);
    if (input != -1) {
        ::dup2(input, STDIN_FILENO);
        ::close(input);
    }
}

TEST_F(ChainReader, WorkingFileThatIsTooLongIsCountedAsTheStoreCountsIt)
{
    const struct {
        Bytes file;
        unsigned short count;
    } rows[] = {{fileOf(800) + slotOf(801) + Bytes(SLOT, 0xFF), 801},
                {fileOf(800) + Bytes(SLOT, 0xFF), 800},
                {fileOf(5) + slotOf(9), 5},
                {fileOf(800) + slotOf(801), 0},
                {fileOf(800) + slotOf(801) + Bytes(60, 0xFF), 0}};
    writeFile(kept(1), fileOf(800, 1000));
    for (const auto& row : rows) {
        writeFile(working(), row.file);
        unsigned short total = 0;
        unsigned short last = 0;
        std::vector<unsigned short> counts;
        ASSERT_EQ(store.getEntryNumEx(SB, total, last, counts), 0U);
        EXPECT_EQ(counts, std::vector<unsigned short>({row.count, 800}));
        SELChainReader reader(SB);
        EXPECT_EQ(reader.getTotal(), total);
        SELChainReader::Record record = {};
        unsigned int number = 0;
        while (reader.next(record)) {
            if (record.logNumber == 0) {
                continue; // of a file that the store does not count
            }
            ++number;
            EXPECT_EQ(record.logNumber, number);
            Message stored;
            ASSERT_EQ(store.readStoredRecord(SB, static_cast<unsigned short>(number), stored), 0U);
            EXPECT_EQ(imageOf(stored), Bytes(record.image, record.image + SLOT)) << number;
        }
        EXPECT_EQ(number, total);
    }
}
