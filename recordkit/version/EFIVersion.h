// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_VERSION_EFIVERSION_H
#define RECORDKIT_VERSION_EFIVERSION_H

#include <string>

#include <recordkit/serial/ByteOrder.h>
#include <recordkit/serial/FixedSizeSerializableObject.h>

namespace TAVLib::RecordKit {

/// Version of the EFI firmware.
///
/// | byte | width | meaning                                              |
/// |------|-------|------------------------------------------------------|
/// | 0    | 4     | low part, most significant byte first                |
/// | 4    | 4     | high part, most significant byte first               |
/// | 8    | 2     | build number, most significant byte first            |
class RECORDKIT_API EFIVersion : public FixedSizeSerializableObject {
public:
    enum Offset { LOW = 0, HIGH = 4, BUILD = 8, SIZE = 10 };

    unsigned int getEFILow() const { return readBE32(image + LOW); }
    unsigned int getEFIHigh() const { return readBE32(image + HIGH); }
    unsigned short getBuildNumber() const { return readBE16(image + BUILD); }

    /// Four numbers of two bytes, here low byte first: those at bytes 2, 0, 6 and 4, as "2.1.4.3".
    /// "-" when the first eight bytes are 0.
    std::string getVersionString() const;

    unsigned int getSerializedSize() const override { return SIZE; }

protected:
    unsigned char* getInternalData() const override { return image; }

private:
    mutable unsigned char image[SIZE] = {};
};

}

#endif
