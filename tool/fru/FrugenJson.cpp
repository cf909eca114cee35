// SPDX-License-Identifier: Apache-2.0
#include "FrugenJson.h"

#include <algorithm>

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <recordkit/inspect/bytes/Numbers.h>
#include <recordkit/inspect/bytes/Time.h>
#include <recordkit/inspect/fru/FruImage.h>
#include <recordkit/inspect/fru/FruNames.h>
#include <recordkit/inspect/fru/MfgDate.h>
#include <recordkit/inspect/fru/MultiRecordEdit.h>

#include "JsonReader.h"

namespace recordkit::tool {

namespace {

/// The language of texts that have 8 bits a character.
constexpr unsigned char ENGLISH = 25;
constexpr unsigned char UNKNOWN_CHASSIS = 2;

struct Name {
    const char* its;
    const char* ours;
};

constexpr Name FIELDS[] = {
    {"pn", "part-number"}, {"serial", "serial"}, {"mfg", "manufacturer"}, {"pname", "name"},
    {"atag", "asset-tag"}, {"ver", "version"},   {"file", "file-id"},     {"lang", "language"},
    {"type", "type"},      {"date", "date"},
};

constexpr Name MANAGEMENT[] = {
    {"uuid", "system-guid"},
    {"surl", "system-url"},
    {"sname", "system-name"},
    {"spingaddr", "system-ping-address"},
    {"curl", "component-url"},
    {"cname", "component-name"},
    {"cpingaddr", "component-ping-address"},
};

const char* itsName(const std::string& ours)
{
    for (const Name& name : FIELDS) {
        if (name.ours == ours) {
            return name.its;
        }
    }
    return "";
}

FruText autoText(const std::string& path, const std::string& value)
{
    const std::optional<std::string> digits = toBcdPlus(value);
    const std::optional<std::string> sixBit = toSixBit(value);
    // Others would read back with one more blank.
    const bool isBcd = digits && decodeBcdPlus(*digits) == value;
    const bool isSixBit = sixBit && decodeSixBit(*sixBit) == value;
    const Coding coding = value.empty() ? CODING_TEXT
                          : isBcd       ? CODING_BCD_PLUS
                          : isSixBit    ? CODING_SIX_BIT
                                        : CODING_TEXT;
    return encodeFruText(path, value, ENGLISH, coding);
}

FruText readText(const JsonReader& json)
{
    if (json.get().as<Object>() == nullptr) {
        return autoText(json.getPath(), json.text());
    }
    json.allow({"type", "data"});
    const std::string type = json.has("type") ? json.member("type").text() : "auto";
    const JsonReader data = json.member("data");
    const std::string value = data.text();
    if (type == "auto") {
        return autoText(data.getPath(), value);
    }
    const Coding coding = type == "text"        ? CODING_TEXT
                          : type == "6bitascii" ? CODING_SIX_BIT
                          : type == "bcdplus"   ? CODING_BCD_PLUS
                          : type == "binary"
                              ? CODING_BINARY
                              : throw json.member("type").wrong(
                                    R"("auto", "text", "6bitascii", "bcdplus", "binary")");
    return encodeFruText(data.getPath(), value, ENGLISH, coding);
}

std::optional<unsigned long> decimal(const std::string& digits)
{
    constexpr unsigned long MOST = 9999;
    const bool isNumber = digits.find_first_not_of("0123456789") == std::string::npos;
    return isNumber ? parseNumber(digits, MOST) : std::nullopt;
}

/// "10/1/2017 2:58:00" as "2017-01-10 02:58"; nothing for any other form.
std::optional<std::string> isoMinute(const std::string& text)
{
    const std::size_t month = text.find('/') + 1;
    const std::size_t year = text.find('/', month) + 1;
    const std::size_t hour = text.find(' ', year) + 1;
    const std::size_t minute = text.find(':', hour);
    if (month == 0 || year == 0 || hour == 0 || minute == std::string::npos) {
        return std::nullopt;
    }
    const auto years = decimal(text.substr(year, hour - 1 - year));
    const auto months = decimal(text.substr(month, year - 1 - month));
    const auto days = decimal(text.substr(0, month - 1));
    const auto hours = decimal(text.substr(hour, minute - hour));
    if (!years || !months || !days || !hours) {
        return std::nullopt;
    }
    const std::string day = fmt::format("{:04}-{:02}-{:02} {:02}", *years, *months, *days, *hours);
    const std::string time = day + text.substr(minute);
    constexpr std::size_t UP_TO_MINUTE = 16;
    return parseTime(time) ? std::optional<std::string>(time.substr(0, UP_TO_MINUTE))
                           : std::nullopt;
}

std::string readDate(const JsonReader& json, unsigned int now)
{
    const DataError refused =
        json.wrong("a date from 1/1/2006 to 23/11/2037, as \"31/12/2017 12:58:00\", or \"auto\"");
    const std::string text = json.text();
    const std::string iso = text == "auto" ? "now" : orThrow(isoMinute(text), refused);
    return orThrow(parseMfgDate(iso, now), refused).bytes();
}

std::string readFixed(const JsonReader& area, const std::string& name, unsigned int now)
{
    const JsonReader json = area.member(name);
    if (name == "date") {
        return area.has(name)
                   ? readDate(json, now)
                   : orThrow(parseMfgDate("now", now), json.error("the time is not known")).bytes();
    }
    const bool isGiven = area.has(name);
    const long long number = isGiven ? json.number(0, 0xFF) : UNKNOWN_CHASSIS;
    return std::string(1, static_cast<char>(name == "lang" ? ENGLISH : number));
}

FruAreaContent readArea(const JsonReader& json, FRU_AREA id, unsigned int now)
{
    std::vector<std::string> keys;
    for (const std::string& field : fruFieldNames(id)) {
        keys.emplace_back(itsName(field));
    }
    keys.emplace_back("custom");
    json.allow(keys);
    FruAreaContent area;
    area.id = id;
    for (const std::string& field : fruFieldNames(id)) {
        const std::string name = itsName(field);
        if (name == "type" || name == "lang" || name == "date") {
            area.start += readFixed(json, name, now);
        } else {
            area.texts.push_back(json.has(name) ? readText(json.member(name)) : autoText("", ""));
        }
    }
    if (json.has("custom")) {
        for (const JsonReader& each : json.member("custom").elements()) {
            area.texts.push_back(readText(each));
        }
    }
    return area;
}

FruRecordContent readManagement(const JsonReader& json)
{
    const JsonReader subtype = json.member("subtype");
    const std::string name = subtype.text();
    std::vector<std::string> names;
    for (const Name& each : MANAGEMENT) {
        names.emplace_back(each.its);
        if (name == each.its) {
            json.allow({"type", "subtype", name});
            const JsonReader value = json.member(name);
            return newRecord(json.getPath(), "management-access",
                             {{"type", std::string(each.ours)}, {each.ours, value.text()}});
        }
    }
    throw subtype.wrong(fmt::format("one of {}", fmt::join(names, ", ")));
}

FruRecordContent readRecord(const JsonReader& json)
{
    static_cast<void>(json.members());
    const JsonReader type = json.member("type");
    if (type.text() == "management") {
        return readManagement(json);
    }
    if (type.text() != "custom") {
        throw type.wrong("\"management\" or \"custom\"");
    }
    json.allow({"type", "custom_type", "data"});
    FruRecordContent record;
    record.type = static_cast<unsigned char>(json.member("custom_type").number(0, 0xFF));
    record.data = json.member("data").bytes();
    if (record.data.size() > 0xFF) {
        throw json.member("data").error(
            fmt::format("{} bytes, a record has at most 255", record.data.size()));
    }
    return record;
}

}

FruDescription fruFromFrugenJson(const Value& json, unsigned int now)
{
    const JsonReader whole(json);
    whole.allow({"internal", "chassis", "board", "product", "multirecord"});
    FruDescription result;
    if (whole.has("internal")) {
        result.content.internalUse = whole.member("internal").bytes();
        if (result.content.internalUse->empty()) {
            throw whole.member("internal").wrong("at least one byte in hex digits");
        }
    }
    for (const FRU_AREA id : informationAreas()) {
        if (whole.has(fruAreaName(id))) {
            result.content.areas.push_back(readArea(whole.member(fruAreaName(id)), id, now));
        }
    }
    if (whole.has("multirecord")) {
        for (const JsonReader& each : whole.member("multirecord").elements()) {
            result.content.records.push_back(readRecord(each));
        }
    }
    return result;
}

}
