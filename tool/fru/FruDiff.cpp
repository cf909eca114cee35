// SPDX-License-Identifier: Apache-2.0
#include <recordkit/inspect/fru/FruDifference.h>

#include "../Commands.h"
#include "../Files.h"
#include "../cli/Arguments.h"
#include "../print/Listing.h"
#include "../print/Problems.h"

namespace recordkit::tool {

namespace {

Value valueOf(const std::optional<std::string>& value)
{
    return value ? Value(*value) : Value();
}

constexpr Column<FruDifference> COLUMNS[] = {
    {"field", "FIELD", 24, [](const FruDifference& d) { return Value(d.what); }},
    {"a", "A", 32, [](const FruDifference& d) { return valueOf(d.first); }},
    {"b", "B", 0, [](const FruDifference& d) { return valueOf(d.second); }},
};

void run(const Arguments& arguments)
{
    std::string contents[2];
    Problems problems;
    const char* const names[] = {"A", "B"};
    for (std::size_t i = 0; i < 2; ++i) {
        const std::string path = arguments.text(names[i]);
        contents[i] = readInput(path, FRU_LIMIT);
        problems.run(inputName(path), [&] { return parseFruImage(contents[i]).allProblems(); });
    }
    const std::vector<FruDifference> differences = compareFruImages(contents[0], contents[1]);
    printListing(differences, COLUMNS, arguments.layout());
    problems.finish();
    if (!differences.empty()) {
        throw Reported(EXIT_DATA);
    }
}

}

Command fruDiffCommand()
{
    return {"fru diff",
            "List in what two FRU images differ; status 1 if they do",
            "recordkit fru diff before.bin after.bin",
            {argument("A", "FRU image or kernel node; - for standard input"),
             argument("B", "What it is compared with")},
            Answer::TABLE,
            run,
            "Values are compared field by field, with their coding and bytes where the values are "
            "the same; the internal use area and multirecords as bytes. Images with the same "
            "contents in another layout differ in bytes."};
}

}
