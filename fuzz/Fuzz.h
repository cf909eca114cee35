// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_FUZZ_FUZZ_H
#define RECORDKIT_FUZZ_FUZZ_H

#include <cstdlib>

#include <recordkit/host/TraceLog.h>
#include <recordkit/platform/PException.h>

#include "tool/Errors.h"

namespace fuzz {

/// Ends the process, which the fuzzer takes for a finding, where NDEBUG would drop an assert.
inline void expect(bool isTrue)
{
    if (!isTrue) {
        std::abort();
    }
}

/// Runs an action; being refused in words is no finding, any other exception is one.
template <typename Action> void attempt(const Action& action)
{
    try {
        action();
    } catch (const TAVLib::PException&) {
        // An index beyond the record, or a field that it does not carry.
    } catch (const recordkit::inspect::Error&) {
        // Input that is none.
    }
}

/// Keeps trace lines off standard error.
inline void dropTraces()
{
    static const auto before = TAVLib::host::setTraceSink([](const TAVLib::host::TraceLine&) {});
}

}

#endif
