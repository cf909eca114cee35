// SPDX-License-Identifier: Apache-2.0
#include "EventColumns.h"

#include <fmt/format.h>

#include <recordkit/inspect/bytes/Hex.h>
#include <recordkit/inspect/bytes/Numbers.h>
#include <recordkit/inspect/bytes/Text.h>
#include <recordkit/inspect/words/EventTypes.h>
#include <recordkit/inspect/words/SensorTypes.h>

namespace recordkit::tool {

namespace {

bool isSystemEvent(const Event& e)
{
    return e.kind == EventKind::SYSTEM_EVENT;
}

/// Null for other records.
template <typename Content> Value ofSystemEvent(const Event& e, Content&& content)
{
    return valueIf(isSystemEvent(e), std::forward<Content>(content));
}

/// "-" for other records.
Cell systemEventCell(const Event& e, const char* text)
{
    return {isSystemEvent(e) ? text : "-"};
}

const char* directionOf(const Event& e)
{
    return e.isDeassertion ? "deasserted" : "asserted";
}

Cell hexCell(const Event& e)
{
    return {isSystemEvent(e) ? toLowerHex(e.data) : toLowerHex(e.oemData)};
}

constexpr Column<Event> COLUMNS[] = {
    {"board", "BOARD", 5, [](const Event& e) { return Value(e.board); }},
    {"log", "LOG", 4, [](const Event& e) { return valueIf(e.logNumber != 0, e.logNumber); }},
    {"file", nullptr, 0, [](const Event& e) { return Value(e.fileIndex); }},
    {"slot", nullptr, 0, [](const Event& e) { return Value(e.slot); }},
    {"id", "ID", 5, [](const Event& e) { return Value(e.recordId); },
     [](const Event& e) { return Cell{fmt::format("{:04X}h", e.recordId)}; }},
    {"record_type", nullptr, 0, [](const Event& e) { return Value(e.recordType); }},
    {"kind", nullptr, 0, [](const Event& e) { return Value(kindName(e.kind)); }},
    {"time", "TIME (UTC)", 19,
     [](const Event& e) { return e.hasTime ? textOrNull(e.time.toIso()) : Value(); },
     [](const Event& e) { return Cell{e.hasTime ? e.time.toText() : "-"}; }},
    {"timestamp", nullptr, 0, [](const Event& e) { return valueIf(e.hasTime, e.time.raw()); }},
    {"pre_init", nullptr, 0, [](const Event& e) { return valueIf(e.hasTime, e.time.isPreInit()); }},
    {"severity", "SEVERITY", 15,
     [](const Event& e) { return ofSystemEvent(e, severityName(e.severity)); },
     [](const Event& e) {
         return isSystemEvent(e) ? Cell{severityName(e.severity), styleOf(e.severity)} : Cell{"-"};
     }},
    {"generator", nullptr, 0,
     [](const Event& e) { return ofSystemEvent(e, toLowerHex(e.generatorId)); }},
    {"sensor_type", nullptr, 0, [](const Event& e) { return ofSystemEvent(e, e.sensorType); }},
    {"sensor_type_name", "SENSOR TYPE", 24,
     [](const Event& e) { return ofSystemEvent(e, sensorTypeName(e.sensorType)); },
     [](const Event& e) {
         return Cell{isSystemEvent(e) ? sensorTypeName(e.sensorType) : kindName(e.kind)};
     }},
    {"sensor", "SENSOR", 6, [](const Event& e) { return ofSystemEvent(e, e.sensorNumber); },
     [](const Event& e) {
         return Cell{isSystemEvent(e) ? fmt::format("{:02X}h", e.sensorNumber) : "-"};
     }},
    {"event_type", nullptr, 0, [](const Event& e) { return ofSystemEvent(e, e.eventType); }},
    {"event_type_name", nullptr, 0,
     [](const Event& e) { return ofSystemEvent(e, eventTypeName(e.eventType)); }},
    {"event_offset", nullptr, 0, [](const Event& e) { return ofSystemEvent(e, e.offset); }},
    {"direction", "DIRECTION", 10, [](const Event& e) { return ofSystemEvent(e, directionOf(e)); },
     [](const Event& e) { return systemEventCell(e, directionOf(e)); }},
    {"event_data", "DATA", 6,
     [](const Event& e) { return ofSystemEvent(e, toLowerHex(e.data)); }, hexCell},
    {"manufacturer", nullptr, 0,
     [](const Event& e) { return valueIf(e.kind == EventKind::OEM_TIMESTAMPED, e.manufacturer); }},
    {"oem_data", nullptr, 0,
     [](const Event& e) { return valueIf(!isSystemEvent(e), toLowerHex(e.oemData)); }},
    {"partitions", "PARTITIONS", 10, [](const Event& e) { return Value(bitsOf(e.partitions)); }},
    {"part_number", nullptr, 0, [](const Event& e) { return textOrNull(toUtf8(e.partNumber)); }},
    {"serial_number", nullptr, 0,
     [](const Event& e) { return textOrNull(toUtf8(e.serialNumber)); }},
    {"event", "EVENT", 0, [](const Event& e) { return Value(eventText(e)); },
     [](const Event& e) { return Cell{eventText(e), styleOf(e.severity)}; }},
    {"image", nullptr, 0, [](const Event& e) { return Value(toLowerHex(e.image)); }},
};

}

EventListing eventListing(Format format, Sink sink)
{
    return EventListing(COLUMNS, format, sink);
}

}
