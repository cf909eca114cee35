// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_VERSION_DEVICEIDRESPONSE_H
#define RECORDKIT_VERSION_DEVICEIDRESPONSE_H

#include <recordkit/serial/BitField.h>
#include <recordkit/serial/FixedSizeSerializableObject.h>

namespace TAVLib::RecordKit {

/// Answer to Get Device ID (IPMI v2.0, table 20-2), as far as BMCVersion and DeviceID read it.
///
/// | byte | width | meaning                                   |
/// |------|-------|-------------------------------------------|
/// | 0    | 2     | carried unchanged: device id and revision |
/// | 2    | 1     | bits 6..0: firmware, major                |
/// | 3    | 1     | firmware, minor, BCD                      |
class RECORDKIT_API DeviceIDResponse : public FixedSizeSerializableObject {
public:
    enum Offset { MAJOR = 2, MINOR = 3, SIZE = 4 };

    unsigned char getFirmMajorVersion() const { return get_bit(image[MAJOR], 0, 7); }
    /// In decimal.
    unsigned char getFirmMinorVersion() const;

    unsigned int getSerializedSize() const override { return SIZE; }

protected:
    DeviceIDResponse() = default;

    bool hasVersion() const { return getFirmMajorVersion() != 0 || getFirmMinorVersion() != 0; }

    unsigned char* getInternalData() const override { return image; }

private:
    mutable unsigned char image[SIZE] = {};
};

}

#endif
