// SPDX-License-Identifier: Apache-2.0
#include "Csv.h"

#include <vector>

namespace recordkit::tool {

namespace {

std::string quoted(const std::string& text)
{
    if (text.find_first_of(",\"\r\n") == std::string::npos) {
        return text;
    }
    std::string result = "\"";
    for (const char character : text) {
        result += character == '"' ? "\"\"" : std::string(1, character);
    }
    return result + "\"";
}

std::string toText(const Json& value)
{
    if (value.is_null()) {
        return "";
    }
    if (value.is_string()) {
        return value.get<std::string>();
    }
    if (!value.is_array()) {
        return value.dump();
    }
    std::string joined;
    for (const Json& element : value) {
        joined += (joined.empty() ? "" : " ") + toText(element);
    }
    return joined;
}

std::string join(const std::vector<std::string>& words)
{
    std::string line;
    for (std::size_t i = 0; i < words.size(); ++i) {
        line += (i == 0 ? "" : ",") + quoted(words[i]);
    }
    return line + "\r\n";
}

}

std::string csvHeader(const Json& object)
{
    std::vector<std::string> names;
    for (const auto& field : object.items()) {
        names.push_back(field.key());
    }
    return join(names);
}

std::string csvLine(const Json& object)
{
    std::vector<std::string> values;
    for (const auto& field : object.items()) {
        values.push_back(toText(field.value()));
    }
    return join(values);
}

}
