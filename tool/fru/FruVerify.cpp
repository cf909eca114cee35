// SPDX-License-Identifier: Apache-2.0
#include <fmt/format.h>
#include <fmt/ranges.h>

#include "../Commands.h"
#include "../Files.h"
#include "../print/Listing.h"
#include "../print/Output.h"
#include "../print/Problems.h"
#include "FruOptions.h"
#include "FruValues.h"

namespace recordkit::tool {

namespace {

struct Verdict {
    std::string path;
    std::vector<std::string> problems;
    std::vector<std::string> notes;
};

constexpr Column<Verdict> COLUMNS[] = {
    {nullptr, "STATE", 7, nullptr,
     [](const Verdict& v) { return checkCell(v.problems.empty(), "good", "damaged"); }},
    {"file", "FILE", 0, [](const Verdict& v) { return Value(inputName(v.path)); }},
    {"file_bytes", nullptr, 0, [](const Verdict& v) { return textOrNull(inputNameBytes(v.path)); }},
    {"good", nullptr, 0, [](const Verdict& v) { return Value(v.problems.empty()); }},
    {"problems", nullptr, 0, [](const Verdict& v) { return Value(v.problems); }},
    {"notes", nullptr, 0, [](const Verdict& v) { return Value(v.notes); }},
};

void run(const Arguments& arguments)
{
    const Layout layout = arguments.layout();
    Listing<Verdict> listing(COLUMNS, layout);
    Problems problems;
    std::string notes;
    for (const std::string& file : arguments.texts("FILE")) {
        problems.run(inputName(file), [&] {
            const FruImage image = parseFruImage(readInput(file, FRU_LIMIT));
            const Verdict verdict = {file, image.allProblems(), image.notes};
            listing.add(verdict);
            for (const std::string& note : image.notes) {
                notes += noteLine(file, note);
            }
            return verdict.problems;
        });
    }
    listing.finish();
    if (layout.format == Format::TABLE) {
        print(notes);
    }
    problems.finish();
}

}

Command fruVerifyCommand()
{
    return {"fru verify",
            "Check FRU images, a line each; exit status 1 if any is damaged",
            "recordkit fru verify *.bin",
            {fruFile().many()},
            Answer::TABLE,
            run,
            "What may be right is only noted: DC loads that together take more than the image's "
            "supplies state."};
}

}
