// SPDX-License-Identifier: Apache-2.0
#include <cstdio>
#include <memory>
#include <set>

#include <recordkit/inspect/log/NewEvents.h>

#include "../Commands.h"
#include "../Errors.h"
#include "EventFilter.h"
#include "EventPrinter.h"
#include "WriteWatch.h"

namespace recordkit::tool {

namespace {

struct Options {
    BoardsOption boards;
    EventFilter filter;
    std::size_t last = 0;
    bool isJson = false;
    bool isNdjson = false;
    bool isCsv = false;
    bool follows = false;
};

EventFormat formatOf(const Options& options)
{
    if (options.isJson) {
        return EventFormat::JSON;
    }
    if (options.isNdjson) {
        return EventFormat::NDJSON;
    }
    return options.isCsv ? EventFormat::CSV : EventFormat::TABLE;
}

void write(const std::string& text)
{
    std::fwrite(text.data(), 1, text.size(), stdout);
}

/// Events of all boards that pass the filter and are new since the last call.
class Listing {
public:
    Listing(const std::vector<unsigned char>& boards, const EventFilter& eventFilter)
        : filter(eventFilter)
    {
        for (const unsigned char board : boards) {
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
    const EventFilter& filter;
    std::vector<NewEvents> sources;
    std::set<std::string> problems;
};

void print(const std::vector<Event>& events, std::size_t from, EventPrinter& printer)
{
    std::string piece;
    for (std::size_t i = from; i < events.size(); ++i) {
        printer.append(events[i], piece);
        constexpr std::size_t LARGE = 65536;
        if (piece.size() >= LARGE) {
            write(piece);
            piece.clear();
        }
    }
    write(piece);
    std::fflush(stdout);
}

[[noreturn]] void follow(Listing& listing, const WriteWatch& watch, EventPrinter& printer)
{
    for (;;) {
        watch.wait();
        print(listing.take(), 0, printer);
    }
}

void list(Options& options, const Globals& globals)
{
    options.filter.prepare();
    const std::vector<unsigned char> boards = options.boards.get(globals);
    // Start watching before the first read, so that no event is missed in between.
    const std::unique_ptr<WriteWatch> watch =
        options.follows ? std::make_unique<WriteWatch>(boards) : nullptr;
    const std::unique_ptr<EventPrinter> printer =
        makeEventPrinter(formatOf(options), globals.wantsColour());

    Listing listing(boards, options.filter);
    const std::vector<Event> events = listing.take();
    const std::size_t from =
        options.last != 0 && options.last < events.size() ? events.size() - options.last : 0;
    write(printer->begin());
    print(events, from, *printer);
    if (watch != nullptr) {
        follow(listing, *watch, *printer);
    }
    write(printer->end());

    std::string problems;
    for (const std::string& problem : listing.getProblems()) {
        problems += (problems.empty() ? "" : "\nrecordkit: ") + problem;
    }
    if (!problems.empty()) {
        throw dataError(problems);
    }
}

}

void addSelList(CLI::App& sel, Globals& globals)
{
    const auto options = std::make_shared<Options>();
    CLI::App* const command =
        addCommand(sel, "list", "List the events of a board, oldest first",
                   "recordkit sel list --board all --severity warning --since 2024-11-05");
    options->boards.addTo(*command, "0");
    options->filter.addTo(*command);
    command->add_option("--last", options->last, "Only the newest N of them")
        ->check(CLI::PositiveNumber)
        ->type_name("N");
    CLI::Option_group* const formats =
        command->add_option_group("Output", "one of these instead of a table");
    formats->add_flag("--json", options->isJson, "One JSON array");
    formats->add_flag("--ndjson", options->isNdjson, "One JSON object a line");
    formats->add_flag("--csv", options->isCsv, "CSV with a line of names");
    formats->require_option(0, 1);
    command->add_flag("--follow", options->follows, "Go on with events as they are stored");
    command->callback([options, &globals] {
        if (options->follows && options->isJson) {
            throw usageError("--follow never ends, and so a JSON array would not: use --ndjson");
        }
        list(*options, globals);
    });
}

}
