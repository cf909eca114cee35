// SPDX-License-Identifier: Apache-2.0
#include "EventSource.h"

#include <utility>

#include <recordkit/inspect/event/AssertedEvents.h>
#include <recordkit/inspect/log/Timeline.h>

#include "../Errors.h"
#include "SavedEvents.h"
#include "Store.h"

namespace recordkit::tool {

namespace {

/// The saved files; throws for options and roots that do not go with them.
std::vector<std::string> checkedFiles(const Arguments& arguments)
{
    if (!arguments.has("FILE")) {
        requireLogs();
    } else if (arguments.has("--strict")) {
        throw usageError("--strict is for the logs of boards, not for saved files");
    }
    return arguments.texts("FILE");
}

}

std::vector<Option> eventSourceOptions(const char* standard)
{
    std::vector<Option> all = {
        argument("FILE", "Saved events to read instead of a board's log: event files, or what "
                         "sel add takes; - for standard input")
            .optional()
            .many(),
        boards(standard), strictFlag()};
    const std::vector<Option> names = eventNameOptions();
    all.insert(all.end(), names.begin(), names.end());
    return all;
}

EventSource::EventSource(const Arguments& arguments)
    : files(checkedFiles(arguments)),
      shown(arguments.has("--strict") ? LogProblems::HIDDEN : LogProblems::SHOWN),
      names(arguments, files.empty() ? EventNames::BOARDS : EventNames::SAVED_FILES)
{
    if (files.empty()) {
        boards = arguments.boards();
    }
    for (const unsigned char board : boards) {
        logs.emplace_back(board, shown == LogProblems::HIDDEN);
    }
}

std::vector<Event> EventSource::take()
{
    std::vector<Event> events = files.empty() ? takeNew() : takeSaved();
    isFirst = false;
    names.name(events);
    markAsserted(events);
    return events;
}

std::vector<Event> EventSource::takeSaved()
{
    return isFirst ? readSavedEvents(files, fileProblems) : std::vector<Event>();
}

std::vector<Event> EventSource::takeNew()
{
    std::vector<std::vector<Event>> found;
    for (std::size_t i = 0; i < logs.size(); ++i) {
        std::vector<LogProblem> problems;
        found.push_back(logs[i].take(problems));
        if (isFirst) {
            logProblems.add(boards[i], problems);
        }
    }
    return mergeByTime(std::move(found));
}

void EventSource::report()
{
    logProblems.report(shown);
}

void EventSource::finish()
{
    report();
    fileProblems.finish(); // the only ones that can be worse than damaged data
    logProblems.finish(shown);
    names.finish();
}

}
