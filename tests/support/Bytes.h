// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_TESTS_SUPPORT_BYTES_H
#define RECORDKIT_TESTS_SUPPORT_BYTES_H

#include <initializer_list>
#include <string>
#include <vector>

#include <recordkit/serial/SerializableObject.h>

namespace testing_support {

using Bytes = std::vector<unsigned char>;

/// first, first + 1, ... of the given length, modulo 256.
inline Bytes sequence(std::size_t length, unsigned int first = 0)
{
    Bytes bytes(length);
    for (std::size_t i = 0; i < length; ++i) {
        bytes[i] = static_cast<unsigned char>(first + i);
    }
    return bytes;
}

inline Bytes operator+(Bytes left, const Bytes& right)
{
    left.insert(left.end(), right.begin(), right.end());
    return left;
}

inline Bytes part(const Bytes& bytes, std::size_t from, std::size_t length)
{
    return Bytes(bytes.begin() + static_cast<long>(from),
                 bytes.begin() + static_cast<long>(from + length));
}

inline Bytes textBytes(const std::string& text)
{
    return Bytes(text.begin(), text.end());
}

/// The image that an object hands out.
Bytes imageOf(const TAVLib::SerializableObject& object);

/// Gives the object a copy of exactly these bytes, so that a sanitizer sees a read beyond them.
bool load(TAVLib::SerializableObject& object, const Bytes& bytes);

template <typename Object> Object fromBytes(const Bytes& bytes)
{
    Object object;
    load(object, bytes);
    return object;
}

}

#endif
