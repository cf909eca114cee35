// SPDX-License-Identifier: Apache-2.0
#include <fmt/format.h>
#include <memory>

#include <recordkit/inspect/bytes/Hex.h>
#include <recordkit/inspect/bytes/Text.h>
#include <recordkit/platform/PException.h>

#include "../Commands.h"
#include "../Errors.h"
#include "../Files.h"
#include "../print/Json.h"
#include "../print/Table.h"
#include "DecodedPrinter.h"

namespace recordkit::tool {

namespace {

struct Options {
    std::string className;
    std::string file;
    std::string hex;
    bool isList = false;
    bool isJson = false;
};

void list(bool isJson, bool hasColour)
{
    if (isJson) {
        Json json = Json::array();
        for (const RecordClass* const each : decodableClasses()) {
            json.push_back(
                {{"class", each->name}, {"size", each->sizes}, {"description", each->description}});
        }
        fmt::print("{}", indented(json));
        return;
    }
    const Table table({{"CLASS", 22}, {"SIZE", 29}, {"DESCRIPTION", 0}}, hasColour);
    std::string text = table.header();
    for (const RecordClass* const each : decodableClasses()) {
        table.append({{each->name}, {each->sizes}, {each->description}}, text);
    }
    fmt::print("{}", text);
}

Bytes readImage(const Options& options)
{
    if (options.hex.empty()) {
        const std::string content = readInput(options.file);
        return Bytes(content.begin(), content.end());
    }
    Bytes image;
    if (parseHexDigits(options.hex, image) != std::string::npos || image.empty()) {
        throw usageError(fmt::format("--hex: \"{}\" are not bytes in hex, as \"0F 1a2b\"",
                                     printable(options.hex)));
    }
    return image;
}

void decode(const Options& options, bool hasColour)
{
    const RecordClass* const recordClass = findRecordClass(options.className);
    if (recordClass == nullptr) {
        throw usageError(fmt::format("\"{}\" is no class; recordkit decode --list names them",
                                     options.className));
    }
    if (options.file.empty() == options.hex.empty()) {
        throw usageError("expected FILE, or --hex with the bytes");
    }
    const Bytes image = readImage(options);
    const std::string source = options.hex.empty() ? inputName(options.file) : "--hex";
    try {
        printDecoded(*recordClass, image, options.isJson, hasColour);
    } catch (const Error& e) {
        throw CommandError(statusOf(e), source + ": " + e.what());
    } catch (const TAVLib::PException& e) {
        throw dataError(source + ": " + e.getMessage());
    }
}

}

void addDecodeCommand(CLI::App& app, Globals& globals)
{
    const auto options = std::make_shared<Options>();
    CLI::App* const command = addCommand(
        app, "decode", "Show every field of a record's image, or name the classes of records",
        "recordkit decode --list; recordkit decode PSUStatus --hex \"01 03\"");
    command->add_option("CLASS", options->className, "Class of the record, in any case");
    command->add_option("FILE", options->file, "Image; - for standard input");
    command->add_option("--hex", options->hex, "The image in hex digits instead of a file")
        ->type_name("HEX");
    command->add_flag("--list", options->isList, "Name every class with its image size");
    command->add_flag("--json", options->isJson, "JSON instead of a table");
    command->callback([options, &globals] {
        if (options->isList == !options->className.empty()) {
            throw usageError("expected CLASS and an image, or --list");
        }
        if (options->isList) {
            list(options->isJson, globals.wantsColour());
        } else {
            decode(*options, globals.wantsColour());
        }
    });
}

}
