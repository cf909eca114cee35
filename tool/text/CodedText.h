// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_TOOL_TEXT_CODEDTEXT_H
#define RECORDKIT_TOOL_TEXT_CODEDTEXT_H

#include <string>

namespace recordkit::tool {

// Texts in the codings of a type/length byte (IPMI v2.0, section 43.15; IPMI FRU Information
// Storage Definition v1.0, section 13). Bytes come in a std::string; texts are UTF-8.

/// Bits 7..6 of a type/length byte.
enum Coding : unsigned char {
    CODING_BINARY = 0,
    CODING_BCD_PLUS = 1,
    CODING_SIX_BIT = 2,
    CODING_TEXT = 3,
};

Coding codingOf(unsigned char typeLength);
/// "binary", "BCD plus", "6-bit" or "text".
const char* codingName(Coding coding);

/// "01AB".
std::string toHex(const std::string& bytes);
/// Two characters a byte, the high half first: digits, blank, "-", ".", ":", "," and "_".
std::string decodeBcdPlus(const std::string& bytes);
/// Four characters in three bytes, from the low bits up; 20h to 5Fh. Trailing blanks are kept:
/// nothing tells those that pad the last byte from those that belong to the text.
std::string decodeSixBit(const std::string& bytes);
/// 16-bit characters, low byte first; what is no character becomes U+FFFD.
std::string decodeUtf16(const std::string& bytes);

/// UTF-8 as Latin-1; false when a character is not of Latin-1, or the text is no UTF-8.
bool toLatin1(const std::string& text, std::string& latin1);

/// The text with control characters as \x07, for terminals.
std::string printable(const std::string& text);

}

#endif
