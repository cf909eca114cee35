// SPDX-License-Identifier: Apache-2.0
// Data objects filled and read, compared with memcpy of the same image.
#include <benchmark/benchmark.h>
#include <cstring>
#include <vector>

#include <recordkit/hardware/GSPBBoardInfo.h>
#include <recordkit/hardware/MemorySPDData.h>
#include <recordkit/hardware/PCIBOXInfo.h>
#include <recordkit/hardware/PSUStatus.h>
#include <recordkit/hardware/SBBoardInfo.h>
#include <recordkit/sensor/CompactSensorRecord.h>
#include <recordkit/sensor/FullSensorRecord.h>
#include <recordkit/version/GSWBVersion.h>

#include "SensorImage.h"

using namespace TAVLib::RecordKit;

namespace {

using Bytes = std::vector<unsigned char>;

Bytes counting(std::size_t size)
{
    Bytes image(size);
    for (std::size_t i = 0; i < size; ++i) {
        image[i] = static_cast<unsigned char>(i * 3);
    }
    return image;
}

Bytes compactImage()
{
    Bytes image = bench::fullSensorRecord();
    image.resize(48);
    image[31] = 0xC8;
    return image;
}

/// 255 ports of each kind.
Bytes gspbImage()
{
    Bytes image = counting(1541);
    image[8] = 255;
    image[519] = 255;
    image[1030] = 255;
    return image;
}

/// 16 link cards of 8 slots.
Bytes pciBoxImage()
{
    Bytes image(13, 1);
    image[12] = 16;
    for (int card = 0; card < 16; ++card) {
        image.insert(image.end(), {1, 2, 8});
        image.insert(image.end(), 16, 3);
    }
    return image;
}

template <typename Record> void fill(benchmark::State& state, const Bytes& image)
{
    Record record;
    for (auto _ : state) {
        benchmark::DoNotOptimize(
            record.setSerialized(image.data(), static_cast<unsigned int>(image.size())));
        benchmark::ClobberMemory();
    }
}

void move(benchmark::State& state, const Bytes& image)
{
    Bytes copy(image.size());
    std::size_t size = image.size();
    for (auto _ : state) {
        benchmark::DoNotOptimize(size);
        std::memcpy(copy.data(), image.data(), size);
        benchmark::ClobberMemory();
    }
}

template <typename Record> void fillAndReadSensor(benchmark::State& state, const Bytes& image)
{
    Record record;
    for (auto _ : state) {
        record.setSerialized(image.data(), static_cast<unsigned int>(image.size()));
        unsigned int sum =
            record.getRecordID() + record.getRecordType() + record.getSensorNumber() +
            record.getEntityID() + record.getEntityInstance() + record.getSensorType() +
            record.getEvtReadTypeCode() + record.getAssertEventMask() +
            record.getDeassertEventMask() + record.getDiscreteReadMask() +
            record.getPositiveGoingThresholdHyst() + record.getNegativeGoingThresholdHyst();
        unsigned char name[16];
        sum += record.getIDStringBytes(name, sizeof name);
        benchmark::DoNotOptimize(sum);
        benchmark::DoNotOptimize(name);
    }
}

void fillAndReadSpd(benchmark::State& state)
{
    const Bytes image = counting(256);
    MemorySPDData memory;
    for (auto _ : state) {
        memory.setSerialized(image.data(), static_cast<unsigned int>(image.size()));
        unsigned int sum = memory.getRankNum() + memory.getDIMMSize() + memory.getDRAMSize() +
                           memory.getDataRate() + memory.getSerialNumber();
        benchmark::DoNotOptimize(sum);
        benchmark::DoNotOptimize(memory.getModulePartNumber());
    }
}

void fillAndReadBoard(benchmark::State& state)
{
    const Bytes image = counting(96);
    SBBoardInfo board;
    for (auto _ : state) {
        board.setSerialized(image.data(), static_cast<unsigned int>(image.size()));
        unsigned int sum =
            board.getBoardType() + board.getCPUSocketNum() + board.getDIMMSocketNum();
        for (unsigned int dimm = 0; dimm < SBBoardInfo::DIMMS; ++dimm) {
            sum += board.getDIMMStatus(static_cast<SBBoardInfo::DIMMIndex>(dimm));
        }
        benchmark::DoNotOptimize(sum);
    }
}

void fillAndReadGspb(benchmark::State& state)
{
    const Bytes image = gspbImage();
    for (auto _ : state) {
        // A new object each time, because it keeps entries of PCI boxes.
        GSPBBoardInfo board;
        board.setSerialized(image.data(), static_cast<unsigned int>(image.size()));
        unsigned int sum = 0;
        for (unsigned int port = 0; port < 255; ++port) {
            sum += board.getGbEPortStatus(port) + board.getSASPortStatus(port);
            sum += static_cast<unsigned int>(board.getConnectedPCIBox(port) +
                                             board.getConnectedLogicalPCIBox(port));
        }
        benchmark::DoNotOptimize(sum);
    }
}

void fillAndReadPciBox(benchmark::State& state)
{
    const Bytes image = pciBoxImage();
    PCIBOXInfo box;
    for (auto _ : state) {
        box.setSerialized(image.data(), static_cast<unsigned int>(image.size()));
        unsigned int sum = 0;
        for (int card = 0; card < 16; ++card) {
            sum += box.getConnectedId(card) + box.getPortNo(card);
            for (int slot = 0; slot < 8; ++slot) {
                sum += box.getPCISlotStatus(card, slot);
            }
        }
        benchmark::DoNotOptimize(sum);
    }
}

constexpr auto fillFullSensor = fill<FullSensorRecord>;
constexpr auto fillCompactSensor = fill<CompactSensorRecord>;
constexpr auto fillSpd = fill<MemorySPDData>;
constexpr auto fillBoard = fill<SBBoardInfo>;
constexpr auto fillGswb = fill<GSWBVersion>;
constexpr auto fillPsu = fill<PSUStatus>;
constexpr auto readFullSensor = fillAndReadSensor<FullSensorRecord>;
constexpr auto readCompactSensor = fillAndReadSensor<CompactSensorRecord>;

void readFlag(benchmark::State& state)
{
    PSUStatus status;
    for (auto _ : state) {
        benchmark::DoNotOptimize(&status);
        benchmark::DoNotOptimize(status.isACLost());
    }
}

}

