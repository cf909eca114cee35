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
inline Bytes imageOf(const TAVLib::SerializableObject& object)
{
    Bytes image(object.getSerializedSize());
    image.resize(object.getSerialized(image.data(), static_cast<unsigned int>(image.size())));
    return image;
}

inline bool load(TAVLib::SerializableObject& object, const Bytes& bytes)
{
    // A copy of the exact size, so that a sanitizer sees a read beyond it.
    const Bytes exact(bytes);
    return object.setSerialized(exact.data(), static_cast<unsigned int>(exact.size()));
}

template <typename Object> Object fromBytes(const Bytes& bytes)
{
    Object object;
    load(object, bytes);
    return object;
}

}

#endif
