// SPDX-License-Identifier: Apache-2.0
#include <fmt/format.h>

#include <recordkit/inspect/words/Entities.h>
#include <recordkit/inspect/words/EventTypes.h>
#include <recordkit/inspect/words/SensorTypes.h>

#include "../Commands.h"
#include "../print/Listing.h"
#include "Repository.h"

namespace recordkit::tool {

namespace {

/// Null, and "-", for a record that is not a sensor.
template <typename Content> Value ofSensor(const Sensor& sensor, const Content& content)
{
    return valueIf(sensor.isSensor, content);
}

Cell cellOf(const Sensor& sensor, const std::string& text)
{
    return {sensor.isSensor && !text.empty() ? text : "-"};
}

std::string maskText(unsigned short mask)
{
    return fmt::format("{:04X}h", mask);
}

std::string entityOf(const Sensor& sensor)
{
    return fmt::format("{}.{}", sensor.entityId, sensor.entityInstance);
}

/// A difference of counts in the sensor's units; null for a sensor without a linear conversion.
Value inUnits(const Sensor& sensor, unsigned char counts)
{
    return sensor.unitsPerCount ? Value(*sensor.unitsPerCount * counts) : Value();
}

/// "+2 -1" in the sensor's units where they are known, otherwise in counts.
Cell hysteresisCell(const Sensor& sensor)
{
    if (!sensor.unitsPerCount) {
        return cellOf(sensor,
                      fmt::format("+{} -{}{}", sensor.positiveHysteresis, sensor.negativeHysteresis,
                                  sensor.units.empty() ? "" : " counts"));
    }
    return cellOf(sensor,
                  fmt::format("+{:g} -{:g}", *sensor.unitsPerCount * sensor.positiveHysteresis,
                              *sensor.unitsPerCount * sensor.negativeHysteresis));
}

constexpr Column<Sensor> COLUMNS[] = {
    {"id", "ID", 5, [](const Sensor& s) { return Value(s.id); },
     [](const Sensor& s) { return Cell{fmt::format("{:04X}h", s.id)}; }},
    {"offset", nullptr, 0, [](const Sensor& s) { return Value(s.offset); }},
    {"record_type", nullptr, 0, [](const Sensor& s) { return Value(s.recordType); }},
    {"record_type_name", "RECORD", 12,
     [](const Sensor& s) { return Value(sdrTypeName(s.recordType)); }},
    {"number", "NUMBER", 6, [](const Sensor& s) { return ofSensor(s, s.number); },
     [](const Sensor& s) { return cellOf(s, fmt::format("{:02X}h", s.number)); }},
    {"name", "NAME", 16, [](const Sensor& s) { return Value(s.name); }},
    {"sensor_type", nullptr, 0, [](const Sensor& s) { return ofSensor(s, s.sensorType); }},
    {"sensor_type_name", "SENSOR TYPE", 24,
     [](const Sensor& s) { return ofSensor(s, sensorTypeName(s.sensorType)); }},
    {"entity", "ENTITY", 7, [](const Sensor& s) { return ofSensor(s, entityOf(s)); }},
    {"entity_name", nullptr, 0,
     [](const Sensor& s) { return ofSensor(s, entityName(s.entityId)); }},
    {"event_type", nullptr, 0, [](const Sensor& s) { return ofSensor(s, s.eventType); }},
    {"event_type_name", "EVENT TYPE", 20,
     [](const Sensor& s) { return ofSensor(s, eventTypeName(s.eventType)); },
     [](const Sensor& s) {
         return cellOf(s, fmt::format("{:02X}h {}", s.eventType, eventTypeName(s.eventType)));
     }},
    {"units", "UNITS", 10, [](const Sensor& s) { return ofSensor(s, s.units); },
     [](const Sensor& s) { return cellOf(s, s.units); }},
    {"assertion_mask", "ASSERT", 6, [](const Sensor& s) { return ofSensor(s, s.assertionMask); },
     [](const Sensor& s) { return cellOf(s, maskText(s.assertionMask)); }},
    {"deassertion_mask", "DEASSERT", 8,
     [](const Sensor& s) { return ofSensor(s, s.deassertionMask); },
     [](const Sensor& s) { return cellOf(s, maskText(s.deassertionMask)); }},
    {"reading_mask", "READING", 7, [](const Sensor& s) { return ofSensor(s, s.readingMask); },
     [](const Sensor& s) { return cellOf(s, maskText(s.readingMask)); }},
    {"positive_hysteresis", nullptr, 0,
     [](const Sensor& s) { return ofSensor(s, s.positiveHysteresis); }},
    {"negative_hysteresis", nullptr, 0,
     [](const Sensor& s) { return ofSensor(s, s.negativeHysteresis); }},
    {"positive_hysteresis_units", nullptr, 0,
     [](const Sensor& s) { return inUnits(s, s.positiveHysteresis); }},
    {"negative_hysteresis_units", nullptr, 0,
     [](const Sensor& s) { return inUnits(s, s.negativeHysteresis); }},
    {nullptr, "HYSTERESIS", 0, nullptr, hysteresisCell},
};

/// What a narrow terminal shows first.
std::vector<Wish> wishes()
{
    return {{"name", 8},
            {"sensor_type_name", 12},
            {"number", 6},
            {"record_type_name", 7},
            {"entity", 7},
            {"units", 9},
            {"event_type_name", 8},
            {"id", 5},
            {"hysteresis", 10},
            {"assertion_mask", 6},
            {"deassertion_mask", 8},
            {"reading_mask", 7}};
}

void run(const Arguments& arguments)
{
    Repository repository = readRepository(arguments);
    if (arguments.has("--raw")) {
        for (Sensor& sensor : repository.sensors) {
            sensor.unitsPerCount.reset();
        }
    }
    printListing(repository.sensors, COLUMNS, arguments.layout(), wishes());
    repository.problems.finish();
}

}

Command sdrListCommand()
{
    return {"sdr list",
            "List the sensors of a repository, and what else is in it",
            "recordkit sdr list repository.sdr",
            repositoryOptions({flag("--raw", "Show hysteresis in counts, not in units")}),
            Answer::TABLE,
            run,
            "Damaged records are reported with their offsets; the exit status is then 1."};
}

}
