// SPDX-License-Identifier: Apache-2.0
#include "EventDocument.h"

#include <algorithm>
#include <map>

#include <recordkit/inspect/fields/RecordClass.h>
#include <recordkit/inspect/log/LogMarks.h>
#include <recordkit/inspect/words/EventTypes.h>
#include <recordkit/inspect/words/SensorTypes.h>
#include <recordkit/sel/SELEntry.h>

#include "../decode/FieldListing.h"
#include "../print/Base64.h"
#include "../sel/EventColumns.h"

namespace recordkit::tool {

using namespace inspect;
using TAVLib::RecordKit::SELEntry;

namespace {

constexpr const char* RECORD_CLASS = "SELEntry";
constexpr const char* SENSOR_TYPE = "sensor_type";
constexpr const char* EVENT_TYPE = "event_type";
constexpr const char* RECORD_TYPE = "record_type";
constexpr const char* TIMESTAMP = "timestamp";

/// Numbers in as few bytes each as they need, at least `width`, low byte first.
Object columnOf(const std::vector<unsigned int>& numbers, std::size_t width = 1)
{
    const unsigned int most =
        numbers.empty() ? 0 : *std::max_element(numbers.begin(), numbers.end());
    width = std::max<std::size_t>(width, most < 0x100 ? 1 : most < 0x10000 ? 2 : 4);
    Bytes bytes;
    bytes.reserve(numbers.size() * width);
    for (const unsigned int number : numbers) {
        for (std::size_t i = 0; i < width; ++i) {
            bytes.push_back(static_cast<unsigned char>(number >> (8 * i)));
        }
    }
    return {{"type", width == 1 ? "u8" : width == 2 ? "u16" : "u32"}, {"data", base64(bytes)}};
}

Object columnsOf(const EventTable& table)
{
    constexpr std::size_t ALWAYS = 4;
    return {{"time", columnOf(table.times, ALWAYS)},
            {"severity", columnOf(table.severities)},
            {"direction", columnOf(table.directions)},
            {"flags", columnOf(table.flags)},
            {"state", columnOf(table.states)},
            {"file", columnOf(table.files)},
            {"slot", columnOf(table.slots)},
            {"number", columnOf(table.numbers)},
            {"sensor", columnOf(table.sensorOf)},
            {"text", columnOf(table.textOf)},
            {"cause", columnOf(table.causeOf)},
            {"block", columnOf(table.blockOf)},
            {"record", Object{{"type", "bytes"}, {"data", base64(table.records)}}}};
}

/// Sorted texts: how many characters each shares with the one before, and the rest. Only ASCII
/// characters are shared, so that their number is the same in every coding.
List frontCoded(const std::vector<std::string>& texts)
{
    List coded;
    std::string before;
    for (const std::string& text : texts) {
        std::size_t shared = 0;
        while (shared < text.size() && shared < before.size() && text[shared] == before[shared] &&
               static_cast<unsigned char>(text[shared]) < 0x80) {
            ++shared;
        }
        coded.emplace_back(shared);
        coded.emplace_back(text.substr(shared));
        before = text;
    }
    return coded;
}

List sensorsOf(const EventTable& table)
{
    return listOf(table.sensors, [](const Event* const event) {
        return Object{{"log", event->log},
                      {"generator", eventField(*event, "generator")},
                      {"type", eventField(*event, SENSOR_TYPE)},
                      {"type_name", eventField(*event, "sensor_type_name")},
                      {"number", eventField(*event, "sensor")},
                      {"name", eventField(*event, "sensor_name")},
                      {"entity", eventField(*event, "entity")},
                      {"entity_name", eventField(*event, "entity_name")}};
    });
}

Object blockOf(const EventBlock& block)
{
    if (block.event == nullptr) {
        return {{"omitted", true}};
    }
    const ByteView image(block.event->image);
    return {{"image", block.hasImage
                          ? Value(base64(image.part(SELEntry::IMAGE_SIZE,
                                                    image.size() - SELEntry::IMAGE_SIZE)))
                          : Value()},
            {"omitted", !block.hasImage},
            {"partitions", eventField(*block.event, "partitions")},
            {"part_number", eventField(*block.event, "part_number")},
            {"serial_number", eventField(*block.event, "serial_number")}};
}

/// How a field's number is shown.
const char* formOf(const DecodedField& field)
{
    return field.name == TIMESTAMP ? "time"
           : field.name == SENSOR_TYPE || field.name == EVENT_TYPE || field.name == RECORD_TYPE
               ? "word"
           : std::holds_alternative<bool>(field.value)        ? "number"
           : std::holds_alternative<std::string>(field.value) ? "bytes"
                                                              : "hex";
}

/// The fields of records of one type, by the places in the 16 bytes.
Object fieldsOf(const Event& example)
{
    List fields;
    const ByteView image = ByteView(example.image).part(0, SELEntry::IMAGE_SIZE);
    for (const DecodedField& field : decodeRecord(*findRecordClass(RECORD_CLASS), image)) {
        const bool isOfRecord =
            field.place.offset >= SELEntry::HEADER_SIZE && field.place.width != 0;
        const bool isWhole = field.place.width == SELEntry::RECORD_SIZE;
        if (!isOfRecord || isWhole || !field.also.empty()) {
            continue;
        }
        Object object = {{"name", field.name},
                         {"offset", field.place.offset - SELEntry::HEADER_SIZE},
                         {"width", field.place.width},
                         {"as", formOf(field)}};
        if (field.place.isBits()) {
            object.push_back({"bits", List{field.place.high, field.place.low}});
        }
        fields.emplace_back(std::move(object));
    }
    return {{"first", example.recordType},
            {"last", example.recordType},
            {"kind", kindName(example.kind)},
            {"fields", fields}};
}

List fieldsOf(const std::vector<Event>& events)
{
    std::map<unsigned char, const Event*> examples;
    for (const Event& event : events) {
        examples.try_emplace(event.recordType, &event);
    }
    return listOf(examples, [](const auto& each) { return fieldsOf(*each.second); });
}

/// The names of numbers that occur.
Object wordsOf(const EventTable& table)
{
    std::map<unsigned int, std::string> sensorTypes;
    std::map<unsigned int, std::string> eventTypes;
    for (std::size_t at = 0; at < table.records.size(); at += SELEntry::RECORD_SIZE) {
        const unsigned char* const record = table.records.data() + at - 1; // bytes count from 1
        const unsigned char sensorType = record[SELEntry::SENSOR_TYPE];
        const unsigned char eventType = record[SELEntry::EVENT_TYPE] & 0x7F;
        sensorTypes.try_emplace(sensorType, sensorTypeName(sensorType));
        eventTypes.try_emplace(eventType, eventTypeName(eventType));
    }
    const auto objectOf = [](const std::map<unsigned int, std::string>& words) {
        Object object;
        for (const auto& each : words) {
            object.push_back({std::to_string(each.first), each.second});
        }
        return object;
    };
    return {{SENSOR_TYPE, objectOf(sensorTypes)}, {EVENT_TYPE, objectOf(eventTypes)}};
}

Object traceOf(const LogMark& mark)
{
    Object object = {
        {"kind", logMarkName(mark.kind)}, {"log", mark.log}, {"from", mark.from}, {"to", mark.to}};
    if (mark.kind == LogMark::GAP) {
        object.push_back({"missing", mark.missing});
    }
    return object;
}

}

Object eventDocument(const std::vector<Event>& events, const EventTable& table)
{
    List severities = listOf(worstFirst(), [](Severity each) { return Value(severityName(each)); });
    severities.emplace_back("none");
    List states;
    for (int each = 0; each <= static_cast<int>(EventState::BACKUP); ++each) {
        states.emplace_back(stateName(static_cast<EventState>(each)));
    }
    return {{"count", events.size()},
            {"columns", columnsOf(table)},
            {"severities", severities},
            {"directions", List{"", "asserted", "deasserted"}},
            {"states", states},
            {"sensors", sensorsOf(table)},
            {"texts", frontCoded(table.texts)},
            {"causes", frontCoded(table.causes)},
            {"blocks", listOf(table.blocks, blockOf)},
            {"fields", fieldsOf(events)},
            {"words", wordsOf(table)},
            {"traces", listOf(findLogMarks(events), traceOf)}};
}

}
