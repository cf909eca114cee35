// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_TOOL_PRINT_CSV_H
#define RECORDKIT_TOOL_PRINT_CSV_H

#include <string>

#include "Json.h"

namespace recordkit::tool {

/// The names of an object's fields as a CSV line (RFC 4180).
std::string csvHeader(const Json& object);

/// The values of an object's fields as a CSV line: null is empty, a list is joined by blanks.
std::string csvLine(const Json& object);

}

#endif
