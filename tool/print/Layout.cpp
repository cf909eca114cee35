// SPDX-License-Identifier: Apache-2.0
#include "Layout.h"

#include <algorithm>
#include <cctype>
#include <sstream>

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <recordkit/inspect/bytes/Text.h>
#include <recordkit/inspect/words/Match.h>

#include "../Errors.h"
#include "../Zone.h"

namespace recordkit::tool {

namespace {

constexpr std::size_t GAP = 2;

std::string titleOf(const ColumnHead& column)
{
    if (column.title != nullptr) {
        return column.title;
    }
    std::string title = column.key;
    std::transform(title.begin(), title.end(), title.begin(), [](unsigned char character) {
        return character == '_' ? ' ' : static_cast<char>(std::toupper(character));
    });
    return title;
}

ShownColumn shown(const std::vector<ColumnHead>& columns, std::size_t index)
{
    const std::string title = titleOf(columns[index]);
    const std::size_t width = columns[index].title == nullptr ? title.size() : columns[index].width;
    const std::string utc = " (UTC)";
    const std::size_t at = title.find(utc);
    if (at != std::string::npos && chosenZone() != nullptr) {
        return {index, title.substr(0, at), width + OFFSET_WIDTH}; // each time has its offset
    }
    return {index, title, width};
}

/// An object has no key twice.
void addOnce(const ShownColumn& column, std::vector<ShownColumn>& columns)
{
    if (std::none_of(columns.begin(), columns.end(),
                     [&](const ShownColumn& each) { return each.index == column.index; })) {
        columns.push_back(column);
    }
}

/// The columns that can be named: of a table all, and first those that it usually has.
std::vector<std::size_t> choices(const std::vector<ColumnHead>& columns, bool isTable)
{
    std::vector<std::size_t> result;
    for (const bool hasTitle : {true, false}) {
        for (std::size_t i = 0; i < columns.size(); ++i) {
            if ((columns[i].title != nullptr) == hasTitle &&
                (isTable || columns[i].key != nullptr)) {
                result.push_back(i);
            }
        }
    }
    return result;
}

/// The columns that a list with commas names.
std::vector<ShownColumn> named(const std::vector<ColumnHead>& columns, const std::string& list,
                               const char* option, bool isTable)
{
    const std::vector<std::size_t> indices = choices(columns, isTable);
    std::vector<std::string> names;
    names.reserve(indices.size());
    for (const std::size_t index : indices) {
        names.push_back(columns[index].name());
    }
    std::vector<ShownColumn> result;
    std::istringstream words(list);
    for (std::string word; std::getline(words, word, ',');) {
        const auto found = matchWord(word, names);
        if (!found) {
            throw usageError(fmt::format("{}: unknown or ambiguous \"{}\" (expected {})", option,
                                         printable(word), fmt::join(names, ", ")));
        }
        result.push_back(shown(columns, indices[*found]));
    }
    if (result.empty()) {
        throw usageError(fmt::format("{}: expected some of {}", option, fmt::join(names, ", ")));
    }
    for (std::size_t i = 0; i + 1 < result.size(); ++i) {
        constexpr std::size_t OPEN = 40;
        result[i].width = result[i].width == 0 ? OPEN : result[i].width;
    }
    return result;
}

std::vector<ShownColumn> usual(const std::vector<ColumnHead>& columns, bool isTable)
{
    std::vector<ShownColumn> result;
    for (std::size_t i = 0; i < columns.size(); ++i) {
        if (isTable ? columns[i].title != nullptr
                    : columns[i].key != nullptr && !columns[i].isExtra) {
            result.push_back(shown(columns, i));
        }
    }
    return result;
}

std::size_t totalWidth(const std::vector<ShownColumn>& columns)
{
    std::size_t total = 0;
    for (const ShownColumn& column : columns) {
        total += column.width + GAP;
    }
    return total - GAP;
}

/// A wished column, and how wide it would be with enough room.
struct Candidate {
    ShownColumn column;
    std::size_t full;
};

/// The most wanted columns that fit at their least width, in the order of the wishes.
std::vector<Candidate> candidates(const std::vector<ColumnHead>& heads,
                                  const std::vector<ShownColumn>& columns,
                                  const std::vector<Wish>& wishes, std::size_t& room)
{
    std::vector<Candidate> result;
    for (const Wish& wish : wishes) {
        const auto found =
            std::find_if(columns.begin(), columns.end(), [&](const ShownColumn& column) {
                return heads[column.index].name() == wish.name;
            });
        const std::size_t needed = wish.least + (result.empty() ? 0 : GAP);
        if (found == columns.end() || (needed > room && !result.empty())) {
            continue;
        }
        const bool isOpen = found->width == 0; // the last column: as long as its texts are
        result.push_back({*found, std::max(found->width, wish.least)});
        result.back().column.width = isOpen ? 0 : wish.least;
        result.back().column.isCut = !isOpen;
        room -= std::min(room, needed);
    }
    return result;
}

/// The columns for a terminal that is too narrow for all of them.
std::vector<ShownColumn> fitted(const std::vector<ColumnHead>& heads,
                                const std::vector<ShownColumn>& columns,
                                const std::vector<Wish>& wishes, std::size_t room)
{
    std::vector<ShownColumn> result;
    for (Candidate& each : candidates(heads, columns, wishes, room)) {
        if (each.column.isCut) {
            const std::size_t more = std::min(room, each.full - each.column.width);
            each.column.width += more;
            room -= more;
        }
        result.push_back(each.column);
    }
    std::sort(result.begin(), result.end(), [](const ShownColumn& left, const ShownColumn& right) {
        return left.index < right.index;
    });
    return result;
}

std::size_t leastOpen(const std::vector<ColumnHead>& heads, const std::vector<ShownColumn>& columns,
                      const std::vector<Wish>& wishes)
{
    const auto wish = std::find_if(wishes.begin(), wishes.end(), [&](const Wish& each) {
        return heads[columns.back().index].name() == each.name;
    });
    return columns.back().width == 0 && wish != wishes.end() ? wish->least : 0;
}

}

std::string ColumnHead::name() const
{
    if (key != nullptr) {
        return key;
    }
    std::string result = title;
    std::transform(result.begin(), result.end(), result.begin(), [](unsigned char character) {
        return character == ' ' ? '_' : static_cast<char>(std::tolower(character));
    });
    return result;
}

std::vector<ShownColumn> shownColumns(const std::vector<ColumnHead>& columns, const Layout& layout,
                                      const std::vector<Wish>& wishes,
                                      std::optional<std::size_t> terminal)
{
    if (layout.format != Format::TABLE) {
        const bool isMore = !layout.fields.empty() && layout.fields.front() == '+';
        std::vector<ShownColumn> result;
        if (layout.fields.empty() || isMore) {
            result = usual(columns, false);
        }
        if (!layout.fields.empty()) {
            for (const ShownColumn& each :
                 named(columns, layout.fields.substr(isMore ? 1 : 0), "--fields", false)) {
                addOnce(each, result);
            }
        }
        return result;
    }
    if (!layout.columns.empty()) {
        return named(columns, layout.columns, "--columns", true);
    }
    std::vector<ShownColumn> all = usual(columns, true);
    if (layout.isWide || wishes.empty() || !terminal ||
        totalWidth(all) + leastOpen(columns, all, wishes) <= *terminal) {
        return all;
    }
    return fitted(columns, all, wishes, *terminal);
}

}
