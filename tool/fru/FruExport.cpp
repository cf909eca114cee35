// SPDX-License-Identifier: Apache-2.0
#include <ctime>

#include "../Commands.h"
#include "../Files.h"
#include "../print/Json.h"
#include "../print/Output.h"
#include "../print/Problems.h"
#include "FruJson.h"
#include "FruOptions.h"

namespace recordkit::tool {

namespace {

/// What prevents that the image's JSON has all that it says.
std::vector<std::string> damageOf(const FruImage& image)
{
    std::vector<std::string> problems = image.allProblems();
    // Records that end before their fields are exported as bytes.
    problems.resize(problems.size() - image.contentProblems.size());
    return problems;
}

void run(const Arguments& arguments)
{
    const std::string path = arguments.text("FILE");
    Problems problems;
    problems.run(inputName(path), [&] {
        const std::string bytes = readInput(path, FRU_LIMIT);
        const FruImage image = parseFruImage(bytes);
        std::vector<std::string> wrong = damageOf(image);
        if (!wrong.empty()) {
            return wrong;
        }
        const Value json = jsonOfFru({contentOf(image, bytes), bytes.size()});
        const FruDescription again =
            fruFromJson(json, static_cast<unsigned int>(std::time(nullptr)));
        const std::string created = buildFruImage(again.content, again.size);
        // The bytes as they are, not as they are shown.
        printBytes(indentedJson(json));
        std::vector<std::string> lost = lostByJson(bytes, created);
        for (std::string& each : lost) {
            each = "not in the JSON: " + each;
        }
        return lost;
    });
    problems.finish();
}

}

Command fruExportCommand()
{
    return {"fru export",
            "Print a FRU image as JSON that fru create reads",
            "recordkit fru export board.bin > board.json",
            {fruFile()},
            Answer::TEXT,
            run,
            "fru create makes the same image of it, byte for byte, if the areas follow each other "
            "without gaps and all other bytes are 00h or all FFh. What else an image has, such as "
            "gaps and bytes outside all areas, is reported, and the exit status is 1. A damaged "
            "image is refused."};
}

}
