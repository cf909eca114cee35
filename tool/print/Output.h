// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_TOOL_PRINT_OUTPUT_H
#define RECORDKIT_TOOL_PRINT_OUTPUT_H

#include <cstddef>
#include <optional>
#include <string>

namespace recordkit::tool {

/// From now on answers and messages have `shown` where they would have `text`.
void showInsteadOf(const std::string& text, const std::string& shown);

/// A text as answers and messages show it.
std::string asShown(std::string text);

/// Writes to standard output.
void print(const std::string& text);
/// The same for bytes that are no text of ours.
void printBytes(const std::string& bytes);

/// A text for a terminal: UTF-8, where a backslash, x and two hex digits stand for each control
/// character and, in a text that is not UTF-8, for each byte that is not ASCII.
std::string terminalText(const std::string& text);

/// Writes "recordkit: TEXT" to standard error, after everything that was printed, as terminalText.
void complain(const std::string& text);

/// When the output is in colour, in the order of --color: AUTO where standard output is a terminal
/// that wants it.
enum class Colour { AUTO, ALWAYS, NEVER };

void setColour(Colour colour);
bool wantsColour();

/// Columns of the terminal that standard output is; nothing if it is none, or does not say.
std::optional<std::size_t> terminalWidth();

/// Whether standard error is a terminal that a progress bar may be drawn on.
bool wantsProgress();

/// A line "name  value" of an answer that is not a listing.
std::string factLine(const std::string& name, const std::string& value, std::size_t width = 14);

}

#endif
