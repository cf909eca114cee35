// SPDX-License-Identifier: Apache-2.0
#include "Json.h"

#include <recordkit/inspect/bytes/Text.h>

namespace recordkit::tool {

std::string indented(const Json& value)
{
    return value.dump(2) + "\n";
}

std::string oneLine(const Json& value)
{
    return value.dump() + "\n";
}

std::string cellText(const Json& value)
{
    if (value.is_null()) {
        return "-";
    }
    if (value.is_boolean()) {
        return value.get<bool>() ? "yes" : "no";
    }
    return value.is_string() ? printable(value.get<std::string>()) : value.dump();
}

}
