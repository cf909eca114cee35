// SPDX-License-Identifier: Apache-2.0
#include <vector>

#include <recordkit/inspect/fru/FruParts.h>

#include "../Commands.h"
#include "FruWrite.h"

namespace recordkit::tool {

namespace {

void run(const Arguments& arguments)
{
    std::vector<FruEdit> parts;
    for (const std::string& word : arguments.texts("PART")) {
        parts.push_back(word.find('=') == std::string::npos ? FruEdit{word, ""}
                                                            : readFruEdit(word));
    }
    FruEditOptions options = editOptionsOf(arguments);
    options.coding = codingOf(arguments);
    changeFruImage(arguments,
                   [&](const std::string& bytes) { return addToFruImage(bytes, parts, options); });
}

}

Command fruAddCommand()
{
    return {"fru add",
            "Add areas, custom fields and records to a FRU image, all or none",
            "recordkit fru add board.bin board.custom=\"Rev C\" dc-load dc-load.max-current=3000",
            {fruEditedFile(),
             argument("PART", "An area, AREA.FIELD=VALUE, a kind of record, or RECORD.FIELD=VALUE")
                 .many(),
             textCoding(), ignoreWrongChecksums(), inPlace(), pageSize(), fruDryRun()},
            Answer::TEXT,
            run,
            "Areas: chassis, board and product with empty fields; internal=@FILE with the bytes of "
            "a file. Fields: board.custom=TEXT is one more custom field, board.asset-tag=TEXT one "
            "that the area lacks. Records: dc-load and the other kinds that fru show names, then "
            "their fields; record:C1h=HEX is one of any type. A part goes to the first gap that is "
            "large enough; areas move up where an area must grow."};
}

}
