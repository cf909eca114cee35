// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_TOOL_PRINT_JSON_H
#define RECORDKIT_TOOL_PRINT_JSON_H

#include <nlohmann/json.hpp>
#include <string>

#include <recordkit/inspect/bytes/Text.h>

#include "../Errors.h"

namespace recordkit::tool {

/// Fields in the order in which they are written.
using Json = nlohmann::ordered_json;

/// One value, indented, with a newline.
std::string indented(const Json& value);

/// One value on one line, with a newline.
std::string oneLine(const Json& value);

/// A value in a table's cell: as printable text, "-" for null, yes and no for booleans.
std::string cellText(const Json& value);

}

#endif
