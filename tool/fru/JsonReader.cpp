// SPDX-License-Identifier: Apache-2.0
#include "JsonReader.h"

#include <algorithm>

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <recordkit/inspect/bytes/Hex.h>

#include "../print/Json.h"

namespace recordkit::tool {

DataError JsonReader::wrong(const std::string& expected) const
{
    constexpr std::size_t MOST_SHOWN = 80;
    const std::string json = jsonText(value);
    return error(json.size() > MOST_SHOWN ? "expected " + expected
                                          : json + ", expected " + expected);
}

DataError JsonReader::error(const std::string& text) const
{
    return DataError(path.empty() ? text : path + ": " + text);
}

std::vector<JsonReader> JsonReader::members() const
{
    const auto* const object = value.as<Object>();
    if (object == nullptr) {
        throw wrong("an object");
    }
    std::vector<JsonReader> all;
    for (const Member& member : *object) {
        all.emplace_back(member.value, memberPath(path, member.key));
        all.back().key = member.key;
    }
    return all;
}

JsonReader JsonReader::member(const std::string& name) const
{
    static const Value NONE;
    const Value* const found = value.find(name);
    return JsonReader(found == nullptr ? NONE : *found, memberPath(path, name));
}

void JsonReader::allow(const std::vector<std::string>& keys) const
{
    for (const JsonReader& each : members()) {
        if (std::find(keys.begin(), keys.end(), each.key) == keys.end()) {
            throw each.error(fmt::format("unknown key, expected one of {}", fmt::join(keys, ", ")));
        }
    }
}

std::vector<JsonReader> JsonReader::elements() const
{
    const auto* const list = value.as<List>();
    if (list == nullptr) {
        throw wrong("a list");
    }
    std::vector<JsonReader> all;
    for (const Value& each : *list) {
        all.emplace_back(each, elementPath(path, all.size()));
    }
    return all;
}

std::string JsonReader::text() const
{
    const auto* const content = value.as<std::string>();
    if (content == nullptr) {
        throw wrong("a text");
    }
    return *content;
}

long long JsonReader::number(long long least, long long most) const
{
    const auto* const content = value.as<long long>();
    if (content == nullptr || *content < least || *content > most) {
        throw wrong(fmt::format("a number from {} to {}", least, most));
    }
    return *content;
}

std::string JsonReader::bytes() const
{
    const auto* const digits = value.as<std::string>();
    Bytes content;
    if (digits == nullptr || parseHexDigits(*digits, content) != std::string::npos) {
        throw wrong("pairs of hex digits");
    }
    return {content.begin(), content.end()};
}

}
