// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_TOOL_SEL_LOGPROBLEMS_H
#define RECORDKIT_TOOL_SEL_LOGPROBLEMS_H

#include <string>
#include <vector>

#include <recordkit/inspect/log/BoardLog.h>

#include "../cli/Command.h"

namespace recordkit::tool {

using namespace inspect;

/// --strict: only what the store itself counts.
Option strictFlag();

/// What is wrong with the logs that a sub-command has read: a line on standard error for each
/// problem, with the number of events concerned and the command that repairs it.
class LogProblems {
public:
    /// What the sub-command does with the events that the store does not count.
    enum Events { SHOWN, HIDDEN };

    void add(unsigned int board, const std::vector<LogProblem>& found);
    /// Writes the lines of the problems added since the last call.
    void report(Events events);
    /// The same; throws Reported (data) if there was a problem at all.
    void finish(Events events);

private:
    struct Found {
        unsigned int board;
        LogProblem problem;
    };
    std::vector<Found> pending;
    bool isAny = false;
};

}

#endif
