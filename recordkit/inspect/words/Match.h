// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_INSPECT_WORDS_MATCH_H
#define RECORDKIT_INSPECT_WORDS_MATCH_H

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace recordkit::inspect {

/// The position of the word that a person means: in any case, whole or by a beginning that only one
/// of the words has.
std::optional<std::size_t> matchWord(const std::string& text,
                                     const std::vector<std::string>& words);

/// Whether a text contains another, in any case of the letters A to Z.
bool containsText(const std::string& text, const std::string& part);

}

#endif
