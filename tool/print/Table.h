// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_TOOL_PRINT_TABLE_H
#define RECORDKIT_TOOL_PRINT_TABLE_H

#include <cstdio>
#include <string>
#include <vector>

#include <recordkit/inspect/words/Severities.h>

#include "../Errors.h"

namespace recordkit::tool {

/// How a cell is highlighted on a terminal.
enum class Style { PLAIN, GOOD, NOTICE, WARNING, ALARM, FATAL };

/// How a severity is highlighted.
Style styleOf(inspect::Severity severity);

struct Cell {
    std::string text;
    Style style = Style::PLAIN;
};

struct Column {
    const char* title;
    std::size_t width; ///< the last column of a table is not padded
};

/// Writes aligned lines; in colour only if requested.
class Table {
public:
    Table(std::vector<Column> tableColumns, bool useColour);

    /// The line of titles.
    std::string header() const;
    /// One line, newline included, appended to `line`.
    void append(const std::vector<Cell>& cells, std::string& line) const;

private:
    std::vector<Column> columns;
    bool hasColour;
};

}

#endif