const Bytes& bench::fullSensorRecord()
{
    static const Bytes image = [] {
        Bytes bytes = counting(64);
        bytes[2] = 0x51;
        bytes[3] = 0x01;
        bytes[4] = 59;
        bytes[12] = 0x01;
        bytes[13] = 0x01;
        bytes[47] = 0xD0;
        std::memcpy(&bytes[48], "CPU1 temperature", 16);
        return bytes;
    }();
    return image;
}

BENCHMARK_CAPTURE(fillFullSensor, 64, bench::fullSensorRecord());
BENCHMARK_CAPTURE(move, 64, bench::fullSensorRecord());
BENCHMARK_CAPTURE(fillCompactSensor, 48, compactImage());
BENCHMARK_CAPTURE(move, 48, compactImage());
BENCHMARK_CAPTURE(fillSpd, 146, counting(146));
BENCHMARK_CAPTURE(move, 146, counting(146));
BENCHMARK_CAPTURE(fillBoard, 96, counting(96));
BENCHMARK_CAPTURE(move, 96, counting(96));
BENCHMARK_CAPTURE(fillGswb, 12, counting(12));
BENCHMARK_CAPTURE(move, 12, counting(12));
BENCHMARK_CAPTURE(fillPsu, 2, counting(2));
BENCHMARK_CAPTURE(move, 2, counting(2));
BENCHMARK_CAPTURE(readFullSensor, 64, bench::fullSensorRecord());
BENCHMARK_CAPTURE(readCompactSensor, 48, compactImage());
BENCHMARK(fillAndReadSpd);
BENCHMARK(fillAndReadBoard);
BENCHMARK(fillAndReadGspb);
BENCHMARK_CAPTURE(move, 1541, gspbImage());
BENCHMARK(fillAndReadPciBox);
BENCHMARK_CAPTURE(move, 317, pciBoxImage());
BENCHMARK(readFlag);
