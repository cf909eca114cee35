// SPDX-License-Identifier: Apache-2.0
#include "DecodedPrinter.h"

#include <fmt/format.h>

#include "../print/Table.h"

namespace recordkit::tool {

namespace {

std::string bytesText(const Place& place)
{
    if (place.width == 0) {
        return "-";
    }
    const std::string range =
        place.width == 1 ? std::to_string(place.offset)
                         : fmt::format("{} to {}", place.offset, place.offset + place.width - 1);
    return *place.bits == '\0' ? range : fmt::format("{} bit {}", range, place.bits);
}

std::string toText(const DecodedFields& fields, bool hasColour)
{
    const Table table({{"FIELD", 24}, {"BYTES", 12}, {"VALUE", 20}, {"MEANING", 0}}, hasColour);
    std::string text = table.header();
    for (const DecodedField& field : fields) {
        table.append(
            {{field.name}, {bytesText(field.place)}, {cellText(field.value)}, {field.meaning}},
            text);
    }
    return text;
}

Json toJson(const RecordClass& recordClass, std::size_t size, const DecodedFields& fields)
{
    Json json;
    json["class"] = recordClass.name;
    json["size"] = size;
    json["fields"] = Json::array();
    for (const DecodedField& field : fields) {
        Json each;
        each["name"] = field.name;
        each["value"] = field.value;
        each["meaning"] = field.meaning;
        each["offset"] = field.place.offset;
        each["width"] = field.place.width;
        each["bits"] = field.place.bits;
        json["fields"].push_back(each);
    }
    return json;
}

}

void printDecoded(const RecordClass& recordClass, const Image& image, bool isJson, bool hasColour)
{
    const DecodedFields fields = recordClass.decode(image);
    fmt::print("{}", isJson ? indented(toJson(recordClass, image.size(), fields))
                            : toText(fields, hasColour));
}

}
