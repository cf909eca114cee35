// SPDX-License-Identifier: Apache-2.0
#include "EventColumns.h"

#include <algorithm>
#include <iterator>

#include <fmt/format.h>

#include <recordkit/inspect/bytes/Hex.h>
#include <recordkit/inspect/bytes/Numbers.h>
#include <recordkit/inspect/bytes/Text.h>
#include <recordkit/inspect/event/EventFields.h>
#include <recordkit/inspect/words/SensorTypes.h>

#include "../Zone.h"

namespace recordkit::tool {

/// A field that the table shows too.
struct EventColumn {
    const char* field;
    const char* title;
    std::size_t width;
    Cell (*cell)(const Event&);
};

namespace {

/// In every record, so that a program asks for it by name.
constexpr const char* IMAGE_FIELD = "image";
constexpr const char* TIME_FIELD = "time";
constexpr const char* SENSOR_FIELD = "sensor";
/// An id string has up to 16 characters; of a shared record a number follows.
constexpr std::size_t NAME_WIDTH = 16;

bool isSystemEvent(const Event& e)
{
    return e.kind == EventKind::SYSTEM_EVENT;
}

/// A deassertion is not an alarm.
Style eventStyle(const Event& e)
{
    return e.isDeassertion ? Style::DIM : styleOf(e.severity);
}

Cell sensorTypeCell(const Event& e)
{
    return {isSystemEvent(e) ? sensorTypeName(e.sensorType) : kindName(e.kind)};
}

Cell directionCell(const Event& e)
{
    return {!isSystemEvent(e) ? "-" : e.isDeassertion ? "deasserted" : "asserted"};
}

Cell dataCell(const Event& e)
{
    return {isSystemEvent(e) ? toLowerHex(e.data) : toLowerHex(e.oemData)};
}

}

Cell timeCell(const Event& e)
{
    return {e.hasTime ? e.time.toText(chosenZone()) : "-"};
}

Cell severityCell(const Event& e)
{
    return isSystemEvent(e) ? Cell{severityName(e.severity), eventStyle(e)} : Cell{"-"};
}

Cell sensorCell(const Event& e)
{
    if (!isSystemEvent(e)) {
        return {"-"};
    }
    return {e.sensor != nullptr && !e.sensor->name.empty()
                ? printable(e.sensor->name)
                : fmt::format("{:02X}h", e.sensorNumber)};
}

namespace {

constexpr EventColumn COLUMNS[] = {
    {"only_in", "ONLY IN", 16, [](const Event& e) { return Cell{printable(e.onlyIn)}; }},
    {"board", "BOARD", 5,
     [](const Event& e) { return Cell{e.source.empty() ? std::to_string(e.board) : "-"}; }},
    {"log", "LOG", 4,
     [](const Event& e) { return Cell{e.logNumber == 0 ? "-" : std::to_string(e.logNumber)}; }},
    {"id", "ID", 5, [](const Event& e) { return Cell{fmt::format("{:04X}h", e.recordId)}; }},
    {TIME_FIELD, "TIME (UTC)", TIME_WIDTH, timeCell},
    {"severity", "SEVERITY", 15, severityCell},
    {"sensor_type_name", "SENSOR TYPE", 24, sensorTypeCell},
    {SENSOR_FIELD, "SENSOR", 6, sensorCell},
    {"direction", "DIRECTION", 10, directionCell},
    {"event_data", "DATA", 6, dataCell},
    {"partitions", "PARTITIONS", 10,
     [](const Event& e) { return Cell{cellText(bitsOf(e.partitions))}; }},
    {"event", "EVENT", 0,
     [](const Event& e) {
         return Cell{eventText(e), eventStyle(e)};
     }},
};

/// What a narrow terminal shows first.
std::vector<Wish> wishes()
{
    return {
        {"only_in", 8},
        {"event", 31},
        {"time", chosenZone() == nullptr ? TIME_WIDTH : TIME_WIDTH + OFFSET_WIDTH},
        {"severity", 8},
        {"direction", 8},
        {"id", 5},
        {"sensor_type_name", 12},
        {"sensor", 6},
        {"board", 5},
        {"partitions", 10},
        {"event_data", 6},
        {"log", 4},
    };
}

/// The column of a field; nullptr for one that the table does not show.
const EventColumn* columnOf(const EventField& field)
{
    const auto* const found =
        std::find_if(std::begin(COLUMNS), std::end(COLUMNS), [&field](const EventColumn& column) {
            return std::string(field.name) == column.field;
        });
    return found == std::end(COLUMNS) ? nullptr : found;
}

Value valueOf(const EventField& field, const Event& event)
{
    return chosenZone() != nullptr && std::string(field.name) == TIME_FIELD && event.hasTime
               ? textOrNull(event.time.toIso(chosenZone()))
               : Value(field.get(event));
}

/// Whether a field is only in answers that name it.
bool isExtra(const EventField& field, EventListing::Known known)
{
    switch (field.filledBy) {
    case FilledBy::REPOSITORY:
        return !known.hasRepositories;
    case FilledBy::COMPARISON:
        return !known.isComparison;
    case FilledBy::EVERY_EVENT:
        break;
    }
    return std::string(field.name) == IMAGE_FIELD;
}

std::vector<ColumnHead> heads(EventListing::Known known)
{
    std::vector<ColumnHead> result;
    for (const EventField& field : EventFields()) {
        const EventColumn* column = columnOf(field);
        if (field.filledBy == FilledBy::COMPARISON && !known.isComparison) {
            column = nullptr;
        }
        const bool isName = known.hasRepositories && std::string(field.name) == SENSOR_FIELD;
        result.push_back({field.name, column == nullptr ? nullptr : column->title,
                          isName              ? NAME_WIDTH
                          : column == nullptr ? 0
                                              : column->width,
                          isExtra(field, known)});
    }
    return result;
}

}

Value eventField(const Event& event, const char* name)
{
    const EventFields fields;
    return valueOf(
        *std::find_if(fields.begin(), fields.end(),
                      [name](const EventField& field) { return std::string(field.name) == name; }),
        event);
}

EventListing::EventListing(const Layout& layout, Sink sink, Known known)
    : writer(heads(known), layout, wishes(), sink)
{
    for (const ShownColumn& each : writer.getShown()) {
        fields.push_back(EventFields().begin() + each.index);
        columns.push_back(columnOf(*fields.back()));
    }
}

void EventListing::add(const Event& event)
{
    if (writer.isTable()) {
        std::vector<Cell> cells;
        cells.reserve(columns.size());
        for (std::size_t i = 0; i < columns.size(); ++i) {
            cells.push_back(columns[i] != nullptr ? columns[i]->cell(event)
                                                  : Cell{cellText(fields[i]->get(event))});
        }
        writer.addCells(cells);
        return;
    }
    Object object;
    object.reserve(fields.size());
    for (const EventField* const field : fields) {
        object.push_back({field->name, valueOf(*field, event)});
    }
    writer.addObject(std::move(object));
}

}
