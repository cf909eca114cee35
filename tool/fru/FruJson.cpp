// SPDX-License-Identifier: Apache-2.0
#include "FruJson.h"

#include <algorithm>

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <recordkit/fru/FRUTables.h>
#include <recordkit/inspect/bytes/Hex.h>
#include <recordkit/inspect/fru/FruEdit.h>
#include <recordkit/inspect/fru/FruLayout.h>
#include <recordkit/inspect/fru/FruNames.h>
#include <recordkit/inspect/fru/MfgDate.h>
#include <recordkit/inspect/fru/MultiRecordEdit.h>
#include <recordkit/inspect/words/ChassisTypes.h>
#include <recordkit/inspect/words/Languages.h>

#include "../Files.h"
#include "JsonReader.h"

namespace recordkit::tool {

namespace {

constexpr const char* SCHEMA = "$schema";
constexpr const char* SIZE = "size";
constexpr const char* FILL = "fill";
constexpr const char* ORDER = "order";
constexpr const char* MULTIRECORDS = "multirecords";
constexpr const char* CUSTOM = "custom";
constexpr const char* UNUSED = "unused";
constexpr const char* VALUE = "value";
constexpr const char* CODING = "coding";
constexpr const char* BYTES = "bytes";
constexpr const char* RECORD = "record";
constexpr const char* TYPE = "type";
constexpr const char* DATA = "data";

constexpr Coding CODINGS[] = {CODING_BINARY, CODING_BCD_PLUS, CODING_SIX_BIT, CODING_TEXT};

/// An area as its key says it.
std::string keyOf(FRU_AREA area)
{
    return area == FRU_AREA_MULTIRECORD ? MULTIRECORDS : fruAreaName(area);
}

/// Fields without a type/length byte.
std::vector<std::string> fixedFields(FRU_AREA area)
{
    std::vector<std::string> names;
    for (const FRU_ITEM item :
         {FRU_ITEM_CHASSIS_TYPE, FRU_ITEM_LANGUAGE_CODE, FRU_ITEM_MFG_DATE_TIME}) {
        const std::vector<std::string> all = fruFieldNames(area);
        const std::string name = fruItemName(item);
        if (std::find(all.begin(), all.end(), name) != all.end()) {
            names.push_back(name);
        }
    }
    return names;
}

std::vector<std::string> textFields(FRU_AREA area)
{
    std::vector<std::string> names = fruFieldNames(area);
    names.erase(names.begin(), names.begin() + static_cast<long>(fixedFields(area).size()));
    return names;
}

/// The value of a fixed field that is missing.
const char* standardValue(const std::string& field)
{
    return field == fruItemName(FRU_ITEM_CHASSIS_TYPE)    ? "Unknown"
           : field == fruItemName(FRU_ITEM_LANGUAGE_CODE) ? "en"
                                                          : "unspecified";
}

Coding readCoding(const JsonReader& json)
{
    std::vector<std::string> names;
    for (const Coding coding : CODINGS) {
        names.push_back(fmt::format("\"{}\"", codingName(coding)));
    }
    return orThrow(findCoding(json.text()), json.wrong(fmt::format("{}", fmt::join(names, ", "))));
}

FruText readText(const JsonReader& json, unsigned char language)
{
    if (json.get().as<std::string>() != nullptr) {
        return encodeFruText(json.getPath(), json.text(), language, CODING_TEXT);
    }
    if (json.get().as<Object>() == nullptr) {
        throw json.wrong("a text or an object");
    }
    json.allow({VALUE, BYTES, CODING});
    const Coding coding = readCoding(json.member(CODING));
    if (json.has(VALUE) == json.has(BYTES)) {
        throw json.error(fmt::format("expected either \"{}\" or \"{}\"", VALUE, BYTES));
    }
    if (json.has(VALUE)) {
        return encodeFruText(json.getPath(), json.member(VALUE).text(), language, coding);
    }
    const std::string bytes = json.member(BYTES).bytes();
    if (bytes.size() > MAX_FRU_TEXT) {
        throw json.error(
            fmt::format("{} bytes, a field has at most {}", bytes.size(), MAX_FRU_TEXT));
    }
    FruText text = {static_cast<unsigned char>(coding << 6 | bytes.size()), bytes};
    if (text.typeLength == FRU_END_OF_FIELDS) {
        throw json.error("a text of one byte cannot be stored, its type/length byte would end the "
                         "fields");
    }
    return text;
}

/// The chassis type, language or date as the area contains it.
std::string readFixed(const JsonReader& area, const std::string& field, unsigned int now)
{
    const JsonReader json = area.member(field);
    const bool isDate = field == fruItemName(FRU_ITEM_MFG_DATE_TIME);
    std::string value = standardValue(field);
    if (area.has(field)) {
        const auto* const number = json.get().as<long long>();
        const auto* const text = json.get().as<std::string>();
        if (text == nullptr && (number == nullptr || isDate)) {
            throw json.wrong(isDate ? "a text" : "a text or a number");
        }
        value = text != nullptr ? *text : std::to_string(*number);
    }
    return encodeFixedField({json.getPath(), value}, now);
}

/// The texts, up to the one before which the area ends.
void readTexts(const JsonReader& json, FruAreaContent& area)
{
    std::string absent;
    const auto refuseAfterEnd = [&absent](const JsonReader& each) {
        if (!absent.empty()) {
            throw each.error(fmt::format("{} is null: the area ends before it", absent));
        }
    };
    for (const std::string& name : textFields(area.id)) {
        const JsonReader each = json.member(name);
        if (json.has(name) && each.get().isNull()) {
            absent = absent.empty() ? name : absent;
        } else if (json.has(name)) {
            refuseAfterEnd(each);
            area.texts.push_back(readText(each, area.language()));
        } else if (absent.empty()) {
            area.texts.push_back(encodeFruText(each.getPath(), "", area.language(), CODING_TEXT));
        }
    }
    if (!json.has(CUSTOM)) {
        return;
    }
    for (const JsonReader& each : json.member(CUSTOM).elements()) {
        refuseAfterEnd(each);
        area.texts.push_back(readText(each, area.language()));
    }
}

/// The bytes of an area up to its checksum, rounded up.
unsigned int sizeOf(const FruAreaContent& area)
{
    return toLengthUnit(area.usedSize() + static_cast<unsigned int>(area.unused.size()) + 1);
}

void readUnused(const JsonReader& json, FruAreaContent& area)
{
    if (json.has(UNUSED)) {
        area.unused = json.member(UNUSED).bytes();
    }
    const unsigned int needed = sizeOf(area);
    if (needed > MAX_UNIT_BYTES) {
        throw json.error(
            fmt::format("{} bytes needed, an area has at most {}", needed, MAX_UNIT_BYTES));
    }
    if (!json.has(SIZE)) {
        return;
    }
    const JsonReader given = json.member(SIZE);
    const long long size = given.number(needed, MAX_UNIT_BYTES);
    if (size % FRU_LENGTH_UNIT != 0) {
        throw given.wrong(fmt::format("a multiple of {}", FRU_LENGTH_UNIT));
    }
    area.unused.resize(static_cast<std::size_t>(size) - area.usedSize() - 1, '\0');
}

FruAreaContent readArea(const JsonReader& json, FRU_AREA id, unsigned int now)
{
    std::vector<std::string> keys = fruFieldNames(id);
    keys.insert(keys.end(), {CUSTOM, SIZE, UNUSED});
    json.allow(keys);
    FruAreaContent area;
    area.id = id;
    for (const std::string& field : fixedFields(id)) {
        area.start += readFixed(json, field, now);
    }
    readTexts(json, area);
    readUnused(json, area);
    return area;
}

/// A value of a record's field.
inspect::Value recordValue(const JsonReader& json)
{
    const Value& value = json.get();
    if (const auto* const flag = value.as<bool>()) {
        return *flag;
    }
    if (const auto* const number = value.as<long long>()) {
        return *number;
    }
    if (const auto* const number = value.as<double>()) {
        return *number;
    }
    if (const auto* const text = value.as<std::string>()) {
        return *text;
    }
    if (!value.isNull()) {
        throw json.wrong("a number, true, false, a text or null");
    }
    return {};
}

FruRecordContent readRecord(const JsonReader& json)
{
    const std::vector<JsonReader> members = json.members();
    if (!json.has(RECORD)) {
        json.allow({TYPE, DATA});
        FruRecordContent record;
        record.type = static_cast<unsigned char>(json.member(TYPE).number(0, 0xFF));
        record.data = json.member(DATA).bytes();
        if (record.data.size() > 0xFF) {
            throw json.member(DATA).error(
                fmt::format("{} bytes, a record has at most 255", record.data.size()));
        }
        return record;
    }
    const JsonReader kind = json.member(RECORD);
    const std::vector<std::string> kinds = multiRecordKinds();
    if (std::find(kinds.begin(), kinds.end(), kind.text()) == kinds.end()) {
        throw kind.wrong(fmt::format("one of {}", fmt::join(kinds, ", ")));
    }
    std::vector<FruRecordValue> values;
    for (const JsonReader& each : members) {
        if (each.getKey() != RECORD) {
            values.push_back({each.getKey(), recordValue(each)});
        }
    }
    return newRecord(json.getPath(), kind.text(), values);
}

/// One of the bytes that count as blank.
unsigned char readFill(const JsonReader& json)
{
    const auto* const number = json.get().as<long long>();
    if (number == nullptr || (*number != 0x00 && *number != 0xFF)) {
        throw json.wrong("0 or 255");
    }
    return static_cast<unsigned char>(*number);
}

std::vector<FRU_AREA> readOrder(const JsonReader& json)
{
    std::vector<std::string> names;
    for (const FRU_AREA id : headerAreas()) {
        names.push_back(keyOf(id));
    }
    std::vector<FRU_AREA> order;
    for (const JsonReader& each : json.elements()) {
        const auto found = std::find(names.begin(), names.end(), each.text());
        if (found == names.end()) {
            throw each.wrong(fmt::format("one of {}", fmt::join(names, ", ")));
        }
        const FRU_AREA id = headerAreas()[static_cast<std::size_t>(found - names.begin())];
        if (std::find(order.begin(), order.end(), id) != order.end()) {
            throw each.error(fmt::format("{} is there twice", *found));
        }
        order.push_back(id);
    }
    return order;
}

/// The text's bytes as a value that is not cut at a zero byte.
std::string decoded(const FruText& text, unsigned char language)
{
    switch (codingOf(text.typeLength)) {
    case CODING_BINARY:
        return toHex(text.bytes);
    case CODING_BCD_PLUS:
        return decodeBcdPlus(text.bytes);
    case CODING_SIX_BIT:
        return decodeSixBit(text.bytes);
    default:
        return isEnglish(language) ? toUtf8(text.bytes) : decodeUtf16(text.bytes);
    }
}

/// A text as JSON has it: as it is, not as it is shown.
Value textValue(std::string text)
{
    return inspect::Value(std::move(text));
}

/// Whether encoding the value gives the text.
bool isValueOf(const std::string& value, const FruText& text, unsigned char language)
{
    try {
        return encodeFruText("", value, language, codingOf(text.typeLength)).image() ==
               text.image();
    } catch (const DataError&) {
        return false;
    }
}

Value jsonOfText(const FruText& text, unsigned char language)
{
    const Coding coding = codingOf(text.typeLength);
    const std::string value = decoded(text, language);
    if (!isValueOf(value, text, language)) {
        return Object{{BYTES, toHex(text.bytes)}, {CODING, codingName(coding)}};
    }
    if (coding == CODING_TEXT) {
        return textValue(value);
    }
    return Object{{VALUE, textValue(value)}, {CODING, codingName(coding)}};
}

Value jsonOfFixed(const std::string& field, ByteView bytes)
{
    if (field == fruItemName(FRU_ITEM_MFG_DATE_TIME)) {
        return MfgDate(bytes).toText();
    }
    const bool isType = field == fruItemName(FRU_ITEM_CHASSIS_TYPE);
    const std::string name = isType ? chassisTypeName(bytes[0]) : languageName(bytes[0]);
    const auto read = isType ? findChassisType(name) : findLanguage(name);
    return !name.empty() && read == bytes[0] ? Value(name) : Value(bytes[0]);
}

Value jsonOfArea(const FruAreaContent& area)
{
    Object object;
    std::size_t at = 0;
    for (const std::string& field : fixedFields(area.id)) {
        const std::size_t size = field == fruItemName(FRU_ITEM_MFG_DATE_TIME) ? MfgDate::LENGTH : 1;
        object.push_back({field, jsonOfFixed(field, ByteView(area.start).part(at, size))});
        at += size;
    }
    auto text = area.texts.begin();
    for (const std::string& field : textFields(area.id)) {
        const bool exists = text != area.texts.end();
        object.push_back({field, exists ? jsonOfText(*text, area.language()) : Value()});
        text += exists ? 1 : 0;
    }
    List custom;
    for (; text != area.texts.end(); ++text) {
        custom.push_back(jsonOfText(*text, area.language()));
    }
    if (!custom.empty()) {
        object.push_back({CUSTOM, custom});
    }
    FruAreaContent least = area;
    least.unused.erase(least.unused.find_last_not_of('\0') + 1);
    if (!least.unused.empty()) {
        object.push_back({UNUSED, toHex(least.unused)});
    }
    if (sizeOf(area) != sizeOf(least)) {
        object.push_back({SIZE, sizeOf(area)});
    }
    return object;
}

enum class Words { SHOWN, NUMBERS };

Value jsonOfField(const FruRecordContent& record, const MultiRecordField& field, Words words)
{
    if (const auto* const text = std::get_if<std::string>(&field.value)) {
        const bool isText = field.row && field.row->kind == MultiRecordRow::Kind::TEXT;
        return textValue(isText ? toUtf8(ByteView(record.data).part(field.offset)) : *text);
    }
    const auto* const number = std::get_if<long long>(&field.value);
    const bool isWord =
        number != nullptr && words == Words::SHOWN && field.text != std::to_string(*number);
    return isWord ? textValue(field.text) : Value(field.value);
}

Value jsonOfFields(const FruRecordContent& record, const MultiRecord& decodedRecord, Words words)
{
    Object object = {{RECORD, kindOf(decodedRecord)}};
    for (const MultiRecordField& field : decodedRecord.fields) {
        object.push_back({field.name, jsonOfField(record, field, words)});
    }
    return object;
}

bool isRecordOf(const Value& json, const FruRecordContent& record)
{
    try {
        const FruRecordContent again = readRecord(JsonReader(json));
        return again.type == record.type && again.data == record.data;
    } catch (const DataError&) {
        return false;
    }
}

Value jsonOfRecord(const FruRecordContent& record)
{
    const MultiRecord decodedRecord = decodeMultiRecords({{record.type, 0, record.data}}).front();
    // A word that several numbers have does not express its number.
    for (const Words words : {Words::SHOWN, Words::NUMBERS}) {
        Value json = jsonOfFields(record, decodedRecord, words);
        if (isRecordOf(json, record)) {
            return json;
        }
    }
    return Object{{TYPE, record.type}, {DATA, toHex(record.data)}};
}

/// Where two extents of the same size differ; empty if they do not.
std::string differenceIn(const FruExtent& extent, ByteView image, ByteView created,
                         unsigned int place)
{
    for (unsigned int i = 0; i < extent.size; ++i) {
        if (created[place + i] != image[extent.offset + i]) {
            return fmt::format("{}: {:02X}h at offset {} becomes {:02X}h", extent.name,
                               image[extent.offset + i], extent.offset + i, created[place + i]);
        }
    }
    return "";
}

/// The header's first byte, whose high bits are reserved; the others follow from the areas.
constexpr unsigned int COMPARED_OF_HEADER = 1;

}

FruDescription fruFromJson(const Value& json, unsigned int now)
{
    const JsonReader whole(json);
    std::vector<std::string> keys = {SCHEMA, SIZE, FILL, ORDER};
    for (const FRU_AREA id : headerAreas()) {
        keys.push_back(keyOf(id));
    }
    whole.allow(keys);
    FruDescription result;
    FruContent& content = result.content;
    if (whole.has(SCHEMA)) {
        static_cast<void>(whole.member(SCHEMA).text());
    }
    if (whole.has(SIZE)) {
        result.size =
            static_cast<std::size_t>(whole.member(SIZE).number(FRU_HEADER_SIZE, FRU_LIMIT));
    }
    if (whole.has(FILL)) {
        content.blank = readFill(whole.member(FILL));
    }
    if (whole.has(ORDER)) {
        content.order = readOrder(whole.member(ORDER));
    }
    const std::string internal = keyOf(FRU_AREA_INTERNAL_A);
    if (whole.has(internal)) {
        content.internalUse = whole.member(internal).bytes();
        if (content.internalUse->empty()) {
            throw whole.member(internal).wrong("at least one byte in hex digits");
        }
    }
    for (const FRU_AREA id : informationAreas()) {
        if (whole.has(keyOf(id))) {
            content.areas.push_back(readArea(whole.member(keyOf(id)), id, now));
        }
    }
    if (whole.has(MULTIRECORDS)) {
        for (const JsonReader& each : whole.member(MULTIRECORDS).elements()) {
            content.records.push_back(readRecord(each));
        }
    }
    return result;
}

Value jsonOfFru(const FruDescription& description)
{
    const FruContent& content = description.content;
    Object object;
    if (description.size != 0) {
        object.push_back({SIZE, description.size});
    }
    if (content.blank != 0) {
        object.push_back({FILL, content.blank});
    }
    if (!content.order.empty()) {
        object.push_back(
            {ORDER, listOf(content.order, [](FRU_AREA id) { return Value(keyOf(id)); })});
    }
    if (content.internalUse) {
        object.push_back({keyOf(FRU_AREA_INTERNAL_A), toHex(*content.internalUse)});
    }
    for (const FruAreaContent& area : content.areas) {
        object.push_back({keyOf(area.id), jsonOfArea(area)});
    }
    if (!content.records.empty()) {
        object.push_back({MULTIRECORDS, listOf(content.records, jsonOfRecord)});
    }
    return object;
}

std::vector<std::string> lostByJson(const std::string& image, const std::string& created)
{
    std::vector<std::string> lost;
    const FruImage before = parseFruImage(image);
    const FruImage after = parseFruImage(created);
    bool hasMoved = false;
    for (FruExtent extent : before.extents) {
        const auto same =
            std::find_if(after.extents.begin(), after.extents.end(),
                         [&extent](const FruExtent& each) { return each.name == extent.name; });
        if (same == after.extents.end() || same->size < extent.size) {
            lost.push_back(extent.name + ": is not there, or shorter");
            continue;
        }
        if (same->offset != extent.offset) {
            hasMoved = true;
            lost.push_back(
                fmt::format("{}: at offset {}, not {}", extent.name, same->offset, extent.offset));
        }
        extent.size = extent.offset == 0 ? COMPARED_OF_HEADER : extent.size;
        const std::string difference = differenceIn(extent, image, created, same->offset);
        if (!difference.empty()) {
            lost.push_back(difference);
        }
    }
    for (const FruExtent& extent : before.map(image)) {
        if (extent.name == OTHER_BYTES) {
            lost.push_back(fmt::format("bytes {} to {}: in no area, but not blank", extent.offset,
                                       extent.end() - 1));
        } else if (extent.name == FREE_BYTES && !hasMoved &&
                   !differenceIn(extent, image, created, extent.offset).empty()) {
            lost.push_back(fmt::format("bytes {} to {}: blank, in another way than the image's end",
                                       extent.offset, extent.end() - 1));
        }
    }
    return lost;
}

}
