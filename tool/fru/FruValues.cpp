// SPDX-License-Identifier: Apache-2.0
#include "FruValues.h"

#include <ctime>
#include <fmt/format.h>

#include <recordkit/inspect/bytes/Hex.h>
#include <recordkit/inspect/fru/MfgDate.h>

#include "../Answers.h"
#include "../Files.h"

namespace recordkit::tool {

namespace {

Value checksumValue(const FruChecksum& checksum)
{
    return Object{{"stored", checksum.stored},
                  {"expected", checksum.expected},
                  {"right", checksum.isRight()}};
}

Object extentObject(const FruExtent& extent)
{
    return {{"name", extent.name}, {"offset", extent.offset}, {"size", extent.size}};
}

std::optional<MfgDate> otherDate(const FruField& field)
{
    return field.item == FRU_ITEM_MFG_DATE_TIME
               ? MfgDate(field.bytes).otherReading(static_cast<unsigned int>(std::time(nullptr)))
               : std::nullopt;
}

Value fieldValue(const FruField& field)
{
    if (field.item != FRU_ITEM_MFG_DATE_TIME) {
        return field.value;
    }
    const MfgDate date(field.bytes);
    return valueIf(date.isSpecified(), date.toIso());
}

Object fieldObject(const FruField& field)
{
    Object object = {
        {"name", field.name},           {"offset", field.offset},
        {"type", field.typeName()},     {"type_length", valueIf(field.isCoded, field.typeLength)},
        {"length", field.bytes.size()}, {"value", fieldValue(field)},
        {"bytes", toHex(field.bytes)}};
    if (field.item == FRU_ITEM_MFG_DATE_TIME) {
        object.push_back({"minutes", MfgDate(field.bytes).raw()});
        const auto other = otherDate(field);
        object.push_back({"other_value", other ? Value(other->toIso()) : Value()});
    }
    return object;
}

Object areaObject(const FruAreaImage& area)
{
    Object object = extentObject(area.extent);
    object.push_back({"whole", area.isWhole});
    object.push_back({"checksum", area.extent.size != 0 ? checksumValue(area.checksum) : Value()});
    object.push_back({"fields", listOf(area.fields, fieldObject)});
    object.push_back({"unused", valueIf(area.isWhole, area.unused)});
    object.push_back({"problems", area.problems});
    return object;
}

Object internalUseObject(const FruInternalUse& internal)
{
    Object object = extentObject(internal.extent);
    object.push_back({"bytes", toHex(internal.bytes)});
    return object;
}

/// "flag", "number" or "text".
const char* typeOf(const MultiRecordField& field)
{
    return std::holds_alternative<bool>(field.value)          ? "flag"
           : std::holds_alternative<std::string>(field.value) ? "text"
                                                              : "number";
}

Value recordField(const FruMultiRecord& record, const MultiRecordField& field)
{
    return Object{{"name", field.name},
                  {"offset", field.offset},
                  {"length", field.width},
                  {"bits", textOrNull(bitsText(field))},
                  {"type", typeOf(field)},
                  {"value", field.value},
                  {"unit", textOrNull(field.unit)},
                  {"text", field.text},
                  {"bytes", toHex(rawBytes(record, field))}};
}

Object recordObject(const FruMultiRecord& record)
{
    List fields;
    for (const MultiRecordField& field : record.content.fields) {
        fields.push_back(recordField(record, field));
    }
    return {{"type", record.type},        {"offset", record.extent.offset},
            {"size", record.extent.size}, {"checksum", checksumValue(record.data)},
            {"last", record.isLast},      {"name", record.content.name},
            {"fields", fields},           {"bytes", toHex(record.bytes)}};
}

constexpr Column<FruFile> IMAGES[] = {
    {"file", nullptr, 0, [](const FruFile& f) { return Value(inputName(f.path)); }},
    {"file_bytes", nullptr, 0, [](const FruFile& f) { return textOrNull(inputNameBytes(f.path)); }},
    {"size", nullptr, 0, [](const FruFile& f) { return Value(f.image.size); }},
    {"fru", nullptr, 0, [](const FruFile& f) { return Value(f.image.isFru); }},
    {"header_checksum", nullptr, 0,
     [](const FruFile& f) { return f.image.isFru ? checksumValue(f.image.header) : Value(); }},
    {"areas", nullptr, 0,
     [](const FruFile& f) { return Value(listOf(f.image.areas, areaObject)); }},
    {"internal_use", nullptr, 0,
     [](const FruFile& f) { return Value(listOf(f.image.internalUse, internalUseObject)); }},
    {"multirecords", nullptr, 0,
     [](const FruFile& f) { return Value(listOf(f.image.records, recordObject)); }},
    {"map", nullptr, 0,
     [](const FruFile& f) {
         return Value(f.image.isFru ? listOf(f.image.map(f.bytes), extentObject) : List());
     }},
    {"problems", nullptr, 0, [](const FruFile& f) { return Value(f.image.allProblems()); }},
    {"notes", nullptr, 0, [](const FruFile& f) { return Value(f.image.notes); }},
};

constexpr Column<FruFileField> FIELDS[] = {
    {"file", nullptr, 0, [](const FruFileField& f) { return Value(f.file); }},
    {"area", nullptr, 0, [](const FruFileField& f) { return Value(f.area); }},
    {"field", nullptr, 0, [](const FruFileField& f) { return Value(f.name); }},
    {"offset", nullptr, 0, [](const FruFileField& f) { return Value(f.offset); }},
    {"type", nullptr, 0, [](const FruFileField& f) { return Value(f.type); }},
    {"length", nullptr, 0, [](const FruFileField& f) { return Value(f.bytes.size()); }},
    {"value", nullptr, 0, [](const FruFileField& f) { return f.value; }},
    {"bytes", nullptr, 0, [](const FruFileField& f) { return Value(toHex(f.bytes)); }},
    {"unit", nullptr, 0, [](const FruFileField& f) { return textOrNull(f.unit); }},
};

}

Object fruObject(const FruFile& file)
{
    return objectOf(file, IMAGES);
}

std::string shownValue(const FruField& field)
{
    const auto other = otherDate(field);
    return field.value + (other ? ", or " + other->toText() : "");
}

std::string rawBytes(const FruMultiRecord& record, const MultiRecordField& field)
{
    const auto size = static_cast<unsigned int>(record.bytes.size());
    return record.bytes.substr(field.offset - (record.extent.end() - size), field.width);
}

std::string bitsText(const MultiRecordField& field)
{
    return !field.isBits()           ? ""
           : field.high == field.low ? std::to_string(field.low)
                                     : fmt::format("{}..{}", field.high, field.low);
}

std::string noteLine(const std::string& path, const std::string& note)
{
    return fmt::format("note: {}: {}\n", inputName(path), note);
}

FruWriter::FruWriter(const Layout& layout)
{
    if (layout.format == Format::CSV) {
        fields.emplace(FIELDS, layout);
    } else if (layout.format != Format::TABLE) {
        images.emplace(IMAGES, layout);
    }
}

void FruWriter::add(const FruFile& file)
{
    if (images) {
        images->add(file);
        return;
    }
    for (const FruAreaImage& area : file.image.areas) {
        for (const FruField& field : area.fields) {
            fields->add({inputName(file.path), area.extent.name, field.name, field.offset,
                         field.typeName(), field.bytes, fieldValue(field), ""});
        }
    }
    for (const FruMultiRecord& record : file.image.records) {
        for (const MultiRecordField& field : record.content.fields) {
            fields->add({inputName(file.path), record.content.name, field.name, field.offset,
                         typeOf(field), rawBytes(record, field), field.value, field.unit});
        }
    }
}

void FruWriter::finish()
{
    if (images) {
        images->finish();
    } else {
        fields->finish();
    }
}

}
