// SPDX-License-Identifier: Apache-2.0
#include <recordkit/inspect/log/Timeline.h>

#include <functional>
#include <queue>
#include <tuple>
#include <utility>

namespace recordkit::inspect {

namespace {

/// The next event of a log.
struct Head {
    unsigned int time; ///< of the event, or of the last one before it that has a date
    std::size_t log;
    std::size_t event;

    bool operator>(const Head& other) const
    {
        return std::tie(time, log) > std::tie(other.time, other.log);
    }
};

unsigned int timeOf(const Event& event, unsigned int before)
{
    return event.hasTime && event.time.isDate() ? event.time.raw() : before;
}

}

std::vector<Event> mergeByTime(std::vector<std::vector<Event>> logs)
{
    if (logs.size() == 1) {
        return std::move(logs[0]);
    }
    std::priority_queue<Head, std::vector<Head>, std::greater<>> heads;
    const auto push = [&](std::size_t log, std::size_t event, unsigned int before) {
        if (event < logs[log].size()) {
            heads.push({timeOf(logs[log][event], before), log, event});
        }
    };
    for (std::size_t log = 0; log < logs.size(); ++log) {
        push(log, 0, 0);
    }
    std::vector<Event> merged;
    while (!heads.empty()) {
        const Head head = heads.top();
        heads.pop();
        merged.push_back(std::move(logs[head.log][head.event]));
        push(head.log, head.event + 1, head.time);
    }
    return merged;
}

}
