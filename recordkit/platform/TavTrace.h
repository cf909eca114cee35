// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_PLATFORM_TAVTRACE_H
#define RECORDKIT_PLATFORM_TAVTRACE_H

#include <recordkit/platform/Export.h>

namespace TAVLib::trace {

/// The firmware's trace sink. Its parameters identify the writer: producer class, module code,
/// location code.
///
/// The layout is one pointer after that of the virtual functions; an implementation's own header
/// must not differ (see Export.h).
class RECORDKIT_API TavTrace {
public:
    TavTrace(unsigned char producer, unsigned char module, unsigned short location);
    virtual ~TavTrace();

    TavTrace(const TavTrace&) = delete;
    TavTrace& operator=(const TavTrace&) = delete;

    /// Writes one line; the text is copied before the call returns.
    void putLog(unsigned char level, const char* text);

private:
    class State;
    State* state;
};

}

#endif
