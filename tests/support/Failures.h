// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_TESTS_SUPPORT_FAILURES_H
#define RECORDKIT_TESTS_SUPPORT_FAILURES_H

#include <functional>
#include <mutex>
#include <string>
#include <vector>

#include <recordkit/host/TraceLog.h>
#include <recordkit/platform/PException.h>

namespace testing_support {

/// All fields of an exception: "1:83:0x0900 act 1 det 0x0B00 msg 20008 (SELEntry, 0, 16)".
/// Parameters that are 0 are left out at the end.
std::string describe(const TAVLib::PException& e);

/// What `action` throws, described; "nothing" when it throws nothing.
std::string thrownBy(const std::function<void()>& action);

/// An exception type of a device's own: it passes through the library unchanged.
struct OtherFailure {};

/// Collects the trace lines of its lifetime, each as "1:83:0x0900 level 0: text".
class TraceCapture {
public:
    TraceCapture();
    ~TraceCapture();
    TraceCapture(const TraceCapture&) = delete;
    TraceCapture& operator=(const TraceCapture&) = delete;

    std::vector<std::string> lines() const;
    /// The lines so far, which are then forgotten.
    std::vector<std::string> take();

private:
    mutable std::mutex mutex;
    std::vector<std::string> captured;
    TAVLib::host::TraceSink before;
};

using Lines = std::vector<std::string>;

}

#endif
