// SPDX-License-Identifier: Apache-2.0
#include <cstdio>
#include <memory>
#include <utility>

#include <fmt/format.h>

#include <recordkit/inspect/bytes/Numbers.h>
#include <recordkit/inspect/log/NewEvents.h>
#include <recordkit/inspect/log/Timeline.h>

#include "../Commands.h"
#include "../print/Output.h"
#include "../print/Problems.h"
#include "EventColumns.h"
#include "EventFilter.h"
#include "EventSensors.h"
#include "LogProblems.h"
#include "SavedEvents.h"
#include "WriteWatch.h"
#include "Store.h"

namespace recordkit::tool {

namespace {

/// Events of all boards that are new since the last call, merged by time.
class NewBoardEvents {
public:
    NewBoardEvents(const Arguments& arguments, const EventSensors& names)
        : boards(arguments.boards()), sensors(names)
    {
        for (const unsigned char board : boards) {
            sources.emplace_back(board, arguments.has("--strict"));
        }
    }

    /// The problems are those of the logs that were read.
    std::vector<Event> take(LogProblems& problems)
    {
        std::vector<std::vector<Event>> logs;
        for (std::size_t i = 0; i < sources.size(); ++i) {
            std::vector<LogProblem> found;
            logs.push_back(sources[i].take(found));
            sensors.name(logs.back());
            problems.add(boards[i], found);
        }
        return mergeByTime(std::move(logs));
    }

private:
    std::vector<unsigned char> boards;
    const EventSensors& sensors;
    std::vector<NewEvents> sources;
};

void reportUndated(const EventFilter& filter)
{
    if (filter.getUndated() != 0) {
        complain(fmt::format("{} without a date {} not shown: --since and --until cannot place {}",
                             counted(filter.getUndated(), "event"),
                             filter.getUndated() == 1 ? "is" : "are",
                             filter.getUndated() == 1 ? "it" : "them"));
    }
}

void add(const std::vector<Event>& events, std::size_t from, EventListing& listing)
{
    for (std::size_t i = from; i < events.size(); ++i) {
        listing.add(events[i]);
    }
    listing.flush();
    std::fflush(stdout);
}

/// The last N of the events, if --last is given.
void addLast(const Arguments& arguments, const std::vector<Event>& events, EventListing& listing)
{
    const std::size_t last = arguments.find("--last").value_or(events.size());
    add(events, last < events.size() ? events.size() - last : 0, listing);
}

void listSaved(const Arguments& arguments, const EventSensors& sensors, EventListing& listing)
{
    EventFilter filter(arguments);
    Problems problems;
    std::vector<Event> events = readSavedEvents(arguments.texts("FILE"), problems);
    sensors.name(events);
    addLast(arguments, filter.choose(std::move(events)), listing);
    listing.finish();
    reportUndated(filter);
    problems.finish();
}

void listBoards(const Arguments& arguments, const EventSensors& sensors, EventListing& listing)
{
    // Start watching before the first read, so that no event is missed in between.
    const std::unique_ptr<WriteWatch> watch =
        arguments.has("--follow") ? std::make_unique<WriteWatch>(arguments.boards()) : nullptr;
    const auto shown = arguments.has("--strict") ? LogProblems::HIDDEN : LogProblems::SHOWN;
    EventFilter filter(arguments);
    NewBoardEvents source(arguments, sensors);
    LogProblems problems;
    addLast(arguments, filter.choose(source.take(problems)), listing);
    while (watch != nullptr) {
        // What is wrong is reported once; a rotation in progress looks wrong for a moment.
        problems.report(shown);
        watch->wait();
        LogProblems later;
        add(filter.choose(source.take(later)), 0, listing);
    }
    listing.finish();
    reportUndated(filter);
    problems.finish(shown);
}

void run(const Arguments& arguments)
{
    const bool isSaved = arguments.has("FILE");
    if (arguments.has("--follow") && arguments.isJson()) {
        throw usageError(
            "--follow never ends, so a JSON array could never be closed; use --ndjson");
    }
    if (isSaved && (arguments.has("--follow") || arguments.has("--strict"))) {
        throw usageError("--follow and --strict are for the logs of boards, not for saved files");
    }
    if (!isSaved) {
        requireLogs();
    }
    const EventSensors sensors(arguments,
                               isSaved ? EventSensors::SAVED_FILES : EventSensors::BOARDS);
    if (!sensors.areKnown() && EventFilter(arguments).needsSensors()) {
        throw usageError("names of sensors and entities are in sensor data records; give them "
                         "with --sdr");
    }
    EventListing listing(arguments.layout(), print, sensors.areKnown());
    if (isSaved) {
        listSaved(arguments, sensors, listing);
    } else {
        listBoards(arguments, sensors, listing);
    }
    sensors.finish();
}

std::vector<Option> options()
{
    std::vector<Option> all = eventFilterOptions();
    all.insert(all.begin(), boards("0"));
    all.insert(all.begin(), argument("FILE", "Saved events to list instead of a board's log: event "
                                             "files, or what sel add takes; - for standard input")
                                .optional()
                                .many());
    constexpr unsigned long MANY = 0xFFFFFFFF;
    all.push_back(number("--last", "N", 1, MANY, "Only the newest N of the selected events"));
    all.push_back(sdrOption());
    all.push_back(strictFlag());
    all.push_back(flag("--follow", "Keep running and print new events as they arrive"));
    return all;
}

}

Command selListCommand()
{
    return {
        "sel list",
        "List the events of a board, or of all boards by time, oldest first",
        "recordkit sel list --board all --severity warning --since 2024-11-05",
        options(),
        Answer::TABLE,
        run,
        "Severities are, from harmless to fatal, informational, monitor, warning, critical and "
        "non-recoverable. A deassertion has the severity of what went away. --follow also "
        "follows rotations, until it is interrupted. --board all merges the logs by time; an event "
        "without "
        "a date stays after the one before it in its log. Every event in the files is listed once, "
        "also after a gap in the chain, in damaged files and in the backup that a rotation left; "
        "a line on standard error says what is wrong, and the status is 1. With --sdr, sensors "
        "have names, and events of thresholds the reading and the threshold in units. The fields "
        "of "
        "JSON and "
        "CSV are those of "
        "recordkit(1), FIELDS."};
}

}
