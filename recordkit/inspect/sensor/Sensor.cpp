// SPDX-License-Identifier: Apache-2.0
#include <recordkit/inspect/sensor/Sensor.h>

#include <algorithm>
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

/// What a full record says of readings (IPMI v2.0, section 43.1, bytes 31 to 36).
void readReadings(ByteView record, Sensor& sensor)
{
    enum Offset : unsigned int { FLAGS = 30, NOMINAL, NORMAL_MAX, NORMAL_MIN, MAX, MIN };
    if (record.size() <= MIN || sensor.eventType != THRESHOLD_EVENT) {
        return;
    }
    const auto specified = [&record](unsigned int bit, unsigned int offset) {
        return (record[FLAGS] >> bit & 1) != 0 ? std::optional(record[offset]) : std::nullopt;
    };
    sensor.nominal = specified(0, NOMINAL);
    sensor.normalMaximum = specified(1, NORMAL_MAX);
    sensor.normalMinimum = specified(2, NORMAL_MIN);
    sensor.maximum = record[MAX];
    sensor.minimum = record[MIN];
}

/// The thresholds of a full record: those that its mask names as readable, if it has any at all
/// (IPMI v2.0, section 43.1, bytes 12, 19 and 37 to 42).
void readThresholds(ByteView record, Sensor& sensor)
{
    enum Offset : unsigned int { CAPABILITIES = 11, READABLE = 18, END = 42 };
    if (record.size() < END || sensor.eventType != THRESHOLD_EVENT ||
        (record[CAPABILITIES] >> 2 & 3) == 0) {
        return;
    }
    struct Row {
        Threshold threshold;
        unsigned int offset;
        unsigned int bit;
    };
    constexpr Row ROWS[] = {
        {Threshold::UPPER_NON_RECOVERABLE, 36, 5}, {Threshold::UPPER_CRITICAL, 37, 4},
        {Threshold::UPPER_NON_CRITICAL, 38, 3},    {Threshold::LOWER_NON_RECOVERABLE, 39, 2},
        {Threshold::LOWER_CRITICAL, 40, 1},        {Threshold::LOWER_NON_CRITICAL, 41, 0},
    };
    for (const Row& row : ROWS) {
        if ((record[READABLE] >> row.bit & 1) != 0) {
            sensor.thresholds[static_cast<std::size_t>(row.threshold)] = record[row.offset];
        }
    }
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

/// The owner, which is at the same place in every record of a sensor.
void readOwner(ByteView record, Sensor& sensor)
{
    enum Offset : unsigned int { OWNER_ID = 5, OWNER_LUN };
    if (record.size() > OWNER_LUN) {
        sensor.ownerId = record[OWNER_ID];
        sensor.ownerLun = record[OWNER_LUN];
    }
}

void readShared(ByteView record, std::size_t offset, Sensor& sensor)
{
    if (record.size() < offset + 2) {
        return;
    }
    constexpr unsigned char ALPHABETIC = 1;
    sensor.shared.count = std::max(1, record[offset] & 0x0F);
    sensor.shared.isAlphabetic = (record[offset] >> 4 & 3) == ALPHABETIC;
    sensor.shared.first = record[offset + 1] & 0x7FU;
    sensor.shared.hasEntityEach = (record[offset + 1] & 0x80) != 0;
}

/// An event-only record (IPMI v2.0, section 43.3).
void readEventOnly(ByteView record, Sensor& sensor)
{
    enum Offset : unsigned int { NUMBER = 7, ENTITY, INSTANCE, TYPE, EVENT_TYPE, SHARING };
    if (record.size() <= EVENT_TYPE) {
        return;
    }
    sensor.number = record[NUMBER];
    sensor.entityId = record[ENTITY];
    sensor.entityInstance = record[INSTANCE];
    sensor.sensorType = record[TYPE];
    sensor.eventType = record[EVENT_TYPE];
    readShared(record, SHARING, sensor);
}

/// A number in letters: A to Z, then AA.
std::string lettersOf(unsigned int number)
{
    constexpr unsigned int LETTERS = 26;
    const std::string last(1, static_cast<char>('A' + number % LETTERS));
    return number < LETTERS ? last : lettersOf(number / LETTERS - 1) + last;
}

}

