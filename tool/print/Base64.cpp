// SPDX-License-Identifier: Apache-2.0
#include "Base64.h"

namespace recordkit::tool {

std::string base64(inspect::ByteView bytes)
{
    constexpr char DIGITS[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    constexpr std::size_t GROUP = 3;
    std::string text;
    text.reserve((bytes.size() + GROUP - 1) / GROUP * 4);
    for (std::size_t at = 0; at < bytes.size(); at += GROUP) {
        const std::size_t rest = bytes.size() - at;
        const unsigned int bits = static_cast<unsigned int>(bytes[at]) << 16 |
                                  (rest > 1 ? static_cast<unsigned int>(bytes[at + 1]) << 8 : 0U) |
                                  (rest > 2 ? static_cast<unsigned int>(bytes[at + 2]) : 0U);
        text += DIGITS[bits >> 18];
        text += DIGITS[bits >> 12 & 0x3F];
        text += rest > 1 ? DIGITS[bits >> 6 & 0x3F] : '=';
        text += rest > 2 ? DIGITS[bits & 0x3F] : '=';
    }
    return text;
}

}
