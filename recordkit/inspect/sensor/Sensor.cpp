// SPDX-License-Identifier: Apache-2.0
#include <recordkit/inspect/sensor/Sensor.h>

#include <algorithm>
#include <cmath>
#include <fmt/format.h>

#include <recordkit/inspect/bytes/Error.h>
#include <recordkit/inspect/bytes/Numbers.h>
#include <recordkit/inspect/bytes/Text.h>
#include <recordkit/inspect/sensor/SensorText.h>
#include <recordkit/inspect/words/Entities.h>
#include <recordkit/inspect/words/EventTypes.h>
#include <recordkit/inspect/words/SensorTypes.h>
#include <recordkit/sensor/CompactSensorRecord.h>
#include <recordkit/sensor/FullSensorRecord.h>
#include <recordkit/serial/PaddedImage.h>

namespace recordkit::inspect {

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

/// The slope of a full record's conversion: M times ten to the power of its exponent.
std::optional<double> slopeOf(ByteView record)
{
    enum Offset { LINEARIZATION = 23, M = 24, M_HIGH = 25, EXPONENTS = 29 };
    constexpr unsigned char THRESHOLD = 0x01;
    constexpr unsigned int EVENT_TYPE = 13;
    if (record.size() <= EXPONENTS || record[EVENT_TYPE] != THRESHOLD ||
        (record[LINEARIZATION] & 0x7F) != 0) {
        return std::nullopt;
    }
    // Both numbers are two's complement, of ten and of four bits.
    const int m = record[M] | (record[M_HIGH] >> 6) << 8;
    const int exponent = record[EXPONENTS] >> 4;
    return (m < 512 ? m : m - 1024) * std::pow(10.0, exponent < 8 ? exponent : exponent - 16);
}

template <typename Record> void readAs(const SdrRecord& record, Sensor& sensor)
{
    Record image;
    if (!TAVLib::setSerializedPadded(image, record.bytes)) {
        throw DataError(fmt::format("record at offset {}: {} bytes, its id string is cut off",
                                    record.offset, record.bytes.size()));
    }
    readCommon(image, sensor);
}

/// Offset of the name's type/length byte in records of other kinds; 0 for those without one.
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

Sensor readSensor(const SdrRecord& record)
{
    Sensor sensor;
    sensor.id = record.id();
    sensor.offset = record.offset;
    sensor.recordType = record.type();
    if (record.type() == SDR_FULL) {
        readAs<FullSensorRecord>(record, sensor);
        sensor.unitsPerCount = slopeOf(record.bytes);
    } else if (record.type() == SDR_COMPACT) {
        readAs<CompactSensorRecord>(record, sensor);
    }
    const std::size_t at = nameOffset(record.type());
    if (at != 0 && at < record.bytes.size()) {
        constexpr unsigned char LENGTH_BITS = 0x1F;
        const unsigned char typeLength = record.bytes[at];
        sensor.name =
            idStringText(typeLength, ByteView(record.bytes).part(at + 1, typeLength & LENGTH_BITS));
    }
    return sensor;
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
