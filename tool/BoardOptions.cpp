// SPDX-License-Identifier: Apache-2.0
#include "BoardOptions.h"

#include <fmt/format.h>
#include <numeric>

#include <recordkit/inspect/bytes/Numbers.h>

#include "Errors.h"

namespace recordkit::tool {

namespace {

unsigned char parseBoard(const std::string& text, const Globals& globals)
{
    const int last = globals.getBoards() - 1;
    return static_cast<unsigned char>(orThrow(
        parseNumber(text, static_cast<unsigned long>(last)),
        usageError(fmt::format("--board: \"{}\" is not a board, expected 0 to {}", text, last))));
}

}

void BoardOption::addTo(CLI::App& command)
{
    command.add_option("--board", text, "System board, from 0")
        ->capture_default_str()
        ->type_name("N");
}

unsigned char BoardOption::get(const Globals& globals) const
{
    return parseBoard(text, globals);
}

void BoardsOption::addTo(CLI::App& command, const std::string& byDefault)
{
    text = byDefault;
    command.add_option("--board", text, "System board, from 0, or all")
        ->capture_default_str()
        ->type_name("N|all");
}

std::vector<unsigned char> BoardsOption::get(const Globals& globals) const
{
    if (text != "all") {
        return {parseBoard(text, globals)};
    }
    std::vector<unsigned char> all(static_cast<std::size_t>(globals.getBoards()));
    std::iota(all.begin(), all.end(), static_cast<unsigned char>(0));
    return all;
}

}
