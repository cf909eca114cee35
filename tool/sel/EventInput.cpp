// SPDX-License-Identifier: Apache-2.0
#include "EventInput.h"

#include <fmt/format.h>
#include <sstream>

#include <recordkit/inspect/bytes/Hex.h>

#include "../Errors.h"
#include "../print/Json.h"

namespace recordkit::tool {

namespace {

constexpr const char* BLANKS = " \t\r\n\f\v";

/// The bytes of the field "image" of an object.
Bytes imageOf(const std::optional<Value>& object, const std::string& place)
{
    const Value* const digits = object ? object->find("image") : nullptr;
    const auto* const text = digits == nullptr ? nullptr : digits->as<std::string>();
    if (text == nullptr || text->empty()) {
        throw dataError(place + ": expected an object with a text \"image\" of hex digits");
    }
    Bytes image;
    const std::size_t bad = parseHexDigits(*text, image);
    if (bad != std::string::npos) {
        throw dataError(
            fmt::format("{}: column {}: expected two hex digits for each byte", place, bad + 1));
    }
    return image;
}

/// The images of an array of objects as hex digits, a line each.
std::string imagesOfArray(const std::string& name, const std::string& json)
{
    const std::optional<Value> array = parseJson(json);
    const List* const list = array ? array->as<List>() : nullptr;
    if (list == nullptr) {
        throw dataError(name + ": not JSON");
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
