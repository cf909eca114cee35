// SPDX-License-Identifier: Apache-2.0
#include <algorithm>

#include <fmt/format.h>

#include "../Commands.h"
#include "../Errors.h"
#include "../cli/Arguments.h"
#include "../print/Output.h"
#include "EventColumns.h"
#include "EventText.h"
#include "LogProblems.h"

namespace recordkit::tool {

namespace {

/// Selects one event: by record id or by log number.
class Wanted {
public:
    explicit Wanted(const Arguments& arguments)
        : id(arguments.find("ID")), log(arguments.find("--log"))
    {
        if (id.has_value() == log.has_value()) {
            throw usageError("expected a record id or --log N");
        }
    }
    bool matches(const LogSlot& slot) const
    {
        return log ? *log != 0 && slot.logNumber == *log : SELFileLayout::idOf(slot.image) == *id;
    }
    std::string text() const
    {
        return log ? fmt::format("log number {}", *log) : fmt::format("record id {:04X}h", *id);
    }

private:
    std::optional<unsigned long> id;
    std::optional<unsigned long> log;
};

/// The newest event that is wanted; throws CommandError (data) if there is none.
Event findEvent(const Arguments& arguments, LogProblems& problems)
{
    const Wanted wanted(arguments);
    const unsigned char board = arguments.board();
    const BoardLog log(board);
    problems.add(board, log.getProblems());
    const std::vector<LogSlot>& slots = log.getSlots();
    const auto found = std::find_if(slots.rbegin(), slots.rend(), [&](const LogSlot& slot) {
        return slot.isShown(arguments.has("--strict")) && wanted.matches(slot);
    });
    if (found == slots.rend()) {
        problems.report(LogProblems::HIDDEN);
        throw dataError(fmt::format("board {} has no event with {}", board, wanted.text()));
    }
    return log.decode(*found);
}

void run(const Arguments& arguments)
{
    LogProblems problems;
    const Event event = findEvent(arguments, problems);
    if (arguments.format() == Format::TABLE) {
        print(describeEvent(event));
    } else {
        EventListing listing(arguments.format());
        listing.add(event);
        listing.finish();
    }
    problems.finish(arguments.has("--strict") ? LogProblems::HIDDEN : LogProblems::SHOWN);
}

}

Command selShowCommand()
{
    return {"sel show",
            "Show every field of one event, and its bytes",
            "recordkit sel show 0x97 --board 1; recordkit sel show --log 3",
            {number("ID", "ID", 0, 0xFFFF, "Record id; the newest event that has it").optional(),
             number("--log", "N", 0, 0xFFFF, "Log number, from 1 for the oldest event"), board(),
             strictFlag()},
            Answer::LISTING,
            run};
}

}
