// SPDX-License-Identifier: Apache-2.0
#include <recordkit/inspect/log/NewEvents.h>

#include <utility>

namespace recordkit::inspect {

std::vector<Event> NewEvents::take(std::vector<LogProblem>& problems)
{
    const BoardLog log(board);
    problems = log.getProblems();
    std::vector<Event> events;
    std::unordered_map<std::string, std::size_t> found;
    for (const LogSlot& slot : log.getSlots()) {
        if (!slot.isShown(isStrict)) {
            continue;
        }
        const std::string image(slot.image, slot.image + SELFileLayout::SLOT_SIZE);
        const auto known = seen.find(image);
        if (++found[image] > (known == seen.end() ? 0 : known->second)) {
            events.push_back(log.decode(slot));
        }
    }
    seen = std::move(found);
    return events;
}

}
