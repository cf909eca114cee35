// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_INSPECT_BYTES_NUMBERS_H
#define RECORDKIT_INSPECT_BYTES_NUMBERS_H

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace recordkit::inspect {

/// Reads a whole text as a number up to `limit`: decimal, 0x hexadecimal, or hexadecimal digits
/// that end in h.
std::optional<unsigned long> parseNumber(const std::string& text, unsigned long limit);

/// Reads "0,2-5" as numbers up to `limit`; a range goes up.
std::optional<std::vector<unsigned long>> parseNumberList(const std::string& text,
                                                          unsigned long limit);

/// "1 event", "2 events".
std::string counted(std::size_t count, const std::string& noun);

/// The numbers of the set bits, lowest first.
std::vector<unsigned int> bitsOf(unsigned int mask);

}

#endif
