// SPDX-License-Identifier: Apache-2.0
#include <recordkit/host/TraceLog.h>

#include <cstdio>
#include <mutex>
#include <utility>

#include <recordkit/platform/TavTrace.h>

namespace TAVLib {

namespace {

std::mutex sinkMutex;
host::TraceSink currentSink;

void writeToStandardError(const host::TraceLine& line)
{
    std::fprintf(stderr, "recordkit[%u:%u:0x%04X] level %u: %s\n", line.producer, line.module,
                 line.location, line.level, line.text.c_str());
}

}

host::TraceSink host::setTraceSink(TraceSink sink)
{
    const std::lock_guard<std::mutex> lock(sinkMutex);
    return std::exchange(currentSink, std::move(sink));
}

namespace trace {

class TavTrace::State {
public:
    unsigned char producer;
    unsigned char module;
    unsigned short location;
};

TavTrace::TavTrace(unsigned char producer, unsigned char module, unsigned short location)
    : state(new State{producer, module, location})
{
}

TavTrace::~TavTrace()
{
    delete state;
}

void TavTrace::putLog(unsigned char level, const char* text)
{
    host::TraceSink sink;
    {
        const std::lock_guard<std::mutex> lock(sinkMutex);
        sink = currentSink;
    }
    const host::TraceLine line{state->producer, state->module, state->location, level, text};
    // The sink runs outside the lock, so that it may trace or replace itself.
    if (sink) {
        sink(line);
    } else {
        writeToStandardError(line);
    }
}

}

}
