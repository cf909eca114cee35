// SPDX-License-Identifier: Apache-2.0
#include <vector>

#include "../Commands.h"
#include "../cli/Arguments.h"
#include "FruWrite.h"

namespace recordkit::tool {

namespace {

void run(const Arguments& arguments)
{
    std::vector<FruEdit> edits;
    for (const std::string& word : arguments.texts("FIELD=VALUE")) {
        edits.push_back(readFruEdit(word));
    }
    FruEditOptions options = editOptionsOf(arguments);
    options.mayGrow = arguments.has("--grow");
    options.coding = codingOf(arguments);
    changeFruImage(arguments,
                   [&](const std::string& bytes) { return editFruImage(bytes, edits, options); });
}

}

Command fruSetCommand()
{
    return {
        "fru set",
        "Change fields of a FRU image, all or none; everything else stays as it is",
        "recordkit fru set board.bin board.serial=SN4711 product.asset-tag=\"Rack 7\"",
        {fruEditedFile(),
         argument("FIELD=VALUE", "As board.serial=SN4711 or dc-output2.max-current=3000").many(),
         flag("--grow", "If an area is too small, enlarge it and move the areas after it"),
         textCoding(), ignoreWrongChecksums(), inPlace(), pageSize(), fruDryRun()},
        Answer::TEXT,
        run,
        "Fields have the names that fru show lists, and values are written as it prints them: "
        "a date as 2024-11-05 06:07 or as now, a chassis type as a name or a number, a "
        "language as en. internal=@FILE sets the bytes of the internal use area."};
}

}
