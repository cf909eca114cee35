// SPDX-License-Identifier: Apache-2.0
#include <fmt/format.h>

#include <recordkit/inspect/bytes/Hex.h>
#include <recordkit/inspect/bytes/Numbers.h>
#include <recordkit/inspect/bytes/Text.h>

#include "../Commands.h"
#include "../Errors.h"
#include "../Files.h"
#include "../cli/Arguments.h"
#include "../print/Output.h"
#include "FieldListing.h"

namespace recordkit::tool {

namespace {

constexpr Column<const RecordClass*> CLASSES[] = {
    {"class", "CLASS", 22, [](const RecordClass* const& c) { return Value(c->name); }},
    {"size", "SIZE", 29, [](const RecordClass* const& c) { return Value(c->sizes.text()); }},
    {"description", "DESCRIPTION", 0,
     [](const RecordClass* const& c) { return Value(c->description); }},
};

Bytes readImage(const Arguments& arguments, const RecordClass& recordClass)
{
    if (!arguments.has("--hex")) {
        const std::string file = arguments.text("FILE");
        return ByteView(arguments.has("--allow-trailing")
                            ? readInput(file, LARGE_LIMIT)
                            : readInput(file, recordClass.sizes.most,
                                        "--allow-trailing ignores what follows the record"))
            .copy();
    }
    const std::string hex = arguments.text("--hex");
    Bytes image;
    if (parseHexDigits(hex, image) != std::string::npos || image.empty()) {
        throw usageError(
            fmt::format("--hex: \"{}\" is not valid hex (example: \"0F 1a2b\")", printable(hex)));
    }
    return image;
}

void run(const Arguments& arguments)
{
    if (arguments.has("--list") == arguments.has("CLASS")) {
        throw usageError("expected CLASS and an image, or --list");
    }
    if (arguments.has("--list")) {
        printListing(decodableClasses(), CLASSES, arguments.layout());
        return;
    }
    const std::string name = arguments.text("CLASS");
    const RecordClass* const recordClass = findRecordClass(name);
    if (recordClass == nullptr) {
        throw usageError(
            fmt::format("unknown class \"{}\"; see recordkit decode --list", printable(name)));
    }
    if (arguments.has("FILE") == arguments.has("--hex")) {
        throw usageError("expected FILE, or --hex with the bytes");
    }
    const Bytes image = readImage(arguments, *recordClass);
    const std::string source = arguments.has("--hex") ? "--hex" : inputName(arguments.text("FILE"));
    naming(source, [&] {
        const std::size_t taken = takenSize(*recordClass, image);
        if (taken < image.size()) {
            const std::string text =
                fmt::format("{} after the {} of {}", counted(image.size() - taken, "byte"), taken,
                            recordClass->name);
            if (!arguments.has("--allow-trailing")) {
                throw DataError(text + "; --allow-trailing ignores them");
            }
            complain(source + ": " + text + " ignored");
        }
        printFields(*recordClass, image, arguments.layout());
    });
}

}

Command decodeCommand()
{
    return {"decode",
            "Show every field of a record's image, or list the classes of records",
            "recordkit decode --list; recordkit decode PSUStatus --hex \"01 03\"",
            {argument("CLASS", "Class of the record, in any case").optional(),
             argument("FILE", "Image; - for standard input").optional(),
             text("--hex", "HEX", "The image in hex digits instead of a file"),
             flag("--allow-trailing", "Accept an image longer than the class takes"),
             flag("--list", "List every class with its image size")},
            Answer::TABLE,
            run,
            "Each field has its name, its bytes, its value, and what the value means."};
}

}
