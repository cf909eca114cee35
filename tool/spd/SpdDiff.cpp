// SPDX-License-Identifier: Apache-2.0
#include <recordkit/inspect/memory/Spd.h>
#include <recordkit/inspect/memory/SpdDifference.h>

#include "../Commands.h"
#include "../Files.h"
#include "../cli/Arguments.h"
#include "../print/Listing.h"
#include "../print/Problems.h"
#include "SpdFile.h"

namespace recordkit::tool {

namespace {

constexpr Column<SpdDifference> COLUMNS[] = {
    {"field", "FIELD", 20, [](const SpdDifference& d) { return Value(d.what); }},
    {"a", "A", 32, [](const SpdDifference& d) { return Value(d.first); }},
    {"b", "B", 0, [](const SpdDifference& d) { return Value(d.second); }},
};

void run(const Arguments& arguments)
{
    std::vector<Bytes> images;
    Problems problems;
    for (const char* const name : {"A", "B"}) {
        const std::string path = arguments.text(name);
        problems.run(inputName(path), [&] {
            const Bytes image = readSpdFile(path);
            const Spd spd = parseSpd(image);
            images.push_back(image);
            return spdProblems(spd);
        });
    }
    if (images.size() < 2) {
        problems.finish(); // there is nothing to compare with
    }
    const std::vector<SpdDifference> differences = compareSpdImages(images[0], images[1]);
    printListing(differences, COLUMNS, arguments.layout());
    problems.finish();
    if (!differences.empty()) {
        throw Reported(EXIT_DATA);
    }
}

}

Command spdDiffCommand()
{
    return {"spd diff",
            "List in what two memory modules differ; status 1 if they do",
            "recordkit spd diff dimm0.bin dimm1.bin",
            {argument("A", "SPD image, or a hex dump of one; - for standard input"),
             argument("B", "What it is compared with")},
            Answer::TABLE,
            run,
            "Everything that spd show knows of the modules is compared, by its keys in JSON; so is "
            "what is each module's own, such as the serial number. Data that say the same in other "
            "bytes differ in these bytes."};
}

}
