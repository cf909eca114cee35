// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_SERIAL_PADDEDIMAGE_H
#define RECORDKIT_SERIAL_PADDEDIMAGE_H

#include <vector>

#include <recordkit/serial/SerializableObject.h>

namespace TAVLib {

/// Loads an image that comes from outside. Some classes trust counts inside an image beyond its
/// length, as their headers say; here they read a copy that goes on in zero bytes for as long as
/// any of them may look. The result is that of setSerialized with the image's own length.
RECORDKIT_API bool setSerializedPadded(SerializableObject& object,
                                       const std::vector<unsigned char>& image);

}

#endif
