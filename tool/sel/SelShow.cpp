// SPDX-License-Identifier: Apache-2.0
#include <fmt/format.h>

#include "../Commands.h"
#include "../Errors.h"
#include "../cli/Arguments.h"
#include "../print/Output.h"
#include "EventColumns.h"
#include "EventText.h"

namespace recordkit::tool {

using TAVLib::RecordKit::SELChainReader;

namespace {

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
    for (const auto& damage : reader.getDamage()) {
        complain(damage.path + ": " + damage.text);
    }
    throw dataError(fmt::format("board {} has no event with {}", board, wanted));
}

Event chooseEvent(const Arguments& arguments)
{
    const auto id = arguments.find("ID");
    const auto log = arguments.find("--log");
    if (id.has_value() == log.has_value()) {
        throw usageError("expected a record id or --log N");
    }
    if (log) {
        return findEvent(arguments.board(), fmt::format("log number {}", *log),
                         [&log](const SELChainReader::Record& record) {
                             return *log != 0 && record.logNumber == *log;
                         });
    }
    return findEvent(arguments.board(), fmt::format("record id {:04X}h", *id),
                     [&id](const SELChainReader::Record& record) {
                         return SELFileLayout::idOf(record.image) == *id;
                     });
}

void run(const Arguments& arguments)
{
    const Event event = chooseEvent(arguments);
    if (arguments.format() == Format::TABLE) {
        print(describeEvent(event));
        return;
    }
    EventListing listing(arguments.format());
    listing.add(event);
    listing.finish();
}

}

Command selShowCommand()
{
    return {"sel show",
            "Show every field of one event, and its bytes",
            "recordkit sel show 0x97 --board 1; recordkit sel show --log 3",
            {number("ID", "ID", 0, 0xFFFF, "Record id; the newest event that has it").optional(),
             number("--log", "N", 0, 0xFFFF, "Log number, from 1 for the oldest event"), board()},
            Answer::LISTING,
            run};
}

}
