// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_INSPECT_EVENT_EVENTSUMMARY_H
#define RECORDKIT_INSPECT_EVENT_EVENTSUMMARY_H

#include <cstddef>
#include <map>
#include <optional>
#include <utility>
#include <vector>

#include <recordkit/inspect/event/Event.h>

namespace recordkit::inspect {

// The pointers below are to events of the lists that were summarised.

/// How many events a part of the list has.
struct EventCount {
    std::size_t events = 0;
    std::size_t stillAsserted = 0; ///< states, not events
};

/// Of each severity, also of those without an event, the worst first.
using SeverityCounts = std::vector<std::pair<Severity, EventCount>>;

/// The events of one log, or of one sensor.
struct EventGroup {
    const Event* newest = nullptr; ///< one of them, which tells what all have in common
    EventCount count;
};

/// A state that events assert: see stateKey.
struct AssertedState {
    const Event* newest = nullptr; ///< the assertion logged last
    const Event* since = nullptr; ///< the first assertion that nothing has ended; none if all ended
    std::size_t assertions = 0;   ///< ended or not
};

/// What matters in a list of events.
struct EventSummary {
    std::size_t events = 0;
    std::size_t undated = 0;        ///< events without a date
    std::optional<Timestamp> first; ///< the earliest and the latest date; none if there is no date
    std::optional<Timestamp> last;

    SeverityCounts severities;       ///< of system events
    std::size_t otherRecords = 0;    ///< records that are not system events
    std::vector<EventGroup> logs;    ///< in the order of their numbers
    std::vector<EventGroup> sensors; ///< most events first, then by number
    /// Events by the second in which their hour begins.
    std::map<unsigned int, std::size_t> hours;

    /// States still asserted, the worst severity first, of equal ones the longest asserted.
    std::vector<AssertedState> asserted;
    const Event* newest = nullptr; ///< the one logged last
    /// The state asserted most often, ended or not; no value if there is none.
    std::optional<AssertedState> mostFrequent;
    /// Of the states still asserted the one that has been so for the longest time.
    std::optional<AssertedState> longest;
};

/// Summarises events that markAsserted has seen: `events` are counted, and `all`, from which they
/// were chosen, says what is still asserted. Hours begin as in the time zone.
EventSummary summarise(const std::vector<Event>& events, const std::vector<Event>& all,
                       Zone zone = nullptr);

}

#endif
