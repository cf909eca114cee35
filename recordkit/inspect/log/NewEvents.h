// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_INSPECT_LOG_NEWEVENTS_H
#define RECORDKIT_INSPECT_LOG_NEWEVENTS_H

#include <array>
#include <string>
#include <vector>

#include <recordkit/inspect/event/Event.h>

namespace recordkit::inspect {

/// Returns the events of one board that it has not returned before, also across rotations.
class NewEvents {
public:
    explicit NewEvents(unsigned char sb) : board(sb) {}

    /// Oldest first. `problems` gets a line for each file that could not be read correctly. Returns
    /// nothing while a rotation is in progress. If the last event returned has since been dropped,
    /// returns the whole log.
    std::vector<Event> take(std::vector<std::string>& problems);

private:
    bool isLastInBackup() const;

    unsigned char board;
    bool hasLast = false;
    std::array<unsigned char, SELFileLayout::SLOT_SIZE> last = {};
};

}

#endif
