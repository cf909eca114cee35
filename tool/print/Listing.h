// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_TOOL_PRINT_LISTING_H
#define RECORDKIT_TOOL_PRINT_LISTING_H

#include <string>
#include <vector>

#include "Table.h"
#include "Value.h"

namespace recordkit::tool {

/// How a listing is printed.
enum class Format { TABLE, JSON, NDJSON, CSV };

/// A column of a listing, described once for every format.
template <typename Row> struct Column {
    const char* key;                    ///< in JSON, NDJSON and CSV; nullptr: only in the table
    const char* title;                  ///< in the table; nullptr: not in the table
    std::size_t width;                  ///< in the table; the last column is not padded
    Value (*value)(const Row&);         ///< nullptr: only a cell
    Cell (*cell)(const Row&) = nullptr; ///< nullptr: the value's text
};

/// Where a listing goes, piece by piece.
using Sink = void (*)(const std::string& text);

/// Writes the lines of a listing, whatever their format.
class ListingWriter {
public:
    ListingWriter(Format listingFormat, Sink listingSink) : format(listingFormat), sink(listingSink)
    {
    }

    void addHeading(const char* key, const char* title, std::size_t width);
    /// What comes before the first row.
    void begin();
    void addCells(const std::vector<Cell>& cells);
    void addObject(Object object);
    /// Writes what was added so far.
    void flush();
    /// What comes after the last row.
    void end();

    bool isTable() const { return format == Format::TABLE; }

private:
    void writeIfLarge();

    Format format;
    Sink sink;
    Table table;
    std::vector<std::string> keys;
    bool isFirst = true;
    std::string text;
};

/// A listing of rows of one kind, on standard output by default. Rows are written as they are
/// added, in pieces.
template <typename Row> class Listing {
public:
    template <std::size_t Count>
    Listing(const Column<Row> (&listed)[Count], Format format, Sink sink = print)
        : columns(listed), count(Count), writer(format, sink)
    {
        for (const Column<Row>& column : listed) {
            writer.addHeading(column.key, column.title, column.width);
        }
        writer.begin();
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
    std::vector<Cell> cellsOf(const Row& row) const
    {
        std::vector<Cell> cells;
        cells.reserve(count);
        for (std::size_t i = 0; i < count; ++i) {
            const Column<Row>& column = columns[i];
            if (column.title != nullptr) {
                cells.push_back(column.cell != nullptr ? column.cell(row)
                                                       : Cell{cellText(column.value(row))});
            }
        }
        return cells;
    }
    Object objectOf(const Row& row) const
    {
        Object object;
        object.reserve(count);
        for (std::size_t i = 0; i < count; ++i) {
            if (columns[i].key != nullptr) {
                object.push_back({columns[i].key, columns[i].value(row)});
            }
        }
        return object;
    }

    const Column<Row>* columns;
    std::size_t count;
    ListingWriter writer;
};

/// Prints a whole listing.
template <typename Row, std::size_t Count>
void printListing(const std::vector<Row>& rows, const Column<Row> (&columns)[Count], Format format)
{
    Listing<Row> listing(columns, format);
    for (const Row& row : rows) {
        listing.add(row);
    }
    listing.finish();
}

}

#endif
