// SPDX-License-Identifier: Apache-2.0
#include <recordkit/inspect/event/Event.h>

#include <algorithm>
#include <fmt/format.h>

#include <recordkit/inspect/words/EventCauses.h>
#include <recordkit/inspect/words/EventTypes.h>
#include <recordkit/inspect/words/EventWords.h>
#include <recordkit/sel/BMCSELEntryMessage.h>
#include <recordkit/serial/BitField.h>

namespace recordkit::inspect {

using TAVLib::get_bit;
using TAVLib::RecordKit::BMCSELEntryMessage;
using TAVLib::RecordKit::SELEntry;

namespace {

unsigned int littleEndian(const SELEntry& entry, int byte, int width)
{
    unsigned int value = 0;
    for (int i = width - 1; i >= 0; --i) {
        value = value << 8 | entry.getSpecifiedBytePosData(byte + i);
    }
    return value;
}

void decodeSystemEvent(const SELEntry& entry, Event& event)
{
    event.generatorId[0] = entry.getSpecifiedBytePosData(SELEntry::GENERATOR_ID_1);
    event.generatorId[1] = entry.getSpecifiedBytePosData(SELEntry::GENERATOR_ID_2);
    event.sensorType = entry.getSpecifiedBytePosData(SELEntry::SENSOR_TYPE);
    event.sensorNumber = entry.getSpecifiedBytePosData(SELEntry::SENSOR_NUMBER);
    const unsigned char type = entry.getSpecifiedBytePosData(SELEntry::EVENT_TYPE);
    event.isDeassertion = get_bit(type, 7, 1) != 0;
    event.eventType = get_bit(type, 0, 7);
    for (int i = 0; i < 3; ++i) {
        event.data[i] = entry.getSpecifiedBytePosData(SELEntry::EVENT_DATA_1 + i);
    }
    event.offset = get_bit(event.data[0], 0, 4);
    event.severity = severityOfEvent(event.eventType, event.sensorType, event.offset);
}

/// ", reading 480 < threshold 600 RPM"; empty for an event without a reading or a known sensor.
std::string triggerText(const Event& event)
{
    const auto reading = triggerReading(event);
    if (event.sensor == nullptr || !reading) {
        return "";
    }
    const NamedSensor& sensor = *event.sensor;
    const std::string units = sensor.units.empty() ? "" : " " + sensor.units;
    const std::string text = ", reading " + readingText(sensor.conversion, *reading);
    const auto threshold = triggerThreshold(event);
    if (!threshold) {
        return text + units;
    }
    const auto valueOf = [&sensor](unsigned char raw) {
        return sensor.conversion ? sensor.conversion->valueOf(raw) : std::optional<double>(raw);
    };
    const std::optional<double> one = valueOf(*reading);
    const std::optional<double> other = valueOf(*threshold);
    if (!one || !other) {
        return fmt::format("{}, threshold {}{}", text, readingText(sensor.conversion, *threshold),
                           units);
    }
    const double difference = *one - *other;
    return fmt::format("{} {} threshold {}{}", text,
                       difference < 0   ? "<"
                       : difference > 0 ? ">"
                                        : "=",
                       readingText(sensor.conversion, *threshold), units);
}

std::string systemEventWords(const Event& event)
{
    const char* const words = eventWords(event.eventType, event.sensorType, event.offset);
    const std::string cause = eventCause(event);
    return (words != nullptr
                ? words
                : fmt::format("{} event {:02X}h, offset {}", eventTypeName(event.eventType),
                              event.eventType, event.offset)) +
           (cause.empty() ? "" : ": ") + cause;
}

std::string systemEventText(const Event& event)
{
    return systemEventWords(event) + triggerText(event);
}

void decodeOemData(const SELEntry& entry, int from, Event& event)
{
    for (int byte = from; byte <= static_cast<int>(SELEntry::RECORD_SIZE); ++byte) {
        event.oemData.push_back(entry.getSpecifiedBytePosData(byte));
    }
}

}

Event decodeEvent(const BMCSELEntryMessage& message)
{
    // A copy, for accessors that are not const.
    BMCSELEntryMessage entry = message;
    Event event;
    event.recordId = littleEndian(entry, SELEntry::RECORD_ID, 2);
    event.recordType = entry.getSpecifiedBytePosData(SELEntry::RECORD_TYPE);
    event.kind = eventKind(event.recordType);
    event.hasTime = event.kind != EventKind::OEM_UNTIMESTAMPED;
    if (event.hasTime) {
        event.time = Timestamp(littleEndian(entry, SELEntry::TIMESTAMP, 4));
    }
    switch (event.kind) {
    case EventKind::SYSTEM_EVENT:
        decodeSystemEvent(entry, event);
        break;
    case EventKind::OEM_TIMESTAMPED:
        event.manufacturer = littleEndian(entry, SELEntry::OEM_MANUFACTURER_ID, 3);
        decodeOemData(entry, SELEntry::OEM_TIMESTAMPED_DATA, event);
        break;
    case EventKind::OEM_UNTIMESTAMPED:
        decodeOemData(entry, SELEntry::OEM_UNTIMESTAMPED_DATA, event);
        break;
    case EventKind::OTHER:
        decodeOemData(entry, SELEntry::OEM_MANUFACTURER_ID, event);
        break;
    }
    event.partitions = entry.getPartitionBitmask();
    event.partNumber = entry.getPartNo();
    event.serialNumber = entry.getSerialNo();
    entry.getSerialized(event.image.data(), static_cast<unsigned int>(event.image.size()));
    return event;
}

Event decodeEvent(unsigned int board, const TAVLib::RecordKit::SELChainReader::Record& record)
{
    BMCSELEntryMessage entry;
    entry.setSerialized(record.image, BMCSELEntryMessage::MESSAGE_IMAGE_SIZE);
    Event event = decodeEvent(entry);
    event.board = board;
    event.log = board;
    event.logNumber = record.logNumber;
    event.fileIndex = record.fileIndex;
    event.slot = record.slot;
    return event;
}

void nameSensors(std::vector<Event>& events, const SensorNames& names)
{
    for (Event& event : events) {
        if (event.kind == EventKind::SYSTEM_EVENT) {
            event.sensor = names.find(event.generatorId, event.sensorNumber);
        }
    }
}

std::optional<unsigned char> triggerReading(const Event& event)
{
    const bool isThere = event.kind == EventKind::SYSTEM_EVENT &&
                         formOfData2(event.eventType, event.data[0]) == DataForm::READING;
    return isThere ? std::optional(event.data[1]) : std::nullopt;
}

std::optional<unsigned char> triggerThreshold(const Event& event)
{
    const bool isThere = event.kind == EventKind::SYSTEM_EVENT &&
                         formOfData3(event.eventType, event.data[0]) == DataForm::THRESHOLD;
    return isThere ? std::optional(event.data[2]) : std::nullopt;
}

std::string eventCause(const Event& event)
{
    if (event.kind != EventKind::SYSTEM_EVENT) {
        return "";
    }
    const EventCauses causes = eventCauses(event.eventType, event.sensorType, event.data);
    const bool isBoth = !causes.data2.empty() && !causes.data3.empty();
    return causes.data2 + (isBoth ? ", " : "") + causes.data3;
}

const char* stateName(EventState state)
{
    constexpr const char* NAMES[] = {"regular", "unreachable", "damaged", "backup"};
    return NAMES[static_cast<std::size_t>(state)];
}

std::string eventText(const Event& event)
{
    if (!event.siteText.empty()) {
        return event.siteText;
    }
    switch (event.kind) {
    case EventKind::SYSTEM_EVENT:
        return systemEventText(event);
    case EventKind::OEM_TIMESTAMPED:
        return fmt::format("OEM record {:02X}h, manufacturer {:06X}h", event.recordType,
                           event.manufacturer);
    case EventKind::OEM_UNTIMESTAMPED:
        return fmt::format("OEM record {:02X}h without a time", event.recordType);
    case EventKind::OTHER:
        break;
    }
    return fmt::format("record of unknown type {:02X}h", event.recordType);
}

}
