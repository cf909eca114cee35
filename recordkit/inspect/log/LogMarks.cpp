// SPDX-License-Identifier: Apache-2.0
#include <recordkit/inspect/log/LogMarks.h>

#include <map>

#include <recordkit/inspect/event/AssertedEvents.h>

namespace recordkit::inspect {

namespace {

/// Record ids are 0001h to FFFEh (IPMI v2.0, section 31.5); after the last the first comes again.
constexpr unsigned int IDS = 0xFFFE;

constexpr const char* NAMES[] = {"rotation", "gap", "cleared", "clock"};

/// One log, event by event.
class Follower {
public:
    void add(const Event& event, std::vector<LogMark>& marks)
    {
        const bool isDated = event.hasTime && event.time.isDate();
        if (before != nullptr) {
            findBetween(event);
        }
        if (isDated) {
            const unsigned int date = event.time.raw();
            if (isClockUnset || (hasDate && date < lastDate)) {
                pending.push_back({LogMark::CLOCK});
            }
            for (LogMark& mark : pending) {
                mark.log = event.log;
                mark.from = hasDate ? lastDate : date;
                mark.to = date;
                marks.push_back(mark);
            }
            pending.clear();
            lastDate = date;
            hasDate = true;
        }
        isClockUnset = event.hasTime ? event.time.isPreInit() : isClockUnset;
        before = &event;
    }

    /// Marks after which no event has a date.
    void finish(std::vector<LogMark>& marks)
    {
        for (LogMark& mark : pending) {
            mark.log = before->log;
            mark.from = mark.to = hasDate ? lastDate : 0;
            if (hasDate) {
                marks.push_back(mark);
            }
        }
    }

private:
    void findBetween(const Event& event)
    {
        if (event.fileIndex != before->fileIndex) {
            pending.push_back({LogMark::ROTATION});
        }
        const unsigned int steps = (event.recordId + IDS - before->recordId) % IDS;
        const bool isWrapped = before->recordId > IDS / 2 && event.recordId < IDS / 2;
        if (isLogCleared(event) || (event.recordId < before->recordId && !isWrapped)) {
            pending.push_back({LogMark::CLEARED});
        } else if (steps > 1) {
            pending.push_back({LogMark::GAP, 0, 0, 0, steps - 1});
        }
    }

    const Event* before = nullptr;
    bool hasDate = false;
    bool isClockUnset = false;
    unsigned int lastDate = 0;
    std::vector<LogMark> pending; ///< until an event has a date
};

}

const char* logMarkName(LogMark::Kind kind)
{
    return NAMES[kind];
}

std::vector<LogMark> findLogMarks(const std::vector<Event>& events)
{
    std::vector<LogMark> marks;
    std::map<unsigned int, Follower> logs;
    for (const Event& event : events) {
        logs[event.log].add(event, marks);
    }
    for (auto& each : logs) {
        each.second.finish(marks);
    }
    return marks;
}

}
