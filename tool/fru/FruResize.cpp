// SPDX-License-Identifier: Apache-2.0
#include <fmt/format.h>

#include <recordkit/inspect/fru/FruLayout.h>

#include "../Commands.h"
#include "../Files.h"
#include "FruWrite.h"

namespace recordkit::tool {

namespace {

void run(const Arguments& arguments)
{
    const std::size_t size = arguments.number("--size");
    changeFruImage(
        arguments,
        [size](const std::string& bytes) {
            return FruEditResult{resizeFruImage(bytes, size),
                                 {},
                                 {fmt::format("{} bytes, {} before", size, bytes.size())}};
        },
        false);
}

}

Command fruResizeCommand()
{
    return {"fru resize",
            "Make a FRU image larger or smaller, as another device needs it",
            "recordkit fru resize board.bin --size 512",
            {fruEditedFile(),
             number("--size", "BYTES", FRU_HEADER_SIZE, FRU_LIMIT, "The new size").required(),
             fruDryRun()},
            Answer::TEXT,
            run,
            "New bytes repeat the last one if it is 00h or FFh, and are 00h otherwise. An image is "
            "only cut where it is blank, and never in an area."};
}

}
