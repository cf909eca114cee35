// SPDX-License-Identifier: Apache-2.0
#include "SensorJson.h"

#include <fmt/format.h>

#include <recordkit/inspect/words/Entities.h>
#include <recordkit/inspect/words/EventTypes.h>
#include <recordkit/inspect/words/SensorTypes.h>

namespace recordkit::tool {

Json toJson(const Sensor& sensor)
{
    Json json;
    json["id"] = sensor.id;
    json["offset"] = sensor.offset;
    json["record_type"] = sensor.recordType;
    json["record_type_name"] = sdrTypeName(sensor.recordType);
    json["name"] = sensor.name;
    if (!sensor.isSensor) {
        return json;
    }
    json["number"] = sensor.number;
    json["sensor_type"] = sensor.sensorType;
    json["sensor_type_name"] = sensorTypeName(sensor.sensorType);
    json["entity"] = fmt::format("{}.{}", sensor.entityId, sensor.entityInstance);
    json["entity_name"] = entityName(sensor.entityId);
    json["event_type"] = sensor.eventType;
    json["event_type_name"] = eventTypeName(sensor.eventType);
    json["units"] = sensor.units;
    json["assertion_mask"] = sensor.assertionMask;
    json["deassertion_mask"] = sensor.deassertionMask;
    json["reading_mask"] = sensor.readingMask;
    json["positive_hysteresis"] = sensor.positiveHysteresis;
    json["negative_hysteresis"] = sensor.negativeHysteresis;
    return json;
}

}
