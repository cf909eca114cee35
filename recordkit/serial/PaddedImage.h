// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_SERIAL_PADDEDIMAGE_H
#define RECORDKIT_SERIAL_PADDEDIMAGE_H

#include <vector>

#include <recordkit/serial/SerializableObject.h>

namespace TAVLib {

/// Loads an untrusted image. Some classes trust counts in the image beyond the given length, as
/// their headers document, so they are given a copy padded with enough zero bytes that no read
/// leaves the buffer. Returns what setSerialized returns for the unpadded length.
RECORDKIT_API bool setSerializedPadded(SerializableObject& object,
                                       const std::vector<unsigned char>& image);

}

#endif
