// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_TOOL_TEXT_HEXDUMP_H
#define RECORDKIT_TOOL_TEXT_HEXDUMP_H

#include <string>
#include <vector>

namespace recordkit::tool {

/// Reads pairs of hex digits; blanks, commas and 0x between them are passed over. Gives where the
/// first character stands that is none of it, npos for none, and appends the bytes before it.
std::size_t parseHexDigits(const std::string& text, std::vector<unsigned char>& bytes);

/// Whether content can be text: printable characters and blanks, bytes of 80h and above only where
/// they may be UTF-8.
bool isText(const std::string& content, bool mayBeUtf8);

/// Reads an image as people have them: as i2cdump, xxd and hexdump -C print it, in plain hex
/// digits, or as it is. Throws CommandError (data) with the line of a dump that is none.
std::vector<unsigned char> parseImage(const std::string& name, const std::string& content);

}

#endif
