// SPDX-License-Identifier: Apache-2.0
#include "DecodedPrinter.h"

#include <fmt/format.h>
#include <strings.h>

#include <recordkit/inspect/fru/FruFields.h>

#include "../print/Table.h"
#include "../print/ValueJson.h"

namespace recordkit::tool {

namespace {

/// The bytes of a field; a plus if others decide its value too.
std::string bytesText(const DecodedField& field)
{
    return field.place.text() + (field.also.empty() ? "" : " +");
}

std::string toText(const DecodedFields& fields, bool hasColour)
{
    const Table table({{"FIELD", 24}, {"BYTES", 12}, {"VALUE", 20}, {"MEANING", 0}}, hasColour);
    std::string text = table.header();
    for (const DecodedField& field : fields) {
        table.append(
            {{field.name}, {bytesText(field)}, {cellText(toJson(field.value))}, {field.meaning}},
            text);
    }
    return text;
}

Json placeJson(const Place& place)
{
    return {{"offset", place.offset}, {"width", place.width}, {"bits", place.bitsText()}};
}

Json decodedJson(const RecordClass& recordClass, std::size_t size, const DecodedFields& fields)
{
    Json json;
    json["class"] = recordClass.name;
    json["size"] = size;
    json["fields"] = Json::array();
    for (const DecodedField& field : fields) {
        Json each;
        each["name"] = field.name;
        each["value"] = toJson(field.value);
        each["meaning"] = field.meaning;
        each.update(placeJson(field.place));
        each["also"] = Json::array();
        for (const Place& place : field.also) {
            each["also"].push_back(placeJson(place));
        }
        json["fields"].push_back(each);
    }
    return json;
}

}

std::vector<const RecordClass*> decodableClasses()
{
    std::vector<const RecordClass*> classes = recordClasses();
    for (const RecordClass& each : fruClasses()) {
        classes.push_back(&each);
    }
    return classes;
}

const RecordClass* findRecordClass(const std::string& name)
{
    for (const RecordClass* const each : decodableClasses()) {
        if (::strcasecmp(each->name, name.c_str()) == 0) {
            return each;
        }
    }
    return nullptr;
}

void printDecoded(const RecordClass& recordClass, ByteView image, bool isJson, bool hasColour)
{
    const DecodedFields fields = decodeRecord(recordClass, image);
    fmt::print("{}", isJson ? indented(decodedJson(recordClass, image.size(), fields))
                            : toText(fields, hasColour));
}

}
