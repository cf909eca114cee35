// SPDX-License-Identifier: Apache-2.0
#include "EventText.h"

#include <algorithm>
#include <fmt/format.h>

#include <recordkit/inspect/bytes/Hex.h>
#include <recordkit/inspect/bytes/Numbers.h>
#include <recordkit/inspect/bytes/Text.h>
#include <recordkit/inspect/words/EventCauses.h>
#include <recordkit/inspect/words/EventTypes.h>
#include <recordkit/inspect/words/SensorTypes.h>

#include "../Zone.h"
#include "../decode/FieldListing.h"
#include "../print/Output.h"

namespace recordkit::tool {

namespace {

constexpr unsigned int BYTES_A_LINE = 16;

void line(std::string& text, const char* name, const std::string& value)
{
    constexpr std::size_t WIDTH = 18;
    text += factLine(name, value, WIDTH);
}

/// Bytes with one meaning, or without one.
struct Run {
    unsigned int size = 0;
    std::string names;
};

/// What the fields say about the byte at `at` and those after it. Where several fields begin, the
/// narrowest decide, and a field that repeats a part of the image is not one of them.
Run runAt(const DecodedFields& fields, unsigned int at, unsigned int size)
{
    Run run = {size - at, ""};
    for (const DecodedField& field : fields) {
        if (field.place.offset > at) {
            run.size = std::min(run.size, field.place.offset - at);
        } else if (field.place.offset == at) {
            run.size = std::min(run.size, field.place.width);
        }
    }
    for (const DecodedField& field : fields) {
        if (field.place.offset == at && field.place.width == run.size) {
            run.names += (run.names.empty() ? "" : ", ") + field.name;
        }
    }
    run.names = run.names.empty() ? "carried unchanged" : run.names;
    return run;
}

void dumpImage(std::string& text, const Event& event)
{
    const auto size = static_cast<unsigned int>(event.image.size());
    const DecodedFields fields = decodeRecord(*findRecordClass("BMCSELEntryMessage"), event.image);
    text += "offset  bytes                                            field\n";
    for (unsigned int at = 0; at < size;) {
        const Run run = runAt(fields, at, size);
        for (unsigned int done = 0; done < run.size; done += BYTES_A_LINE) {
            const unsigned int count = std::min(BYTES_A_LINE, run.size - done);
            const ByteView bytes = ByteView(event.image).part(at + done, count);
            text += fmt::format("{:>6}  {:<47}  {}\n", at + done,
                                fmt::format("{:02x}", fmt::join(bytes, " ")),
                                done == 0 ? run.names : "");
        }
        at += run.size;
    }
}

std::string generatorText(const Event& event)
{
    const unsigned char first = event.generatorId[0];
    const unsigned char second = event.generatorId[1];
    return (first & 1) != 0 ? fmt::format("software id {:02X}h", first >> 1)
                            : fmt::format("slave address {:02X}h, LUN {}, channel {}", first,
                                          second & 3, second >> 4);
}

/// "sensor-specific 03h: memory module 3"
std::string dataText(DataForm form, unsigned char data, const std::string& words)
{
    return fmt::format("{} {:02X}h{}{}", formName(form), data, words.empty() ? "" : ": ", words);
}

/// Event data 1 gives the offset and what the other two contain.
void describeData(std::string& text, const Event& event)
{
    const EventCauses causes = eventCauses(event.eventType, event.sensorType, event.data);
    line(text, "event data 1", fmt::format("{:02X}h", event.data[0]));
    line(text, "event data 2",
         dataText(formOfData2(event.eventType, event.data[0]), event.data[1], causes.data2));
    line(text, "event data 3",
         dataText(formOfData3(event.eventType, event.data[0]), event.data[2], causes.data3));
}

void describeSystemEvent(std::string& text, const Event& event)
{
    line(text, "severity", severityName(event.severity));
    line(text, "generator", generatorText(event));
    line(text, "sensor type",
         fmt::format("{:02X}h {}", event.sensorType, sensorTypeName(event.sensorType)));
    line(text, "sensor number", fmt::format("{:02X}h", event.sensorNumber));
    if (event.sensor != nullptr) {
        line(text, "sensor name", printable(event.sensor->name));
        line(text, "entity", event.sensor->entity + " " + event.sensor->entityName);
    }
    line(text, "event type",
         fmt::format("{:02X}h {}", event.eventType, eventTypeName(event.eventType)));
    line(text, "event offset", std::to_string(event.offset));
    line(text, "direction", event.isDeassertion ? "deasserted" : "asserted");
    describeData(text, event);
}

/// A text of a record, which is Latin-1 and may contain control characters.
std::string textOf(const std::string& text)
{
    return cellText(textOrNull(toUtf8(text)));
}

std::string placeText(const Event& event)
{
    if (!event.source.empty()) {
        return fmt::format("{}, record {}", event.source, event.slot);
    }
    if (event.state == EventState::BACKUP) {
        return fmt::format("backup of sel0, slot {}", event.slot);
    }
    return fmt::format(
        "sel{}, slot {}{}", event.fileIndex, event.slot,
        event.state == EventState::REGULAR ? "" : fmt::format(" ({})", stateName(event.state)));
}

}

std::string describeEvent(const Event& event)
{
    std::string text;
    line(text, "board", event.source.empty() ? std::to_string(event.board) : "-");
    line(text, "log number", event.logNumber == 0 ? "-" : std::to_string(event.logNumber));
    line(text, "stored in", placeText(event));
    line(text, "record id", fmt::format("{:04X}h", event.recordId));
    line(text, "record type", fmt::format("{:02X}h {}", event.recordType, kindName(event.kind)));
    line(text, "time", event.hasTime ? event.time.toText(chosenZone()) : "-");
    line(text, "event", eventText(event));
    if (event.kind == EventKind::SYSTEM_EVENT) {
        describeSystemEvent(text, event);
    } else {
        line(text, "data", toLowerHex(event.oemData));
    }
    line(text, "partitions", cellText(bitsOf(event.partitions)));
    line(text, "part number", textOf(event.partNumber));
    line(text, "serial number", textOf(event.serialNumber));
    text += '\n';
    dumpImage(text, event);
    return text;
}

}