std::size_t nameOffset(unsigned char recordType)
{
    switch (recordType) {
    case SDR_EVENT_ONLY:
        return 16;
    case SDR_DEVICE_LOCATOR:
    case SDR_FRU_LOCATOR:
    case SDR_CONTROLLER_LOCATOR:
        return 15;
    default:
        return 0;
    }
}

std::vector<Sensor> readSensors(const SdrFile& file, std::vector<std::string>& problems)
{
    std::vector<Sensor> sensors;
    problems.insert(problems.end(), file.problems.begin(), file.problems.end());
    if (file.records.empty()) {
        problems.emplace_back("no sensor data record found");
    }
    for (const SdrRecord& record : file.records) {
        try {
            sensors.push_back(readSensor(record));
        } catch (const DataError& e) {
            problems.emplace_back(e.what());
        }
    }
    return sensors;
}

std::optional<Conversion> sensorConversion(const SdrRecord& record)
{
    const ByteView bytes = record.bytes;
    const bool hasReadings = record.type() == SDR_FULL &&
                             bytes.size() > RecordSensorCommon::EVENT_TYPE &&
                             bytes[RecordSensorCommon::EVENT_TYPE] == THRESHOLD_EVENT;
    return hasReadings ? Conversion::of(bytes) : std::nullopt;
}

Sensor readSensor(const SdrRecord& record)
{
    Sensor sensor;
    sensor.id = record.id();
    sensor.offset = record.offset;
    sensor.recordType = record.type();
    readOwner(record.bytes, sensor);
    if (record.type() == SDR_FULL) {
        readAs<FullSensorRecord>(record, sensor);
        sensor.conversion = sensorConversion(record);
        readReadings(record.bytes, sensor);
        readThresholds(record.bytes, sensor);
    } else if (record.type() == SDR_COMPACT) {
        constexpr std::size_t SHARING = 23;
        readAs<CompactSensorRecord>(record, sensor);
        readShared(record.bytes, SHARING, sensor);
    } else if (record.type() == SDR_EVENT_ONLY) {
        readEventOnly(record.bytes, sensor);
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

std::string nameOfSharing(const Sensor& sensor, unsigned int which)
{
    const SharedRecord& shared = sensor.shared;
    if (shared.count <= 1) {
        return sensor.name;
    }
    const unsigned int ending = shared.first + which;
    return sensor.name + (shared.isAlphabetic ? lettersOf(ending) : std::to_string(ending));
}

void addNames(const std::vector<Sensor>& sensors, SensorNames& names)
{
    for (const Sensor& sensor : sensors) {
        if (!sensor.describesSensor()) {
            continue;
        }
        const SharedRecord& shared = sensor.shared;
        for (unsigned int i = 0; i < shared.count; ++i) {
            const unsigned int instance = sensor.entityInstance + (shared.hasEntityEach ? i : 0);
            const NamedSensor named = {
                nameOfSharing(sensor, i), fmt::format("{}.{}", sensor.entityId, instance & 0xFF),
                entityName(sensor.entityId), sensor.units, sensor.conversion};
            names.add(sensor.ownerId, sensor.ownerLun,
                      static_cast<unsigned char>(sensor.number + i), named);
        }
    }
}

std::vector<unsigned int> eventOffsets(const Sensor& sensor)
{
    // Bits 14..12 of a threshold sensor's masks are the thresholds that its readings compare with.
    constexpr unsigned int CROSSINGS = 0x0FFF;
    constexpr unsigned int STATES = 0x7FFF;
    return bitsOf((sensor.assertionMask | sensor.deassertionMask) &
                  (sensor.eventType == THRESHOLD_EVENT ? CROSSINGS : STATES));
}

}
