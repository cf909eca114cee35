// SPDX-License-Identifier: Apache-2.0
#include "EventText.h"

#include <fmt/format.h>
#include <iterator>

#include <recordkit/inspect/bytes/Hex.h>
#include <recordkit/inspect/bytes/Numbers.h>
#include <recordkit/inspect/words/EventTypes.h>
#include <recordkit/inspect/words/SensorTypes.h>
#include <recordkit/sel/BMCSELEntryMessage.h>

#include "../print/Json.h"

namespace recordkit::tool {

using Message = TAVLib::RecordKit::BMCSELEntryMessage;

namespace {

/// A run of image bytes with one meaning.
struct ImageField {
    unsigned int offset;
    unsigned int size;
    const char* name;
};

/// Image offsets of record, block and trailer bytes.
constexpr unsigned int ofRecord(int byte)
{
    return static_cast<unsigned int>(byte) + 1;
}
constexpr unsigned int ofBlock(unsigned int byte)
{
    return Message::IMAGE_SIZE + byte;
}
constexpr unsigned int ofTrailer(unsigned int byte)
{
    return Message::BMC_IMAGE_SIZE + byte;
}

// clang-format off
constexpr ImageField HEAD[] = {
    {0, 2, "next record id"},
    {ofRecord(Message::RECORD_ID), 2, "record id"},
    {ofRecord(Message::RECORD_TYPE), 1, "record type"},
};
constexpr ImageField SYSTEM_EVENT[] = {
    {ofRecord(Message::TIMESTAMP), 4, "timestamp"},
    {ofRecord(Message::GENERATOR_ID_1), 2, "generator id"},
    {ofRecord(Message::EVM_REVISION), 1, "event message revision"},
    {ofRecord(Message::SENSOR_TYPE), 1, "sensor type"},
    {ofRecord(Message::SENSOR_NUMBER), 1, "sensor number"},
    {ofRecord(Message::EVENT_TYPE), 1, "direction and event type"},
    {ofRecord(Message::EVENT_DATA_1), 3, "event data"},
};
constexpr ImageField OEM_TIMESTAMPED[] = {
    {ofRecord(Message::TIMESTAMP), 4, "timestamp"},
    {ofRecord(Message::OEM_MANUFACTURER_ID), 3, "manufacturer id"},
    {ofRecord(Message::OEM_TIMESTAMPED_DATA), 6, "OEM data"},
};
constexpr ImageField OEM_UNTIMESTAMPED[] = {
    {ofRecord(Message::OEM_UNTIMESTAMPED_DATA), 13, "OEM data"},
};
constexpr ImageField OTHER[] = {
    {ofRecord(Message::TIMESTAMP), 4, "timestamp"},
    {ofRecord(8), 9, "unknown"},
};
constexpr ImageField TAIL[] = {
    {ofBlock(Message::BLOCK_EVENT_DATA_COUNT), 1, "OEM event data count"},
    {ofBlock(Message::BLOCK_EVENT_DATA), 13, "OEM event data"},
    {ofBlock(14), 55, "reserved"},
    {ofBlock(Message::BLOCK_PARTITION_BITMASK), 2, "partition bitmask"},
    {ofBlock(Message::BLOCK_PART_NUMBER_TYPE_LENGTH), 1, "part number type/length"},
    {ofBlock(Message::BLOCK_PART_NUMBER), 18, "part number"},
    {ofBlock(Message::BLOCK_SERIAL_NUMBER_TYPE_LENGTH), 1, "serial number type/length"},
    {ofBlock(Message::BLOCK_SERIAL_NUMBER), 21, "serial number and further OEM bytes"},
    {ofTrailer(Message::TRAILER_KIND), 1, "trailer kind"},
    {ofTrailer(1), 1, "trailer byte 1"},
    {ofTrailer(Message::TRAILER_PARTITION_BITMASK), 2, "trailer partition bitmask"},
    {ofTrailer(4), 4, "trailer bytes 4 to 7"},
};
// clang-format on

constexpr unsigned int BYTES_A_LINE = 16;

void line(std::string& text, const char* name, const std::string& value)
{
    text += fmt::format("{:<18}{}\n", name, value);
}

void dump(std::string& text, const Event& event, const ImageField& field)
{
    for (unsigned int done = 0; done < field.size; done += BYTES_A_LINE) {
        const unsigned int count = std::min(BYTES_A_LINE, field.size - done);
        std::string digits;
        for (unsigned int i = 0; i < count; ++i) {
            digits +=
                fmt::format("{}{:02x}", i == 0 ? "" : " ", event.image[field.offset + done + i]);
        }
        text += fmt::format("{:>6}  {:<47}  {}\n", field.offset + done, digits,
                            done == 0 ? field.name : "");
    }
}

template <std::size_t Count>
void dump(std::string& text, const Event& event, const ImageField (&fields)[Count])
{
    for (const ImageField& field : fields) {
        dump(text, event, field);
    }
}

void dumpImage(std::string& text, const Event& event)
{
    text += "offset  bytes                                            field\n";
    dump(text, event, HEAD);
    switch (event.kind) {
    case EventKind::SYSTEM_EVENT:
        dump(text, event, SYSTEM_EVENT);
        break;
    case EventKind::OEM_TIMESTAMPED:
        dump(text, event, OEM_TIMESTAMPED);
        break;
    case EventKind::OEM_UNTIMESTAMPED:
        dump(text, event, OEM_UNTIMESTAMPED);
        break;
    case EventKind::OTHER:
        dump(text, event, OTHER);
        break;
    }
    dump(text, event, TAIL);
}

std::string generatorText(const Event& event)
{
    const unsigned char first = event.generatorId[0];
    const unsigned char second = event.generatorId[1];
    return (first & 1) != 0 ? fmt::format("software id {:02X}h", first >> 1)
                            : fmt::format("slave address {:02X}h, LUN {}, channel {}", first,
                                          second & 3, second >> 4);
}

/// The contents of event data 2 and 3, by bits 7..6 and 5..4 of event data 1 (IPMI v2.0, table
/// 29-6).
std::string dataText(const Event& event)
{
    constexpr const char* THRESHOLD[] = {"unspecified", "reading", "OEM code", "sensor-specific"};
    constexpr const char* THRESHOLD_3[] = {"unspecified", "threshold", "OEM code",
                                           "sensor-specific"};
    constexpr const char* DISCRETE[] = {"unspecified", "previous state and severity", "OEM code",
                                        "sensor-specific"};
    constexpr const char* DISCRETE_3[] = {"unspecified", "reserved", "OEM code", "sensor-specific"};
    const bool isThreshold = event.eventType == THRESHOLD_EVENT;
    const unsigned int second = event.data[0] >> 6;
    const unsigned int third = event.data[0] >> 4 & 3;
    return fmt::format("{:02X}h {:02X}h {:02X}h (2: {}, 3: {})", event.data[0], event.data[1],
                       event.data[2], (isThreshold ? THRESHOLD : DISCRETE)[second],
                       (isThreshold ? THRESHOLD_3 : DISCRETE_3)[third]);
}

void describeSystemEvent(std::string& text, const Event& event)
{
    line(text, "severity", severityName(event.severity));
    line(text, "generator", generatorText(event));
    line(text, "sensor type",
         fmt::format("{:02X}h {}", event.sensorType, sensorTypeName(event.sensorType)));
    line(text, "sensor number", fmt::format("{:02X}h", event.sensorNumber));
    line(text, "event type",
         fmt::format("{:02X}h {}", event.eventType, eventTypeName(event.eventType)));
    line(text, "event offset", std::to_string(event.offset));
    line(text, "direction", event.isDeassertion ? "deasserted" : "asserted");
    line(text, "event data", dataText(event));
}

/// A text of a record for a terminal: control characters in it must not reach the terminal.
std::string orDash(const std::string& text)
{
    std::string harmless = text;
    for (char& character : harmless) {
        const auto byte = static_cast<unsigned char>(character);
        const bool isControl = byte < 0x20 || (byte >= 0x7F && byte < 0xA0);
        character = isControl ? '?' : character;
    }
    return harmless.empty() ? "-" : toUtf8(harmless);
}

}

std::string describeEvent(const Event& event)
{
    std::string text;
    line(text, "board", std::to_string(event.board));
    line(text, "log number", event.logNumber == 0 ? "-" : std::to_string(event.logNumber));
    line(text, "stored in", fmt::format("sel{}, slot {}", event.fileIndex, event.slot));
    line(text, "record id", fmt::format("{:04X}h", event.recordId));
    line(text, "record type", fmt::format("{:02X}h {}", event.recordType, kindName(event.kind)));
    line(text, "time", event.hasTime ? event.time.toText() : "-");
    line(text, "event", eventText(event));
    if (event.kind == EventKind::SYSTEM_EVENT) {
        describeSystemEvent(text, event);
    } else {
        line(text, "data", toLowerHex(event.oemData));
    }
    std::string partitions;
    for (const unsigned int partition : bitsOf(event.partitions)) {
        partitions += (partitions.empty() ? "" : ", ") + std::to_string(partition);
    }
    line(text, "partitions", orDash(partitions));
    line(text, "part number", orDash(event.partNumber));
    line(text, "serial number", orDash(event.serialNumber));
    text += '\n';
    dumpImage(text, event);
    return text;
}

}
