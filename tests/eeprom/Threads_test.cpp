// SPDX-License-Identifier: Apache-2.0
// The EFI backup under threads, on a device that watches who erases what at the same time and
// fails at random, with fixed seeds.
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <functional>
#include <future>
#include <gtest/gtest.h>
#include <mutex>
#include <random>
#include <thread>

#include <recordkit/eeprom/EFIBackupEEPROMData.h>

#include "MemoryEEPROMs.h"

using namespace TAVLib::RecordKit;
using namespace testing_support;

namespace {

constexpr int EEPROMS = 16;
constexpr std::chrono::seconds PATIENCE(10);
const std::string SERIAL = "SERIAL-01234";

/// EEPROMs 10 to 26; the index is one device for all threads, each other one its own.
class WatchingDevice : public TAVLib::EEPROMRWif {
public:
    /// Erases wait until this many are under way at once, for the first of each EEPROM.
    explicit WatchingDevice(int gather, unsigned int failPerMille = 0, unsigned int seed = 0)
        : gathering(gather), failures(failPerMille), random(seed)
    {
    }

    int read(int select, unsigned long offset, unsigned char* buffer, unsigned int length) override
    {
        fail();
        {
            const std::lock_guard<std::mutex> lock(mutex);
            std::copy_n(bytes[select - 10].begin() + static_cast<long>(offset), length, buffer);
        }
        if (afterRead) {
            afterRead();
        }
        return static_cast<int>(length);
    }
    int write(int select, unsigned long offset, const unsigned char* buffer,
              unsigned int length) override
    {
        const bool isErase = length == 4096;
        if (isErase) {
            begin(select, offset);
        }
        try {
            fail();
        } catch (...) {
            if (isErase) {
                --erasing[select - 11];
                --atOnce;
            }
            throw;
        }
        {
            const std::lock_guard<std::mutex> lock(mutex);
            std::copy_n(buffer, length, bytes[select - 10].begin() + static_cast<long>(offset));
        }
        if (isErase) {
            --erasing[select - 11];
            --atOnce;
        }
        return static_cast<int>(length);
    }

    Bytes& at(int select) { return bytes[select - 10]; }
    int mostAtOnce() const { return most; }
    bool hasOverlap() const { return overlap; }

    /// How many erases of a block have begun.
    unsigned int erasesOf(int select, unsigned int block) const
    {
        return erases[select - 11][block];
    }
    /// The flag of a block in the record.
    bool isMarked(int select, unsigned int block)
    {
        const std::lock_guard<std::mutex> lock(mutex);
        const unsigned char flags =
            at(10)[16 + 8 * static_cast<std::size_t>(select - 11) + block / 2];
        return (flags & (block % 2 == 0 ? 0xF0 : 0x0F)) != 0;
    }
    /// What happens after each read, and in each erase before the block is written.
    void afterEachRead(std::function<void()> action) { afterRead = std::move(action); }
    void duringEachErase(std::function<void()> action) { duringErase = std::move(action); }

private:
    void begin(int select, unsigned long offset)
    {
        ++erases[select - 11][offset / 4096];
        if (duringErase) {
            duringErase();
        }
        overlap = overlap || ++erasing[select - 11] != 1;
        std::unique_lock<std::mutex> lock(mutex);
        most = std::max<int>(most, ++atOnce);
        // Each of the first ones waits for the others. If erases of different EEPROMs took turns,
        // they would wait in vain: then one gives up, far beyond any machine's slowness, for all.
        if (most < gathering &&
            !gathered.wait_for(lock, PATIENCE, [this] { return most >= gathering; })) {
            gathering = 0;
        }
        gathered.notify_all();
    }

    void fail()
    {
        if (failures == 0) {
            return;
        }
        const std::lock_guard<std::mutex> lock(mutex);
        if (random() % 1000 < failures) {
            throw TAVLib::PException(1, 9, 9, 0x12, 0x345, 20031, reinterpret_cast<long>("device"),
                                     0, 0, 0, 0, 0, 0, 0);
        }
    }

