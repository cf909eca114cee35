// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_PLATFORM_TAVTRACE_H
#define RECORDKIT_PLATFORM_TAVTRACE_H

#include <recordkit/platform/Export.h>

namespace TAVLib::trace {

/// The firmware's trace sink. Its parameters identify the writer: producer class, module code,
/// location code. Several threads may trace at once, each with an object of its own.
///
/// The layout is one pointer after that of the virtual functions; an implementation's own header
/// must not differ (see Export.h).
class RECORDKIT_API TavTrace {
public:
    TavTrace(unsigned char producer, unsigned char module, unsigned short location);
    virtual ~TavTrace();

    TavTrace(const TavTrace&) = delete;
    TavTrace& operator=(const TavTrace&) = delete;

    /// Writes one line; the text is copied before the call returns. It has any length and any
    /// characters but zero, and is not a format. Nothing is thrown because a line cannot be
    /// written.
    ///
    /// Levels of the library: 0 for an error, 100 for a device that cannot be read, 200 for a
    /// parameter outside its range.
    void putLog(unsigned char level, const char* text);

private:
    class State;
    State* state;
};

}

#endif
