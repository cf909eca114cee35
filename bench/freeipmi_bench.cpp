// SPDX-License-Identifier: Apache-2.0
// What libfreeipmi needs for the same record.
#include <benchmark/benchmark.h>
#include <freeipmi/freeipmi.h>

#include "Scratch.h"

namespace {

constexpr const char* FORMAT = "%i | %d | %t | %s | %e";

void ParseToStringByFreeIPMI(benchmark::State& state)
{
    const bench::Bytes& record = bench::record();
    const ipmi_sel_ctx_t context = ipmi_sel_ctx_create(nullptr, nullptr);
    char text[512];
    for (auto _ : state) {
        if (ipmi_sel_parse_read_record_string(context, FORMAT, record.data(),
                                              static_cast<unsigned int>(record.size()), text,
                                              sizeof text, 0) <= 0) {
            state.SkipWithError("not parsed");
            break;
        }
        benchmark::DoNotOptimize(text);
    }
    ipmi_sel_ctx_destroy(context);
}

void InterpretByFreeIPMI(benchmark::State& state)
{
    const bench::Bytes& record = bench::record();
    const ipmi_interpret_ctx_t context = ipmi_interpret_ctx_create();
    ipmi_interpret_load_sel_config(context, nullptr);
    unsigned int severity = 0;
    for (auto _ : state) {
        if (ipmi_interpret_sel(context, record.data(), static_cast<unsigned int>(record.size()),
                               &severity) < 0) {
            state.SkipWithError("not interpreted");
            break;
        }
        benchmark::DoNotOptimize(severity);
    }
    ipmi_interpret_ctx_destroy(context);
}

}

BENCHMARK(ParseToStringByFreeIPMI);
BENCHMARK(InterpretByFreeIPMI);
