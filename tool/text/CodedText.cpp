// SPDX-License-Identifier: Apache-2.0
#include "CodedText.h"

#include <fmt/format.h>

#include "../Bytes.h"

namespace recordkit::tool {

namespace {

void appendUtf8(unsigned int character, std::string& text)
{
    const auto put = [&text](unsigned int byte) { text += static_cast<char>(byte); };
    if (character < 0x80) {
        put(character);
    } else if (character < 0x800) {
        put(0xC0 | character >> 6);
        put(0x80 | (character & 0x3F));
    } else if (character < 0x10000) {
        put(0xE0 | character >> 12);
        put(0x80 | (character >> 6 & 0x3F));
        put(0x80 | (character & 0x3F));
    } else {
        put(0xF0 | character >> 18);
        put(0x80 | (character >> 12 & 0x3F));
        put(0x80 | (character >> 6 & 0x3F));
        put(0x80 | (character & 0x3F));
    }
}

}

Coding codingOf(unsigned char typeLength)
{
    return static_cast<Coding>(typeLength >> 6);
}

const char* codingName(Coding coding)
{
    constexpr const char* NAMES[] = {"binary", "BCD plus", "6-bit", "text"};
    return NAMES[coding];
}

std::string toHex(const std::string& bytes)
{
    std::string text;
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        text += fmt::format("{:02X}", byteAt(bytes, i));
    }
    return text;
}

std::string decodeBcdPlus(const std::string& bytes)
{
    constexpr const char* CHARACTERS = "0123456789 -.:,_";
    std::string text;
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        text += CHARACTERS[byteAt(bytes, i) >> 4];
        text += CHARACTERS[byteAt(bytes, i) & 0xF];
    }
    return text;
}

std::string decodeSixBit(const std::string& bytes)
{
    constexpr unsigned int BITS = 6;
    std::string text;
    for (std::size_t bit = 0; bit + BITS <= bytes.size() * 8; bit += BITS) {
        const std::size_t at = bit / 8;
        const unsigned int next = at + 1 < bytes.size() ? byteAt(bytes, at + 1) : 0;
        const unsigned int pair = byteAt(bytes, at) | next << 8;
        text += static_cast<char>(0x20 + (pair >> bit % 8 & 0x3F));
    }
    return text;
}

std::string decodeUtf16(const std::string& bytes)
{
    constexpr unsigned int REPLACEMENT = 0xFFFD;
    const auto isHigh = [](unsigned int unit) { return unit >= 0xD800 && unit < 0xDC00; };
    const auto isLow = [](unsigned int unit) { return unit >= 0xDC00 && unit < 0xE000; };
    const auto unitAt = [&bytes](std::size_t at) {
        return byteAt(bytes, at) | byteAt(bytes, at + 1) << 8;
    };
    std::string text;
    for (std::size_t at = 0; at + 1 < bytes.size(); at += 2) {
        const unsigned int unit = unitAt(at);
        if (isHigh(unit) && at + 3 < bytes.size() && isLow(unitAt(at + 2))) {
            appendUtf8(0x10000 + ((unit - 0xD800) << 10) + (unitAt(at + 2) - 0xDC00), text);
            at += 2;
        } else {
            appendUtf8(isHigh(unit) || isLow(unit) ? REPLACEMENT : unit, text);
        }
    }
    return text;
}

bool toLatin1(const std::string& text, std::string& latin1)
{
    std::string result;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const unsigned int lead = byteAt(text, i);
        if (lead < 0x80) {
            result += text[i];
            continue;
        }
        // C2h and C3h lead the two-byte forms of 80h to FFh.
        const bool isPair = (lead == 0xC2 || lead == 0xC3) && i + 1 < text.size() &&
                            (byteAt(text, i + 1) & 0xC0) == 0x80;
        if (!isPair) {
            return false;
        }
        result += static_cast<char>((lead & 3) << 6 | (byteAt(text, ++i) & 0x3F));
    }
    latin1 = result;
    return true;
}

std::string printable(const std::string& text)
{
    std::string result;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const unsigned int byte = byteAt(text, i);
        const bool isC1 = byte == 0xC2 && i + 1 < text.size() && byteAt(text, i + 1) < 0xA0;
        if (byte < 0x20 || byte == 0x7F) {
            result += fmt::format("\\x{:02X}", byte);
        } else if (isC1) {
            result += fmt::format("\\x{:02X}", byteAt(text, ++i));
        } else {
            result += text[i];
        }
    }
    return result;
}

}
