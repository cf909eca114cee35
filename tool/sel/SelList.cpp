// SPDX-License-Identifier: Apache-2.0
#include <cstdio>
#include <memory>

#include "../Commands.h"
#include "../print/Output.h"
#include "EventColumns.h"
#include "EventFilter.h"
#include "EventSource.h"
#include "WriteWatch.h"

namespace recordkit::tool {

namespace {

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

void run(const Arguments& arguments)
{
    const bool isFollowing = arguments.has("--follow");
    if (isFollowing && arguments.isJson()) {
        throw usageError(
            "--follow never ends, so a JSON array could never be closed; use --ndjson");
    }
    if (isFollowing && arguments.has("FILE")) {
        throw usageError("--follow is for the logs of boards, not for saved files");
    }
    EventSource source(arguments);
    EventFilter filter(arguments, source.hasSensors());
    EventListing listing(arguments.layout(), print, {source.hasSensors(), false});
    // Start watching before the first read, so that no event is missed in between.
    const std::unique_ptr<WriteWatch> watch =
        isFollowing ? std::make_unique<WriteWatch>(arguments.boards()) : nullptr;
    addLast(arguments, filter.choose(source.take()), listing);
    while (watch != nullptr) {
        source.report();
        watch->wait();
        add(filter.choose(source.take()), 0, listing);
    }
    listing.finish();
    filter.report();
    source.finish();
}

std::vector<Option> options()
{
    std::vector<Option> all = eventSourceOptions("0");
    const std::vector<Option> filters = eventFilterOptions();
    all.insert(all.end(), filters.begin(), filters.end());
    constexpr unsigned long MANY = 0xFFFFFFFF;
    all.push_back(number("--last", "N", 1, MANY, "Only the newest N of the selected events"));
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
        "without a date stays after the one before it in its log. Every event in the files is "
        "listed once, "
        "also after a gap in the chain, in damaged files and in the backup that a rotation left; "
        "a line on standard error says what is wrong, and the status is 1. With --sdr, sensors "
        "have names, and events of thresholds the reading and the threshold in units. "
        "--still-asserted leaves out what a later deassertion, a state that excludes it or the "
        "clearing of the log has ended. The fields of JSON and CSV are those of recordkit(1), "
        "FIELDS."};
}

}
