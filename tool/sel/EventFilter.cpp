// SPDX-License-Identifier: Apache-2.0
#include "EventFilter.h"

#include <algorithm>

#include <recordkit/inspect/words/SensorTypes.h>

namespace recordkit::tool {

namespace {

constexpr unsigned long LAST_PARTITION = 15;
constexpr const char* TIME = "a UTC time such as 2024-11-05 or 2024-11-05T06:07:08Z";
constexpr const char* SEVERITY = "informational, monitor, warning, critical or non-recoverable";

std::optional<unsigned long> severityOf(const std::string& text)
{
    const auto severity = findSeverity(text);
    return severity ? std::optional(static_cast<unsigned long>(*severity)) : std::nullopt;
}

std::optional<unsigned long> timeOf(const std::string& text)
{
    return parseTime(text);
}

std::optional<unsigned long> sensorTypeOf(const std::string& text)
{
    return findSensorType(text);
}

}

std::vector<Option> eventFilterOptions()
{
    return {
        word("--severity", "NAME", severityOf, SEVERITY,
             "Only events of this severity or higher: informational, monitor, warning, critical, "
             "non-recoverable"),
        word("--since", "TIME", timeOf, TIME,
             "Only events at this time (UTC) or later; events without a date are left out"),
        word("--until", "TIME", timeOf, TIME, "Only events at this time (UTC) or earlier"),
        word("--sensor-type", "TYPE", sensorTypeOf, "the name or the number of a sensor type",
             "Only events of this sensor type: a name as listed, or a number"),
        number("--partition", "N", 0, LAST_PARTITION, "Only events that concern this partition"),
    };
}

EventFilter::EventFilter(const Arguments& arguments)
    : leastSeverity(arguments.find("--severity")), sensorType(arguments.find("--sensor-type")),
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
    if (leastSeverity &&
        (!isSystemEvent || !isAtLeast(event.severity, static_cast<Severity>(*leastSeverity)))) {
        return false;
    }
    if (sensorType && (!isSystemEvent || event.sensorType != *sensorType)) {
        return false;
    }
    return !partition || (event.partitions >> *partition & 1U) != 0;
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
