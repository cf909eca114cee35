// SPDX-License-Identifier: Apache-2.0
#include "EventFilter.h"

#include <algorithm>
#include <ctime>

#include <fmt/format.h>

#include <recordkit/inspect/bytes/Numbers.h>
#include <recordkit/inspect/bytes/Text.h>
#include <recordkit/inspect/words/Match.h>
#include <recordkit/inspect/words/SensorTypes.h>

#include "../Errors.h"
#include "../Zone.h"
#include "../print/Output.h"
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
        text("--sensor", "SENSOR",
             "Only events of this sensor: a number, or a name of the sensor data records or its "
             "beginning"),
        text("--entity", "ID[.N]",
             "Only events of sensors of this entity, or of one instance, by the sensor data "
             "records"),
        flag("--asserted", "Only events that came up"),
        flag("--deasserted", "Only events that went away"),
        flag("--still-asserted", "Only events that came up and have not gone away since"),
        text("--event", "TEXT", "Only events whose text contains this, in any case"),
        text(
            "--grep", "TEXT",
            "Only events with this in the event, the name of the sensor, its type, the part or the "
            "serial number"),
    };
}

EventFilter::EventFilter(const Arguments& arguments, bool hasSensors)
    : severity(arguments.find("--severity")), sensorType(arguments.find("--sensor-type")),
      partition(arguments.find("--partition")), since(arguments.find("--since")),
      until(arguments.find("--until")), entity(arguments.text("--entity")),
      eventWords(arguments.text("--event")), anyText(arguments.text("--grep")),
      isOnlyAsserted(arguments.has("--still-asserted"))
{
    constexpr unsigned long LAST_SENSOR = 0xFF;
    if (arguments.has("--sensor")) {
        const std::string sensor = arguments.text("--sensor");
        sensorNumber = parseNumber(sensor, LAST_SENSOR);
        sensorName = sensorNumber ? "" : sensor;
        if (sensor.empty()) {
            throw usageError("--sensor: expected a number or a name");
        }
    }
    if (arguments.has("--asserted") || arguments.has("--deasserted")) {
        isDeasserted = arguments.has("--deasserted");
        if (arguments.has("--asserted") && *isDeasserted) {
            throw usageError("--asserted and --deasserted exclude each other");
        }
    }
    if (!hasSensors && (!sensorName.empty() || !entity.empty())) {
        throw usageError("names of sensors and entities are in sensor data records; give them "
                         "with --sdr");
    }
}

EventFilter EventFilter::atAnyTime() const
{
    EventFilter other = *this;
    other.since.reset();
    other.until.reset();
    return other;
}

void EventFilter::report() const
{
    if (since && *since > static_cast<unsigned long>(std::time(nullptr))) {
        complain(fmt::format("--since is in the future: {}",
                             Timestamp(static_cast<unsigned int>(*since)).toIso(chosenZone())));
    }
    if (undated != 0) {
        complain(fmt::format("{} without a date {} not shown: --since and --until cannot place {}",
                             counted(undated, "event"), undated == 1 ? "is" : "are",
                             undated == 1 ? "it" : "them"));
    }
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
    if (isOnlyAsserted && !event.isStillAsserted) {
        return false;
    }
    if (isDeasserted && (!isSystemEvent || event.isDeassertion != *isDeasserted)) {
        return false;
    }
    return (!partition || (event.partitions >> *partition & 1U) != 0) && isOfSensor(event) &&
           hasTexts(event);
}

bool EventFilter::isOfSensor(const Event& event) const
{
    const bool isSystemEvent = event.kind == EventKind::SYSTEM_EVENT;
    if (sensorNumber && (!isSystemEvent || event.sensorNumber != *sensorNumber)) {
        return false;
    }
    if (!sensorName.empty() &&
        (event.sensor == nullptr || matchWord(sensorName, {event.sensor->name}) == std::nullopt)) {
        return false;
    }
    return entity.empty() ||
           (event.sensor != nullptr &&
            (event.sensor->entity == entity || event.sensor->entity.rfind(entity + ".", 0) == 0));
}

bool EventFilter::hasTexts(const Event& event) const
{
    if (!eventWords.empty() && !containsText(eventText(event), eventWords)) {
        return false;
    }
    if (anyText.empty()) {
        return true;
    }
    const std::string sensor = event.sensor == nullptr ? "" : event.sensor->name;
    const std::string type =
        event.kind == EventKind::SYSTEM_EVENT ? sensorTypeName(event.sensorType) : "";
    // A line end is in none of them, so that no match reaches from one to the next.
    return containsText(fmt::format("{}\n{}\n{}\n{}\n{}", eventText(event), sensor, type,
                                    toUtf8(event.partNumber), toUtf8(event.serialNumber)),
                        anyText);
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
