// SPDX-License-Identifier: Apache-2.0
#include "FruPrinter.h"

#include <fmt/format.h>

#include <recordkit/inspect/bytes/Hex.h>
#include <recordkit/inspect/bytes/Text.h>
#include <recordkit/inspect/fru/FruNames.h>
#include <recordkit/inspect/fru/MfgDate.h>

#include "../print/Table.h"

namespace recordkit::tool {

namespace {

std::string checksumText(const FruChecksum& checksum)
{
    return checksum.isRight()
               ? fmt::format("{:02X}h", checksum.stored)
               : fmt::format("{:02X}h WRONG, expected {:02X}h", checksum.stored, checksum.expected);
}

Json checksumJson(const FruChecksum& checksum)
{
    Json json;
    json["stored"] = checksum.stored;
    json["expected"] = checksum.expected;
    json["right"] = checksum.isRight();
    return json;
}

Json extentJson(const FruExtent& extent)
{
    Json json;
    json["name"] = extent.name;
    json["offset"] = extent.offset;
    json["size"] = extent.size;
    return json;
}

std::string rangeText(const FruExtent& extent)
{
    return fmt::format("{} to {}", extent.offset, extent.end() - 1);
}

void appendArea(const FruAreaImage& area, const Table& table, std::string& text)
{
    if (area.extent.size == 0) {
        return;
    }
    for (const FruField& field : area.fields) {
        table.append({{area.extent.name + "." + field.name},
                      {field.typeName()},
                      {std::to_string(field.bytes.size())},
                      {printable(field.value)}},
                     text);
    }
    table.append({{area.extent.name + " unused"}, {""}, {std::to_string(area.unused)}, {""}}, text);
    table.append(
        {{area.extent.name + " checksum"},
         {""},
         {"1"},
         {checksumText(area.checksum), area.checksum.isRight() ? Style::PLAIN : Style::ALARM}},
        text);
}

void appendRecords(const FruImage& image, bool hasColour, std::string& text)
{
    const Table table(
        {{"MULTIRECORD", 11}, {"TYPE", 4}, {"OFFSET", 6}, {"LENGTH", 6}, {"CHECKSUM", 0}},
        hasColour);
    text += "\n" + table.header();
    unsigned int number = 0;
    for (const FruMultiRecord& record : image.records) {
        table.append(
            {{std::to_string(++number)},
             {fmt::format("{:02X}h", record.type)},
             {std::to_string(record.extent.offset)},
             {std::to_string(record.extent.size)},
             {checksumText(record.data), record.data.isRight() ? Style::PLAIN : Style::ALARM}},
            text);
    }
}

Json fieldJson(const FruField& field)
{
    Json json;
    json["name"] = field.name;
    json["offset"] = field.offset;
    json["type"] = field.typeName();
    json["type_length"] = field.isCoded ? Json(field.typeLength) : Json(nullptr);
    json["length"] = field.bytes.size();
    json["value"] = field.value;
    json["bytes"] = toHex(field.bytes);
    if (field.item == FRU_ITEM_MFG_DATE_TIME) {
        const MfgDate date(field.bytes);
        json["value"] = date.isSpecified() ? Json(date.toIso()) : Json(nullptr);
        json["minutes"] = date.raw();
    }
    return json;
}

Json areaJson(const FruAreaImage& area)
{
    Json json = extentJson(area.extent);
    const bool isRead = area.extent.size != 0;
    json["whole"] = area.isWhole;
    json["checksum"] = isRead ? checksumJson(area.checksum) : Json(nullptr);
    json["fields"] = Json::array();
    for (const FruField& field : area.fields) {
        json["fields"].push_back(fieldJson(field));
    }
    json["unused"] = area.isWhole ? Json(area.unused) : Json(nullptr);
    json["problems"] = area.problems;
    return json;
}

Json recordJson(const FruMultiRecord& record)
{
    Json json;
    json["type"] = record.type;
    json["offset"] = record.extent.offset;
    json["size"] = record.extent.size;
    json["checksum"] = checksumJson(record.data);
    json["last"] = record.isLast;
    return json;
}

template <typename List, typename Convert> Json listJson(const List& list, const Convert& convert)
{
    Json json = Json::array();
    for (const auto& each : list) {
        json.push_back(convert(each));
    }
    return json;
}

}

std::string describeFru(const FruImage& image, const std::string& bytes, bool hasColour)
{
    std::string text;
    if (image.isFru) {
        const Table table({{"FIELD", 24}, {"TYPE", 8}, {"LENGTH", 6}, {"VALUE", 0}}, hasColour);
        text += table.header();
        for (const FruAreaImage& area : image.areas) {
            appendArea(area, table, text);
        }
        for (const FruInternalUse& internal : image.internalUse) {
            constexpr std::size_t SHOWN = 16;
            table.append({{internal.extent.name},
                          {"binary"},
                          {std::to_string(internal.bytes.size())},
                          {toHex(internal.bytes.substr(0, SHOWN)) +
                           (internal.bytes.size() > SHOWN ? "..." : "")}},
                         text);
        }
        table.append(
            {{"header checksum"},
             {""},
             {"1"},
             {checksumText(image.header), image.header.isRight() ? Style::PLAIN : Style::ALARM}},
            text);
        if (!image.records.empty()) {
            appendRecords(image, hasColour, text);
        }
        const Table places({{"BYTES", 12}, {"SIZE", 5}, {"WHAT", 0}}, hasColour);
        text += "\n" + places.header();
        for (const FruExtent& extent : image.map(bytes)) {
            places.append({{rangeText(extent)}, {std::to_string(extent.size)}, {extent.name}},
                          text);
        }
    }
    const std::vector<std::string> problems = image.allProblems();
    text += problems.empty() ? "" : "\n";
    for (const std::string& problem : problems) {
        text += "PROBLEM  " + problem + "\n";
    }
    return text;
}

Json toJson(const FruImage& image, const std::string& bytes)
{
    Json json;
    json["size"] = image.size;
    json["fru"] = image.isFru;
    json["header_checksum"] = image.isFru ? checksumJson(image.header) : Json(nullptr);
    json["areas"] = listJson(image.areas, areaJson);
    json["internal_use"] = listJson(image.internalUse, [](const FruInternalUse& internal) {
        Json area = extentJson(internal.extent);
        area["bytes"] = toHex(internal.bytes);
        return area;
    });
    json["multirecords"] = listJson(image.records, recordJson);
    json["map"] = listJson(image.isFru ? image.map(bytes) : std::vector<FruExtent>(), extentJson);
    json["problems"] = image.allProblems();
    return json;
}

}
