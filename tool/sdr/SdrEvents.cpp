// SPDX-License-Identifier: Apache-2.0
#include <fmt/format.h>

#include <recordkit/inspect/words/EventWords.h>
#include <recordkit/inspect/words/SensorTypes.h>

#include "../Commands.h"
#include "../print/Listing.h"
#include "Repository.h"

namespace recordkit::tool {

namespace {

/// An event that a sensor can report.
struct SensorEvent {
    const Sensor* sensor;
    unsigned char offset;

    Severity severity() const
    {
        return severityOfEvent(sensor->eventType, sensor->sensorType, offset);
    }
};

constexpr Column<SensorEvent> COLUMNS[] = {
    {"id", nullptr, 0, [](const SensorEvent& e) { return Value(e.sensor->id); }},
    {"number", "NUMBER", 6, [](const SensorEvent& e) { return Value(e.sensor->number); },
     [](const SensorEvent& e) { return Cell{fmt::format("{:02X}h", e.sensor->number)}; }},
    {"name", "NAME", 16, [](const SensorEvent& e) { return Value(e.sensor->name); }},
    {"sensor_type_name", "SENSOR TYPE", 24,
     [](const SensorEvent& e) { return Value(sensorTypeName(e.sensor->sensorType)); }},
    {"offset", "OFFSET", 6, [](const SensorEvent& e) { return Value(e.offset); }},
    {"severity", "SEVERITY", 15,
     [](const SensorEvent& e) { return Value(severityName(e.severity())); },
     [](const SensorEvent& e) {
         return Cell{severityName(e.severity()), styleOf(e.severity())};
     }},
    {"event", "EVENT", 0,
     [](const SensorEvent& e) {
         const char* const words = eventWords(e.sensor->eventType, e.sensor->sensorType, e.offset);
         return words == nullptr ? Value() : Value(words);
     }},
};

void run(const Arguments& arguments)
{
    const Repository repository = readRepository(arguments);
    Listing<SensorEvent> listing(COLUMNS, arguments.layout());
    for (const Sensor& sensor : repository.sensors) {
        if (sensor.isSensor) {
            for (const unsigned int offset : eventOffsets(sensor)) {
                listing.add({&sensor, static_cast<unsigned char>(offset)});
            }
        }
    }
    listing.finish();
    repository.problems.finish();
}

}

Command sdrEventsCommand()
{
    return {"sdr events",
            "Show the severity of each sensor's events",
            "recordkit sdr events repository.sdr",
            repositoryOptions(),
            Answer::TABLE,
            run,
            "Threshold events have the severity of the threshold crossed, discrete events that of "
            "the severity map."};
}

}
