// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_TOOL_PRINT_JSON_H
#define RECORDKIT_TOOL_PRINT_JSON_H

#include <optional>
#include <string>

#include "Value.h"

namespace recordkit::tool {

/// A value as JSON on one line, without a newline.
std::string jsonText(const Value& value);

/// A value as indented JSON, with a newline.
std::string indentedJson(const Value& value);

/// How deep arrays and objects of an input may be nested.
constexpr std::size_t MAX_JSON_DEPTH = 64;

/// What is wrong with a text that parseJson does not read.
constexpr const char* NOT_JSON = "not JSON of up to 64 levels";

/// Whether arrays and objects are nested deeper than that, in any text.
bool isTooDeep(const std::string& json);

/// The value of a JSON text; nothing for any other text, for one that is too deep, and for numbers
/// that are not whole.
std::optional<Value> parseJson(const std::string& text);

}

#endif
