// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_INSPECT_LOG_NEWEVENTS_H
#define RECORDKIT_INSPECT_LOG_NEWEVENTS_H

#include <string>
#include <unordered_map>
#include <vector>

#include <recordkit/inspect/log/BoardLog.h>

namespace recordkit::inspect {

/// Returns the events of one board that it has not returned before, also across rotations and
/// repairs.
class NewEvents {
public:
    /// With `isStrict` only the events that the store counts.
    explicit NewEvents(unsigned char sb, bool strict = false) : board(sb), isStrict(strict) {}

    /// Oldest first. `problems` are those of the log that was read. Of several byte-identical
    /// events, as many are new as there are more of them than last time.
    std::vector<Event> take(std::vector<LogProblem>& problems);

private:
    unsigned char board;
    bool isStrict;
    std::unordered_map<std::string, std::size_t> returned;
};

}

#endif
