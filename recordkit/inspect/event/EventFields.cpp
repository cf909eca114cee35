// SPDX-License-Identifier: Apache-2.0
#include <recordkit/inspect/event/EventFields.h>

#include <iterator>

#include <recordkit/inspect/bytes/Hex.h>
#include <recordkit/inspect/bytes/Numbers.h>
#include <recordkit/inspect/bytes/Text.h>
#include <recordkit/inspect/words/EventTypes.h>
#include <recordkit/inspect/words/SensorTypes.h>

namespace recordkit::inspect {

using TAVLib::RecordKit::SELEntry;

namespace {

Value textOrNone(const std::string& text)
{
    return text.empty() ? Value() : Value(text);
}

Value numberOrNone(bool exists, unsigned int number)
{
    return exists ? Value(static_cast<long long>(number)) : Value();
}

bool isInLog(const Event& event)
{
    return event.source.empty();
}

/// A number and a text that only system events have.
template <auto Member> Value systemNumber(const Event& event)
{
    return numberOrNone(event.kind == EventKind::SYSTEM_EVENT, event.*Member);
}
Value systemText(const Event& event, const std::string& text)
{
    return event.kind == EventKind::SYSTEM_EVENT ? Value(text) : Value();
}

ByteView recordOf(const Event& event)
{
    return ByteView(event.image).part(SELEntry::HEADER_SIZE, SELEntry::RECORD_SIZE);
}

ByteView extendedOf(const Event& event)
{
    std::size_t end = event.image.size();
    while (end > SELEntry::IMAGE_SIZE && event.image[end - 1] == 0) {
        --end;
    }
    return ByteView(event.image).part(SELEntry::IMAGE_SIZE, end - SELEntry::IMAGE_SIZE);
}

/// In the units of the sensor; without a conversion there are none.
Value readingOf(const Event& event, std::optional<unsigned char> raw)
{
    if (event.sensor == nullptr || !event.sensor->conversion || !raw) {
        return {};
    }
    const std::optional<double> value = event.sensor->conversion->valueOf(*raw);
    return value ? Value(*value) : Value();
}

Value partitions(const Event& event)
{
    const auto numbers = bitsOf(event.partitions);
    return std::vector<long long>(numbers.begin(), numbers.end());
}

// clang-format off
constexpr EventField FIELDS[] = {
    {"only_in", [](const Event& e) { return textOrNone(e.onlyIn); },
     "Of two compared logs the one that has the event", FilledBy::COMPARISON},
    {"board", [](const Event& e) { return numberOrNone(isInLog(e), e.board); },
     "Board whose log contains the event; none for a saved file"},
    {"log", [](const Event& e) { return numberOrNone(e.logNumber != 0, e.logNumber); },
     "Log number, counted from 1 for the oldest; none for an event that the store does not count"},
    {"file", [](const Event& e) { return numberOrNone(isInLog(e), static_cast<unsigned int>(e.fileIndex)); },
     "File index: 0 working file or its backup, 1 to 7 rotated"},
    {"slot", [](const Event& e) { return numberOrNone(true, e.slot); },
     "Slot in the file, or the number of the record in a saved one, from 0"},
    {"state", [](const Event& e) { return textOrNone(isInLog(e) ? stateName(e.state) : ""); },
     "regular where the store counts the event, otherwise unreachable, damaged or backup"},
    {"source", [](const Event& e) { return textOrNone(e.source); },
     "Name of the saved file"},
    {"id", [](const Event& e) { return numberOrNone(true, e.recordId); },
     "Record id"},
    {"record_type", [](const Event& e) { return numberOrNone(true, e.recordType); },
     "Record type"},
    {"kind", [](const Event& e) { return Value(kindName(e.kind)); },
     "system-event, oem-timestamped, oem-untimestamped or other"},
    {"time", [](const Event& e) { return textOrNone(e.hasTime ? e.time.toIso() : ""); },
     "Date in ISO 8601; none before the controller's clock was set"},
    {"timestamp", [](const Event& e) { return numberOrNone(e.hasTime, e.time.raw()); },
     "Seconds as recorded"},
    {"pre_init", [](const Event& e) { return e.hasTime ? Value(e.time.isPreInit()) : Value(); },
     "Whether the seconds count from the controller's initialisation"},
    {"severity", [](const Event& e) { return systemText(e, severityName(e.severity)); },
     "unrated, informational, monitor, warning, critical or non-recoverable"},
    {"generator", [](const Event& e) { return systemText(e, toLowerHex(e.generatorId)); },
     "Who logged it: both bytes of the generator id in hex"},
    {"sensor_type", systemNumber<&Event::sensorType>,
     "Sensor type"},
    {"sensor_type_name", [](const Event& e) { return systemText(e, sensorTypeName(e.sensorType)); },
     "Its name"},
    {"sensor", systemNumber<&Event::sensorNumber>,
     "Sensor number"},
    {"event_type", systemNumber<&Event::eventType>,
     "Event/reading type"},
    {"event_type_name", [](const Event& e) { return systemText(e, eventTypeName(e.eventType)); },
     "Its name"},
    {"event_offset", systemNumber<&Event::offset>,
     "Event offset"},
    {"direction", [](const Event& e) { return systemText(e, e.isDeassertion ? "deasserted" : "asserted"); },
     "asserted or deasserted"},
    {"event_data", [](const Event& e) { return systemText(e, toLowerHex(e.data)); },
     "Event data 1 to 3 in hex"},
    {"manufacturer", [](const Event& e) { return numberOrNone(e.kind == EventKind::OEM_TIMESTAMPED, e.manufacturer); },
     "Manufacturer id of an OEM record with a timestamp"},
    {"oem_data", [](const Event& e) { return e.kind == EventKind::SYSTEM_EVENT ? Value() : Value(toLowerHex(e.oemData)); },
     "The record's own bytes in hex, unless it is a system event"},
    {"partitions", partitions,
     "Partitions concerned"},
    {"part_number", [](const Event& e) { return textOrNone(toUtf8(e.partNumber)); },
     "Part number of the unit involved"},
    {"serial_number", [](const Event& e) { return textOrNone(toUtf8(e.serialNumber)); },
     "Serial number of the unit involved"},
    {"event", [](const Event& e) { return Value(eventText(e)); },
     "The event as text"},
    {"cause", [](const Event& e) { return textOrNone(eventCause(e)); },
     "What event data 2 and 3 add to it; none where they add nothing"},
    {"sensor_name", [](const Event& e) { return textOrNone(e.sensor == nullptr ? "" : e.sensor->name); },
     "Name of the sensor", FilledBy::REPOSITORY},
    {"entity", [](const Event& e) { return textOrNone(e.sensor == nullptr ? "" : e.sensor->entity); },
     "Entity of the sensor: id and instance", FilledBy::REPOSITORY},
    {"entity_name", [](const Event& e) { return textOrNone(e.sensor == nullptr ? "" : e.sensor->entityName); },
     "Its name", FilledBy::REPOSITORY},
    {"reading", [](const Event& e) { return readingOf(e, triggerReading(e)); },
     "Reading that triggered the event of a threshold sensor", FilledBy::REPOSITORY},
    {"threshold", [](const Event& e) { return readingOf(e, triggerThreshold(e)); },
     "Threshold that it crossed", FilledBy::REPOSITORY},
    {"units", [](const Event& e) { return textOrNone(e.sensor == nullptr ? "" : e.sensor->units); },
     "Units of the reading and the threshold", FilledBy::REPOSITORY},
    {"next_id", [](const Event& e) { return numberOrNone(true, ByteView(e.image).le16(0)); },
     "Id of the next record as recorded"},
    {"record", [](const Event& e) { return Value(toLowerHex(recordOf(e))); },
     "The 16 bytes of the IPMI record in hex"},
    {"extended", [](const Event& e) { return textOrNone(toLowerHex(extendedOf(e))); },
     "The bytes after the record in hex, without the zeroes at their end; none if all are zero"},
    {"image", [](const Event& e) { return Value(toLowerHex(e.image)); },
     "All 138 bytes in hex; only where it is asked for"},
};
// clang-format on

}

const EventField* EventFields::begin() const
{
    return FIELDS;
}

const EventField* EventFields::end() const
{
    return std::end(FIELDS);
}

}
