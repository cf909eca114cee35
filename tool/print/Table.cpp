// SPDX-License-Identifier: Apache-2.0
#include "Table.h"

#include <utility>

namespace recordkit::tool {

namespace {

constexpr const char* RESET = "\033[0m";

const char* sequenceOf(Style style)
{
    switch (style) {
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

Table::Table(std::vector<Column> tableColumns, bool useColour)
    : columns(std::move(tableColumns)), hasColour(useColour)
{
}

std::string Table::header() const
{
    std::vector<Cell> titles;
    for (const Column& column : columns) {
        titles.push_back({column.title, Style::PLAIN});
    }
    std::string line;
    append(titles, line);
    return line;
}

void Table::append(const std::vector<Cell>& cells, std::string& line) const
{
    for (std::size_t i = 0; i < cells.size(); ++i) {
        const Cell& cell = cells[i];
        const bool isColoured = hasColour && cell.style != Style::PLAIN;
        if (isColoured) {
            line += sequenceOf(cell.style);
        }
        line += cell.text;
        if (isColoured) {
            line += RESET;
        }
        if (i + 1 < cells.size()) {
            const std::size_t width = i < columns.size() ? columns[i].width : 0;
            line.append(width > cell.text.size() ? width - cell.text.size() : 0, ' ');
            line += "  ";
        }
    }
    line += '\n';
}

}
