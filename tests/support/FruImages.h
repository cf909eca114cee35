// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_TESTS_SUPPORT_FRUIMAGES_H
#define RECORDKIT_TESTS_SUPPORT_FRUIMAGES_H

#include <string>
#include <vector>

#include "support/Bytes.h"

namespace testing_support {

/// Bytes with the checksum that makes them add up to 0.
inline Bytes summed(Bytes bytes)
{
    unsigned int sum = 0;
    for (const unsigned char byte : bytes) {
        sum += byte;
    }
    bytes.push_back(static_cast<unsigned char>(0x100 - (sum & 0xFF)));
    return bytes;
}

/// An area: what comes before its texts, the texts in 8-bit characters, end marker, checksum. A
/// text of one character would be the end marker.
inline Bytes fruArea(const Bytes& start, const std::vector<std::string>& texts)
{
    Bytes area = Bytes{1, 0} + start;
    for (const std::string& text : texts) {
        area.push_back(static_cast<unsigned char>(0xC0 | text.size()));
        area = area + textBytes(text);
    }
    area.push_back(0xC1);
    area.resize(area.size() / 8 * 8 + 7);
    area[1] = static_cast<unsigned char>((area.size() + 1) / 8);
    return summed(area);
}

/// A board: manufacturer, name, serial number, part number, file id and custom fields; English.
inline Bytes boardArea(const std::vector<std::string>& texts, const Bytes& date = {0, 0, 0x98})
{
    return fruArea(Bytes{0x19} + date, texts);
}

/// A product: manufacturer, name, part number, version, serial number, asset tag, file id.
inline Bytes productArea(const std::vector<std::string>& texts)
{
    return fruArea({0x19}, texts);
}

/// An image of a board area, a product area if there is one, and multirecords.
inline Bytes fruImage(const Bytes& board, const Bytes& product = {}, const Bytes& records = {})
{
    const auto units = [](std::size_t bytes) { return static_cast<unsigned char>(bytes / 8); };
    const std::size_t end = 8 + board.size() + product.size();
    Bytes header = {1, 0, 0, 1, 0, 0, 0};
    header[4] = product.empty() ? 0 : units(8 + board.size());
    header[5] = records.empty() ? 0 : units(end);
    return summed(header) + board + product + records;
}

}

#endif
