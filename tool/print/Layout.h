// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_TOOL_PRINT_LAYOUT_H
#define RECORDKIT_TOOL_PRINT_LAYOUT_H

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace recordkit::tool {

/// How a listing is printed.
enum class Format { TABLE, JSON, NDJSON, CSV };

/// What a person wants of a listing.
struct Layout {
    Format format = Format::TABLE;
    std::string fields = {};  ///< of JSON, NDJSON and CSV: names with commas; "+" adds to the usual
    std::string columns = {}; ///< of a table: names with commas
    bool isWide = false;      ///< every usual column, however narrow the terminal
    bool isSafeCsv = false;   ///< texts that a spreadsheet would calculate are quoted

    Layout() = default;
    Layout(Format wanted) : format(wanted) {}
};

/// What every format knows of a column.
struct ColumnHead {
    const char* key;      ///< in JSON, NDJSON and CSV; nullptr: only in the table
    const char* title;    ///< in the table; nullptr: usually not in the table
    std::size_t width;    ///< in the table; the last column is not padded
    bool isExtra = false; ///< only in answers that name it

    /// The key, or the title in small letters with underscores.
    std::string name() const;
};

/// A column that a narrow terminal still shows, and the fewest characters that it then needs.
struct Wish {
    const char* name;
    std::size_t least;
};

/// A column of a particular answer.
struct ShownColumn {
    std::size_t index; ///< among those of the listing
    std::string title;
    std::size_t width;
    bool isCut = false; ///< longer texts are shortened
};

/// The columns of an answer, in their order, for a terminal with this many columns if there is one.
/// `wishes`: the most wanted first; without any, no terminal is too narrow. Throws CommandError
/// (usage) for a name that the listing does not have.
std::vector<ShownColumn> shownColumns(const std::vector<ColumnHead>& columns, const Layout& layout,
                                      const std::vector<Wish>& wishes,
                                      std::optional<std::size_t> terminal);

}

#endif
