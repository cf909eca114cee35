// SPDX-License-Identifier: Apache-2.0
#include <cstdio>
#include <memory>
#include <set>

#include <recordkit/inspect/log/NewEvents.h>

#include "../Commands.h"
#include "../print/Problems.h"
#include "EventColumns.h"
#include "EventFilter.h"
#include "WriteWatch.h"

namespace recordkit::tool {

namespace {

/// Events of all boards that pass the filter and are new since the last call.
class NewChosenEvents {
public:
    explicit NewChosenEvents(const Arguments& arguments) : filter(arguments)
    {
        for (const unsigned char board : arguments.boards()) {
            sources.emplace_back(board);
        }
    }

    std::vector<Event> take()
    {
        std::vector<Event> chosen;
        for (NewEvents& source : sources) {
            std::vector<std::string> found;
            for (Event& event : source.take(found)) {
                if (filter.accepts(event)) {
                    chosen.push_back(std::move(event));
                }
            }
            problems.insert(found.begin(), found.end());
        }
        return chosen;
    }

    /// Problems of the files read so far, each once.
    const std::set<std::string>& getProblems() const { return problems; }

private:
    EventFilter filter;
    std::vector<NewEvents> sources;
    std::set<std::string> problems;
};

void add(const std::vector<Event>& events, std::size_t from, EventListing& listing)
{
    for (std::size_t i = from; i < events.size(); ++i) {
        listing.add(events[i]);
    }
    listing.flush();
    std::fflush(stdout);
}

void run(const Arguments& arguments)
{
    if (arguments.has("--follow") && arguments.isJson()) {
        throw usageError(
            "--follow never ends, so a JSON array could never be closed; use --ndjson");
    }
    EventListing listing(arguments.format());
    // Start watching before the first read, so that no event is missed in between.
    const std::unique_ptr<WriteWatch> watch =
        arguments.has("--follow") ? std::make_unique<WriteWatch>(arguments.boards()) : nullptr;
    NewChosenEvents source(arguments);
    const std::vector<Event> events = source.take();
    const std::size_t last = arguments.find("--last").value_or(events.size());
    add(events, last < events.size() ? events.size() - last : 0, listing);
    while (watch != nullptr) {
        watch->wait();
        add(source.take(), 0, listing);
    }
    listing.finish();
    Problems problems;
    for (const std::string& problem : source.getProblems()) {
        problems.add("", problem);
    }
    problems.finish();
}

std::vector<Option> options()
{
    std::vector<Option> all = eventFilterOptions();
    all.insert(all.begin(), boards("0"));
    constexpr unsigned long MANY = 0xFFFFFFFF;
    all.push_back(number("--last", "N", 1, MANY, "Only the newest N of the selected events"));
    all.push_back(flag("--follow", "Keep running and print new events as they arrive"));
    return all;
}

}

Command selListCommand()
{
    return {"sel list",
            "List the events of a board, oldest first",
            "recordkit sel list --board all --severity warning --since 2024-11-05",
            options(),
            Answer::LISTING,
            run,
            "Severities are, from harmless to fatal, informational, monitor, warning, critical and "
            "non-recoverable. A deassertion has the severity of what went away. --follow also "
            "follows rotations, until it is interrupted. The fields of JSON and CSV are those of "
            "recordkit(1), FIELDS."};
}

}
