// SPDX-License-Identifier: Apache-2.0
#include "Json.h"

#include <algorithm>
#include <limits>

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
        text += isPlain ? '"' + content + '"' : Json(content).dump();
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
    return std::visit(ToJson(), value.get()).dump(2) + "\n";
}

bool isUtf8(const std::string& text)
{
    try {
        static_cast<void>(Json(text).dump());
        return true;
    } catch (const Json::type_error&) {
        return false;
    }
}

std::optional<Value> parseJson(const std::string& text)
{
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
