// SPDX-License-Identifier: Apache-2.0
#include "Listing.h"

#include <utility>

#include "Csv.h"
#include "Json.h"

namespace recordkit::tool {

ListingWriter::ListingWriter(const std::vector<ColumnHead>& columns, const Layout& layout,
                             const std::vector<Wish>& wishes, Sink listingSink)
    : format(layout.format), isSafeCsv(layout.isSafeCsv), sink(listingSink),
      shown(shownColumns(columns, layout, wishes, terminalWidth()))
{
    std::vector<std::string> keys;
    for (const ShownColumn& column : shown) {
        table.addColumn({column.title, column.width, column.isCut});
        keys.push_back(columns[column.index].name());
    }
    switch (format) {
    case Format::TABLE:
        text = table.header();
        break;
    case Format::CSV:
        text = csvLine(keys);
        break;
    case Format::JSON:
        text = "[";
        break;
    case Format::NDJSON:
        break;
    }
}

void ListingWriter::addCells(const std::vector<Cell>& cells)
{
    table.append(cells, text);
    writeIfLarge();
}

void ListingWriter::addObject(Object object)
{
    switch (format) {
    case Format::JSON:
        text += isFirst ? "\n" : ",\n";
        text += jsonText(std::move(object));
        break;
    case Format::NDJSON:
        text += jsonText(std::move(object)) + "\n";
        break;
    default:
        text += csvLine(object, isSafeCsv);
        break;
    }
    isFirst = false;
    writeIfLarge();
}

void ListingWriter::writeIfLarge()
{
    constexpr std::size_t LARGE = 65536;
    if (text.size() >= LARGE) {
        flush();
    }
}

void ListingWriter::flush()
{
    sink(text);
    text.clear();
}

void ListingWriter::end()
{
    if (format == Format::JSON) {
        text += isFirst ? "]\n" : "\n]\n";
    }
    flush();
}

}
