// SPDX-License-Identifier: Apache-2.0
#include <fmt/format.h>
#include <memory>

#include <recordkit/inspect/bytes/Numbers.h>

#include "../Commands.h"
#include "../Errors.h"
#include "EventFields.h"
#include "EventJson.h"
#include "Store.h"

namespace recordkit::tool {

using TAVLib::RecordKit::SELChainReader;

namespace {

struct Options {
    BoardOption board;
    std::string id;
    std::string log;
    bool isJson = false;
};

/// The newest event that `matches` accepts; throws CommandError (data) if there is none.
template <typename Match>
Event findEvent(unsigned char board, const std::string& wanted, const Match& matches)
{
    SELChainReader reader(board, SELChainReader::NEWEST_FIRST);
    SELChainReader::Record record = {};
    while (reader.next(record)) {
        if (matches(record)) {
            return decodeEvent(board, record);
        }
    }
    std::string text = fmt::format("board {} has no event with {}", board, wanted);
    for (const auto& damage : reader.getDamage()) {
        text += fmt::format("\nrecordkit: {}: {}", damage.path, damage.text);
    }
    throw dataError(text);
}

Event chooseEvent(const Options& options, const Globals& globals)
{
    const unsigned char board = options.board.get(globals);
    const bool isByLog = !options.log.empty();
    if (isByLog == !options.id.empty()) {
        throw usageError("expected a record id or --log N");
    }
    const std::string& text = isByLog ? options.log : options.id;
    const unsigned long number =
        orThrow(parseNumber(text, 0xFFFF),
                usageError(fmt::format(
                    "\"{}\" is not a number, expected 0 to 65535, decimal or as 0x1F", text)));
    if (isByLog) {
        return findEvent(board, fmt::format("log number {}", number),
                         [number](const SELChainReader::Record& record) {
                             return number != 0 && record.logNumber == number;
                         });
    }
    return findEvent(board, fmt::format("record id {:04X}h", number),
                     [number](const SELChainReader::Record& record) {
                         return SELFileLayout::idOf(record.image) == number;
                     });
}

}

void addSelShow(CLI::App& sel, Globals& globals)
{
    const auto options = std::make_shared<Options>();
    CLI::App* const command =
        addCommand(sel, "show", "Show every field of one event, and its bytes",
                   "recordkit sel show 0x97 --board 1; recordkit sel show --log 3");
    command->add_option("ID", options->id, "Record id; the newest event that has it");
    command->add_option("--log", options->log, "Log number, from 1 for the oldest event")
        ->type_name("N");
    options->board.addTo(*command);
    command->add_flag("--json", options->isJson, "One JSON object");
    command->callback([options, &globals] {
        const Event event = chooseEvent(*options, globals);
        fmt::print("{}", options->isJson ? indented(toJson(event)) : describeEvent(event));
    });
}

}
