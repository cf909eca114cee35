// SPDX-License-Identifier: Apache-2.0
#include <recordkit/inspect/event/EventSummary.h>

#include <algorithm>
#include <unordered_map>
#include <utility>

#include <recordkit/inspect/event/AssertedEvents.h>
#include <recordkit/inspect/words/SeverityPairs.h>

namespace recordkit::inspect {

namespace {

bool hasDate(const Event& event)
{
    return event.hasTime && event.time.isDate();
}

/// When the hour of a date begins.
unsigned int hourOf(unsigned int seconds, Zone zone)
{
    constexpr long HOUR = 3600;
    const long ahead = zone == nullptr ? 0 : zone(seconds);
    const long intoHour = (static_cast<long>(seconds % HOUR) + ahead % HOUR + HOUR) % HOUR;
    return seconds - static_cast<unsigned int>(intoHour);
}

void addTime(const Event& event, Zone zone, EventSummary& summary)
{
    if (!hasDate(event)) {
        ++summary.undated;
        return;
    }
    const auto isEarlier = [&event](const Timestamp& other) {
        return event.time.raw() < other.raw();
    };
    if (!summary.first || isEarlier(*summary.first)) {
        summary.first = event.time;
    }
    if (!summary.last || !isEarlier(*summary.last)) {
        summary.last = event.time;
    }
    ++summary.hours[hourOf(event.time.raw(), zone)];
}

/// Whether one state has been asserted longer than another. The list is merged by time, so that its
/// order decides; the clock may have been set meanwhile.
bool isLonger(const AssertedState& left, const AssertedState& right)
{
    return left.since < right.since;
}

bool isWorse(const AssertedState& left, const AssertedState& right)
{
    const Severity one = left.since->severity;
    const Severity other = right.since->severity;
    return one == other ? isLonger(left, right) : isAtLeast(one, other);
}

/// Groups of events by a key, in the order of the keys.
class Groups {
public:
    void add(std::uint64_t key, const Event& event)
    {
        EventGroup& group = groups[key];
        group.newest = &event;
        ++group.count.events;
    }
    void addState(std::uint64_t key, const Event& event)
    {
        EventGroup& group = groups[key];
        group.newest = group.newest == nullptr ? &event : group.newest;
        ++group.count.stillAsserted;
    }

    std::vector<EventGroup> take() const
    {
        std::vector<EventGroup> result;
        for (const auto& each : groups) {
            result.push_back(each.second);
        }
        return result;
    }

private:
    std::map<std::uint64_t, EventGroup> groups;
};

/// The states that events assert, by their first assertion.
class States {
public:
    void add(const Event& event)
    {
        if (event.kind != EventKind::SYSTEM_EVENT || event.isDeassertion) {
            return;
        }
        const auto [found, isNew] = positions.try_emplace(stateKey(event), states.size());
        if (isNew) {
            states.emplace_back();
        }
        AssertedState& state = states[found->second];
        state.newest = &event;
        ++state.assertions;
        if (event.isStillAsserted && state.since == nullptr) {
            state.since = &event;
        }
    }
    const std::vector<AssertedState>& get() const { return states; }

private:
    std::unordered_map<std::uint64_t, std::size_t> positions;
    std::vector<AssertedState> states;
};

class Summary {
public:
    explicit Summary(Zone hoursZone) : zone(hoursZone)
    {
        for (const Severity each : worstFirst()) {
            summary.severities.emplace_back(each, EventCount());
        }
    }

    void add(const Event& event)
    {
        ++summary.events;
        summary.newest = &event;
        addTime(event, zone, summary);
        logs.add(event.log, event);
        if (event.kind != EventKind::SYSTEM_EVENT) {
            ++summary.otherRecords;
            return;
        }
        ++countOf(event.severity).events;
        sensors.add(sensorKey(event), event);
    }

    void addMostFrequent(const States& states)
    {
        for (const AssertedState& state : states.get()) {
            if (!summary.mostFrequent || state.assertions > summary.mostFrequent->assertions) {
                summary.mostFrequent = state;
            }
        }
    }

    void addStillAsserted(const States& states)
    {
        for (const AssertedState& state : states.get()) {
            if (state.since == nullptr) {
                continue;
            }
            summary.asserted.push_back(state);
            ++countOf(state.since->severity).stillAsserted;
            logs.addState(state.since->log, *state.since);
            sensors.addState(sensorKey(*state.since), *state.since);
            if (!summary.longest || isLonger(state, *summary.longest)) {
                summary.longest = state;
            }
        }
        std::sort(summary.asserted.begin(), summary.asserted.end(), isWorse);
    }

    EventSummary take()
    {
        summary.logs = logs.take();
        summary.sensors = sensors.take();
        std::stable_sort(summary.sensors.begin(), summary.sensors.end(),
                         [](const EventGroup& left, const EventGroup& right) {
                             return left.count.events > right.count.events;
                         });
        return std::move(summary);
    }

private:
    EventCount& countOf(Severity severity)
    {
        return std::find_if(summary.severities.begin(), summary.severities.end(),
                            [severity](const auto& each) { return each.first == severity; })
            ->second;
    }

    Zone zone;
    EventSummary summary;
    Groups logs;
    Groups sensors;
};

}

EventSummary summarise(const std::vector<Event>& events, const std::vector<Event>& all, Zone zone)
{
    Summary summary(zone);
    States chosen;
    for (const Event& event : events) {
        summary.add(event);
        chosen.add(event);
    }
    summary.addMostFrequent(chosen);
    States states;
    for (const Event& event : all) {
        states.add(event);
    }
    summary.addStillAsserted(states);
    return summary.take();
}

}
