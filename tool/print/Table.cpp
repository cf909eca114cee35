// SPDX-License-Identifier: Apache-2.0
#include "Table.h"

#include <algorithm>
#include <utility>

#include <recordkit/inspect/bytes/Text.h>

#include "Json.h"

namespace recordkit::tool {

namespace {

constexpr const char* RESET = "\033[0m";

const char* sequenceOf(Style style)
{
    switch (style) {
    case Style::DIM:
        return "\033[2m";
    case Style::GOOD:
        return "\033[32m";
    case Style::NOTICE:
        return "\033[36m";
    case Style::WARNING:
        return "\033[33m";
    case Style::ALARM:
        return "\033[31m";
    case Style::FATAL:
        return "\033[1;31m";
    case Style::PLAIN:
        break;
    }
    return "";
}

/// Bytes of the first `width` characters of a UTF-8 text.
std::size_t bytesOf(const std::string& text, std::size_t width)
{
    std::size_t at = 0;
    for (std::size_t characters = 0; at < text.size(); ++at) {
        const bool isFirst = (static_cast<unsigned char>(text[at]) & 0xC0) != 0x80;
        if (isFirst && ++characters > width) {
            break;
        }
    }
    return at;
}

/// The text in at most `width` characters, the last an ellipsis if some are missing.
std::string shortened(const std::string& text, std::size_t width)
{
    return textWidth(text) <= width ? text : text.substr(0, bytesOf(text, width - 1)) + "\u2026";
}

}

std::size_t textWidth(const std::string& text)
{
    return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), [](char byte) {
        return (static_cast<unsigned char>(byte) & 0xC0) != 0x80;
    }));
}

Style styleOf(inspect::Severity severity)
{
    switch (severity) {
    case SeverityMap::SEV_INFORMATIONAL:
        return Style::GOOD;
    case SeverityMap::SEV_MONITOR:
        return Style::NOTICE;
    case SeverityMap::SEV_NONCRITICAL:
        return Style::WARNING;
    case SeverityMap::SEV_CRITICAL:
        return Style::ALARM;
    case SeverityMap::SEV_NONRECOVERABLE:
        return Style::FATAL;
    case SeverityMap::SEV_NONE:
        break;
    }
    return Style::PLAIN;
}

std::string cellText(const Value& value)
{
    if (value.isNull()) {
        return "-";
    }
    if (const auto* const flag = value.as<bool>()) {
        return *flag ? "yes" : "no";
    }
    if (const auto* const text = value.as<std::string>()) {
        return inspect::printable(*text);
    }
    if (const auto* const list = value.as<List>()) {
        std::string joined;
        for (const Value& each : *list) {
            joined += (joined.empty() ? "" : ",") + cellText(each);
        }
        return joined.empty() ? "-" : joined;
    }
    return jsonText(value);
}

Cell checkCell(bool isGood, const char* good, const std::string& bad)
{
    return isGood ? Cell{good} : Cell{bad, Style::ALARM};
}

Table::Table(std::vector<Heading> tableColumns, bool useColour)
    : columns(std::move(tableColumns)), hasColour(useColour)
{
}

std::string Table::header() const
{
    std::vector<Cell> titles;
    for (const Heading& column : columns) {
        titles.push_back({column.title, Style::PLAIN});
    }
    std::string line;
    append(titles, line);
    return line;
}

void Table::append(const std::vector<Cell>& cells, std::string& text) const
{
    for (std::size_t i = 0; i < cells.size(); ++i) {
        const Cell& cell = cells[i];
        const std::size_t width = i < columns.size() ? columns[i].width : 0;
        const bool isCut = i < columns.size() && columns[i].isCut;
        const std::string cut = isCut ? shortened(cell.text, width) : "";
        const std::string& shown = isCut ? cut : cell.text;
        const bool isColoured = hasColour && cell.style != Style::PLAIN;
        text += isColoured ? sequenceOf(cell.style) : "";
        text += shown;
        text += isColoured ? RESET : "";
        if (i + 1 < cells.size()) {
            const std::size_t used = textWidth(shown);
            text.append(width > used ? width - used : 0, ' ');
            text += "  ";
        }
    }
    text += '\n';
}

}
