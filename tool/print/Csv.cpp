// SPDX-License-Identifier: Apache-2.0
#include "Csv.h"

#include "Json.h"
#include "Output.h"

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

/// Whether a spreadsheet would calculate a cell instead of showing it.
bool isFormula(const std::string& cell)
{
    return !cell.empty() && std::string("=+-@").find(cell[0]) != std::string::npos;
}

std::string toText(const Value& value, bool isSafe)
{
    if (value.isNull()) {
        return "";
    }
    if (const auto* const text = value.as<std::string>()) {
        const std::string cell = terminalText(*text);
        return isSafe && isFormula(cell) ? "'" + cell : cell;
    }
    if (const auto* const list = value.as<List>()) {
        std::string joined;
        for (const Value& each : *list) {
            joined += (joined.empty() ? "" : " ") + toText(each, isSafe);
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

std::string csvLine(const Object& object, bool isSafe)
{
    std::vector<std::string> fields;
    fields.reserve(object.size());
    for (const Member& member : object) {
        fields.push_back(toText(member.value, isSafe));
    }
    return csvLine(fields);
}

}
