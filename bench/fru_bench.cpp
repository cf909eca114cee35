// SPDX-License-Identifier: Apache-2.0
// FRU images opened, read and edited in memory, compared with copying and summing the same bytes.
#include <benchmark/benchmark.h>
#include <cstring>
#include <fstream>
#include <iterator>
#include <numeric>

#include <recordkit/fru/FRUData.h>
#include <recordkit/util/Util.h>

#include "FruImages.h"

namespace {

using Bytes = std::vector<unsigned char>;

Bytes load(const char* path, std::size_t size)
{
    std::ifstream file(path, std::ios::binary);
    const std::vector<char> content{std::istreambuf_iterator<char>(file), {}};
    Bytes bytes(content.begin(), content.end());
    bytes.resize(size, 0);
    return bytes;
}

class Device : public TAVLib::FRURWif {
public:
    explicit Device(const Bytes& image) : bytes(image) {}

    int read(unsigned int offset, unsigned int length, unsigned char* buffer) override
    {
        std::memcpy(buffer, bytes.data() + offset, length);
        return static_cast<int>(length);
    }
    int write(unsigned int offset, unsigned int length, const unsigned char* buffer) override
    {
        std::memcpy(bytes.data() + offset, buffer, length);
        return static_cast<int>(length);
    }

private:
    Bytes bytes;
};

constexpr FRU_AREA AREAS[] = {FRU_AREA_CHASSIS, FRU_AREA_BOARD, FRU_AREA_PRODUCT};

void openAndReadField(benchmark::State& state, const Bytes& image)
{
    Device device(image);
    for (auto _ : state) {
        FRUData fru(device);
        std::string serial;
        fru.getItem(FRU_AREA_BOARD, FRU_ITEM_SERIAL_NUMBER, serial, FRUArea::CSUM_CHECK);
        benchmark::DoNotOptimize(serial);
    }
}

void readAllFields(benchmark::State& state, const Bytes& image)
{
    Device device(image);
    for (auto _ : state) {
        FRUData fru(device);
        for (const FRU_AREA area : AREAS) {
            for (const FRUMember* const member :
                 fru.getAreaObject(area, FRUArea::CSUM_CHECK)->getMembers()) {
                benchmark::DoNotOptimize(member->getData());
            }
        }
    }
}

void editAndWriteBack(benchmark::State& state, const Bytes& image)
{
    Device device(image);
    for (auto _ : state) {
        FRUData fru(device);
        std::string serial = "SN-4711";
        fru.updateItem(FRU_AREA_BOARD, FRU_ITEM_SERIAL_NUMBER, serial);
        fru.syncFRU();
    }
}

void copyAndSum(benchmark::State& state, const Bytes& image)
{
    Bytes copy(image.size());
    for (auto _ : state) {
        std::memcpy(copy.data(), image.data(), image.size());
        benchmark::DoNotOptimize(std::accumulate(copy.begin(), copy.end(), 0U));
        benchmark::ClobberMemory();
    }
}

void readRom(benchmark::State& state)
{
    using TAVLib::RecordKit::Util;
    Device device(bench::cpuRom());
    for (auto _ : state) {
        FRUData rom(device, FRU_CPU_ROM);
        benchmark::DoNotOptimize(Util::getCPUCache(rom));
        benchmark::DoNotOptimize(Util::getCPUModelType(rom));
    }
}

void readRomWhole(benchmark::State& state)
{
    Device device(bench::cpuRom());
    for (auto _ : state) {
        FRUData rom(device, FRU_CPU_ROM);
        for (int area = FRU_AREA_CPU_PROCESSOR; area <= FRU_AREA_CPU_OTHER; ++area) {
            for (const FRUMember* const member :
                 rom.getAreaObject(static_cast<FRU_AREA>(area), FRUArea::CSUM_CHECK)
                     ->getMembers()) {
                benchmark::DoNotOptimize(member->getData());
            }
        }
    }
}

}

const Bytes& bench::smallFru()
{
    static const Bytes image = load(RECORDKIT_EXAMPLES "/data/fru/ascii-all.bin", 256);
    return image;
}

const Bytes& bench::largeFru()
{
    static const Bytes image = load(RECORDKIT_EXAMPLES "/data/fru/example-json.bin", 2048);
    return image;
}

const Bytes& bench::cpuRom()
{
    static const Bytes image = load(RECORDKIT_EXAMPLES "/data/cpu/sample.bin", 128);
    return image;
}

BENCHMARK_CAPTURE(openAndReadField, 256, bench::smallFru());
BENCHMARK_CAPTURE(readAllFields, 256, bench::smallFru());
BENCHMARK_CAPTURE(editAndWriteBack, 256, bench::smallFru());
BENCHMARK_CAPTURE(copyAndSum, 256, bench::smallFru());
BENCHMARK_CAPTURE(openAndReadField, 2048, bench::largeFru());
BENCHMARK_CAPTURE(readAllFields, 2048, bench::largeFru());
BENCHMARK_CAPTURE(editAndWriteBack, 2048, bench::largeFru());
BENCHMARK_CAPTURE(copyAndSum, 2048, bench::largeFru());
BENCHMARK(readRom);
BENCHMARK(readRomWhole);
BENCHMARK_CAPTURE(copyAndSum, cpu, bench::cpuRom());
