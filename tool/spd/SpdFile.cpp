// SPDX-License-Identifier: Apache-2.0
#include "SpdFile.h"

#include <fmt/format.h>

#include <recordkit/inspect/bytes/Error.h>
#include <recordkit/inspect/bytes/Hex.h>

#include "../Errors.h"
#include "../Files.h"

namespace recordkit::tool {

Bytes readSpdFile(const std::string& path)
{
    Bytes image = parseImage(inputName(path), readInput(path, DUMP_LIMIT));
    if (image.size() > SPD_LIMIT) {
        throw DataError(
            fmt::format("{} bytes, expected at most {}", image.size(), std::size_t{SPD_LIMIT}));
    }
    return image;
}

}
