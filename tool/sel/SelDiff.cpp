// SPDX-License-Identifier: Apache-2.0
#include <filesystem>
#include <utility>

#include <fmt/format.h>

#include <recordkit/host/HostRoot.h>
#include <recordkit/host/Machine.h>
#include <recordkit/inspect/bytes/Numbers.h>
#include <recordkit/inspect/event/AssertedEvents.h>
#include <recordkit/inspect/event/EventDifference.h>
#include <recordkit/inspect/log/NewEvents.h>
#include <recordkit/inspect/log/Timeline.h>

#include "../Commands.h"
#include "../Files.h"
#include "../cli/Globals.h"
#include "../print/Problems.h"
#include "EventColumns.h"
#include "EventFilter.h"
#include "EventNames.h"
#include "LogProblems.h"
#include "SavedEvents.h"
#include "Store.h"

namespace recordkit::tool {

namespace {

/// One of the two logs, or sets of logs, that are compared.
struct Side {
    std::string name;
    std::vector<Event> events;
    enum { BOARD, ROOT, FILE } kind = FILE;
};

/// Reads the sides, and reports what is wrong with them.
class SideReader {
public:
    explicit SideReader(const Arguments& arguments) : boards(arguments.boards()) {}

    /// Throws CommandError for a board that does not exist, and for a root without event logs.
    Side read(const std::string& word)
    {
        const auto last = static_cast<unsigned long>(TAVLib::host::machine().systemBoards - 1);
        if (const auto board = parseNumber(word, last)) {
            requireLogs();
            return {"board " + std::to_string(*board),
                    readLogs({static_cast<unsigned char>(*board)}), Side::BOARD};
        }
        std::error_code ignored;
        if (word != "-" && std::filesystem::is_directory(word, ignored)) {
            return {inputName(word), readRoot(word), Side::ROOT};
        }
        return {inputName(word), readSavedEvents({word}, fileProblems), Side::FILE};
    }

    /// Throws Reported if anything was wrong.
    void finish()
    {
        fileProblems.finish();
        logProblems.finish(LogProblems::SHOWN);
    }

private:
    std::vector<Event> readRoot(const std::string& folder)
    {
        const std::string before = TAVLib::host::givenSystemRoot();
        chooseRoot(folder);
        requireLogs();
        std::vector<Event> events = readLogs(boards);
        chooseRoot(before);
        return events;
    }
    std::vector<Event> readLogs(const std::vector<unsigned char>& wanted)
    {
        std::vector<std::vector<Event>> logs;
        for (const unsigned char board : wanted) {
            std::vector<LogProblem> problems;
            logs.push_back(NewEvents(board).take(problems));
            logProblems.add(board, problems);
        }
        // While the root has the name by which it was given.
        logProblems.report(LogProblems::SHOWN);
        return mergeByTime(std::move(logs));
    }

    std::vector<unsigned char> boards;
    LogProblems logProblems;
    Problems fileProblems;
};

std::vector<Event> chosen(const Side& side, const std::vector<std::size_t>& numbers)
{
    std::vector<Event> events;
    for (const std::size_t number : numbers) {
        events.push_back(side.events[number]);
        events.back().onlyIn = side.name;
    }
    return events;
}

void run(const Arguments& arguments)
{
    SideReader reader(arguments);
    Side sides[] = {reader.read(arguments.text("A")), reader.read(arguments.text("B"))};
    const auto is = [&sides](int kind) { return sides[0].kind == kind || sides[1].kind == kind; };
    const EventNames names(arguments,
                           is(Side::FILE) ? EventNames::SAVED_FILES : EventNames::BOARDS);
    EventFilter filter(arguments, names.hasSensors());
    for (Side& side : sides) {
        names.name(side.events);
        markAsserted(side.events);
        side.events = filter.choose(std::move(side.events));
    }
    const EventDifference difference =
        compareEvents(sides[0].events, sides[1].events,
                      sides[0].kind == Side::ROOT && sides[1].kind == Side::ROOT);
    const std::vector<Event> events = mergeByTime(
        {chosen(sides[0], difference.onlyInFirst), chosen(sides[1], difference.onlyInSecond)});
    EventListing listing(arguments.layout(), print, {names.hasSensors(), true});
    for (const Event& event : events) {
        listing.add(event);
    }
    listing.finish();
    filter.report();
    reader.finish();
    names.finish();
    if (!events.empty()) {
        throw Reported(EXIT_DATA);
    }
}

std::vector<Option> options()
{
    std::vector<Option> all = {
        argument("A", "A saved file (- for standard input), a folder, which is taken as a root, or "
                      "the number of a board"),
        argument("B", "What it is compared with"), boards("all")};
    for (const auto& more : {eventNameOptions(), eventFilterOptions()}) {
        all.insert(all.end(), more.begin(), more.end());
    }
    return all;
}

}

Command selDiffCommand()
{
    return {"sel diff",
            "List the events that only one of two logs has; status 1 if there are any",
            "recordkit sel diff saved/monday saved/tuesday --severity warning",
            options(),
            Answer::TABLE,
            run,
            "The same event may have another record id in each log, and no part number, serial "
            "number and partitions in a saved file that has only 16 bytes a record. Events of two "
            "roots are compared board by board; --board chooses the boards of roots. A file whose "
            "name is a number is ./0."};
}

}
