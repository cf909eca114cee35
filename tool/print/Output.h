// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_TOOL_PRINT_OUTPUT_H
#define RECORDKIT_TOOL_PRINT_OUTPUT_H

#include <string>

namespace recordkit::tool {

/// Writes to standard output.
void print(const std::string& text);

/// Writes "recordkit: TEXT" to standard error, after everything that was printed.
void complain(const std::string& text);

/// Whether standard output is a terminal and colour is wanted.
bool wantsColour();

/// Whether standard error is a terminal that a progress bar may be drawn on.
bool wantsProgress();

/// A line "name  value" of an answer that is not a listing.
std::string factLine(const std::string& name, const std::string& value, std::size_t width = 14);

}

#endif
