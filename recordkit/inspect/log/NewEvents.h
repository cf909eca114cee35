// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_INSPECT_LOG_NEWEVENTS_H
#define RECORDKIT_INSPECT_LOG_NEWEVENTS_H

#include <array>
#include <string>
#include <vector>

#include <recordkit/inspect/event/Event.h>

namespace recordkit::inspect {

/// Gives the events of one board that were not given before, also across rotations.
class NewEvents {
public:
    explicit NewEvents(unsigned char sb) : board(sb) {}

    /// Oldest first. `problems` gets a line for each file that could not be read as it should.
    /// Nothing is new in the middle of a rotation; when the last event is gone, all others are.
    std::vector<Event> take(std::vector<std::string>& problems);

private:
    bool isLastInBackup() const;

    unsigned char board;
    bool hasLast = false;
    std::array<unsigned char, SELFileLayout::SLOT_SIZE> last = {};
};

}

#endif
