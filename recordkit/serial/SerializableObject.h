// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_SERIAL_SERIALIZABLEOBJECT_H
#define RECORDKIT_SERIAL_SERIALIZABLEOBJECT_H

#include <recordkit/platform/Export.h>

namespace TAVLib {

/// The contract of every data object: one raw byte image, loaded and stored as a whole.
///
/// Objects own their image by value, do no I/O and contain no locks. The order of the virtual
/// operations is part of the binary interface.
class RECORDKIT_API SerializableObject {
public:
    virtual ~SerializableObject();

    /// Writes the image to `buffer`, which has `length` bytes. Returns the number of bytes written,
    /// 0 when the buffer is too short.
    virtual unsigned int getSerialized(unsigned char* buffer, unsigned int length) const = 0;

    /// Number of bytes that getSerialized writes for the current contents.
    virtual unsigned int getSerializedSize() const = 0;

    /// Replaces the contents with an image of `length` bytes; false when the image is refused.
    virtual bool setSerialized(const unsigned char* data, unsigned int length) = 0;
};

}

#endif
