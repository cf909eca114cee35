// SPDX-License-Identifier: Apache-2.0
// Several processes and threads on one board's event log.
#include <fstream>
#include <functional>
#include <map>
#include <sys/stat.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

#include <recordkit/platform/LockedFile.h>
#include <recordkit/selfile/SELChainReader.h>

#include "StoreFixture.h"

using namespace testing_support;
using TAVLib::RecordKit::SELChainReader;

namespace {

constexpr unsigned int WRITERS = 4;
constexpr unsigned int EACH = 190;

/// Returns when a thread or process waits for the lock of a file; false if the system does not
/// report it.
bool waitForSomebodyToWait(const std::string& path)
{
    struct stat status = {};
    if (::stat(path.c_str(), &status) != 0) {
        return false;
    }
    const std::string inode = ":" + std::to_string(status.st_ino) + " ";
    for (;;) {
        std::ifstream locks("/proc/locks");
        if (!locks) {
            return false;
        }
        for (std::string line; std::getline(locks, line);) {
            if (line.find("-> FLOCK") != std::string::npos &&
                line.find(inode) != std::string::npos) {
                return true;
            }
        }
        std::this_thread::yield();
    }
}

class StoreConcurrency : public StoreTest {
protected:
    /// Changes a file of 700 records under its lock while a writer that has found slot 700 waits to
    /// store record 1; false if the system does not report that it waits.
    bool writeWhile(const std::function<void(TAVLib::LockedFile&)>& change)
    {
        writeFile(working(), fileOf(700, 5000));
        int result = 0;
        bool isTold = true;
        std::thread writer;
        {
            TAVLib::LockedFile file(working());
            writer = std::thread([&result] {
                auto record = fromBytes<Message>(slotOf(1));
                result = BMCSELDataFile().writeRecord(SB, record);
            });
            isTold = waitForSomebodyToWait(working());
            change(file);
        }
        writer.join();
        EXPECT_EQ(result, 1);
        return isTold;
    }

    /// Appends this writer's records; the number of those for which writeRecord returned 1.
    static unsigned int append(unsigned int writer)
    {
        BMCSELDataFile own;
        unsigned int written = 0;
        for (unsigned int i = 0; i < EACH; ++i) {
            auto record = fromBytes<Message>(slotOf(1 + writer * 1000 + i));
            written += own.writeRecord(SB, record) == 1 ? 1 : 0;
        }
        return written;
    }

    /// Reads all records; false if a record is torn. The last one may be, because readers take no
    /// lock.
    static bool readsWhole()
    {
        SELChainReader reader(SB);
        SELChainReader::Record record = {};
        bool isWhole = true;
        while (reader.next(record)) {
            if (!isWhole) {
                return false;
            }
            const unsigned int id = record.image[2] + 256U * record.image[3];
            isWhole = Bytes(record.image, record.image + SLOT) == slotOf(id);
        }
        return true;
    }

    void expectEveryRecordOnce() const
    {
        std::map<unsigned int, int> ids;
        SELChainReader reader(SB);
        SELChainReader::Record record = {};
        while (reader.next(record)) {
            const unsigned int id = record.image[2] + 256U * record.image[3];
            ASSERT_EQ(Bytes(record.image, record.image + SLOT), slotOf(id));
            ++ids[id];
        }
        EXPECT_TRUE(reader.getDamage().empty());
        EXPECT_EQ(ids.size(), std::size_t{WRITERS * EACH});
        for (unsigned int writer = 0; writer < WRITERS; ++writer) {
            for (unsigned int i = 0; i < EACH; ++i) {
                ASSERT_EQ(ids[1 + writer * 1000 + i], 1);
            }
        }
    }
};

bool exitedWith(pid_t child, int status)
{
    int result = 0;
    return ::waitpid(child, &result, 0) == child && WIFEXITED(result) &&
           WEXITSTATUS(result) == status;
}

}

