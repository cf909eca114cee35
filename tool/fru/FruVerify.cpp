// SPDX-License-Identifier: Apache-2.0
#include <fmt/format.h>
#include <fmt/ranges.h>

#include "../Commands.h"
#include "../Files.h"
#include "../print/Listing.h"
#include "../print/Problems.h"
#include "FruOptions.h"

namespace recordkit::tool {

namespace {

struct Verdict {
    std::string path;
    std::vector<std::string> problems;
};

constexpr Column<Verdict> COLUMNS[] = {
    {nullptr, "STATE", 7, nullptr,
     [](const Verdict& v) { return checkCell(v.problems.empty(), "good", "damaged"); }},
    {"file", "FILE", 0, [](const Verdict& v) { return Value(inputName(v.path)); }},
    {"file_bytes", nullptr, 0, [](const Verdict& v) { return textOrNull(inputNameBytes(v.path)); }},
    {"good", nullptr, 0, [](const Verdict& v) { return Value(v.problems.empty()); }},
    {"problems", nullptr, 0, [](const Verdict& v) { return Value(v.problems); }},
};

void run(const Arguments& arguments)
{
    Listing<Verdict> listing(COLUMNS, arguments.layout());
    Problems problems;
    for (const std::string& file : arguments.texts("FILE")) {
        problems.run(inputName(file), [&] {
            const Verdict verdict = {file, parseFruImage(readInput(file, FRU_LIMIT)).allProblems()};
            listing.add(verdict);
            return verdict.problems;
        });
    }
    listing.finish();
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
            run};
}

}