    std::mutex mutex;
    std::condition_variable gathered;
    std::vector<Bytes> bytes = std::vector<Bytes>(EEPROMS + 1, Bytes(65536, 0x77));
    std::function<void()> afterRead;
    std::function<void()> duringErase;
    std::atomic<unsigned int> erases[EEPROMS][16] = {};
    std::atomic<int> erasing[EEPROMS] = {};
    std::atomic<bool> overlap = false;
    std::atomic<int> atOnce = 0;
    int most = 0;
    int gathering;
    unsigned int failures;
    std::mt19937 random;
};

/// Every block of every EEPROM is pending, or none.
void prepare(WatchingDevice& device, unsigned char flags = 0x11)
{
    MemoryEEPROMs plain;
    EFIBackupEEPROMData backup(plain);
    backup.setIndexData(true, SERIAL);
    Bytes record = plain.get(10, 0, 144);
    std::fill(record.begin() + 16, record.end(), flags);
    record = withSum(record, 0);
    plain.put(10, 0, record);
    ASSERT_TRUE(backup.checkIndexData(SERIAL));
    std::copy(record.begin(), record.end(), device.at(10).begin());
}

/// The device's contents when everything is erased.
void expectAllClear(WatchingDevice& device, int eeproms)
{
    Bytes record = part(device.at(10), 0, 144);
    EXPECT_EQ(record, withSum(record, 0));
    for (int i = 0; i < eeproms; ++i) {
        EXPECT_EQ(part(record, 16 + 8 * static_cast<std::size_t>(i), 8), Bytes(8, 0)) << i;
        EXPECT_EQ(device.at(11 + i), Bytes(65536, 0xFF)) << i;
    }
    EXPECT_FALSE(device.hasOverlap());
}

/// More failures in a row than a device that fails one time in twenty has in these tests.
constexpr int ATTEMPTS = 2000;

/// Repeats what a failing device interrupts until it is done, and no more often than is likely.
void untilDone(const std::function<void()>& action)
{
    for (int attempt = 0; attempt < ATTEMPTS; ++attempt) {
        try {
            action();
            return;
        } catch (const TAVLib::PException&) {
            // The device failed; what is pending stays so.
        }
    }
    ADD_FAILURE() << "not done after " << ATTEMPTS << " attempts";
}

void clearUntilDone(WatchingDevice& device, unsigned int p, unsigned int b)
{
    EFIBackupEEPROMData backup(device);
    untilDone([&] { backup.clearExecute(p, b); });
}

/// Takes the record's flags over and clears what they name.
void clearWhatIsLeft(WatchingDevice& device)
{
    EFIBackupEEPROMData backup(device);
    untilDone([&] {
        // An address whose block has no flag only adopts the record's flags.
        backup.resetClearFlag(0, 0, ~0U);
        for (unsigned int i = 0; i < EEPROMS; ++i) {
            backup.clearExecute(i / 4, i % 4);
        }
    });
}

void runAll(const std::vector<std::function<void()>>& actions)
{
    std::vector<std::thread> threads;
    for (const auto& action : actions) {
        threads.emplace_back(action);
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
}

}

TEST(EFIBackupThreads, SixteenEEPROMsAreErasedSideBySide)
{
    WatchingDevice device(8);
    prepare(device);
    std::vector<std::function<void()>> actions;
    for (unsigned int i = 0; i < EEPROMS; ++i) {
        actions.emplace_back([&device, i] { clearUntilDone(device, i / 4, i % 4); });
    }
    runAll(actions);
    expectAllClear(device, EEPROMS);
    EXPECT_GE(device.mostAtOnce(), 8);
}

TEST(EFIBackupThreads, EightThreadsOnOneEEPROMTakeTurns)
{
    WatchingDevice device(1);
    prepare(device);
    runAll(std::vector<std::function<void()>>(8, [&device] { clearUntilDone(device, 1, 2); }));
    EXPECT_FALSE(device.hasOverlap());
    EXPECT_EQ(device.mostAtOnce(), 1);
    const Bytes record = part(device.at(10), 0, 144);
    EXPECT_EQ(part(record, 64, 8), Bytes(8, 0));
    EXPECT_EQ(part(record, 16, 48), Bytes(48, 0x11));
    EXPECT_EQ(record, withSum(record, 0));
    EXPECT_EQ(device.at(17), Bytes(65536, 0xFF));
}

TEST(EFIBackupThreads, EightThreadsOnOneEEPROMHoldOutItsFailures)
{
    for (unsigned int seed = 1; seed <= 5; ++seed) {
        WatchingDevice device(1, 50, seed);
        prepare(device);
        runAll(std::vector<std::function<void()>>(8, [&device] { clearUntilDone(device, 1, 2); }));
        clearWhatIsLeft(device);
        expectAllClear(device, EEPROMS);
    }
}

TEST(EFIBackupThreads, FailuresLeaveExactFlagsAndNoLock)
{
    for (unsigned int seed = 1; seed <= 5; ++seed) {
        WatchingDevice device(1, 50, seed);
        prepare(device);
        std::vector<std::function<void()>> actions;
        for (unsigned int i = 0; i < EEPROMS; ++i) {
            actions.emplace_back([&device, i] { clearUntilDone(device, i / 4, i % 4); });
        }
        runAll(actions);
        // A flag that could not be written is still set in the record, though the shared copy has
        // it cleared: never the other way round. Reading the record again finds it.
        clearWhatIsLeft(device);
        expectAllClear(device, EEPROMS);
    }
}

namespace {

/// The marks of one block, which only one thread makes.
class MarkedBlock {
public:
    MarkedBlock(WatchingDevice& marked, unsigned int eeprom, unsigned int number)
        : device(&marked), i(eeprom), block(number)
    {
    }

