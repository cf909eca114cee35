// SPDX-License-Identifier: Apache-2.0
#include "EventFilter.h"

#include <algorithm>

#include "EventCodes.h"

namespace recordkit::tool {

namespace {

constexpr unsigned long LAST_PARTITION = 15;

}

std::vector<Option> eventFilterOptions()
{
    return {
        severityOption("--severity",
                       "Only events of this severity or higher: informational, monitor, warning, "
                       "critical, non-recoverable; or only unrated ones"),
        sinceOption("--since",
                    "Only events at this time or later; events without a date are left out"),
        untilOption("--until", "Only events at this time or earlier, a day as a whole"),
        sensorTypeOption("--sensor-type", "TYPE",
                         "Only events of this sensor type: a name, its beginning, or a number"),
        number("--partition", "N", 0, LAST_PARTITION, "Only events that concern this partition"),
    };
}

EventFilter::EventFilter(const Arguments& arguments)
    : severity(arguments.find("--severity")), sensorType(arguments.find("--sensor-type")),
      partition(arguments.find("--partition")), since(arguments.find("--since")),
      until(arguments.find("--until"))
{
}

std::vector<Event> EventFilter::choose(std::vector<Event> events)
{
    const auto rejected = std::remove_if(events.begin(), events.end(),
                                         [this](const Event& event) { return !accepts(event); });
    events.erase(rejected, events.end());
    return events;
}

bool EventFilter::isChosen(const Event& event) const
{
    const bool isSystemEvent = event.kind == EventKind::SYSTEM_EVENT;
    if (severity && (!isSystemEvent || !isSevere(event))) {
        return false;
    }
    if (sensorType && (!isSystemEvent || event.sensorType != *sensorType)) {
        return false;
    }
    return !partition || (event.partitions >> *partition & 1U) != 0;
}

/// Unrated events are neither harmless nor severe: they are asked for as such.
bool EventFilter::isSevere(const Event& event) const
{
    return *severity == SeverityMap::SEV_NONE
               ? event.severity == SeverityMap::SEV_NONE
               : isAtLeast(event.severity, static_cast<Severity>(*severity));
}

bool EventFilter::accepts(const Event& event)
{
    if (!isChosen(event)) {
        return false;
    }
    if (!since && !until) {
        return true;
    }
    if (!event.hasTime || !event.time.isDate()) {
        ++undated;
        return false;
    }
    return event.time.raw() >= since.value_or(0) && (!until || event.time.raw() <= *until);
}

}
