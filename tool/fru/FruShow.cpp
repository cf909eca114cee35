// SPDX-License-Identifier: Apache-2.0
#include <memory>

#include <fmt/format.h>

#include "../Commands.h"
#include "../FileResults.h"
#include "../Files.h"
#include "FruPrinter.h"
#include "InternalOption.h"

namespace recordkit::tool {

namespace {

struct Options {
    std::vector<std::string> files;
    InternalOption internal;
    bool isJson = false;
};

void show(const Options& options, const Globals& globals)
{
    const bool hasSeveral = options.files.size() > 1;
    Json all = Json::array();
    FileResults results;
    for (const std::string& file : options.files) {
        results.add(file, [&] {
            const std::string bytes = readInput(file);
            const FruImage image = parseFruImage(bytes, options.internal.get());
            if (options.isJson) {
                Json json;
                json["file"] = inputName(file);
                json.update(toJson(image, bytes));
                all.push_back(json);
            } else {
                fmt::print("{}{}", hasSeveral ? fmt::format("== {}\n", inputName(file)) : "",
                           describeFru(image, bytes, globals.wantsColour()));
            }
            return image.allProblems();
        });
    }
    if (options.isJson) {
        fmt::print("{}", indented(hasSeveral || all.empty() ? all : all[0]));
    }
    results.finish();
}

}

void addFruShow(CLI::App& fru, Globals& globals)
{
    const auto options = std::make_shared<Options>();
    CLI::App* const command = addCommand(
        fru, "show", "Show every area, field and checksum of FRU images, and their places",
        "recordkit fru show board.bin --json; recordkit fru show "
        "/sys/bus/i2c/devices/0-0050/eeprom");
    command->add_option("FILE", options->files, "FRU image or kernel node; - for standard input")
        ->required();
    options->internal.addTo(*command);
    command->add_flag("--json", options->isJson, "One JSON object; an array for several files");
    command->callback([options, &globals] { show(*options, globals); });
}

}
