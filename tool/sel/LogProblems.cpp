// SPDX-License-Identifier: Apache-2.0
#include "LogProblems.h"

#include <fmt/format.h>

#include <recordkit/inspect/bytes/Numbers.h>

#include "../Errors.h"
#include "../print/Output.h"

namespace recordkit::tool {

Option strictFlag()
{
    return flag("--strict", "Only the events that the store itself counts");
}

void LogProblems::add(unsigned int board, const std::vector<LogProblem>& found)
{
    for (const LogProblem& problem : found) {
        pending.push_back({board, problem});
    }
    isAny = isAny || !found.empty();
}

void LogProblems::report(Events events)
{
    for (const Found& found : pending) {
        const std::size_t count = found.problem.events;
        const std::string concerned =
            count == 0
                ? ""
                : fmt::format("; {} that the store does not count {} {}", counted(count, "event"),
                              count == 1 ? "is" : "are", events == SHOWN ? "shown" : "not shown");
        const std::string remedy = found.problem.isUninitialised
                                       ? "init"
                                       : fmt::format("check --recover --board {}", found.board);
        complain(fmt::format("{}: {}{}; run \"recordkit sel {}\"", found.problem.path,
                             found.problem.text, concerned, remedy));
    }
    pending.clear();
}

void LogProblems::finish(Events events)
{
    report(events);
    if (isAny) {
        throw Reported(EXIT_DATA);
    }
}

}
