// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_INSPECT_LOG_LOGMARKS_H
#define RECORDKIT_INSPECT_LOG_LOGMARKS_H

#include <cstddef>
#include <vector>

#include <recordkit/inspect/event/Event.h>

namespace recordkit::inspect {

/// Something that happened to a log, between two of its events.
struct LogMark {
    enum Kind {
        ROTATION, ///< the events are in different files
        GAP,      ///< record ids are missing between them
        CLEARED,  ///< the log was cleared: an event says so, or the record ids begin again
        CLOCK,    ///< the clock was set: the date is earlier, or the first after events without one
    };

    Kind kind = ROTATION;
    unsigned int log = 0;
    unsigned int from =
        0;               ///< date of the last event before it that has one; of the first ones `to`
    unsigned int to = 0; ///< date of the event after it, or of the next that has one
    std::size_t missing = 0; ///< ids of a gap
};

/// "rotation", "gap", "cleared" or "clock".
const char* logMarkName(LogMark::Kind kind);

/// The marks of logs whose events were merged, in the order of the events.
std::vector<LogMark> findLogMarks(const std::vector<Event>& events);

}

#endif
