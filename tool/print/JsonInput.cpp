// SPDX-License-Identifier: Apache-2.0
#include "JsonInput.h"

#include <algorithm>
#include <limits>
#include <utility>

#include <fmt/format.h>
#include <nlohmann/json.hpp>
#include <recordkit/inspect/bytes/Error.h>

#include "Json.h"

namespace recordkit::tool {

namespace {

using Json = nlohmann::json;

/// An array or object that is being read.
struct Open {
    bool isObject;
    List list;
    Object object;
    std::string key; ///< of the member that comes next
};

/// Builds a value from what the parser finds.
class Builder : public Json::json_sax_t {
public:
    Value take() { return std::move(whole); }

    bool null() override { return add({}); }
    bool boolean(bool value) override { return add(value); }
    bool number_integer(number_integer_t value) override { return add(value); }
    bool number_unsigned(number_unsigned_t value) override
    {
        if (value > static_cast<number_unsigned_t>(std::numeric_limits<long long>::max())) {
            throw inspect::DataError(fmt::format("{}: the number {} is too large", path(), value));
        }
        return add(static_cast<long long>(value));
    }
    bool number_float(number_float_t value, const string_t& /*text*/) override
    {
        return add(value);
    }
    bool string(string_t& value) override
    {
        // As it is: Value(std::string) is for what is shown.
        return add(inspect::Value(std::move(value)));
    }
    bool binary(binary_t& /*value*/) override { return false; } // JSON has none
    bool start_object(std::size_t /*size*/) override { return open(true); }
    bool key(string_t& name) override
    {
        Open& object = opened.back();
        const bool isKnown =
            std::any_of(object.object.begin(), object.object.end(),
                        [&name](const Member& member) { return member.key == name; });
        object.key = std::move(name);
        if (isKnown) {
            throw inspect::DataError(path() + ": the object has this key twice");
        }
        return true;
    }
    bool end_object() override { return close(); }
    bool start_array(std::size_t /*size*/) override { return open(false); }
    bool end_array() override { return close(); }
    bool parse_error(std::size_t /*position*/, const std::string& /*token*/,
                     const nlohmann::detail::exception& error) override
    {
        // "[json.exception.parse_error.101] parse error at line 1, column 2: syntax error ..."
        const std::string text = error.what();
        const std::size_t line = text.find("line ");
        throw inspect::DataError(line == std::string::npos ? text.substr(text.find("] ") + 2)
                                                           : text.substr(line));
    }

private:
    /// Of the value that comes next.
    std::string path() const
    {
        std::string all;
        for (const Open& each : opened) {
            all = each.isObject ? memberPath(all, each.key) : elementPath(all, each.list.size());
        }
        return all;
    }

    bool open(bool isObject)
    {
        if (opened.size() >= MAX_JSON_DEPTH) {
            throw inspect::DataError(
                fmt::format("arrays and objects are more than {} deep", MAX_JSON_DEPTH));
        }
        opened.push_back({isObject, {}, {}, {}});
        return true;
    }

    bool close()
    {
        Open closed = std::move(opened.back());
        opened.pop_back();
        return add(closed.isObject ? Value(std::move(closed.object))
                                   : Value(std::move(closed.list)));
    }

    bool add(Value value)
    {
        if (opened.empty()) {
            whole = std::move(value);
        } else if (opened.back().isObject) {
            opened.back().object.push_back({std::move(opened.back().key), std::move(value)});
        } else {
            opened.back().list.push_back(std::move(value));
        }
        return true;
    }

    Value whole;
    std::vector<Open> opened;
};

}

Value readJson(const std::string& text, JsonComments comments)
{
    Builder builder;
    Json::sax_parse(text, &builder, Json::input_format_t::json, true,
                    comments == JsonComments::SKIPPED);
    return builder.take();
}

std::string memberPath(const std::string& path, const std::string& key)
{
    return path.empty() ? key : path + "." + key;
}

std::string elementPath(const std::string& path, std::size_t index)
{
    return fmt::format("{}[{}]", path, index);
}

}
