// SPDX-License-Identifier: Apache-2.0
#include "EventColumns.h"

#include <algorithm>
#include <iterator>

#include <fmt/format.h>

#include <recordkit/inspect/bytes/Hex.h>
#include <recordkit/inspect/bytes/Numbers.h>
#include <recordkit/inspect/event/EventFields.h>
#include <recordkit/inspect/words/SensorTypes.h>

namespace recordkit::tool {

namespace {

/// A field that the table shows too.
struct EventColumn {
    const char* field;
    const char* title;
    std::size_t width;
    Cell (*cell)(const Event&);
};

bool isSystemEvent(const Event& e)
{
    return e.kind == EventKind::SYSTEM_EVENT;
}

Cell severityCell(const Event& e)
{
    return isSystemEvent(e) ? Cell{severityName(e.severity), styleOf(e.severity)} : Cell{"-"};
}

Cell sensorTypeCell(const Event& e)
{
    return {isSystemEvent(e) ? sensorTypeName(e.sensorType) : kindName(e.kind)};
}

Cell sensorCell(const Event& e)
{
    return {isSystemEvent(e) ? fmt::format("{:02X}h", e.sensorNumber) : "-"};
}

Cell directionCell(const Event& e)
{
    return {!isSystemEvent(e) ? "-" : e.isDeassertion ? "deasserted" : "asserted"};
}

Cell dataCell(const Event& e)
{
    return {isSystemEvent(e) ? toLowerHex(e.data) : toLowerHex(e.oemData)};
}

constexpr EventColumn COLUMNS[] = {
    {"board", "BOARD", 5,
     [](const Event& e) { return Cell{e.source.empty() ? std::to_string(e.board) : "-"}; }},
    {"log", "LOG", 4,
     [](const Event& e) { return Cell{e.logNumber == 0 ? "-" : std::to_string(e.logNumber)}; }},
    {"id", "ID", 5, [](const Event& e) { return Cell{fmt::format("{:04X}h", e.recordId)}; }},
    {"time", "TIME (UTC)", 19,
     [](const Event& e) { return Cell{e.hasTime ? e.time.toText() : "-"}; }},
    {"severity", "SEVERITY", 15, severityCell},
    {"sensor_type_name", "SENSOR TYPE", 24, sensorTypeCell},
    {"sensor", "SENSOR", 6, sensorCell},
    {"direction", "DIRECTION", 10, directionCell},
    {"event_data", "DATA", 6, dataCell},
    {"partitions", "PARTITIONS", 10,
     [](const Event& e) { return Cell{cellText(bitsOf(e.partitions))}; }},
    {"event", "EVENT", 0,
     [](const Event& e) {
         return Cell{eventText(e), styleOf(e.severity)};
     }},
};

/// The column of a field; nullptr for one that the table does not show.
const EventColumn* columnOf(const EventField& field)
{
    const auto* const found =
        std::find_if(std::begin(COLUMNS), std::end(COLUMNS), [&field](const EventColumn& column) {
            return std::string(field.name) == column.field;
        });
    return found == std::end(COLUMNS) ? nullptr : found;
}

}

EventListing::EventListing(Format format, Sink sink) : writer(format, sink)
{
    for (const EventField& field : EventFields()) {
        const EventColumn* const column = columnOf(field);
        writer.addHeading(field.name, column == nullptr ? nullptr : column->title,
                          column == nullptr ? 0 : column->width);
    }
    writer.begin();
}

void EventListing::add(const Event& event)
{
    if (writer.isTable()) {
        std::vector<Cell> cells;
        cells.reserve(std::size(COLUMNS));
        for (const EventColumn& column : COLUMNS) {
            cells.push_back(column.cell(event));
        }
        writer.addCells(cells);
        return;
    }
    Object object;
    constexpr std::size_t FIELDS = 32;
    object.reserve(FIELDS);
    for (const EventField& field : EventFields()) {
        object.push_back({field.name, field.get(event)});
    }
    writer.addObject(std::move(object));
}

}
