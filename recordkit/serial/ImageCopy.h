// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_SERIAL_IMAGECOPY_H
#define RECORDKIT_SERIAL_IMAGECOPY_H

#include <algorithm>

#include <recordkit/serial/Failure.h>

namespace TAVLib {

/// Copies a whole image of `length` bytes to a buffer of `size` and returns its length; traces
/// the length error and returns 0 when the buffer is too short.
inline unsigned int copyImage(FailureLocation where, const char* text, const unsigned char* image,
                              unsigned int length, unsigned char* buffer, unsigned int size)
{
    if (length > size) {
        traceLengthError(where, text, size, length);
        return 0;
    }
    std::copy_n(image, length, buffer);
    return length;
}

/// Keeps the first `capacity` bytes of an image of `size` bytes; returns how many there are.
inline unsigned int keepImage(const unsigned char* data, unsigned int size, unsigned char* buffer,
                              unsigned int capacity)
{
    const unsigned int kept = std::min(size, capacity);
    std::copy_n(data, kept, buffer);
    return kept;
}

}

#endif
