// SPDX-License-Identifier: Apache-2.0
// The line of one event in a listing; to be compared with ParseToStringByFreeIPMI.
#include <benchmark/benchmark.h>

#include "Scratch.h"
#include "tool/sel/EventPrinter.h"

namespace {

using namespace recordkit::tool;

void ListingLine(benchmark::State& state)
{
    const bench::Bytes image = bench::slot(1);
    const auto printer = makeEventPrinter(EventFormat::TABLE, false);
    std::string line;
    for (auto _ : state) {
        line.clear();
        printer->append(decodeEvent(0, {1, 0, 0, image.data()}), line);
        benchmark::DoNotOptimize(line.data());
    }
}

}

BENCHMARK(ListingLine);
