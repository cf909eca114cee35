// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_TOOL_PRINT_JSONINPUT_H
#define RECORDKIT_TOOL_PRINT_JSONINPUT_H

#include <string>

#include "Value.h"

namespace recordkit::tool {

/// Whether a JSON text may have comments as in C, which JSON itself does not have.
enum class JsonComments { REFUSED, SKIPPED };

/// The value of a JSON text that people write. Arrays and objects are at most MAX_JSON_DEPTH deep.
///
/// Throws DataError: with line and column where the text is not JSON, with the value's path, such
/// as "multirecords[0].output", for a key that an object has twice and a number that is too large.
Value readJson(const std::string& text, JsonComments comments = JsonComments::REFUSED);

/// The path of a member of what has a path; "" is the path of the whole.
std::string memberPath(const std::string& path, const std::string& key);
/// The path of an element of a list, counted from 0.
std::string elementPath(const std::string& path, std::size_t index);

}

#endif
