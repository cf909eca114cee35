// SPDX-License-Identifier: Apache-2.0
#include <fmt/format.h>

#include <recordkit/inspect/words/Entities.h>
#include <recordkit/inspect/words/EventTypes.h>
#include <recordkit/inspect/words/SensorTypes.h>

#include "../Answers.h"
#include "../Commands.h"
#include "../print/Listing.h"
#include "Repository.h"

namespace recordkit::tool {

namespace {

// Null, and "-", for a record that does not have them: of every record that describes a sensor, and
// of those with readings.
template <typename Content> Value ofAnySensor(const Sensor& sensor, const Content& content)
{
    return valueIf(sensor.describesSensor(), content);
}

template <typename Content> Value ofSensor(const Sensor& sensor, const Content& content)
{
    return valueIf(sensor.isSensor, content);
}

Cell anyCellOf(const Sensor& sensor, const std::string& text)
{
    return {sensor.describesSensor() ? text : "-"};
}

Cell cellOf(const Sensor& sensor, const std::string& text)
{
    return {sensor.isSensor && !text.empty() ? text : "-"};
}

std::string entityOf(const Sensor& sensor)
{
    return fmt::format("{}.{}", sensor.entityId, sensor.entityInstance);
}

std::optional<double> difference(const Sensor& sensor, unsigned char counts)
{
    return sensor.conversion ? sensor.conversion->differenceOf(counts) : std::nullopt;
}

/// A difference of counts in the sensor's units; null for a sensor without a linear conversion.
Value inUnits(const Sensor& sensor, unsigned char counts)
{
    const std::optional<double> units = difference(sensor, counts);
    return valueIf(units.has_value(), units.value_or(0));
}

/// A reading in the sensor's units, or in counts where these cannot be converted; null for none.
Value reading(const Sensor& sensor, std::optional<unsigned char> raw)
{
    if (!raw || !sensor.conversion) {
        return raw ? Value(*raw) : Value();
    }
    const std::optional<double> value = sensor.conversion->valueOf(*raw);
    return valueIf(value.has_value(), value.value_or(0));
}

template <Threshold WHICH> Value threshold(const Sensor& sensor)
{
    return reading(sensor, sensor.thresholds[static_cast<std::size_t>(WHICH)]);
}

/// "- 600 840": three thresholds, outermost or innermost first as they rise.
Cell thresholdsCell(const Sensor& sensor, Threshold first)
{
    std::string text;
    bool isAny = false;
    for (std::size_t i = 0; i < THRESHOLDS / 2; ++i) {
        const auto raw = sensor.thresholds[static_cast<std::size_t>(first) + i];
        isAny = isAny || raw;
        text += (i == 0 ? "" : " ") + (raw ? readingText(sensor.conversion, *raw) : "-");
    }
    return {isAny ? text : "-"};
}

/// "+2 -1" in the sensor's units where they are known, otherwise in counts.
Cell hysteresisCell(const Sensor& sensor)
{
    if (!difference(sensor, 1)) {
        return cellOf(sensor,
                      fmt::format("+{} -{}{}", sensor.positiveHysteresis, sensor.negativeHysteresis,
                                  sensor.units.empty() ? "" : " counts"));
    }
    return cellOf(sensor, fmt::format("+{:g} -{:g}", *difference(sensor, sensor.positiveHysteresis),
                                      *difference(sensor, sensor.negativeHysteresis)));
}

constexpr Column<Sensor> COLUMNS[] = {
    {"id", "ID", 5, [](const Sensor& s) { return Value(s.id); },
     [](const Sensor& s) { return Cell{fmt::format("{:04X}h", s.id)}; }},
    {"offset", nullptr, 0, [](const Sensor& s) { return Value(s.offset); }},
    {"record_type", nullptr, 0, [](const Sensor& s) { return Value(s.recordType); }},
    {"record_type_name", "RECORD", 12,
     [](const Sensor& s) { return Value(sdrTypeName(s.recordType)); }},
    {"number", "NUMBER", 6, [](const Sensor& s) { return ofAnySensor(s, s.number); },
     [](const Sensor& s) { return anyCellOf(s, fmt::format("{:02X}h", s.number)); }},
    {"name", "NAME", 16, [](const Sensor& s) { return Value(s.name); }},
    {"sensor_type", nullptr, 0, [](const Sensor& s) { return ofAnySensor(s, s.sensorType); }},
    {"sensor_type_name", "SENSOR TYPE", 24,
     [](const Sensor& s) { return ofAnySensor(s, sensorTypeName(s.sensorType)); }},
    {"entity", "ENTITY", 7, [](const Sensor& s) { return ofAnySensor(s, entityOf(s)); }},
    {"entity_name", nullptr, 0,
     [](const Sensor& s) { return ofAnySensor(s, entityName(s.entityId)); }},
    {"event_type", nullptr, 0, [](const Sensor& s) { return ofAnySensor(s, s.eventType); }},
    {"event_type_name", "EVENT TYPE", 20,
     [](const Sensor& s) { return ofAnySensor(s, eventTypeName(s.eventType)); },
     [](const Sensor& s) {
         return anyCellOf(s, fmt::format("{:02X}h {}", s.eventType, eventTypeName(s.eventType)));
     }},
    {"units", "UNITS", 10, [](const Sensor& s) { return ofSensor(s, s.units); },
     [](const Sensor& s) { return cellOf(s, s.units); }},
    {"assertion_mask", nullptr, 0, [](const Sensor& s) { return ofSensor(s, s.assertionMask); }},
    {"deassertion_mask", nullptr, 0,
     [](const Sensor& s) { return ofSensor(s, s.deassertionMask); }},
    {"reading_mask", nullptr, 0, [](const Sensor& s) { return ofSensor(s, s.readingMask); }},
    {"positive_hysteresis", nullptr, 0,
     [](const Sensor& s) { return ofSensor(s, s.positiveHysteresis); }},
    {"negative_hysteresis", nullptr, 0,
     [](const Sensor& s) { return ofSensor(s, s.negativeHysteresis); }},
    {"positive_hysteresis_units", nullptr, 0,
     [](const Sensor& s) { return inUnits(s, s.positiveHysteresis); }},
    {"negative_hysteresis_units", nullptr, 0,
     [](const Sensor& s) { return inUnits(s, s.negativeHysteresis); }},
    {nullptr, "HYSTERESIS", 12, nullptr, hysteresisCell},
    {"lower_non_recoverable", nullptr, 0, threshold<Threshold::LOWER_NON_RECOVERABLE>},
    {"lower_critical", nullptr, 0, threshold<Threshold::LOWER_CRITICAL>},
    {"lower_non_critical", nullptr, 0, threshold<Threshold::LOWER_NON_CRITICAL>},
    {"upper_non_critical", nullptr, 0, threshold<Threshold::UPPER_NON_CRITICAL>},
    {"upper_critical", nullptr, 0, threshold<Threshold::UPPER_CRITICAL>},
    {"upper_non_recoverable", nullptr, 0, threshold<Threshold::UPPER_NON_RECOVERABLE>},
    {nullptr, "LOWER NR CR NC", 16, nullptr,
     [](const Sensor& s) { return thresholdsCell(s, Threshold::LOWER_NON_RECOVERABLE); }},
    {nullptr, "UPPER NC CR NR", 0, nullptr,
     [](const Sensor& s) { return thresholdsCell(s, Threshold::UPPER_NON_CRITICAL); }},
    {"nominal", nullptr, 0, [](const Sensor& s) { return reading(s, s.nominal); }},
    {"normal_minimum", nullptr, 0, [](const Sensor& s) { return reading(s, s.normalMinimum); }},
    {"normal_maximum", nullptr, 0, [](const Sensor& s) { return reading(s, s.normalMaximum); }},
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
            {"lower_nr_cr_nc", 14},
            {"upper_nc_cr_nr", 14},
            {"hysteresis", 10},
            {"event_type_name", 8},
            {"id", 5}};
}

void run(const Arguments& arguments)
{
    Repository repository = readRepository(arguments);
    if (arguments.has("--raw")) {
        for (Sensor& sensor : repository.sensors) {
            sensor.conversion.reset();
        }
    }
    printListing(repository.sensors, COLUMNS, arguments.layout(), wishes());
    repository.problems.finish();
}

}

Object sensorObject(const Sensor& sensor)
{
    return objectOf(sensor, COLUMNS);
}

Command sdrListCommand()
{
    return {
        "sdr list",
        "List the sensors of a repository, and what else is in it",
        "recordkit sdr list repository.sdr",
        repositoryOptions({flag("--raw", "Show readings and hysteresis in counts, not in units")}),
        Answer::TABLE,
        run,
        "Damaged records are reported with their offsets; the exit status is then 1."};
}

}
