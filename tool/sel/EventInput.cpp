// SPDX-License-Identifier: Apache-2.0
#include "EventInput.h"

#include <fmt/format.h>
#include <sstream>

#include <recordkit/inspect/bytes/Hex.h>
#include <recordkit/inspect/bytes/Numbers.h>
#include <recordkit/sel/SELEntry.h>
#include <recordkit/selfile/SELFileLayout.h>
#include <recordkit/serial/ByteOrder.h>

#include "../Errors.h"
#include "../print/Json.h"

namespace recordkit::tool {

using TAVLib::RecordKit::SELEntry;
namespace SELFileLayout = TAVLib::RecordKit::SELFileLayout;

namespace {

constexpr const char* BLANKS = " \t\r\n\f\v";

/// The bytes of a field of hex digits; none if the object does not have it, or has null.
Bytes bytesOf(const Value& object, const char* field, const std::string& place)
{
    const Value* const digits = object.find(field);
    if (digits == nullptr || digits->isNull()) {
        return {};
    }
    const auto* const text = digits->as<std::string>();
    Bytes bytes;
    const std::size_t bad = text == nullptr ? 0 : parseHexDigits(*text, bytes);
    if (bad != std::string::npos) {
        throw dataError(fmt::format("{}: \"{}\", column {}: expected two hex digits for each byte",
                                    place, field, bad + 1));
    }
    return bytes;
}

unsigned short nextIdOf(const Value& object, const std::string& place)
{
    constexpr long long NONE = 0xFFFF;
    const Value* const given = object.find("next_id");
    const auto* const number = given == nullptr ? nullptr : given->as<long long>();
    if (given != nullptr && (number == nullptr || *number < 0 || *number > NONE)) {
        throw dataError(fmt::format("{}: \"next_id\": expected 0 to {}", place, NONE));
    }
    return static_cast<unsigned short>(number == nullptr ? NONE : *number);
}

/// The image of an event: its field "image", or what "next_id", "record" and "extended" say of it.
Bytes imageOf(const std::optional<Value>& object, const std::string& place)
{
    const Value event = object.value_or(Value());
    Bytes whole = bytesOf(event, "image", place);
    if (!whole.empty()) {
        return whole;
    }
    const Bytes record = bytesOf(event, "record", place);
    if (record.size() != SELEntry::RECORD_SIZE) {
        throw dataError(place + ": expected an object with \"image\", or with \"record\" of 16 "
                                "bytes, in hex digits");
    }
    Bytes image(SELEntry::HEADER_SIZE);
    TAVLib::writeLE16(nextIdOf(event, place), image.data());
    const Bytes extended = bytesOf(event, "extended", place);
    image.insert(image.end(), record.begin(), record.end());
    image.insert(image.end(), extended.begin(), extended.end());
    if (image.size() > SELFileLayout::SLOT_SIZE) {
        throw dataError(fmt::format("{}: \"extended\": {} too long", place,
                                    counted(image.size() - SELFileLayout::SLOT_SIZE, "byte")));
    }
    image.resize(SELFileLayout::SLOT_SIZE, 0);
    return image;
}

/// The images of an array of objects as hex digits, a line each.
std::string imagesOfArray(const std::string& name, const std::string& json)
{
    const std::optional<Value> array = parseJson(json);
    const List* const list = array ? array->as<List>() : nullptr;
    if (list == nullptr) {
        throw dataError(name + ": " + NOT_JSON);
    }
    std::string hex;
    unsigned int number = 0;
    for (const Value& object : *list) {
        hex += toHex(imageOf(object, fmt::format("{}, element {}", name, ++number))) + "\n";
    }
    return hex;
}

/// The images of JSON objects as hex digits, each in the line in which its object is.
std::string imagesOf(const std::string& name, const std::string& ndjson)
{
    if (ndjson.find_first_not_of(BLANKS) != std::string::npos &&
        ndjson[ndjson.find_first_not_of(BLANKS)] == '[') {
        return imagesOfArray(name, ndjson);
    }
    std::string hex;
    std::istringstream lines(ndjson);
    unsigned int number = 0;
    for (std::string line; std::getline(lines, line);) {
        ++number;
        if (line.find_first_not_of(BLANKS) != std::string::npos) {
            hex += toHex(imageOf(parseJson(line), fmt::format("{}, line {}", name, number)));
        }
        hex += '\n';
    }
    return hex;
}

bool isNdjson(const std::string& content)
{
    const std::size_t first = content.find_first_not_of(BLANKS);
    return first != std::string::npos && (content[first] == '{' || content[first] == '[') &&
           isText(content, true);
}

EventForm formOf(ImportFormat format)
{
    switch (format) {
    case ImportFormat::WRITERAW:
        return EventForm::WRITERAW;
    case ImportFormat::WIRE:
        return EventForm::WIRE;
    case ImportFormat::HEX:
        return EventForm::HEX;
    default:
        return EventForm::AUTO;
    }
}

}

std::vector<ImportedEvent> readEvents(const std::string& name, const std::string& content,
                                      ImportFormat format, const OemFields& fields)
{
    if (format == ImportFormat::NDJSON || (format == ImportFormat::AUTO && isNdjson(content))) {
        return importEvents(name, imagesOf(name, content), EventForm::HEX, fields);
    }
    return importEvents(name, content, formOf(format), fields);
}

}
