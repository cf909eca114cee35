// SPDX-License-Identifier: Apache-2.0
#include "Sensor.h"

#include <algorithm>

#include <fmt/format.h>
#include <recordkit/sensor/CompactSensorRecord.h>
#include <recordkit/sensor/FullSensorRecord.h>
#include <recordkit/serial/PaddedImage.h>

#include "../Numbers.h"
#include "../tables/Entities.h"
#include "../tables/EventTypes.h"
#include "../tables/SensorTypes.h"
#include "SensorText.h"

namespace recordkit::tool {

using TAVLib::RecordKit::CompactSensorRecord;
using TAVLib::RecordKit::FullSensorRecord;
using TAVLib::RecordKit::RecordSensorCommon;

namespace {

void readCommon(const RecordSensorCommon& record, Sensor& sensor)
{
    sensor.isSensor = true;
    sensor.number = record.getSensorNumber();
    sensor.name = sensorName(record);
    sensor.sensorType = record.getSensorType();
    sensor.entityId = record.getEntityID();
    sensor.entityInstance = record.getEntityInstance();
    sensor.eventType = record.getEvtReadTypeCode();
    sensor.units = sensorUnits(record);
    sensor.assertionMask = record.getAssertEventMask();
    sensor.deassertionMask = record.getDeassertEventMask();
    sensor.readingMask = record.getDiscreteReadMask();
    sensor.positiveHysteresis = record.getPositiveGoingThresholdHyst();
    sensor.negativeHysteresis = record.getNegativeGoingThresholdHyst();
}

template <typename Record>
bool readAs(const SdrRecord& record, Sensor& sensor, std::string& problem)
{
    Record image;
    const bool isTaken = TAVLib::setSerializedPadded(image, record.bytes);
    if (!isTaken) {
        problem = fmt::format("record at offset {}: {} bytes, its id string is cut off",
                              record.offset, record.bytes.size());
        return false;
    }
    readCommon(image, sensor);
    return true;
}

/// Where the type/length byte of the name lies in records that are no sensors; 0 for none.
std::size_t nameOffset(unsigned char type)
{
    switch (type) {
    case SDR_EVENT_ONLY:
        return 16;
    case SDR_FRU_LOCATOR:
    case SDR_CONTROLLER_LOCATOR:
        return 15;
    default:
        return 0;
    }
}

}

bool readSensor(const SdrRecord& record, Sensor& sensor, std::string& problem)
{
    sensor.id = record.id();
    sensor.offset = record.offset;
    sensor.recordType = record.type();
    if (record.type() == SDR_FULL) {
        return readAs<FullSensorRecord>(record, sensor, problem);
    }
    if (record.type() == SDR_COMPACT) {
        return readAs<CompactSensorRecord>(record, sensor, problem);
    }
    const std::size_t at = nameOffset(record.type());
    if (at != 0 && at < record.bytes.size()) {
        constexpr unsigned char LENGTH_BITS = 0x1F;
        const unsigned char typeLength = record.bytes[at];
        const std::size_t length =
            std::min<std::size_t>(typeLength & LENGTH_BITS, record.bytes.size() - at - 1);
        const auto first = record.bytes.begin() + static_cast<long>(at + 1);
        sensor.name =
            idStringText(typeLength, std::string(first, first + static_cast<long>(length)));
    }
    return true;
}

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

std::vector<unsigned int> eventOffsets(const Sensor& sensor)
{
    // Bits 14..12 of a threshold sensor's mask are its readable lower thresholds.
    constexpr unsigned int CROSSINGS = 0x0FFF;
    constexpr unsigned int STATES = 0x7FFF;
    return bitsOf(sensor.assertionMask &
                  (sensor.eventType == THRESHOLD_EVENT ? CROSSINGS : STATES));
}

}
