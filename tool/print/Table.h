// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_TOOL_PRINT_TABLE_H
#define RECORDKIT_TOOL_PRINT_TABLE_H

#include <string>
#include <vector>

#include <recordkit/inspect/words/Severities.h>

#include "Output.h"
#include "Value.h"

namespace recordkit::tool {

/// How a cell is highlighted on a terminal.
enum class Style { PLAIN, DIM, GOOD, NOTICE, WARNING, ALARM, FATAL };

/// How many characters a UTF-8 text has.
std::size_t textWidth(const std::string& text);

/// How a severity is highlighted.
Style styleOf(inspect::Severity severity);

struct Cell {
    std::string text;
    Style style = Style::PLAIN;
};

/// A value as printable text: "-" for null, yes and no, the elements of a list with commas.
std::string cellText(const Value& value);

/// The cell of a check: highlighted if the result is bad.
Cell checkCell(bool isGood, const char* good, const std::string& bad);

struct Heading {
    std::string title;
    std::size_t width;  ///< in characters; the last column of a table is not padded
    bool isCut = false; ///< longer texts are shortened
};

/// Aligned lines, by default in colour where standard output is a terminal that wants it.
class Table {
public:
    explicit Table(std::vector<Heading> tableColumns = {}, bool useColour = wantsColour());

    void addColumn(const Heading& column) { columns.push_back(column); }
    /// The line of titles.
    std::string header() const;
    /// Appends one line, newline included, to `text`.
    void append(const std::vector<Cell>& cells, std::string& text) const;

private:
    std::vector<Heading> columns;
    bool hasColour;
};

}

#endif
