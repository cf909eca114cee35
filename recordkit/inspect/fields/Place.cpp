// SPDX-License-Identifier: Apache-2.0
#include <recordkit/inspect/fields/Place.h>

#include <fmt/format.h>

namespace recordkit::inspect {

std::string Place::bitsText() const
{
    if (!isBits()) {
        return "";
    }
    return high == low ? std::to_string(high) : fmt::format("{}..{}", high, low);
}

std::string Place::text() const
{
    if (width == 0) {
        return "-";
    }
    const std::string bytes =
        width == 1 ? std::to_string(offset) : fmt::format("{} to {}", offset, end() - 1);
    return isBits() ? fmt::format("{} bit {}", bytes, bitsText()) : bytes;
}

}
