// SPDX-License-Identifier: Apache-2.0
// Trace lines go to the system's log.
#include <recordkit/platform/TavTrace.h>

#include <syslog.h>

namespace TAVLib::trace {

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
    // The library's levels: 0 is an error, 100 and 200 are less important.
    const int priority = level == 0 ? LOG_ERR : level <= 100 ? LOG_WARNING : LOG_NOTICE;
    // The text is an argument, because it may contain percent signs.
    syslog(priority, "%u:%u:0x%04X %s", state->producer, state->module, state->location, text);
}

}
