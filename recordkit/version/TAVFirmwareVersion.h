// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_VERSION_TAVFIRMWAREVERSION_H
#define RECORDKIT_VERSION_TAVFIRMWAREVERSION_H

#include <string>

#include <recordkit/serial/FixedSizeSerializableObject.h>

namespace TAVLib::RecordKit {

/// Version of the management firmware.
///
/// | byte | width | meaning                      |
/// |------|-------|------------------------------|
/// | 0    | 1     | firmware, major              |
/// | 1    | 1     | firmware, minor, BCD         |
/// | 2    | 1     | boot firmware, major         |
/// | 3    | 1     | boot firmware, minor, BCD    |
/// | 4    | 1     | PSA reference version        |
/// | 5    | 1     | SAL reference version        |
///
/// Minor numbers are returned in decimal.
class RECORDKIT_API TAVFirmwareVersion : public FixedSizeSerializableObject {
public:
    enum Offset {
        FIRM_MAJOR = 0,
        FIRM_MINOR = 1,
        BOOT_MAJOR = 2,
        BOOT_MINOR = 3,
        PSA_REFERENCE = 4,
        SAL_REFERENCE = 5,
        SIZE = 6,
    };

    unsigned char getFirmMajorVersion() const { return image[FIRM_MAJOR]; }
    unsigned char getFirmMinorVersion() const;
    unsigned char getBootFirmMajorRevision() const { return image[BOOT_MAJOR]; }
    unsigned char getBootFirmMinorRevision() const;
    unsigned char getPSARefVersion() const { return image[PSA_REFERENCE]; }
    unsigned char getSALRefVersion() const { return image[SAL_REFERENCE]; }

    /// "2.15"; "0.00" for no version.
    std::string getVersionString() const;

    unsigned int getSerializedSize() const override { return SIZE; }

protected:
    unsigned char* getInternalData() const override { return image; }

private:
    mutable unsigned char image[SIZE] = {};
};

}

#endif
