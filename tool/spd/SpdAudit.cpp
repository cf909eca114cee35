// SPDX-License-Identifier: Apache-2.0
#include <recordkit/inspect/memory/SpdAudit.h>

#include <ctime>
#include <utility>

#include <recordkit/inspect/bytes/Numbers.h>

#include "../Commands.h"
#include "../Files.h"
#include "../cli/Arguments.h"
#include "../print/Listing.h"
#include "../print/Problems.h"
#include "SpdFile.h"

namespace recordkit::tool {

namespace {

/// A finding, and the name of its file.
struct Found {
    std::string file;
    SpdFinding finding;
};

constexpr Column<Found> COLUMNS[] = {
    {"file", "FILE", 32, [](const Found& f) { return Value(f.file); }},
    {"severity", "SEVERITY", 8,
     [](const Found& f) { return Value(f.finding.isError ? "error" : "warning"); }},
    {"field", "FIELD", 16, [](const Found& f) { return textOrNull(f.finding.field); }},
    {"finding", "FINDING", 0, [](const Found& f) { return Value(f.finding.text); }},
};

void run(const Arguments& arguments)
{
    std::vector<std::string> names;
    std::vector<Spd> modules;
    Problems problems;
    for (const std::string& path : arguments.texts("FILE")) {
        problems.run(inputName(path), [&] {
            // What is damaged in an image is a finding.
            modules.push_back(parseSpd(readSpdFile(path)));
            names.push_back(inputName(path));
            return std::vector<std::string>();
        });
    }
    std::vector<Found> all;
    for (SpdFinding& finding :
         auditSpdModules(modules, static_cast<unsigned int>(std::time(nullptr)))) {
        const std::string name = names[finding.module];
        all.push_back({name, std::move(finding)});
    }
    printListing(all, COLUMNS, arguments.layout());
    problems.finish();
    if (!all.empty()) {
        throw dataError(counted(all.size(), "finding") + " in " +
                        counted(modules.size(), "module"));
    }
}

}

Command spdAuditCommand()
{
    return {
        "spd audit",
        "Find what is odd among the memory modules of a board; status 1 if anything is",
        "recordkit spd audit dimm*.bin",
        {argument("FILE", "SPD image, or a hex dump of one; - for standard input").many()},
        Answer::TABLE,
        run,
        "Errors: damaged data, and modules whose type of memory or of module is not that of most. "
        "Warnings: another speed, voltage, capacity, number of ranks or width than most modules of "
        "the same type of memory; serial numbers that are blank or in several modules of a maker; "
        "dates in the future, or that are none. Where no value is that of most modules, the first "
        "one is taken for it."};
}

}
