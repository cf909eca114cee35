// SPDX-License-Identifier: Apache-2.0
#include "InPlace.h"

#include <fmt/format.h>
#include <vector>

#include "Errors.h"

namespace recordkit::tool {

namespace {

/// Bytes that are written at once.
struct Run {
    std::size_t first;
    std::size_t end;
};

std::vector<Run> differentRuns(const std::string& before, const std::string& after,
                               std::size_t page)
{
    std::vector<Run> runs;
    for (std::size_t at = 0; at < after.size(); ++at) {
        if (before[at] == after[at]) {
            continue;
        }
        const bool continues = !runs.empty() && (page == 0 ? runs.back().end == at
                                                           : runs.back().first / page == at / page);
        if (continues) {
            runs.back().end = at + 1;
        } else {
            runs.push_back({at, at + 1});
        }
    }
    return runs;
}

void writeRun(InPlaceTarget& target, const std::string& content, const Run& run)
{
    for (std::size_t at = run.first; at < run.end;) {
        at += target.write(at, content.data() + at, run.end - at);
    }
}

void requireRun(InPlaceTarget& target, const std::string& content, const Run& run)
{
    if (!target.has(run.first, content.substr(run.first, run.end - run.first))) {
        throw fileError(
            fmt::format("bytes {} to {} do not read back as written", run.first, run.end - 1));
    }
}

/// What is to be said of an attempt to write the old bytes of some runs back, the last first.
std::string restore(InPlaceTarget& target, const std::string& before, const std::vector<Run>& runs)
{
    std::string lost;
    for (auto run = runs.rbegin(); run != runs.rend(); ++run) {
        try {
            writeRun(target, before, *run);
            target.synchronise();
            requireRun(target, before, *run);
        } catch (const CommandError&) {
            lost += fmt::format("{}{} to {}", lost.empty() ? "" : ", ", run->first, run->end - 1);
        }
    }
    return lost.empty() ? "every byte is again what it was before"
                        : fmt::format("bytes {} could not be written back as they were", lost);
}

}

void writeInPlace(InPlaceTarget& target, const std::string& before, const std::string& after,
                  std::size_t page)
{
    const std::vector<Run> runs = differentRuns(before, after, page);
    std::vector<Run> written;
    try {
        for (const Run& run : runs) {
            written.push_back(run);
            writeRun(target, after, run);
            if (page != 0) {
                target.synchronise();
                requireRun(target, after, run);
            }
        }
        target.synchronise();
        for (const Run& run : runs) {
            requireRun(target, after, run);
        }
    } catch (const CommandError& e) {
        throw CommandError(e.getStatus(),
                           fmt::format("{}; {}", e.what(), restore(target, before, written)));
    }
}

}
