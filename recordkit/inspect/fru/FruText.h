// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_INSPECT_FRU_FRUTEXT_H
#define RECORDKIT_INSPECT_FRU_FRUTEXT_H

#include <optional>
#include <string>

#include <recordkit/inspect/bytes/Text.h>

namespace recordkit::inspect {

/// A text as an area contains it: its type/length byte and its bytes (IPMI FRU Information Storage
/// Definition v1.0, section 13).
struct FruText {
    unsigned char typeLength = 0;
    std::string bytes;

    /// With the type/length byte.
    std::string image() const { return static_cast<char>(typeLength) + bytes; }
};

/// The largest number of bytes of a text.
constexpr unsigned int MAX_FRU_TEXT = 63;

/// A value in UTF-8 in this coding, for an area in this language. 8-bit text becomes 16-bit text
/// where the language is not English; a binary value is written in hex digits. `name` is the
/// field's in the text of errors.
///
/// Throws DataError for characters that the coding does not have, for more than MAX_FRU_TEXT bytes,
/// and for an 8-bit text of one character, whose type/length byte would be the end marker.
FruText encodeFruText(const std::string& name, const std::string& value, unsigned char language,
                      Coding coding);

/// A value in place of another one: in its coding if that has the value's characters, as text
/// otherwise. An empty binary field becomes text, for that is how boards leave fields empty.
FruText replaceFruText(const std::string& name, const std::string& value, unsigned char language,
                       const FruText& old);

/// The coding with this name of codingName.
std::optional<Coding> findCoding(const std::string& name);

}

#endif
