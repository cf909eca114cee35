// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_TOOL_PRINT_CSV_H
#define RECORDKIT_TOOL_PRINT_CSV_H

#include <string>
#include <vector>

#include "Value.h"

namespace recordkit::tool {

/// The fields as a CSV line (RFC 4180).
std::string csvLine(const std::vector<std::string>& fields);

/// The values of an object as a CSV line: null is empty, the elements of a list are joined by
/// blanks, an object in the list is JSON. Control characters are escaped as in tables. `isSafe`: a
/// text that a spreadsheet would calculate begins with an apostrophe.
std::string csvLine(const Object& object, bool isSafe = false);

}

#endif
