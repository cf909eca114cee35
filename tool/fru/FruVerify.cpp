// SPDX-License-Identifier: Apache-2.0
#include <fmt/format.h>
#include <fmt/ranges.h>
#include <memory>

#include <recordkit/inspect/fru/FruImage.h>

#include "../Commands.h"
#include "../FileResults.h"
#include "../Files.h"

namespace recordkit::tool {

namespace {

void verify(const std::vector<std::string>& files)
{
    FileResults results;
    for (const std::string& file : files) {
        results.add(file, [&file] {
            std::vector<std::string> problems = parseFruImage(readInput(file)).allProblems();
            fmt::print("{}: {}\n", inputName(file),
                       problems.empty() ? "good"
                                        : fmt::format("damaged: {}", fmt::join(problems, "; ")));
            return problems;
        });
    }
    results.finish();
}

}

void addFruVerify(CLI::App& fru)
{
    const auto files = std::make_shared<std::vector<std::string>>();
    CLI::App* const command =
        addCommand(fru, "verify", "Check FRU images, a line each; exit status 1 if any is damaged",
                   "recordkit fru verify *.bin");
    command->add_option("FILE", *files, "FRU image or kernel node; - for standard input")
        ->required();
    command->callback([files] { verify(*files); });
}

}
