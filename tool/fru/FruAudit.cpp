// SPDX-License-Identifier: Apache-2.0
#include <recordkit/inspect/fru/FruAudit.h>

#include <ctime>
#include <utility>

#include <recordkit/inspect/bytes/Numbers.h>

#include "../Commands.h"
#include "../Files.h"
#include "../print/Listing.h"
#include "../print/Problems.h"
#include "FruOptions.h"

namespace recordkit::tool {

namespace {

/// A finding, and the name of its file.
struct Found {
    std::string file;
    FruFinding finding;
};

constexpr Column<Found> COLUMNS[] = {
    {"file", "FILE", 32, [](const Found& f) { return Value(f.file); }},
    {"field", "FIELD", 20, [](const Found& f) { return textOrNull(f.finding.field); }},
    {"finding", "FINDING", 0, [](const Found& f) { return Value(f.finding.text); }},
};

void run(const Arguments& arguments)
{
    std::vector<std::string> names;
    std::vector<FruImage> images;
    Problems problems;
    for (const std::string& path : arguments.texts("FILE")) {
        problems.run(inputName(path), [&] {
            const FruImage image = parseFruImage(readInput(path, FRU_LIMIT));
            if (!image.isFru) {
                return image.allProblems();
            }
            // What is damaged in an image is a finding.
            images.push_back(image);
            names.push_back(inputName(path));
            return std::vector<std::string>();
        });
    }
    std::vector<Found> all;
    for (FruFinding& finding :
         auditFruImages(images, static_cast<unsigned int>(std::time(nullptr)))) {
        const std::string name = names[finding.image];
        all.push_back({name, std::move(finding)});
    }
    printListing(all, COLUMNS, arguments.layout());
    problems.finish();
    if (!all.empty()) {
        throw dataError(counted(all.size(), "finding") + " in " + counted(images.size(), "image"));
    }
}

}

Command fruAuditCommand()
{
    return {
        "fru audit",
        "Find what is odd among the FRU images of a fleet; status 1 if anything is",
        "recordkit fru audit fleet/*.bin",
        {fruFile().many()},
        Answer::TABLE,
        run,
        "Damage; serial numbers that are blank, placeholders or in several images of the same "
        "part; dates in the future; and fields in which an image differs from more than half of "
        "the images of the same product. Serial numbers, dates, asset tags and "
        "custom fields may differ."};
}

}
