// SPDX-License-Identifier: Apache-2.0
// Severity lookup, compared with the lookup of a key in a map of the same size.
#include <benchmark/benchmark.h>
#include <map>

#include <recordkit/sensor/SeverityMap.h>

namespace {

void SeverityLookup(benchmark::State& state)
{
    SeverityMap& map = *SeverityMap::getInstance();
    unsigned short offsets = 1;
    for (auto _ : state) {
        benchmark::DoNotOptimize(map.getSeverity(0x6F, 0x07, offsets));
        offsets = static_cast<unsigned short>(offsets << 1 | offsets >> 15);
    }
}

void SeverityLookupFloor(benchmark::State& state)
{
    std::map<unsigned short, unsigned short> map;
    for (unsigned short key = 0; key < 42; ++key) {
        map[static_cast<unsigned short>(key * 1000)] = key;
    }
    for (auto _ : state) {
        benchmark::DoNotOptimize(map.find(12000));
    }
}

}

BENCHMARK(SeverityLookup);
BENCHMARK(SeverityLookupFloor);
