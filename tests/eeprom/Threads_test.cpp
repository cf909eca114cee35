// SPDX-License-Identifier: Apache-2.0
// The EFI backup under threads, on a device that watches who erases what at the same time and
// fails at random, with fixed seeds.
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <functional>
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
        const std::lock_guard<std::mutex> lock(mutex);
        std::copy_n(bytes[select - 10].begin() + static_cast<long>(offset), length, buffer);
        return static_cast<int>(length);
    }
    int write(int select, unsigned long offset, const unsigned char* buffer,
              unsigned int length) override
    {
        const bool isErase = length == 4096;
        if (isErase) {
            begin(select);
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

private:
    void begin(int select)
    {
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
    std::atomic<int> erasing[EEPROMS] = {};
    std::atomic<bool> overlap = false;
    std::atomic<int> atOnce = 0;
    int most = 0;
    int gathering;
    unsigned int failures;
    std::mt19937 random;
};

/// Every block of every EEPROM is pending.
void prepare(WatchingDevice& device)
{
    MemoryEEPROMs plain;
    EFIBackupEEPROMData backup(plain);
    backup.setIndexData(true, SERIAL);
    Bytes record = plain.get(10, 0, 144);
    std::fill(record.begin() + 16, record.end(), static_cast<unsigned char>(0x11));
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
