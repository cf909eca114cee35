// SPDX-License-Identifier: Apache-2.0
#include <charconv>
#include <cstdlib>
#include <cstring>
#include <ctime>

#include <fmt/format.h>

#include <recordkit/inspect/bytes/Numbers.h>

#include "../Commands.h"
#include "../Files.h"
#include "../OutputFile.h"
#include "../Zone.h"
#include "../print/Json.h"
#include "../print/Output.h"
#include "ReportDocument.h"
#include "ReportPage.h"
#include "ReportSource.h"

namespace recordkit::tool {

namespace {

std::string titleOf(const Arguments& arguments, const Report& report)
{
    if (arguments.has("--title")) {
        return arguments.text("--title");
    }
    const std::size_t others = report.inputs.size() - 1;
    const std::string first = inputName(report.inputs.front().place.path);
    return fmt::format("Report on {}",
                       arguments.texts("PATH").size() > 1
                           ? fmt::format("{} and {}", first, counted(others, "other input"))
                           : first);
}

/// Now, or what pages that have to be reproducible have instead (SOURCE_DATE_EPOCH, as in the
/// Reproducible Builds project).
unsigned int timeOfReport()
{
    const char* const given = std::getenv("SOURCE_DATE_EPOCH");
    if (given == nullptr) {
        return static_cast<unsigned int>(std::time(nullptr));
    }
    unsigned int seconds = 0;
    const char* const end = given + std::strlen(given);
    const auto [rest, error] = std::from_chars(given, end, seconds);
    if (error != std::errc() || rest != end) {
        throw usageError("SOURCE_DATE_EPOCH: expected seconds since 1970");
    }
    return seconds;
}

void run(const Arguments& arguments)
{
    if (arguments.has("-o") == arguments.isJson()) {
        throw usageError("expected -o FILE for the page, or --json for its document");
    }
    const unsigned int now = timeOfReport();
    chooseUtc();
    ReportSource source(arguments);
    const Report& report = source.getReport();
    const ReportHead head = {titleOf(arguments, report), now, source.chosen()};
    const Value document = reportDocument(report, head);
    if (arguments.isJson()) {
        print(jsonText(document) + "\n");
    } else if (report.events.size() > MOST_EVENTS_OF_PAGE) {
        throw dataError(fmt::format("{}, a page shows at most {}; --since chooses fewer",
                                    counted(report.events.size(), "event"), MOST_EVENTS_OF_PAGE));
    } else {
        writeOutput(arguments.text("-o"), reportPage(document));
        const ReportVerdict verdict = judge(report, now);
        print(fmt::format("{}: {}: {}\n", inputName(arguments.text("-o")), verdict.level,
                          verdict.text));
    }
    source.finish();
}

std::vector<Option> options()
{
    std::vector<Option> all = reportSourceOptions();
    all.push_back(text("-o", "FILE", "File for the page, which is replaced"));
    all.push_back(text("--title", "TEXT", "Heading of the page"));
    return all;
}

}

Command reportCommand()
{
    return {"report",
            "Show everything saved from a board as one page for a browser",
            "recordkit report examples/board -o report.html",
            options(),
            Answer::OBJECT,
            run,
            "The page is one file without any connection to a network: verdict, timeline, events, "
            "what failed most, inventory, sensors, stores. Files are recognised by their content, "
            "records of boards by their names, which begin with the class: SBBoardInfo.sb0.bin. "
            "What cannot be read or recognised is reported and listed on the page; the status is "
            "then 1 or 3. Times on it are in UTC; --tz is for those of --since and --until. "
            "SOURCE_DATE_EPOCH replaces the time at which the page was made. --json "
            "prints the document of the page, which docs/report.schema.json "
            "defines."};
}

}
