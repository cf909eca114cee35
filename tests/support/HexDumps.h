// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_TESTS_SUPPORT_HEXDUMPS_H
#define RECORDKIT_TESTS_SUPPORT_HEXDUMPS_H

#include <cstdio>
#include <string>

#include "Bytes.h"

namespace testing_support {

/// An image as each tool prints it.
inline std::string i2cdump(const Bytes& image)
{
    std::string text = "     0  1  2  3  4  5  6  7  8  9  a  b  c  d  e  f    0123456789abcdef\n";
    for (std::size_t line = 0; line < image.size(); line += 16) {
        char piece[32];
        std::snprintf(piece, sizeof piece, "%02zx: ", line);
        text += piece;
        std::string characters;
        for (std::size_t i = line; i < line + 16; ++i) {
            std::snprintf(piece, sizeof piece, "%02x ", image[i]);
            text += piece;
            characters += image[i] >= 0x20 && image[i] < 0x7F ? static_cast<char>(image[i]) : '.';
        }
        text += "   " + characters + "\n";
    }
    return text;
}

inline std::string xxd(const Bytes& image)
{
    std::string text;
    for (std::size_t line = 0; line < image.size(); line += 16) {
        char piece[32];
        std::snprintf(piece, sizeof piece, "%08zx: ", line);
        text += piece;
        for (std::size_t i = line; i < line + 16; ++i) {
            std::snprintf(piece, sizeof piece, "%02x%s", image[i], i % 2 == 1 ? " " : "");
            text += piece;
        }
        text += " ab cd ef 01 .....\n";
    }
    return text;
}

/// With one line in place of repeated lines.
inline std::string hexdump(const Bytes& image)
{
    std::string text;
    bool isRepeating = false;
    for (std::size_t line = 0; line < image.size(); line += 16) {
        if (line != 0 && part(image, line, 16) == part(image, line - 16, 16)) {
            text += isRepeating ? "" : "*\n";
            isRepeating = true;
            continue;
        }
        isRepeating = false;
        char piece[32];
        std::snprintf(piece, sizeof piece, "%08zx  ", line);
        text += piece;
        for (std::size_t i = line; i < line + 16; ++i) {
            std::snprintf(piece, sizeof piece, "%02x %s", image[i], i % 16 == 7 ? " " : "");
            text += piece;
        }
        text += " |................|\n";
    }
    char end[32];
    std::snprintf(end, sizeof end, "%08zx\n", image.size());
    return text + end;
}

}

#endif
