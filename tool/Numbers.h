// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_TOOL_NUMBERS_H
#define RECORDKIT_TOOL_NUMBERS_H

#include <string>
#include <vector>

namespace recordkit::tool {

/// Reads a whole text as a number up to `limit`: decimal, 0x hexadecimal, or hexadecimal digits
/// that end in h.
bool parseNumber(const std::string& text, unsigned long limit, unsigned long& number);

/// Reads "0,2,5" as numbers up to `limit`.
bool parseNumberList(const std::string& text, unsigned long limit,
                     std::vector<unsigned long>& numbers);

/// The numbers of the bits that are set, low ones first.
std::vector<unsigned int> bitsOf(unsigned int mask);

}

#endif
