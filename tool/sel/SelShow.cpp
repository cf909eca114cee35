// SPDX-License-Identifier: Apache-2.0
#include <algorithm>

#include <fmt/format.h>

#include <recordkit/inspect/bytes/Numbers.h>
#include <recordkit/inspect/bytes/Text.h>

#include "../Commands.h"
#include "../Errors.h"
#include "../cli/Arguments.h"
#include "../print/Output.h"
#include "../print/Problems.h"
#include "EventColumns.h"
#include "EventNames.h"
#include "EventText.h"
#include "LogProblems.h"
#include "SavedEvents.h"
#include "Store.h"

namespace recordkit::tool {

namespace {

/// Selects one event: by record id or by log number.
class Wanted {
public:
    explicit Wanted(const Arguments& arguments)
        : files(arguments.texts("ID")), log(arguments.find("--log"))
    {
        if (files.empty() != log.has_value()) {
            throw usageError("expected a record id or --log N");
        }
        if (!files.empty()) {
            id = readId(files.back());
            files.pop_back();
        }
    }
    bool matches(const LogSlot& slot) const
    {
        return log ? *log != 0 && slot.logNumber == *log : SELFileLayout::idOf(slot.image) == id;
    }
    bool matches(const Event& event) const { return event.recordId == id; }
    std::string text() const
    {
        return log ? fmt::format("log number {}", *log) : fmt::format("record id {:04X}h", id);
    }
    /// Saved files to search instead of a board's log.
    const std::vector<std::string>& getFiles() const { return files; }

private:
    static unsigned long readId(const std::string& text)
    {
        constexpr unsigned long LAST_ID = 0xFFFF;
        return orThrow(parseNumber(text, LAST_ID),
                       usageError(fmt::format("ID: invalid value \"{}\" (expected 0 to {})",
                                              printable(text), LAST_ID)));
    }

    std::vector<std::string> files;
    std::optional<unsigned long> log;
    unsigned long id = 0;
};

/// The newest event that is wanted; throws CommandError (data) if there is none.
Event findInLog(const Arguments& arguments, const Wanted& wanted, LogProblems& problems)
{
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

Event findInFiles(const Wanted& wanted, Problems& problems)
{
    const std::vector<Event> events = readSavedEvents(wanted.getFiles(), problems);
    const auto found = std::find_if(events.rbegin(), events.rend(),
                                    [&](const Event& event) { return wanted.matches(event); });
    if (found == events.rend()) {
        problems.finish();
        throw dataError("no file has an event with " + wanted.text());
    }
    return *found;
}

void show(const Arguments& arguments, const EventNames& names, const Event& found)
{
    std::vector<Event> events = {found};
    names.name(events);
    if (arguments.format() == Format::TABLE) {
        print(describeEvent(events[0]));
        return;
    }
    EventListing listing(arguments.layout(), print, {names.hasSensors(), false});
    listing.add(events[0]);
    listing.finish();
}

void run(const Arguments& arguments)
{
    const Wanted wanted(arguments);
    if (!wanted.getFiles().empty()) {
        const EventNames names(arguments, EventNames::SAVED_FILES);
        Problems problems;
        show(arguments, names, findInFiles(wanted, problems));
        problems.finish();
        names.finish();
        return;
    }
    requireLogs();
    const EventNames names(arguments, EventNames::BOARDS);
    LogProblems problems;
    show(arguments, names, findInLog(arguments, wanted, problems));
    problems.finish(arguments.has("--strict") ? LogProblems::HIDDEN : LogProblems::SHOWN);
    names.finish();
}

std::vector<Option> options()
{
    std::vector<Option> all = {
        argument("ID", "Record id; the newest event that has it. Files before it are saved events "
                       "to search instead of a board's log")
            .optional()
            .many(),
        number("--log", "N", 0, 0xFFFF, "Log number, from 1 for the oldest event"), board(),
        strictFlag()};
    const std::vector<Option> names = eventNameOptions();
    all.insert(all.end(), names.begin(), names.end());
    return all;
}

}

Command selShowCommand()
{
    return {"sel show",
            "Show every field of one event, and its bytes",
            "recordkit sel show 0x97 --board 1; recordkit sel show events.raw 0x97",
            options(),
            Answer::LISTING,
            run};
}

}
