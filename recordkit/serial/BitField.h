// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_SERIAL_BITFIELD_H
#define RECORDKIT_SERIAL_BITFIELD_H

#include <type_traits>

namespace TAVLib {

/// The field of `width` bits that starts at bit `position` of a byte (bit 0 is the least
/// significant), shifted down to bit 0.
///
/// Widths of 8 and more return all bits from the position up; width 0 and positions of 8 and more
/// return 0. The value is a byte, or an int literal, of which only the low byte is used.
template <typename T> unsigned char get_bit(T value, unsigned int position, unsigned int width)
{
    static_assert(std::is_same_v<T, unsigned char> || std::is_same_v<T, int>,
                  "images are read byte by byte");
    constexpr unsigned int BITS = 8;
    const unsigned int mask = width >= BITS ? 0xFFU : (1U << width) - 1U;
    const unsigned int byte = static_cast<unsigned char>(value);
    return static_cast<unsigned char>(position >= BITS ? 0 : byte >> position & mask);
}

/// Sets or clears one bit of a byte.
inline void writeBit(unsigned char& byte, unsigned int position, bool isSet)
{
    const unsigned int bit = 1U << position;
    byte = static_cast<unsigned char>(isSet ? byte | bit : byte & ~bit);
}

}

#endif
