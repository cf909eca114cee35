// SPDX-License-Identifier: Apache-2.0
#include <fmt/format.h>

#include <recordkit/inspect/bytes/Numbers.h>
#include <recordkit/inspect/sensor/SdrCheck.h>

#include "../Commands.h"
#include "../Errors.h"
#include "../print/Listing.h"
#include "Repository.h"

namespace recordkit::tool {

namespace {

constexpr Column<SdrOddity> COLUMNS[] = {
    {"id", "ID", 5, [](const SdrOddity& o) { return Value(o.id); },
     [](const SdrOddity& o) { return Cell{fmt::format("{:04X}h", o.id)}; }},
    {"offset", "OFFSET", 6, [](const SdrOddity& o) { return Value(o.offset); }},
    {"name", "NAME", 16, [](const SdrOddity& o) { return Value(o.name); }},
    {"problem", "PROBLEM", 0, [](const SdrOddity& o) { return Value(o.text); }},
};

void run(const Arguments& arguments)
{
    const Repository repository = readRepository(arguments);
    const std::vector<SdrOddity> found = checkRepository(repository.file.records);
    printListing(found, COLUMNS, arguments.layout());
    if (!found.empty()) {
        complain(fmt::format("{}: {} in {}", repository.name, counted(found.size(), "problem"),
                             counted(repository.file.records.size(), "record")));
    }
    repository.problems.finish();
    if (!found.empty()) {
        throw Reported(EXIT_DATA);
    }
}

}

Command sdrCheckCommand()
{
    return {"sdr check",
            "Check what the records of a repository say together",
            "recordkit sdr check repository.sdr",
            repositoryOptions(),
            Answer::TABLE,
            run,
            "Record ids and sensors that occur twice, thresholds that do not rise, unspecified "
            "entities, types that the standard does not know, names that are cut off. The exit "
            "status is 1 if there is any. Damaged records are reported by every sub-command on "
            "repositories."};
}

}
