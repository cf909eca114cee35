// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_HOST_TRACELOG_H
#define RECORDKIT_HOST_TRACELOG_H

#include <functional>
#include <string>

#include <recordkit/platform/Export.h>

namespace TAVLib::host {

/// One line that went to the trace sink.
struct TraceLine {
    unsigned char producer;
    unsigned char module;
    unsigned short location;
    unsigned char level;
    std::string text;
};

using TraceSink = std::function<void(const TraceLine&)>;

/// Sends trace lines to `sink` from now on and returns the previous sink. An empty sink restores
/// the default: one line "recordkit[1:83:0x0900] level 0: ..." to standard error.
///
/// The sink may be called from several threads at once.
RECORDKIT_API TraceSink setTraceSink(TraceSink sink);

}

#endif
