// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_PLATFORM_TAVTRACE_H
#define RECORDKIT_PLATFORM_TAVTRACE_H

#include <recordkit/platform/Export.h>

namespace TAVLib::trace {

/// The firmware's trace sink. Its parameters identify the writer: producer class, module code,
/// location code.
class RECORDKIT_API TavTrace {
public:
    TavTrace(unsigned char producer, unsigned char module, unsigned short location);
    virtual ~TavTrace();

    /// Writes one line; the text is copied before the call returns.
    void putLog(unsigned char level, const char* text);

private:
    unsigned char producer;
    unsigned char module;
    unsigned short location;
};

}

#endif
