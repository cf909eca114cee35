// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_INSPECT_BYTES_HEX_H
#define RECORDKIT_INSPECT_BYTES_HEX_H

#include <string>

#include <recordkit/inspect/bytes/ByteView.h>

namespace recordkit::inspect {

/// "01AB".
std::string toHex(ByteView bytes);

/// "01ab".
std::string toLowerHex(ByteView bytes);

/// Reads pairs of hex digits; blanks, commas and 0x between them are skipped. Returns the position
/// of the first character that is none of these, npos if there is none, and appends the bytes
/// before it.
std::size_t parseHexDigits(const std::string& text, Bytes& bytes);

/// Whether content can be text: printable characters and blanks, bytes of 80h and above only if
/// they can be UTF-8.
bool isText(const std::string& content, bool mayBeUtf8);

/// Reads an image as i2cdump, xxd and hexdump -C print it, in plain hex digits, or unchanged.
/// Several outputs of i2cdump, each with its heading, are pages of 256 bytes one after another.
/// Throws DataError with the line of a dump that cannot be read; `name` is the input's name in its
/// text.
Bytes parseImage(const std::string& name, const std::string& content);

}

#endif
