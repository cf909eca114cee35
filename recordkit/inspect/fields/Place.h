// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_INSPECT_FIELDS_PLACE_H
#define RECORDKIT_INSPECT_FIELDS_PLACE_H

#include <string>

namespace recordkit::inspect {

/// Whole bytes of an image, or some bits of one byte.
struct Place {
    unsigned int offset = 0;
    unsigned int width = 0; ///< bytes; 0 for what is not in the image
    unsigned int high = 7;  ///< the highest and the lowest bit
    unsigned int low = 0;

    constexpr bool isBits() const { return high != 7 || low != 0; }
    constexpr unsigned int end() const { return offset + width; }
    constexpr bool contains(unsigned int byte, unsigned int bit) const
    {
        return byte >= offset && byte < end() && bit >= low && bit <= high;
    }
    constexpr Place movedBy(unsigned int bytes) const { return {offset + bytes, width, high, low}; }

    /// "3" or "7..6"; empty for whole bytes.
    std::string bitsText() const;
    /// "4", "4 to 7", "4 bit 3", "4 bit 7..6"; "-" for what is not in the image.
    std::string text() const;
};

constexpr bool operator==(const Place& left, const Place& right)
{
    return left.offset == right.offset && left.width == right.width && left.high == right.high &&
           left.low == right.low;
}

constexpr Place bytesAt(unsigned int offset, unsigned int width = 1)
{
    return {offset, width};
}
constexpr Place bitAt(unsigned int offset, unsigned int bit)
{
    return {offset, 1, bit, bit};
}
constexpr Place bitsAt(unsigned int offset, unsigned int high, unsigned int low)
{
    return {offset, 1, high, low};
}

}

#endif
