// SPDX-License-Identifier: Apache-2.0
#include "FruValues.h"

#include <ctime>

#include <recordkit/inspect/bytes/Hex.h>
#include <recordkit/inspect/fru/MfgDate.h>

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

Object recordObject(const FruMultiRecord& record)
{
    return {{"type", record.type},
            {"offset", record.extent.offset},
            {"size", record.extent.size},
            {"checksum", checksumValue(record.data)},
            {"last", record.isLast}};
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
};

constexpr Column<FruFileField> FIELDS[] = {
    {"file", nullptr, 0, [](const FruFileField& f) { return Value(inputName(f.file->path)); }},
    {"area", nullptr, 0, [](const FruFileField& f) { return Value(f.area->extent.name); }},
    {"field", nullptr, 0, [](const FruFileField& f) { return Value(f.field->name); }},
    {"offset", nullptr, 0, [](const FruFileField& f) { return Value(f.field->offset); }},
    {"type", nullptr, 0, [](const FruFileField& f) { return Value(f.field->typeName()); }},
    {"length", nullptr, 0, [](const FruFileField& f) { return Value(f.field->bytes.size()); }},
    {"value", nullptr, 0, [](const FruFileField& f) { return fieldValue(*f.field); }},
    {"bytes", nullptr, 0, [](const FruFileField& f) { return Value(toHex(f.field->bytes)); }},
};

}

std::string shownValue(const FruField& field)
{
    const auto other = otherDate(field);
    return field.value + (other ? ", or " + other->toText() : "");
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
            fields->add({&file, &area, &field});
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
