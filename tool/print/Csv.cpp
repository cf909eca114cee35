// SPDX-License-Identifier: Apache-2.0
#include "Csv.h"

#include "Json.h"

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

std::string toText(const Value& value)
{
    if (value.isNull()) {
        return "";
    }
    if (const auto* const text = value.as<std::string>()) {
        return *text;
    }
    if (const auto* const list = value.as<List>()) {
        std::string joined;
        for (const Value& each : *list) {
            joined += (joined.empty() ? "" : " ") + toText(each);
        }
        return joined;
    }
    return jsonText(value);
}

}

std::string csvLine(const std::vector<std::string>& fields)
{
    std::string line;
    for (std::size_t i = 0; i < fields.size(); ++i) {
        line += (i == 0 ? "" : ",") + quoted(fields[i]);
    }
    return line + "\r\n";
}

std::string csvLine(const Object& object)
{
    std::vector<std::string> fields;
    fields.reserve(object.size());
    for (const Member& member : object) {
        fields.push_back(toText(member.value));
    }
    return csvLine(fields);
}

}
