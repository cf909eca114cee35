// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_SERIAL_FIXEDSIZESERIALIZABLEOBJECT_H
#define RECORDKIT_SERIAL_FIXEDSIZESERIALIZABLEOBJECT_H

#include <recordkit/serial/SerializableObject.h>

namespace TAVLib {

/// A data object whose image has one size; the derived class owns the storage.
///
/// Nothing is traced or thrown, and nothing is allocated.
class RECORDKIT_API FixedSizeSerializableObject : public SerializableObject {
public:
    /// Copies the whole image; 0 and an untouched buffer when `length` is below the size.
    unsigned int getSerialized(unsigned char* buffer, unsigned int length) const override;

    /// Takes the leading getSerializedSize() bytes; false and an unchanged object when `length`
    /// is below the size. A longer image is accepted: controllers append bytes that older
    /// readers do not know.
    bool setSerialized(const unsigned char* data, unsigned int length) override;

protected:
    /// First byte of the image, getSerializedSize() bytes long and writable.
    virtual unsigned char* getInternalData() const = 0;
};

}

#endif
