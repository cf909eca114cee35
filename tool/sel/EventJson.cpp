// SPDX-License-Identifier: Apache-2.0
#include "EventJson.h"

#include <recordkit/inspect/bytes/Hex.h>
#include <recordkit/inspect/bytes/Numbers.h>
#include <recordkit/inspect/words/EventTypes.h>
#include <recordkit/inspect/words/SensorTypes.h>

namespace recordkit::tool {

namespace {

Json textOrNull(const std::string& text)
{
    return text.empty() ? Json(nullptr) : Json(toUtf8(text));
}

}

Json toJson(const Event& event)
{
    const bool isSystemEvent = event.kind == EventKind::SYSTEM_EVENT;
    const bool isManufactured = event.kind == EventKind::OEM_TIMESTAMPED;
    const auto ofSystemEvent = [isSystemEvent](Json value) {
        return isSystemEvent ? value : Json(nullptr);
    };
    Json json;
    json["board"] = event.board;
    json["log"] = event.logNumber == 0 ? Json(nullptr) : Json(event.logNumber);
    json["file"] = event.fileIndex;
    json["slot"] = event.slot;
    json["id"] = event.recordId;
    json["record_type"] = event.recordType;
    json["kind"] = kindName(event.kind);
    json["time"] = event.hasTime ? textOrNull(event.time.toIso()) : Json(nullptr);
    json["timestamp"] = event.hasTime ? Json(event.time.raw()) : Json(nullptr);
    json["pre_init"] = event.hasTime ? Json(event.time.isPreInit()) : Json(nullptr);
    json["severity"] = ofSystemEvent(severityName(event.severity));
    json["generator"] = ofSystemEvent(toLowerHex(event.generatorId));
    json["sensor_type"] = ofSystemEvent(event.sensorType);
    json["sensor_type_name"] = ofSystemEvent(sensorTypeName(event.sensorType));
    json["sensor"] = ofSystemEvent(event.sensorNumber);
    json["event_type"] = ofSystemEvent(event.eventType);
    json["event_type_name"] = ofSystemEvent(eventTypeName(event.eventType));
    json["event_offset"] = ofSystemEvent(event.offset);
    json["event"] = eventText(event);
    json["direction"] = ofSystemEvent(event.isDeassertion ? "deasserted" : "asserted");
    json["event_data"] = ofSystemEvent(toLowerHex(event.data));
    json["manufacturer"] = isManufactured ? Json(event.manufacturer) : Json(nullptr);
    json["oem_data"] = isSystemEvent ? Json(nullptr) : Json(toLowerHex(event.oemData));
    json["partitions"] = bitsOf(event.partitions);
    json["part_number"] = textOrNull(event.partNumber);
    json["serial_number"] = textOrNull(event.serialNumber);
    json["image"] = toLowerHex(event.image);
    return json;
}

}
