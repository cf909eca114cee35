// SPDX-License-Identifier: Apache-2.0
#include <optional>
#include <string>
#include <vector>

#include <fmt/format.h>

#include <recordkit/inspect/words/EventWords.h>
#include <recordkit/inspect/words/SensorTypes.h>

#include "../Commands.h"
#include "../print/Listing.h"
#include "Repository.h"

namespace recordkit::tool {

namespace {

/// An event that a sensor can report; or only the sensor, where neither its record nor the standard
/// says any.
struct SensorEvent {
    const Sensor* sensor;
    unsigned int which; ///< of the sensors that share the record
    std::optional<unsigned char> offset;

    unsigned char number() const { return static_cast<unsigned char>(sensor->number + which); }
    bool hasMasks() const { return sensor->isSensor; }
    bool isIn(unsigned short mask) const { return offset && (mask >> *offset & 1) != 0; }
    Severity severity() const
    {
        return severityOfEvent(sensor->eventType, sensor->sensorType, offset.value_or(0));
    }
    const char* words() const
    {
        return offset ? eventWords(sensor->eventType, sensor->sensorType, *offset) : nullptr;
    }
    std::string when() const
    {
        if (!hasMasks()) {
            return "no mask";
        }
        const bool isAsserted = isIn(sensor->assertionMask);
        return !isIn(sensor->deassertionMask) ? "asserted" : isAsserted ? "both" : "deasserted";
    }
};

constexpr Column<SensorEvent> COLUMNS[] = {
    {"id", nullptr, 0, [](const SensorEvent& e) { return Value(e.sensor->id); }},
    {"number", "NUMBER", 6, [](const SensorEvent& e) { return Value(e.number()); },
     [](const SensorEvent& e) { return Cell{fmt::format("{:02X}h", e.number())}; }},
    {"name", "NAME", 16,
     [](const SensorEvent& e) { return Value(nameOfSharing(*e.sensor, e.which)); }},
    {"sensor_type_name", "SENSOR TYPE", 24,
     [](const SensorEvent& e) { return Value(sensorTypeName(e.sensor->sensorType)); }},
    {"offset", "OFFSET", 6,
     [](const SensorEvent& e) { return valueIf(e.offset.has_value(), e.offset.value_or(0)); }},
    {nullptr, "WHEN", 10, nullptr, [](const SensorEvent& e) { return Cell{e.when()}; }},
    {"severity", "SEVERITY", 15,
     [](const SensorEvent& e) { return valueIf(e.offset.has_value(), severityName(e.severity())); },
     [](const SensorEvent& e) {
         return e.offset ? Cell{severityName(e.severity()), styleOf(e.severity())} : Cell{"-"};
     }},
    {"event", "EVENT", 0,
     [](const SensorEvent& e) {
         const char* const words = e.words();
         return words == nullptr ? Value() : Value(words);
     }},
    {"assertion", nullptr, 0,
     [](const SensorEvent& e) { return valueIf(e.hasMasks(), e.isIn(e.sensor->assertionMask)); }},
    {"deassertion", nullptr, 0,
     [](const SensorEvent& e) { return valueIf(e.hasMasks(), e.isIn(e.sensor->deassertionMask)); }},
    {"record_type_name", nullptr, 0,
     [](const SensorEvent& e) { return Value(sdrTypeName(e.sensor->recordType)); }},
};

/// The offsets that the standard has a meaning for.
std::vector<unsigned int> knownOffsets(const Sensor& sensor)
{
    constexpr unsigned char OFFSETS = 16;
    std::vector<unsigned int> offsets;
    for (unsigned char offset = 0; offset < OFFSETS; ++offset) {
        const char* const words = eventWords(sensor.eventType, sensor.sensorType, offset);
        if (words != nullptr && std::string("reserved") != words) {
            offsets.push_back(offset);
        }
    }
    return offsets;
}

void addEvents(const Sensor& sensor, unsigned int which, Listing<SensorEvent>& listing)
{
    const std::vector<unsigned int> offsets =
        sensor.isSensor ? eventOffsets(sensor) : knownOffsets(sensor);
    for (const unsigned int offset : offsets) {
        listing.add({&sensor, which, static_cast<unsigned char>(offset)});
    }
    if (!sensor.isSensor && offsets.empty()) {
        listing.add({&sensor, which, std::nullopt});
    }
}

void run(const Arguments& arguments)
{
    const Repository repository = readRepository(arguments);
    Listing<SensorEvent> listing(COLUMNS, arguments.layout());
    for (const Sensor& sensor : repository.sensors) {
        if (!sensor.describesSensor()) {
            continue;
        }
        for (unsigned int i = 0; i < sensor.shared.count; ++i) {
            addEvents(sensor, i, listing);
        }
    }
    listing.finish();
    repository.problems.finish();
}

}

Command sdrEventsCommand()
{
    return {
        "sdr events",
        "Show the events that each sensor can report, and how severe they are",
        "recordkit sdr events repository.sdr",
        repositoryOptions(),
        Answer::TABLE,
        run,
        "Threshold events have the severity of the threshold crossed, discrete events that of "
        "the severity map. WHEN says whether the masks of a record have an event as it comes up, "
        "as it goes away, or both; in JSON assertion and deassertion. Event-only records have "
        "no mask: all events that the standard names for the sensor are shown, and the keys are "
        "null. Sensors that share a record are shown one by one."};
}

}
