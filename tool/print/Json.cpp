// SPDX-License-Identifier: Apache-2.0
#include "Json.h"

#include <algorithm>
#include <limits>

#include <fmt/format.h>
#include <nlohmann/json.hpp>

namespace recordkit::tool {

namespace {

using Json = nlohmann::ordered_json;

struct ToJson {
    Json operator()(std::monostate) const { return nullptr; }
    Json operator()(const List& list) const
    {
        Json json = Json::array();
        for (const Value& each : list) {
            json.push_back(std::visit(*this, each.get()));
        }
        return json;
    }
    Json operator()(const Object& object) const
    {
        Json::object_t json;
        for (const Member& member : object) {
            json.emplace_back(member.key, std::visit(*this, member.value.get()));
        }
        return json;
    }
    template <typename Scalar> Json operator()(const Scalar& scalar) const { return scalar; }
};

/// JSON may contain C1 control characters and DEL as they are; a terminal must not get them.
std::string withoutControls(const std::string& json)
{
    std::string text;
    for (std::size_t i = 0; i < json.size(); ++i) {
        const auto byte = static_cast<unsigned char>(json[i]);
        const auto next = i + 1 < json.size() ? static_cast<unsigned char>(json[i + 1]) : 0;
        if (byte == 0x7F) {
            text += "\\u007f";
        } else if (byte == 0xC2 && next < 0xA0) {
            text += fmt::format("\\u{:04x}", next);
            ++i;
        } else {
            text += json[i];
        }
    }
    return text;
}

/// Bytes that are not UTF-8 become U+FFFD.
std::string quoted(const std::string& content)
{
    return withoutControls(Json(content).dump(-1, ' ', false, Json::error_handler_t::replace));
}

/// Appends JSON on one line, without a tree of the library: listings have many rows.
struct Writer {
    std::string& text;

    void operator()(std::monostate) const { text += "null"; }
    void operator()(bool flag) const { text += flag ? "true" : "false"; }
    void operator()(long long number) const { text += std::to_string(number); }
    void operator()(double number) const { text += Json(number).dump(); }
    void operator()(const std::string& content) const
    {
        const bool isPlain = std::all_of(content.begin(), content.end(), [](char character) {
            return character >= ' ' && character <= '~' && character != '"' && character != '\\';
        });
        text += isPlain ? '"' + content + '"' : quoted(content);
    }
    void operator()(const List& list) const
    {
        text += '[';
        for (const Value& each : list) {
            text += &each == &list.front() ? "" : ",";
            std::visit(*this, each.get());
        }
        text += ']';
    }
    void operator()(const Object& object) const
    {
        text += '{';
        for (const Member& member : object) {
            text += &member == &object.front() ? "" : ",";
            (*this)(member.key);
            text += ':';
            std::visit(*this, member.value.get());
        }
        text += '}';
    }
};

/// Throws std::domain_error for a number that a Value cannot express.
Value fromJson(const Json& json)
{
    switch (json.type()) {
    case Json::value_t::boolean:
        return json.get<bool>();
    case Json::value_t::string:
        return json.get<std::string>();
    case Json::value_t::array:
        return listOf(json, fromJson);
    case Json::value_t::object: {
        Object object;
        for (const auto& member : json.items()) {
            object.push_back({member.key(), fromJson(member.value())});
        }
        return object;
    }
    case Json::value_t::number_unsigned:
        if (json.get<unsigned long long>() <=
            static_cast<unsigned long long>(std::numeric_limits<long long>::max())) {
            return json.get<long long>();
        }
        throw std::domain_error("too large");
    case Json::value_t::number_integer:
        return json.get<long long>();
    case Json::value_t::number_float:
        throw std::domain_error("not whole");
    default:
        return {};
    }
}

}

std::string jsonText(const Value& value)
{
    std::string text;
    std::visit(Writer{text}, value.get());
    return text;
}

std::string indentedJson(const Value& value)
{
    const Json json = std::visit(ToJson(), value.get());
    return withoutControls(json.dump(2, ' ', false, Json::error_handler_t::replace)) + "\n";
}

bool isTooDeep(const std::string& json)
{
    std::size_t depth = 0;
    bool isInText = false;
    for (std::size_t i = 0; i < json.size() && depth <= MAX_JSON_DEPTH; ++i) {
        const char character = json[i];
        if (isInText) {
            i += character == '\\' ? 1 : 0;
            isInText = character != '"';
        } else if (character == '[' || character == '{') {
            ++depth;
        } else if ((character == ']' || character == '}') && depth != 0) {
            --depth;
        } else {
            isInText = character == '"';
        }
    }
    return depth > MAX_JSON_DEPTH;
}

std::optional<Value> parseJson(const std::string& text)
{
    if (isTooDeep(text)) {
        return std::nullopt;
    }
    const Json json = Json::parse(text, nullptr, false);
    if (json.is_discarded()) {
        return std::nullopt;
    }
    try {
        return fromJson(json);
    } catch (const std::domain_error&) {
        return std::nullopt;
    }
}

}