TEST_F(StoreConcurrency, WriterFindsTheTailAgainUnderTheLock)
{
    // The slot that the writer found is filled with another record while it waits.
    const Bytes other = slotOf(2);
    if (!writeWhile([&other](TAVLib::LockedFile& file) {
            file.lseek(700 * SLOT, SEEK_SET);
            file.write(other.data(), SLOT);
        })) {
        GTEST_SKIP() << "there is no /proc/locks here";
    }
    const Bytes file = readFile(working());
    EXPECT_EQ(part(file, 700 * SLOT, SLOT), other);
    EXPECT_EQ(part(file, 701 * SLOT, SLOT), slotOf(1));
}

TEST_F(StoreConcurrency, WriterLeavesNoGapWhenTheFileWasEmptiedMeanwhile)
{
    const Bytes empty(FULL_FILE, 0xFF);
    if (!writeWhile([&empty](TAVLib::LockedFile& file) {
            file.truncFile(0);
            file.write(empty.data(), FULL_FILE);
        })) {
        GTEST_SKIP() << "there is no /proc/locks here";
    }
    EXPECT_EQ(readFile(working()), slotOf(1) + Bytes(FULL_FILE - SLOT, 0xFF));
}

TEST_F(StoreConcurrency, ProcessesLoseTearAndRepeatNoRecord)
{
    store.truncate(SB, 0, 0);
    int done[2];
    ASSERT_EQ(::pipe(done), 0);
    const pid_t reader = ::fork();
    if (reader == 0) {
        // Reads until the writers are through, that is until the pipe has no writing end.
        ::close(done[1]);
        bool isWhole = true;
        char byte = 0;
        do {
            isWhole = readsWhole() && isWhole;
        } while (::read(done[0], &byte, 1) > 0);
        ::_exit(isWhole ? 0 : 1);
    }
    std::vector<pid_t> writers;
    for (unsigned int writer = 0; writer < WRITERS; ++writer) {
        const pid_t child = ::fork();
        if (child == 0) {
            unsigned int written = 0;
            BMCSELDataFile own;
            for (unsigned int i = 0; i < EACH; ++i) {
                auto record = fromBytes<Message>(slotOf(1 + writer * 1000 + i));
                written += own.writeRecord(SB, record) == 1 ? 1 : 0;
                if (::write(done[1], "x", 1) != 1) {
                    ::_exit(2);
                }
            }
            ::_exit(written == EACH ? 0 : 1);
        }
        writers.push_back(child);
    }
    ::close(done[0]);
    ::close(done[1]);
    for (const pid_t writer : writers) {
        EXPECT_TRUE(exitedWith(writer, 0));
    }
    EXPECT_TRUE(exitedWith(reader, 0));
    expectEveryRecordOnce();
}

TEST_F(StoreConcurrency, ThreadsLoseTearAndRepeatNoRecord)
{
    store.truncate(SB, 0, 0);
    unsigned int written[WRITERS] = {};
    std::vector<std::thread> threads;
    for (unsigned int writer = 0; writer < WRITERS; ++writer) {
        threads.emplace_back([writer, &written] { written[writer] = append(writer); });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    for (const unsigned int count : written) {
        EXPECT_EQ(count, EACH);
    }
    expectEveryRecordOnce();
}

TEST_F(StoreConcurrency, FullFileTellsEachWriterWhatItStored)
{
    writeFile(working(), fileOf(700, 5000));
    unsigned int written[WRITERS] = {};
    std::vector<std::thread> threads;
    for (unsigned int writer = 0; writer < WRITERS; ++writer) {
        threads.emplace_back([writer, &written] { written[writer] = append(writer); });
    }
    unsigned int total = 0;
    for (unsigned int writer = 0; writer < WRITERS; ++writer) {
        threads[writer].join();
        total += written[writer];
    }
    EXPECT_EQ(total, 100U);
    EXPECT_EQ(store.fullEntryCheck(SB), 2U);
    EXPECT_TRUE(readsWhole());
}
