// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_SERIAL_FIXEDSIZESERIALIZABLEOBJECT_H
#define RECORDKIT_SERIAL_FIXEDSIZESERIALIZABLEOBJECT_H

#include <algorithm>

#include <recordkit/serial/SerializableObject.h>

namespace TAVLib {

/// A data object whose image has one size; the derived class owns the storage.
///
/// Nothing is traced or thrown, and nothing is allocated. Both copies are defined inline so that a
/// caller that knows the concrete class gets a plain memcpy.
class RECORDKIT_API FixedSizeSerializableObject : public SerializableObject {
public:
    ~FixedSizeSerializableObject() override;

    /// Copies the whole image; 0 and an untouched buffer when `length` is below the size.
    unsigned int getSerialized(unsigned char* buffer, unsigned int length) const override
    {
        const unsigned int size = getSerializedSize();
        if (size > length) {
            return 0;
        }
        std::copy_n(getInternalData(), size, buffer);
        return size;
    }

    /// Loads the first getSerializedSize() bytes; false and an unchanged object when `length` is
    /// below the size. A longer image is accepted: controllers append bytes that older readers do
    /// not know.
    bool setSerialized(const unsigned char* data, unsigned int length) override
    {
        const unsigned int size = getSerializedSize();
        if (size > length) {
            return false;
        }
        std::copy_n(data, size, getInternalData());
        return true;
    }

protected:
    FixedSizeSerializableObject() = default;
    FixedSizeSerializableObject(const FixedSizeSerializableObject&) = default;
    FixedSizeSerializableObject& operator=(const FixedSizeSerializableObject&) = default;

    /// First byte of the image, getSerializedSize() bytes long and writable. The operation is
    /// const, and so a derived class declares its image mutable, because callers on the board have
    /// compiled in this one slot for both directions.
    virtual unsigned char* getInternalData() const = 0;
};

}

#endif
