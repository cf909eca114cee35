// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_INSPECT_WORDS_LANGUAGES_H
#define RECORDKIT_INSPECT_WORDS_LANGUAGES_H

#include <optional>
#include <string>

namespace recordkit::inspect {

/// The two letters of a language of FRU areas (IPMI FRU Information Storage Definition v1.0,
/// section 15; ISO 639 of 1988); empty for numbers without one.
std::string languageName(unsigned char language);

/// Reads a language: two letters in any case, or a number.
std::optional<unsigned char> findLanguage(const std::string& text);

}

#endif
