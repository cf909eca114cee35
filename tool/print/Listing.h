// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_TOOL_PRINT_LISTING_H
#define RECORDKIT_TOOL_PRINT_LISTING_H

#include <string>
#include <vector>

#include "Layout.h"
#include "Table.h"
#include "Value.h"

namespace recordkit::tool {

/// A column of a listing, described once for every format.
template <typename Row> struct Column {
    const char* key;                    ///< in JSON, NDJSON and CSV; nullptr: only in the table
    const char* title;                  ///< in the table; nullptr: usually not in the table
    std::size_t width;                  ///< in the table; the last column is not padded
    Value (*value)(const Row&);         ///< nullptr: only a cell
    Cell (*cell)(const Row&) = nullptr; ///< nullptr: the value's text
};

/// Where a listing goes, piece by piece.
using Sink = void (*)(const std::string& text);

/// Writes the lines of a listing, whatever their format.
class ListingWriter {
public:
    /// Writes what comes before the first row. Throws as shownColumns does.
    ListingWriter(const std::vector<ColumnHead>& columns, const Layout& layout,
                  const std::vector<Wish>& wishes, Sink listingSink);

    /// The columns to add for each row.
    const std::vector<ShownColumn>& getShown() const { return shown; }
    bool isTable() const { return format == Format::TABLE; }

    void addCells(const std::vector<Cell>& cells);
    void addObject(Object object);
    /// Writes what was added so far.
    void flush();
    /// What comes after the last row.
    void end();

private:
    void writeIfLarge();

    Format format;
    bool isSafeCsv;
    Sink sink;
    std::vector<ShownColumn> shown;
    Table table;
    bool isFirst = true;
    std::string text;
};

/// A listing of rows of one kind, on standard output by default. Rows are written as they are
/// added, in pieces.
template <typename Row> class Listing {
public:
    template <std::size_t Count> Listing(const Column<Row> (&listed)[Count], const Layout& layout,
                                         const std::vector<Wish>& wishes = {}, Sink sink = print)
        : columns(listed), writer(headsOf(listed, Count), layout, wishes, sink)
    {
    }

    void add(const Row& row)
    {
        if (writer.isTable()) {
            writer.addCells(cellsOf(row));
        } else {
            writer.addObject(objectOf(row));
        }
    }
    void flush() { writer.flush(); }
    void finish() { writer.end(); }

private:
    static std::vector<ColumnHead> headsOf(const Column<Row>* listed, std::size_t count)
    {
        std::vector<ColumnHead> heads;
        for (std::size_t i = 0; i < count; ++i) {
            heads.push_back({listed[i].key, listed[i].title, listed[i].width});
        }
        return heads;
    }
    std::vector<Cell> cellsOf(const Row& row) const
    {
        std::vector<Cell> cells;
        cells.reserve(writer.getShown().size());
        for (const ShownColumn& each : writer.getShown()) {
            const Column<Row>& column = columns[each.index];
            cells.push_back(column.cell != nullptr ? column.cell(row)
                                                   : Cell{cellText(column.value(row))});
        }
        return cells;
    }
    Object objectOf(const Row& row) const
    {
        Object object;
        object.reserve(writer.getShown().size());
        for (const ShownColumn& each : writer.getShown()) {
            object.push_back({columns[each.index].key, columns[each.index].value(row)});
        }
        return object;
    }

    const Column<Row>* columns;
    ListingWriter writer;
};

/// A row as an object with every key, and rows as a list of them: for a part of a larger answer.
template <typename Row, std::size_t Count>
Object objectOf(const Row& row, const Column<Row> (&columns)[Count])
{
    Object object;
    for (const Column<Row>& column : columns) {
        if (column.key != nullptr) {
            object.push_back({column.key, column.value(row)});
        }
    }
    return object;
}
template <typename Row, std::size_t Count>
List objectsOf(const std::vector<Row>& rows, const Column<Row> (&columns)[Count])
{
    return listOf(rows, [&columns](const Row& row) { return objectOf(row, columns); });
}

/// Prints a whole listing.
template <typename Row, std::size_t Count>
void printListing(const std::vector<Row>& rows, const Column<Row> (&columns)[Count],
                  const Layout& layout, const std::vector<Wish>& wishes = {})
{
    Listing<Row> listing(columns, layout, wishes);
    for (const Row& row : rows) {
        listing.add(row);
    }
    listing.finish();
}

}

#endif
