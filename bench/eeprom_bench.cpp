// SPDX-License-Identifier: Apache-2.0
// The EEPROM stores on devices in memory, compared with copying the same bytes; and how erasing
// scales with threads on a device whose writes take a millisecond.
#include <algorithm>
#include <benchmark/benchmark.h>
#include <chrono>
#include <cstring>
#include <thread>
#include <vector>

#include <recordkit/eeprom/EFIBackupEEPROMData.h>
#include <recordkit/eeprom/SettingEEPROMData.h>

using namespace TAVLib::RecordKit;

namespace {

constexpr std::size_t SIZE = 65536;
constexpr int FIRST = 4;
constexpr int LAST = 26;
const std::string SERIAL = "SERIAL-01234";

class MemoryDevice : public TAVLib::EEPROMRWif {
public:
    explicit MemoryDevice(std::chrono::microseconds timeOfAWrite = std::chrono::microseconds(0))
        : writeTime(timeOfAWrite)
    {
    }

    int read(int select, unsigned long offset, unsigned char* buffer, unsigned int length) override
    {
        std::memcpy(buffer, at(select) + offset, length);
        return static_cast<int>(length);
    }
    int write(int select, unsigned long offset, const unsigned char* buffer,
              unsigned int length) override
    {
        // Only erases take time: the index record is one device for all threads.
        if (writeTime.count() != 0 && length == 4096) {
            std::this_thread::sleep_for(writeTime);
        }
        std::memcpy(at(select) + offset, buffer, length);
        return static_cast<int>(length);
    }

    unsigned char* at(int select) { return bytes[static_cast<std::size_t>(select - FIRST)].data(); }

private:
    std::chrono::microseconds writeTime;
    std::vector<std::vector<unsigned char>> bytes =
        std::vector<std::vector<unsigned char>>(LAST - FIRST + 1, std::vector<unsigned char>(SIZE));
};

/// Entry 3, with an area of 4096 bytes on EEPROM 5.
void prepareSetting(MemoryDevice& device)
{
    PanelEEPROMIndex index;
    const unsigned char fields[] = {1, 0, 1, 3, 0, 0, 0x10, 0};
    std::copy(std::begin(fields), std::end(fields), index.getIndexData());
    index.setChecksum();
    std::copy_n(index.getIndexData(), 16, device.at(4) + 512 + 3 * 16);
}

/// Marks every block of every EEPROM for erasure.
void markAll(MemoryDevice& device)
{
    EFIBackupEEPROMIndex index;
    std::memcpy(index.getIndexData() + 2, SERIAL.data(), SERIAL.size());
    std::memset(index.getIndexData() + 16, 0x11, 128);
    index.setChecksum();
    index.expandClrFlags();
    index.setIndexState(true);
    std::copy_n(index.getIndexData(), 144, device.at(10));
}

void loadAndCheckIndex(benchmark::State& state)
{
    MemoryDevice device;
    prepareSetting(device);
    SettingEEPROMData settings(device);
    for (auto _ : state) {
        benchmark::DoNotOptimize(settings.isValid(3));
    }
}

void readArea(benchmark::State& state)
{
    MemoryDevice device;
    prepareSetting(device);
    SettingEEPROMData settings(device);
    for (auto _ : state) {
        benchmark::DoNotOptimize(settings.read(3, nullptr));
    }
}

void writeArea(benchmark::State& state)
{
    MemoryDevice device;
    prepareSetting(device);
    SettingEEPROMData settings(device);
    std::string data(4096, 'x');
    for (auto _ : state) {
        benchmark::DoNotOptimize(settings.write(3, data));
    }
}

void moveArea(benchmark::State& state)
{
    std::vector<unsigned char> from(4096, 1);
    std::vector<unsigned char> to(4096);
    for (auto _ : state) {
        std::memcpy(to.data(), from.data(), from.size());
        benchmark::ClobberMemory();
    }
}

void clearSixteen(benchmark::State& state)
{
    MemoryDevice device;
    EFIBackupEEPROMData backup(device);
    for (auto _ : state) {
        markAll(device);
        for (unsigned int i = 0; i < 16; ++i) {
            backup.clearExecute(i / 4, i % 4);
        }
    }
}

/// The bytes that erasing 16 EEPROMs moves: every block, and for each the record in and two bytes
/// out.
void moveSixteen(benchmark::State& state)
{
    MemoryDevice device;
    const std::vector<unsigned char> erased(4096, 0xFF);
    unsigned char record[144] = {};
    for (auto _ : state) {
        for (int i = 0; i < 256; ++i) {
            std::memcpy(device.at(11 + i / 16) + i % 16 * 4096, erased.data(), erased.size());
            std::memcpy(record, device.at(10), sizeof record);
            std::memcpy(device.at(10), record, 2);
        }
        benchmark::ClobberMemory();
    }
}

/// 16 EEPROMs shared out among threads; the ideal is 256 erases of 1 ms divided by them.
void clearWithThreads(benchmark::State& state)
{
    const auto count = static_cast<unsigned int>(state.range(0));
    MemoryDevice device(std::chrono::milliseconds(1));
    for (auto _ : state) {
        markAll(device);
        std::vector<std::thread> threads;
        for (unsigned int t = 0; t < count; ++t) {
            threads.emplace_back([&device, t, count] {
                EFIBackupEEPROMData backup(device);
                for (unsigned int i = t; i < 16; i += count) {
                    backup.clearExecute(i / 4, i % 4);
                }
            });
        }
        for (std::thread& thread : threads) {
            thread.join();
        }
    }
    state.counters["ideal_ms"] = 256.0 / count;
}

}

BENCHMARK(loadAndCheckIndex);
BENCHMARK(readArea);
BENCHMARK(writeArea);
BENCHMARK(moveArea);
BENCHMARK(clearSixteen);
BENCHMARK(moveSixteen);
BENCHMARK(clearWithThreads)
    ->RangeMultiplier(2)
    ->Range(1, 16)
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);
