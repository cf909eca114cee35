// SPDX-License-Identifier: Apache-2.0
#include <recordkit/inspect/bytes/Text.h>

#include <algorithm>
#include <fmt/format.h>
#include <iterator>

namespace recordkit::inspect {

namespace {

constexpr const char* BCD_PLUS = "0123456789 -.:,_";
constexpr unsigned int SIX_BITS = 6;
constexpr unsigned int FIRST_SIX_BIT = 0x20;

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

std::string decodeBcdPlus(ByteView bytes)
{
    std::string text;
    for (const unsigned char byte : bytes) {
        text += BCD_PLUS[byte >> 4];
        text += BCD_PLUS[byte & 0xF];
    }
    return text;
}

std::optional<std::string> toBcdPlus(const std::string& text)
{
    // The last three are reserved in FRU images.
    const std::string known = std::string(BCD_PLUS).substr(0, 13);
    if (text.find_first_not_of(known) != std::string::npos) {
        return std::nullopt;
    }
    const std::string padded = text.size() % 2 == 0 ? text : text + ' ';
    std::string bytes;
    for (std::size_t i = 0; i < padded.size(); i += 2) {
        bytes += static_cast<char>(known.find(padded[i]) << 4 | known.find(padded[i + 1]));
    }
    return bytes;
}

std::string decodeSixBit(ByteView bytes)
{
    std::string text;
    for (std::size_t bit = 0; bit + SIX_BITS <= bytes.size() * 8; bit += SIX_BITS) {
        text += static_cast<char>(FIRST_SIX_BIT + (bytes.le16(bit / 8) >> bit % 8 & 0x3F));
    }
    return text;
}

std::optional<std::string> toSixBit(const std::string& text)
{
    std::string bytes((text.size() * SIX_BITS + 7) / 8, '\0');
    for (std::size_t i = 0; i < text.size(); ++i) {
        const unsigned int character = static_cast<unsigned char>(text[i]) - FIRST_SIX_BIT;
        if (character > 0x3F) {
            return std::nullopt;
        }
        const std::size_t bit = i * SIX_BITS;
        const unsigned int shifted = character << bit % 8;
        const auto put = [&bytes](std::size_t at, unsigned int bits) {
            bytes[at] = static_cast<char>(static_cast<unsigned char>(bytes[at]) | (bits & 0xFF));
        };
        put(bit / 8, shifted);
        if (shifted > 0xFF) {
            put(bit / 8 + 1, shifted >> 8);
        }
    }
    return bytes;
}

std::string decodeUtf16(ByteView bytes)
{
    constexpr unsigned int REPLACEMENT = 0xFFFD;
    const auto isHigh = [](unsigned int unit) { return unit >= 0xD800 && unit < 0xDC00; };
    const auto isLow = [](unsigned int unit) { return unit >= 0xDC00 && unit < 0xE000; };
    std::string text;
    for (std::size_t at = 0; at + 1 < bytes.size(); at += 2) {
        const unsigned int unit = bytes.le16(at);
        if (isHigh(unit) && at + 3 < bytes.size() && isLow(bytes.le16(at + 2))) {
            appendUtf8(0x10000 + ((unit - 0xD800) << 10) + (bytes.le16(at + 2) - 0xDC00), text);
            at += 2;
        } else {
            appendUtf8(isHigh(unit) || isLow(unit) ? REPLACEMENT : unit, text);
        }
    }
    return text;
}

std::string toUtf8(ByteView latin1)
{
    std::string utf8;
    for (const unsigned char character : latin1) {
        appendUtf8(character, utf8);
    }
    return utf8;
}

std::string idStringText(unsigned char typeLength, ByteView bytes)
{
    switch (codingOf(typeLength)) {
    case CODING_BINARY:
        // Unlike in FRU images, 00b is 16-bit text here.
        return decodeUtf16(bytes);
    case CODING_BCD_PLUS:
        return decodeBcdPlus(bytes);
    case CODING_SIX_BIT:
        return decodeSixBit(bytes);
    default:
        return toUtf8(
            {bytes.begin(),
             static_cast<std::size_t>(std::find(bytes.begin(), bytes.end(), 0) - bytes.begin())});
    }
}

bool isUtf8(ByteView bytes)
{
    // By the first byte: how many follow, and which the first of these can be (Unicode, table 3-7).
    struct Row {
        unsigned char first;
        unsigned char last;
        std::size_t following;
        unsigned char least;
        unsigned char most;
    };
    constexpr Row ROWS[] = {
        {0x00, 0x7F, 0, 0, 0},       {0xC2, 0xDF, 1, 0x80, 0xBF}, {0xE0, 0xE0, 2, 0xA0, 0xBF},
        {0xE1, 0xEC, 2, 0x80, 0xBF}, {0xED, 0xED, 2, 0x80, 0x9F}, {0xEE, 0xEF, 2, 0x80, 0xBF},
        {0xF0, 0xF0, 3, 0x90, 0xBF}, {0xF1, 0xF3, 3, 0x80, 0xBF}, {0xF4, 0xF4, 3, 0x80, 0x8F},
    };
    for (std::size_t at = 0; at < bytes.size();) {
        const auto* const row =
            std::find_if(std::begin(ROWS), std::end(ROWS), [&bytes, at](const Row& each) {
                return bytes[at] >= each.first && bytes[at] <= each.last;
            });
        if (row == std::end(ROWS) || bytes.size() - at <= row->following) {
            return false;
        }
        for (std::size_t i = 1; i <= row->following; ++i) {
            const unsigned char byte = bytes[at + i];
            if (byte < (i == 1 ? row->least : 0x80) || byte > (i == 1 ? row->most : 0xBF)) {
                return false;
            }
        }
        at += row->following + 1;
    }
    return true;
}

std::optional<std::string> toLatin1(const std::string& text)
{
    const ByteView bytes = text;
    std::string latin1;
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        if (bytes[i] < 0x80) {
            latin1 += text[i];
            continue;
        }
        // C2h and C3h lead the two-byte forms of 80h to FFh.
        const bool isPair = (bytes[i] == 0xC2 || bytes[i] == 0xC3) && i + 1 < bytes.size() &&
                            (bytes[i + 1] & 0xC0) == 0x80;
        if (!isPair) {
            return std::nullopt;
        }
        const unsigned int high = bytes[i] & 3U;
        latin1 += static_cast<char>(high << 6 | (bytes[++i] & 0x3FU));
    }
    return latin1;
}

std::string toUtf16(const std::string& latin1)
{
    std::string wide;
    for (const char character : latin1) {
        wide += character;
        wide += '\0';
    }
    return wide;
}

std::string withReplaced(std::string text, const std::string& what, const std::string& by)
{
    std::size_t at = what.empty() ? std::string::npos : text.find(what);
    while (at != std::string::npos) {
        text.replace(at, what.size(), by);
        at = text.find(what, at + by.size());
    }
    return text;
}

std::string printable(const std::string& text)
{
    const ByteView bytes = text;
    std::string result;
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        const bool isC1 = bytes[i] == 0xC2 && i + 1 < bytes.size() && bytes[i + 1] < 0xA0;
        if (bytes[i] < 0x20 || bytes[i] == 0x7F) {
            result += fmt::format("\\x{:02X}", bytes[i]);
        } else if (isC1) {
            result += fmt::format("\\x{:02X}", bytes[++i]);
        } else {
            result += text[i];
        }
    }
    return result;
}

}
