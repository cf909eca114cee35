// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_FUZZ_FUZZ_H
#define RECORDKIT_FUZZ_FUZZ_H

#include <cstdlib>

#include <recordkit/host/TraceLog.h>
#include <recordkit/inspect/bytes/Error.h>
#include <recordkit/platform/PException.h>

namespace fuzz {

/// Aborts the process, which the fuzzer reports as a finding; NDEBUG would drop an assert.
inline void expect(bool isTrue)
{
    if (!isTrue) {
        std::abort();
    }
}

/// Runs an action; a refusal with a text is not a finding, any other exception is one.
template <typename Action> void attempt(const Action& action)
{
    try {
        action();
    } catch (const TAVLib::PException&) {
        // An index beyond the record, or a field that it does not contain.
    } catch (const recordkit::inspect::Error&) {
        // Invalid input.
    }
}

/// Keeps trace lines off standard error.
inline void dropTraces()
{
    static const auto before = TAVLib::host::setTraceSink([](const TAVLib::host::TraceLine&) {});
}

}

#endif