    void mark(EFIBackupEEPROMData& backup)
    {
        ++marks;
        erasesBefore = device->erasesOf(select(), block);
        backup.markBlock(i / 4, i % 4, block * 4096);
    }
    /// Whether an erase began after the last mark.
    bool isErased() const { return marks == 0 || device->erasesOf(select(), block) > erasesBefore; }
    /// Whether the last mark is still there or was followed by an erase.
    bool isKept() const { return device->isMarked(select(), block) || isErased(); }
    /// Whether each erase had a mark of its own.
    bool isErasedOnlyWhereMarked() const { return device->erasesOf(select(), block) <= marks; }

private:
    int select() const { return 11 + static_cast<int>(i); }

    WatchingDevice* device;
    unsigned int i;
    unsigned int block;
    unsigned int marks = 0;
    unsigned int erasesBefore = 0;
};

}

TEST(EFIBackupThreads, SixteenThreadsThatMarkAndEraseLoseNoMark)
{
    constexpr unsigned int THREADS = 16;
    constexpr unsigned int ROUNDS = 100000 / THREADS;
    constexpr unsigned int USED = 3; // few EEPROMs, so that threads meet
    WatchingDevice device(1);
    prepare(device, 0);
    // Others get their turn where a change or an erase is half done.
    device.afterEachRead([] { std::this_thread::yield(); });
    device.duringEachErase([] { std::this_thread::yield(); });
    std::vector<std::vector<MarkedBlock>> blocks(THREADS);
    std::vector<std::function<void()>> actions;
    for (unsigned int thread = 0; thread < THREADS; ++thread) {
        // One block of each EEPROM: two threads share each byte of flags.
        for (unsigned int i = 0; i < USED; ++i) {
            blocks[thread].emplace_back(device, i, thread);
        }
        actions.emplace_back([&device, &own = blocks[thread], thread] {
            EFIBackupEEPROMData backup(device);
            std::mt19937 random(thread);
            for (unsigned int round = 0; round < ROUNDS; ++round) {
                MarkedBlock& block = own[round % USED];
                ASSERT_TRUE(block.isKept()) << "thread " << thread << ", round " << round;
                block.mark(backup);
                if (random() % 4 == 0) {
                    backup.clearExecute(0, random() % USED);
                }
                if (random() % 16 == 0) {
                    // Read under the lock, no change is half done.
                    ASSERT_TRUE(backup.checkIndexData(SERIAL));
                }
            }
        });
    }
    runAll(actions);
    Bytes record = part(device.at(10), 0, 144);
    EXPECT_EQ(record, withSum(record, 0));
    for (const auto& own : blocks) {
        for (const MarkedBlock& block : own) {
            EXPECT_TRUE(block.isKept());
            EXPECT_TRUE(block.isErasedOnlyWhereMarked());
        }
    }
    clearWhatIsLeft(device);
    record = part(device.at(10), 0, 144);
    EXPECT_EQ(record, withSum(record, 0));
    EXPECT_EQ(part(record, 16, 128), Bytes(128, 0));
    for (const auto& own : blocks) {
        for (const MarkedBlock& block : own) {
            EXPECT_TRUE(block.isErased());
            EXPECT_TRUE(block.isErasedOnlyWhereMarked());
        }
    }
    EXPECT_FALSE(device.hasOverlap());
}

TEST(EFIBackupThreads, MarkThatComesDuringTheEraseOfItsBlockIsKept)
{
    constexpr unsigned int ROUNDS = 200;
    WatchingDevice device(1);
    prepare(device, 0);
    EFIBackupEEPROMData backup(device);
    for (unsigned int round = 0; round < ROUNDS; ++round) {
        const unsigned int block = round % 16;
        // Also under the number that the block has after those of the EEPROM before it.
        const bool isBySecondName = round % 2 != 0;
        std::thread marking;
        device.duringEachErase([&] {
            std::promise<void> begun;
            marking = std::thread([&] {
                EFIBackupEEPROMData other(device);
                begun.set_value();
                if (isBySecondName) {
                    other.markBlock(1, 1, 65536 + block * 4096);
                } else {
                    other.markBlock(1, 2, block * 4096);
                }
            });
            begun.get_future().wait();
            std::this_thread::yield();
        });
        backup.markBlock(1, 2, block * 4096);
        backup.clearExecute(1, 2);
        marking.join();
        device.duringEachErase({});
        ASSERT_TRUE(device.isMarked(17, block)) << "round " << round;
        EXPECT_EQ(device.erasesOf(17, block), 2 * (round / 16) + 1);
        backup.clearExecute(1, 2);
        ASSERT_FALSE(device.isMarked(17, block));
    }
    const Bytes record = part(device.at(10), 0, 144);
    EXPECT_EQ(record, withSum(record, 0));
}

TEST(EFIBackupThreads, AnotherEEPROMIsMarkedDuringAnErase)
{
    WatchingDevice device(1);
    prepare(device, 0);
    EFIBackupEEPROMData backup(device);
    EFIBackupEEPROMData other(device);
    // If it waited, it would wait for its own thread.
    device.duringEachErase([&other] { other.markBlock(1, 3, 0); });
    backup.markBlock(1, 2, 0);
    backup.clearExecute(1, 2);
    EXPECT_FALSE(device.isMarked(17, 0));
    EXPECT_TRUE(device.isMarked(18, 0));
}
