// SPDX-License-Identifier: Apache-2.0
#include <recordkit/inspect/event/EventImport.h>

#include <algorithm>
#include <fmt/format.h>
#include <sstream>

#include <recordkit/inspect/bytes/Error.h>
#include <recordkit/inspect/bytes/Hex.h>
#include <recordkit/selfile/SELFileLayout.h>
#include <recordkit/serial/ByteOrder.h>

namespace recordkit::inspect {

using TAVLib::RecordKit::BMCSELEntry;
using TAVLib::RecordKit::BMCSELEntryMessage;
using TAVLib::RecordKit::OEMSELEntry;
using TAVLib::RecordKit::SELEntry;
namespace Layout = TAVLib::RecordKit::SELFileLayout;

namespace {

constexpr const char* LENGTHS = "16, 18, 74, 130 or 138 bytes";

/// A single record has no next one: IPMI expresses that as FFFFh.
constexpr unsigned char NO_NEXT_RECORD = 0xFF;

/// 8-bit text in a FRU type/length byte.
constexpr unsigned char TEXT_FIELD = 0xC0;

DataError badRecord(const std::string& name, const std::string& place, const std::string& text)
{
    return DataError(fmt::format("{}, {}: {}", name, place, text));
}

/// Writes a text field (type/length byte and characters) into OEM extended data.
void putField(Bytes& extended, unsigned int typeLengthOffset, const std::string& text)
{
    if (!text.empty()) {
        extended[typeLengthOffset] = static_cast<unsigned char>(TEXT_FIELD | text.size());
        std::copy(text.begin(), text.end(), extended.begin() + typeLengthOffset + 1);
    }
}

Bytes extendedData(const OemFields& fields)
{
    Bytes extended(OEMSELEntry::EXTENDED_SIZE, 0);
    TAVLib::writeLE16(fields.partitions, extended.data() + OEMSELEntry::EXTENDED_PARTITION_BITMASK);
    putField(extended, OEMSELEntry::EXTENDED_PART_NUMBER_TYPE_LENGTH, fields.partNumber);
    putField(extended, OEMSELEntry::EXTENDED_SERIAL_NUMBER_TYPE_LENGTH, fields.serialNumber);
    return extended;
}

BMCSELEntryMessage fromOemImage(const Bytes& image)
{
    OEMSELEntry oem;
    oem.setSerialized(image.data(), static_cast<unsigned int>(image.size()));
    BMCSELEntryMessage message;
    message.convert(oem);
    return message;
}

/// Makes a complete message of a record of one of the accepted lengths.
BMCSELEntryMessage complete(const Bytes& record, const OemFields& fields, const std::string& name,
                            const std::string& place)
{
    Bytes image = record;
    if (image.size() == SELEntry::RECORD_SIZE) {
        image.insert(image.begin(), SELEntry::HEADER_SIZE, NO_NEXT_RECORD);
    }
    if (image.size() == SELEntry::IMAGE_SIZE) {
        const Bytes extended = extendedData(fields);
        image.insert(image.end(), extended.begin(), extended.end());
        return fromOemImage(image);
    }
    if (fields.areGiven) {
        throw badRecord(
            name, place,
            fmt::format("a record of {} bytes has OEM data of its own, so that partitions, "
                        "part number and serial number cannot be given",
                        record.size()));
    }
    if (image.size() == OEMSELEntry::OEM_IMAGE_SIZE) {
        return fromOemImage(image);
    }
    if (image.size() == BMCSELEntry::BMC_IMAGE_SIZE) {
        image.resize(BMCSELEntryMessage::MESSAGE_IMAGE_SIZE, 0);
    }
    if (image.size() != BMCSELEntryMessage::MESSAGE_IMAGE_SIZE) {
        throw badRecord(name, place, fmt::format("{} bytes, expected {}", record.size(), LENGTHS));
    }
    BMCSELEntryMessage message;
    message.setSerialized(image.data(), BMCSELEntryMessage::MESSAGE_IMAGE_SIZE);
    return message;
}

/// Reverses what `ipmitool sel writeraw` saves: it stores the manufacturer id of OEM records with a
/// time (C0h to DFh) reversed in memory, and saves that.
void turnManufacturerBack(Bytes& record)
{
    constexpr std::size_t RECORD_TYPE = SELEntry::RECORD_TYPE - 1;
    constexpr long MANUFACTURER_ID = SELEntry::OEM_MANUFACTURER_ID - 1;
    constexpr long MANUFACTURER_ID_SIZE = 3;
    if (record[RECORD_TYPE] >= SELEntry::FIRST_OEM_TIMESTAMPED_RECORD &&
        record[RECORD_TYPE] < SELEntry::FIRST_OEM_UNTIMESTAMPED_RECORD) {
        std::reverse(record.begin() + MANUFACTURER_ID,
                     record.begin() + MANUFACTURER_ID + MANUFACTURER_ID_SIZE);
    }
}

std::vector<ImportedEvent> fromBinary(const std::string& name, const std::string& content,
                                      bool isWireOrder, const OemFields& fields)
{
    const std::size_t whole = content.size() / SELEntry::RECORD_SIZE * SELEntry::RECORD_SIZE;
    if (whole != content.size()) {
        throw badRecord(name, fmt::format("offset {}", whole),
                        fmt::format("{} bytes, expected a record of 16", content.size() - whole));
    }
    std::vector<ImportedEvent> events;
    for (std::size_t at = 0; at < whole; at += SELEntry::RECORD_SIZE) {
        Bytes record(content.begin() + static_cast<long>(at),
                     content.begin() + static_cast<long>(at + SELEntry::RECORD_SIZE));
        if (!isWireOrder) {
            turnManufacturerBack(record);
        }
        const std::string place = fmt::format("offset {}", at);
        events.push_back({complete(record, fields, name, place), place});
    }
    return events;
}

/// The record bytes of a line of hex digits; none for a line without a record.
Bytes parseHexLine(const std::string& line, const std::string& name, const std::string& place)
{
    Bytes bytes;
    const std::size_t bad = parseHexDigits(line.substr(0, line.find('#')), bytes);
    if (bad != std::string::npos) {
        throw badRecord(name, place,
                        fmt::format("column {}: expected two hex digits for each byte", bad + 1));
    }
    return bytes;
}

std::vector<ImportedEvent> fromLines(const std::string& name, const std::string& content,
                                     const OemFields& fields)
{
    std::vector<ImportedEvent> events;
    std::istringstream lines(content);
    unsigned int number = 0;
    for (std::string line; std::getline(lines, line);) {
        const std::string place = fmt::format("line {}", ++number);
        const Bytes record = parseHexLine(line, name, place);
        if (!record.empty()) {
            events.push_back({complete(record, fields, name, place), place});
        }
    }
    return events;
}

EventForm formOf(const std::string& content)
{
    return isText(content, true) ? EventForm::HEX : EventForm::WRITERAW;
}

}

std::vector<ImportedEvent> importEvents(const std::string& name, const std::string& content,
                                        EventForm form, const OemFields& fields)
{
    if (content.empty()) {
        throw DataError(name + " is empty, expected event records");
    }
    const EventForm actual = form == EventForm::AUTO ? formOf(content) : form;
    std::vector<ImportedEvent> events =
        actual == EventForm::HEX ? fromLines(name, content, fields)
                                 : fromBinary(name, content, actual == EventForm::WIRE, fields);
    if (events.empty()) {
        throw DataError(name + " contains no event record");
    }
    return events;
}

unsigned short recordIdOf(const BMCSELEntryMessage& message)
{
    unsigned char image[Layout::SLOT_SIZE] = {};
    message.getSerialized(image, sizeof image);
    return Layout::idOf(image);
}

void setRecordId(BMCSELEntryMessage& message, unsigned short id)
{
    unsigned char image[Layout::SLOT_SIZE] = {};
    message.getSerialized(image, sizeof image);
    TAVLib::writeLE16(id, image + Layout::RECORD_ID_OFFSET);
    message.setSerialized(image, sizeof image);
}

}
