// SPDX-License-Identifier: Apache-2.0
#include <memory>

#include <fmt/format.h>

#include "../Commands.h"
#include "../Errors.h"
#include "../Files.h"
#include "InternalOption.h"

namespace recordkit::tool {

namespace {

struct Options {
    std::string file;
    std::vector<std::string> fields;
    InternalOption internal;
    bool ignoresChecksum = false;
};

/// Only the value, a line for each field; prints nothing if one of them cannot be printed.
void get(const Options& options)
{
    const FruImage image = parseFruImage(readInput(options.file), options.internal.get());
    const auto fail = [&options](const std::string& text) {
        return dataError(inputName(options.file) + ": " + text);
    };
    if (!image.isFru || (!options.ignoresChecksum && !image.header.isRight())) {
        throw fail(image.headerProblems.front());
    }
    std::string text;
    for (const std::string& name : options.fields) {
        const std::string areaName = name.substr(0, name.find('.'));
        for (const FruAreaImage& area : image.areas) {
            const bool isWrong =
                area.extent.size == 0 || (!options.ignoresChecksum && !area.checksum.isRight());
            if (area.extent.name == areaName && isWrong) {
                throw fail(area.problems.back());
            }
        }
        const FruField* const field = image.findField(name);
        if (field == nullptr) {
            throw fail(fmt::format("there is no field {}", name));
        }
        text += field->value + "\n";
    }
    fmt::print("{}", text);
}

}

void addFruGet(CLI::App& fru)
{
    const auto options = std::make_shared<Options>();
    CLI::App* const command = addCommand(fru, "get", "Print the bare value of fields, for scripts",
                                         "recordkit fru get board.bin board.serial");
    command->add_option("FILE", options->file, "FRU image or kernel node; - for standard input")
        ->required();
    command->add_option("FIELD", options->fields, "As board.serial or product.custom1")->required();
    options->internal.addTo(*command);
    command->add_flag("--ignore-checksum", options->ignoresChecksum,
                      "Print it even if the checksum of its area or of the header is wrong");
    command->callback([options] { get(*options); });
}

}
