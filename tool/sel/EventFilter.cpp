// SPDX-License-Identifier: Apache-2.0
#include "EventFilter.h"

#include <recordkit/inspect/bytes/Numbers.h>
#include <recordkit/inspect/words/SensorTypes.h>

#include "../Errors.h"

namespace recordkit::tool {

namespace {

constexpr unsigned long LAST_PARTITION = 15;

unsigned int timeOf(const char* option, const std::string& text)
{
    return orThrow(parseTime(text), usageError(std::string(option) + ": \"" + text +
                                               "\" is not a time, expected as 2024-11-05 or "
                                               "2024-11-05T06:07:08Z (UTC)"));
}

}

void EventFilter::addTo(CLI::App& command)
{
    command
        .add_option("--severity", severityText,
                    "Only events as bad as this or worse: informational, monitor, warning, "
                    "critical, non-recoverable")
        ->type_name("NAME");
    command
        .add_option("--since", sinceText,
                    "Only events at this time (UTC) or later; those before the controller's "
                    "clock was set have none")
        ->type_name("TIME");
    command.add_option("--until", untilText, "Only events at this time (UTC) or earlier")
        ->type_name("TIME");
    command
        .add_option("--sensor-type", sensorTypeText,
                    "Only events of this sensor type: a name as listed, or a number")
        ->type_name("TYPE");
    command.add_option("--partition", partitionText, "Only events that concern this partition")
        ->type_name("N");
}

void EventFilter::prepare()
{
    if (!severityText.empty()) {
        leastSeverity = orThrow(findSeverity(severityText),
                                usageError("--severity: \"" + severityText +
                                           "\" is none of informational, monitor, warning, "
                                           "critical, non-recoverable"));
    }
    if (!sinceText.empty()) {
        since = timeOf("--since", sinceText);
    }
    if (!untilText.empty()) {
        until = timeOf("--until", untilText);
    }
    if (!sensorTypeText.empty()) {
        sensorType = orThrow(findSensorType(sensorTypeText),
                             usageError("--sensor-type: \"" + sensorTypeText +
                                        "\" is neither the name nor the number of a sensor type"));
    }
    if (!partitionText.empty()) {
        partition = orThrow(parseNumber(partitionText, LAST_PARTITION),
                            usageError("--partition: \"" + partitionText +
                                       "\" is not a partition, expected 0 to " +
                                       std::to_string(LAST_PARTITION)));
    }
}

bool EventFilter::accepts(const Event& event) const
{
    const bool isSystemEvent = event.kind == EventKind::SYSTEM_EVENT;
    if (!severityText.empty() && (!isSystemEvent || !isAtLeast(event.severity, leastSeverity))) {
        return false;
    }
    if (!sensorTypeText.empty() && (!isSystemEvent || event.sensorType != sensorType)) {
        return false;
    }
    if (!partitionText.empty() && (event.partitions >> partition & 1U) == 0) {
        return false;
    }
    return isInTime(event);
}

bool EventFilter::isInTime(const Event& event) const
{
    if (sinceText.empty() && untilText.empty()) {
        return true;
    }
    return event.hasTime && event.time.isDate() &&
           (sinceText.empty() || event.time.raw() >= since) &&
           (untilText.empty() || event.time.raw() <= until);
}

}
