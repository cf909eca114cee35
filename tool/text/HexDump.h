// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_TOOL_TEXT_HEXDUMP_H
#define RECORDKIT_TOOL_TEXT_HEXDUMP_H

#include <string>
#include <vector>

namespace recordkit::tool {

/// Reads pairs of hex digits, each with or without 0x, with blanks between them or none; false for
/// anything else.
bool parseHexDigits(const std::string& text, std::vector<unsigned char>& bytes);

/// Reads an image as people have them: as i2cdump, xxd and hexdump -C print it, in plain hex
/// digits, or as it is. Throws CommandError (data) with the line of a dump that is none.
std::vector<unsigned char> parseImage(const std::string& name, const std::string& content);

}

#endif
