// SPDX-License-Identifier: Apache-2.0
#include <ctime>
#include <filesystem>

#include <fmt/format.h>

#include <recordkit/inspect/bytes/Numbers.h>
#include <recordkit/inspect/fru/FruLayout.h>

#include "../Commands.h"
#include "../Files.h"
#include "../OutputFile.h"
#include "../cli/Arguments.h"
#include "../print/JsonInput.h"
#include "../print/Output.h"
#include "FruJson.h"
#include "FrugenJson.h"

namespace recordkit::tool {

namespace {

std::string imageFrom(const std::string& text, bool isFrugen, std::optional<unsigned long> size)
{
    const auto now = static_cast<unsigned int>(std::time(nullptr));
    const FruDescription description =
        isFrugen ? fruFromFrugenJson(readJson(text, JsonComments::SKIPPED), now)
                 : fruFromJson(readJson(text), now);
    return buildFruImage(description.content, size.value_or(description.size));
}

void run(const Arguments& arguments)
{
    const std::string input = arguments.text("--from");
    const std::string output = arguments.text("-o");
    std::error_code ignored;
    if (std::filesystem::equivalent(input, output, ignored)) {
        throw usageError("-o: " + inputName(input) + " is the input and would be replaced");
    }
    const std::string text = readInput(input, FRU_JSON_LIMIT);
    const std::string image = naming(inputName(input), [&] {
        return imageFrom(text, arguments.number("--format") != 0, arguments.find("--size"));
    });
    writeOutput(output, image);
    print(fmt::format("{} written to {}\n", counted(image.size(), "byte"), inputName(output)));
}

}

Command fruCreateCommand()
{
    return {"fru create",
            "Create a FRU image from JSON",
            "recordkit fru create --from board.json -o board.bin --size 256",
            {text("--from", "FILE", "JSON with the fields of the image; - for standard input")
                 .required(),
             text("-o", "IMAGE", "File for the image, which is replaced").required(),
             number("--size", "BYTES", FRU_HEADER_SIZE, FRU_LIMIT,
                    "Size of the image (default: what the JSON says, or as few as needed)"),
             choice("--format", "FORM", {"recordkit", "frugen"},
                    "Whose JSON it is: ours, as fru export prints it, or frugen's")
                 .by("recordkit")},
            Answer::TEXT,
            run,
            "fru export prints the JSON of an image, and docs/fru.schema.json defines it. Fields "
            "have the names that fru show lists; those that are missing become empty texts. "
            "Nothing is written if anything in the JSON is wrong."};
}

}
