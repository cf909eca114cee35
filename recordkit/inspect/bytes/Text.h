// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_INSPECT_BYTES_TEXT_H
#define RECORDKIT_INSPECT_BYTES_TEXT_H

#include <optional>
#include <string>

#include <recordkit/inspect/bytes/ByteView.h>

namespace recordkit::inspect {

// Texts in the codings of a type/length byte (IPMI v2.0, section 43.15; IPMI FRU Information
// Storage Definition v1.0, section 13). Texts are UTF-8.

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

/// Two characters per byte, the high half first: digits, blank, "-", ".", ":", "," and "_".
std::string decodeBcdPlus(ByteView bytes);
/// Four characters in three bytes, from the low bits up; 20h to 5Fh. Trailing blanks are kept:
/// padding cannot be told from text.
std::string decodeSixBit(ByteView bytes);
/// 16-bit characters, low byte first; an invalid character becomes U+FFFD.
std::string decodeUtf16(ByteView bytes);

/// Latin-1, the coding of texts in records, as UTF-8.
std::string toUtf8(ByteView latin1);

/// The bytes after a type/length byte as UTF-8, by its coding: 16-bit, BCD plus, 6-bit or 8-bit
/// characters (IPMI v2.0, section 43.15).
std::string idStringText(unsigned char typeLength, ByteView bytes);

/// Whether bytes are UTF-8: whole characters of Unicode, each in its shortest form.
bool isUtf8(ByteView bytes);

/// UTF-8 as Latin-1; nothing if a character is not in Latin-1 or the text is not UTF-8.
std::optional<std::string> toLatin1(const std::string& text);

/// The bytes that decodeBcdPlus reads as this text, with one more blank for an odd number of
/// characters; nothing for others than digits, blank, "-" and ".", which FRU images have.
std::optional<std::string> toBcdPlus(const std::string& text);
/// The bytes that decodeSixBit reads as this text, with one more blank where its last three
/// characters are alone in three bytes; nothing for characters outside 20h to 5Fh.
std::optional<std::string> toSixBit(const std::string& text);
/// Latin-1 characters as 16-bit ones.
std::string toUtf16(const std::string& latin1);

/// The text with `by` in each place of `what`; the same text if that is empty.
std::string withReplaced(std::string text, const std::string& what, const std::string& by);

/// The text for a terminal: a backslash, x and two hex digits stand for each control character.
std::string printable(const std::string& text);

}

#endif
