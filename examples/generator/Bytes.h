// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_EXAMPLES_GENERATOR_BYTES_H
#define RECORDKIT_EXAMPLES_GENERATOR_BYTES_H

#include <algorithm>
#include <cstddef>
#include <string>
#include <vector>

#include <recordkit/inspect/bytes/ByteView.h>

namespace generator {

using recordkit::inspect::Bytes;

/// A file of the example, by its path in the folder.
struct File {
    std::string path;
    Bytes bytes;
};
using Files = std::vector<File>;

/// Replaces bytes of an image from an offset on.
inline void put(Bytes& image, std::size_t offset, const Bytes& bytes)
{
    std::copy(bytes.begin(), bytes.end(), image.begin() + static_cast<std::ptrdiff_t>(offset));
}

inline void putText(Bytes& image, std::size_t offset, const std::string& text)
{
    put(image, offset, Bytes(text.begin(), text.end()));
}

/// The bytes of a number, low byte first.
inline Bytes lowFirst(unsigned long number, unsigned int width)
{
    Bytes bytes;
    for (unsigned int i = 0; i < width; ++i) {
        bytes.push_back(static_cast<unsigned char>(number >> 8 * i & 0xFF));
    }
    return bytes;
}

inline Bytes join(Bytes first, const Bytes& second)
{
    first.insert(first.end(), second.begin(), second.end());
    return first;
}

/// The byte that makes all of them add up to 0 modulo 256.
inline unsigned char balanceOf(const Bytes& bytes)
{
    unsigned int sum = 0;
    for (const unsigned char byte : bytes) {
        sum += byte;
    }
    return static_cast<unsigned char>(0U - sum);
}

}

#endif
