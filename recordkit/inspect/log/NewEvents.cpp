// SPDX-License-Identifier: Apache-2.0
#include <recordkit/inspect/log/NewEvents.h>

#include <algorithm>

namespace recordkit::inspect {

std::vector<Event> NewEvents::take(std::vector<LogProblem>& problems)
{
    const BoardLog log(board);
    problems = log.getProblems();
    std::vector<Event> events;
    std::unordered_map<std::string, std::size_t> present;
    std::unordered_map<std::string, std::size_t> shown;
    for (const LogSlot& slot : log.getSlots()) {
        if (slot.isCopy) {
            continue;
        }
        const std::string image(slot.image, slot.image + SELFileLayout::SLOT_SIZE);
        ++present[image];
        if (slot.isShown(isStrict) && ++shown[image] > returned[image]) {
            ++returned[image];
            events.push_back(log.decode(slot));
        }
    }
    // An event is forgotten when no file contains it, not while a rotation keeps the store from
    // counting it.
    for (auto known = returned.begin(); known != returned.end();) {
        const auto found = present.find(known->first);
        if (found == present.end()) {
            known = returned.erase(known);
        } else {
            known->second = std::min(known->second, found->second);
            ++known;
        }
    }
    return events;
}

}
