// SPDX-License-Identifier: Apache-2.0
// The event file store, each operation compared with its floor: the same system calls without the
// store.
#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <recordkit/selfile/BMCSELDataFile.h>
#include <recordkit/selfile/SELChainReader.h>
#include <recordkit/selfile/SELFileLayout.h>

#include "Scratch.h"

using TAVLib::RecordKit::BMCSELEntryMessage;
using TAVLib::RecordKit::SELChainReader;
namespace Layout = TAVLib::RecordKit::SELFileLayout;

namespace {

constexpr unsigned char BOARD = 0;
constexpr unsigned int CHAIN = 6400;

BMCSELEntryMessage message()
{
    const bench::Bytes image = bench::slot(0x4711);
    BMCSELEntryMessage entry;
    entry.setSerialized(image.data(), static_cast<unsigned int>(image.size()));
    return entry;
}

void TailSearch(benchmark::State& state)
{
    const bench::Root root;
    bench::writeEventFile(root.working(), static_cast<unsigned int>(state.range(0)));
    BMCSELDataFile store;
    unsigned long addr = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(store.getTailAddr(BOARD, addr));
    }
}

void TailSearchFloorOpenPreadClose(benchmark::State& state)
{
    const bench::Root root;
    bench::writeEventFile(root.working(), Layout::SLOTS);
    bench::Bytes buffer(Layout::FILE_SIZE);
    for (auto _ : state) {
        const int fd = ::open(root.working().c_str(), O_RDONLY | O_CLOEXEC);
        benchmark::DoNotOptimize(::pread(fd, buffer.data(), buffer.size(), 0));
        ::close(fd);
    }
}

/// Only the system call, on a file that is already open.
void TailSearchFloorBarePread(benchmark::State& state)
{
    const bench::Root root;
    bench::writeEventFile(root.working(), Layout::SLOTS);
    bench::Bytes buffer(Layout::FILE_SIZE);
    const int fd = ::open(root.working().c_str(), O_RDONLY | O_CLOEXEC);
    for (auto _ : state) {
        benchmark::DoNotOptimize(::pread(fd, buffer.data(), buffer.size(), 0));
    }
    ::close(fd);
}

/// One event at that slot; the file is put back outside the measured time.
void Append(benchmark::State& state)
{
    const bench::Root root;
    const auto slot = static_cast<unsigned int>(state.range(0));
    bench::writeEventFile(root.working(), slot);
    BMCSELDataFile store;
    BMCSELEntryMessage entry = message();
    const bench::Bytes empty(Layout::SLOT_SIZE, Layout::EMPTY_BYTE);
    const int fd = ::open(root.working().c_str(), O_WRONLY | O_CLOEXEC);
    for (auto _ : state) {
        if (store.writeRecord(BOARD, entry) != 1) {
            state.SkipWithError("not written");
            break;
        }
        state.PauseTiming();
        benchmark::DoNotOptimize(
            ::pwrite(fd, empty.data(), empty.size(), static_cast<off_t>(slot) * Layout::SLOT_SIZE));
        state.ResumeTiming();
    }
    ::close(fd);
}

bool writeBare(const std::string& path, const bench::Bytes& bytes, unsigned int slot)
{
    const int fd = ::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0644);
    ::flock(fd, LOCK_EX);
    ::lseek(fd, static_cast<off_t>(slot) * Layout::SLOT_SIZE, SEEK_SET);
    const bool isWritten = ::write(fd, bytes.data(), bytes.size()) == Layout::SLOT_SIZE;
    ::close(fd);
    return isWritten;
}

void AppendFloorOpenLockSeekWriteClose(benchmark::State& state)
{
    const bench::Root root;
    bench::writeEventFile(root.plain(), Layout::SLOTS);
    const bench::Bytes event = bench::slot(1);
    for (auto _ : state) {
        benchmark::DoNotOptimize(
            writeBare(root.plain(), event, static_cast<unsigned int>(state.range(0))));
    }
}

void Fill800Slots(benchmark::State& state)
{
    const bench::Root root;
    BMCSELDataFile store;
    BMCSELEntryMessage entry = message();
    for (auto _ : state) {
        state.PauseTiming();
        bench::writeEventFile(root.working(), 0);
        state.ResumeTiming();
        for (unsigned int slot = 0; slot < Layout::SLOTS; ++slot) {
            if (store.writeRecord(BOARD, entry) != 1) {
                state.SkipWithError("not written");
                return;
            }
        }
    }
}

void Fill800SlotsFloor(benchmark::State& state)
{
    const bench::Root root;
    bench::writeEventFile(root.plain(), 0);
    const bench::Bytes event = bench::slot(1);
    for (auto _ : state) {
        for (unsigned int slot = 0; slot < Layout::SLOTS; ++slot) {
            benchmark::DoNotOptimize(writeBare(root.plain(), event, slot));
        }
    }
}

void writeChain(const bench::Root& root)
{
    bench::writeEventFile(root.working(), Layout::SLOTS);
    for (int i = 1; i <= Layout::OLDEST_FILE; ++i) {
        bench::writeEventFile(root.rotated(i), Layout::SLOTS);
    }
}

void List6400Records(benchmark::State& state)
{
    const bench::Root root;
    writeChain(root);
    for (auto _ : state) {
        SELChainReader reader(BOARD);
        SELChainReader::Record record = {};
        BMCSELEntryMessage entry;
        unsigned int count = 0;
        while (reader.next(record)) {
            entry.setSerialized(record.image, Layout::SLOT_SIZE);
            benchmark::DoNotOptimize(&entry);
            ++count;
        }
        if (count != CHAIN) {
            state.SkipWithError("not all records");
        }
    }
}

void List6400RecordsFloorReadEightFiles(benchmark::State& state)
{
    const bench::Root root;
    writeChain(root);
    bench::Bytes buffer(Layout::FILE_SIZE);
    for (auto _ : state) {
        for (int i = 0; i <= Layout::OLDEST_FILE; ++i) {
            const std::string name = i == 0 ? root.working() : root.rotated(i);
            const int fd = ::open(name.c_str(), O_RDONLY | O_CLOEXEC);
            benchmark::DoNotOptimize(::read(fd, buffer.data(), buffer.size()));
            ::close(fd);
        }
    }
}

}

BENCHMARK(TailSearch)->Arg(0)->Arg(400)->Arg(799);
BENCHMARK(TailSearchFloorOpenPreadClose);
BENCHMARK(TailSearchFloorBarePread);
BENCHMARK(Append)->Arg(0)->Arg(400)->Arg(799);
BENCHMARK(AppendFloorOpenLockSeekWriteClose)->Arg(0)->Arg(400)->Arg(799);
BENCHMARK(Fill800Slots)->Unit(benchmark::kMicrosecond);
BENCHMARK(Fill800SlotsFloor)->Unit(benchmark::kMicrosecond);
BENCHMARK(List6400Records)->Unit(benchmark::kMicrosecond);
BENCHMARK(List6400RecordsFloorReadEightFiles)->Unit(benchmark::kMicrosecond);
