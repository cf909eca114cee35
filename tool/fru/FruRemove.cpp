// SPDX-License-Identifier: Apache-2.0
#include <recordkit/inspect/fru/FruParts.h>

#include "../Commands.h"
#include "FruWrite.h"

namespace recordkit::tool {

namespace {

void run(const Arguments& arguments)
{
    changeFruImage(arguments, [&](const std::string& bytes) {
        return removeFromFruImage(bytes, arguments.texts("PART"), editOptionsOf(arguments));
    });
}

}

Command fruRemoveCommand()
{
    return {"fru remove",
            "Remove areas, custom fields and records from a FRU image, all or none",
            "recordkit fru remove board.bin board.custom2 dc-load1",
            {fruEditedFile(),
             argument("PART", "As board.custom2, dc-load1, product or internal").many(),
             ignoreWrongChecksums(), inPlace(), pageSize(), fruDryRun()},
            Answer::TEXT,
            run,
            "Names are those that fru show lists before the command; later custom fields and "
            "records count from one less afterwards. The bytes of an area become zeroes. Other "
            "fields cannot be removed: fru set FIELD= empties a text."};
}

}
