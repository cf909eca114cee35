// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_TOOL_SEL_FOLLOWER_H
#define RECORDKIT_TOOL_SEL_FOLLOWER_H

#include <array>
#include <vector>

#include "Event.h"

namespace recordkit::tool {

/// Gives the events of one board that were not given before, also across rotations.
class NewEvents {
public:
    explicit NewEvents(unsigned char sb) : board(sb) {}

    /// Oldest first. `problems` gets a line for each file that could not be read as it should.
    std::vector<Event> take(std::vector<std::string>& problems);

private:
    unsigned char board;
    bool hasLast = false;
    std::array<unsigned char, SELFileLayout::SLOT_SIZE> last = {};
};

/// Waits for writes to the working files of some boards.
class WriteWatch {
public:
    /// Begins to watch; throws CommandError (file).
    explicit WriteWatch(const std::vector<unsigned char>& boards);
    ~WriteWatch();
    WriteWatch(const WriteWatch&) = delete;
    WriteWatch& operator=(const WriteWatch&) = delete;

    /// Returns when one of the files was written since the last call.
    void wait() const;

private:
    int fd;
    std::vector<std::string> names;
};

}

#endif
