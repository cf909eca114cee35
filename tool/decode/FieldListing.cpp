// SPDX-License-Identifier: Apache-2.0
#include "FieldListing.h"

#include <strings.h>

#include <recordkit/inspect/fru/FruFields.h>

namespace recordkit::tool {

namespace {

using inspect::DecodedField;
using inspect::Place;
using inspect::RecordClass;

Object placeObject(const Place& place)
{
    return {{"offset", place.offset}, {"width", place.width}, {"bits", place.bitsText()}};
}

constexpr Column<DecodedField> COLUMNS[] = {
    {"name", "FIELD", 24, [](const DecodedField& f) { return Value(f.name); }},
    // A plus for other bytes that decide the value too.
    {nullptr, "BYTES", 12, nullptr,
     [](const DecodedField& f) { return Cell{f.place.text() + (f.also.empty() ? "" : " +")}; }},
    {"value", "VALUE", 20, [](const DecodedField& f) { return Value(f.value); }},
    {"meaning", "MEANING", 0, [](const DecodedField& f) { return Value(f.meaning); }},
    {"offset", nullptr, 0, [](const DecodedField& f) { return Value(f.place.offset); }},
    {"width", nullptr, 0, [](const DecodedField& f) { return Value(f.place.width); }},
    {"bits", nullptr, 0, [](const DecodedField& f) { return Value(f.place.bitsText()); }},
    {"also", nullptr, 0, [](const DecodedField& f) { return Value(listOf(f.also, placeObject)); }},
};

}

std::vector<const RecordClass*> decodableClasses()
{
    std::vector<const RecordClass*> classes = inspect::recordClasses();
    for (const RecordClass& each : inspect::fruClasses()) {
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

void printFields(const RecordClass& recordClass, inspect::ByteView image, const Layout& layout)
{
    printListing(inspect::decodeRecord(recordClass, image), COLUMNS, layout);
}

}
