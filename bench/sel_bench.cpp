// SPDX-License-Identifier: Apache-2.0
// Each entry class: parse, serialize and field access, compared with memcpy of the same bytes.
#include <benchmark/benchmark.h>
#include <cstring>

#include <recordkit/sel/BMCSELEntryMessage.h>
#include <recordkit/sensor/SeverityMap.h>

#include "Scratch.h"

using namespace TAVLib::RecordKit;

namespace {

template <typename Entry> void parse(benchmark::State& state)
{
    const bench::Bytes image = bench::slot(1);
    const auto size = static_cast<unsigned int>(state.range(0));
    Entry entry;
    for (auto _ : state) {
        entry.setSerialized(image.data(), size);
        benchmark::DoNotOptimize(&entry);
        benchmark::ClobberMemory();
    }
}

template <typename Entry> void serialize(benchmark::State& state)
{
    const bench::Bytes image = bench::slot(1);
    const auto size = static_cast<unsigned int>(state.range(0));
    Entry entry;
    entry.setSerialized(image.data(), size);
    unsigned char buffer[256];
    for (auto _ : state) {
        benchmark::DoNotOptimize(entry.getSerialized(buffer, sizeof buffer));
        benchmark::ClobberMemory();
    }
}

void moveBytes(benchmark::State& state)
{
    const bench::Bytes image = bench::slot(1);
    const auto size = static_cast<std::size_t>(state.range(0));
    unsigned char buffer[256];
    for (auto _ : state) {
        std::memcpy(buffer, image.data(), size);
        benchmark::DoNotOptimize(buffer);
        benchmark::ClobberMemory();
    }
}

/// Every byte of the record by its number, the generator, and what the class adds.
void readRecord(const SELEntry& entry)
{
    for (int pos = 1; pos <= 16; ++pos) {
        benchmark::DoNotOptimize(entry.getSpecifiedBytePosData(pos));
    }
    benchmark::DoNotOptimize(entry.getSlaveAddress());
    benchmark::DoNotOptimize(entry.getLUN());
}

void readFields(SELEntry& entry)
{
    readRecord(entry);
}

void readFields(OEMSELEntry& entry)
{
    readRecord(entry);
    benchmark::DoNotOptimize(entry.getPartitionBitmask());
    benchmark::DoNotOptimize(entry.getPartNo());
    benchmark::DoNotOptimize(entry.getSerialNo());
}

void readFields(BMCSELEntry& entry)
{
    readRecord(entry);
    benchmark::DoNotOptimize(entry.getPartitionBitmask());
    benchmark::DoNotOptimize(entry.getPartNo());
    benchmark::DoNotOptimize(entry.getSerialNo(12));
}

void readFields(BMCSELEntryMessage& entry)
{
    readRecord(entry);
    benchmark::DoNotOptimize(entry.getPartitionBitmask());
    benchmark::DoNotOptimize(entry.getPartNo());
    benchmark::DoNotOptimize(entry.getSerialNo());
}

template <typename Entry> void accessFields(benchmark::State& state)
{
    const bench::Bytes image = bench::slot(1);
    Entry entry;
    entry.setSerialized(image.data(), static_cast<unsigned int>(state.range(0)));
    for (auto _ : state) {
        readFields(entry);
    }
}

/// To be compared with ParseAndInterpretByFreeIPMI.
void ParseReadAndClassify(benchmark::State& state)
{
    const bench::Bytes image = bench::slot(1);
    SeverityMap& map = *SeverityMap::getInstance();
    for (auto _ : state) {
        BMCSELEntryMessage entry;
        entry.setSerialized(image.data(), static_cast<unsigned int>(image.size()));
        readFields(entry);
        const auto type =
            static_cast<unsigned char>(entry.getSpecifiedBytePosData(SELEntry::EVENT_TYPE) & 0x7F);
        const auto offset = static_cast<unsigned short>(
            1 << (entry.getSpecifiedBytePosData(SELEntry::EVENT_DATA_1) & 0x0F));
        benchmark::DoNotOptimize(
            map.getSeverity(type, entry.getSpecifiedBytePosData(SELEntry::SENSOR_TYPE), offset));
    }
}

}

BENCHMARK(moveBytes)->Name("Memcpy")->Arg(18)->Arg(74)->Arg(130)->Arg(138);
BENCHMARK_TEMPLATE(parse, SELEntry)->Arg(18);
BENCHMARK_TEMPLATE(parse, OEMSELEntry)->Arg(74);
BENCHMARK_TEMPLATE(parse, BMCSELEntry)->Arg(130);
BENCHMARK_TEMPLATE(parse, BMCSELEntryMessage)->Arg(138);
BENCHMARK_TEMPLATE(serialize, SELEntry)->Arg(18);
BENCHMARK_TEMPLATE(serialize, OEMSELEntry)->Arg(74);
BENCHMARK_TEMPLATE(serialize, BMCSELEntry)->Arg(130);
BENCHMARK_TEMPLATE(serialize, BMCSELEntryMessage)->Arg(138);
BENCHMARK_TEMPLATE(accessFields, SELEntry)->Arg(18);
BENCHMARK_TEMPLATE(accessFields, OEMSELEntry)->Arg(74);
BENCHMARK_TEMPLATE(accessFields, BMCSELEntry)->Arg(130);
BENCHMARK_TEMPLATE(accessFields, BMCSELEntryMessage)->Arg(138);
BENCHMARK(ParseReadAndClassify);
