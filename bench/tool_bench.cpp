// SPDX-License-Identifier: Apache-2.0
// The line of one event in a listing; to be compared with ParseToStringByFreeIPMI.
#include <benchmark/benchmark.h>

#include "Scratch.h"
#include "tool/sel/EventColumns.h"

namespace {

using namespace recordkit::tool;

void ListingLine(benchmark::State& state)
{
    const bench::Bytes image = bench::slot(1);
    EventListing listing(Format::TABLE,
                         [](const std::string& text) { benchmark::DoNotOptimize(text); });
    for (auto _ : state) {
        listing.add(decodeEvent(0, {1, 0, 0, image.data()}));
    }
}

}

BENCHMARK(ListingLine);
