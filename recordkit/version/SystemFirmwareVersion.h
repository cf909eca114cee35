// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_VERSION_SYSTEMFIRMWAREVERSION_H
#define RECORDKIT_VERSION_SYSTEMFIRMWAREVERSION_H

#include <string>

#include <recordkit/serial/FixedSizeSerializableObject.h>

namespace TAVLib::RecordKit {

/// Version of the system firmware.
///
/// | byte | width | meaning                          |
/// |------|-------|----------------------------------|
/// | 0    | 1     | letter, 1 for A                  |
/// | 1    | 1     | first number, BCD                |
/// | 2    | 1     | second number, BCD               |
/// | 3    | 1     | third number, one digit          |
class RECORDKIT_API SystemFirmwareVersion : public FixedSizeSerializableObject {
public:
    enum Offset { LETTER = 0, FIRST = 1, SECOND = 2, THIRD = 3, SIZE = 4 };

    /// "SB10053"; "-" when bytes 1 and 2 are 0.
    std::string getVersionString() const;

    unsigned int getSerializedSize() const override { return SIZE; }

protected:
    unsigned char* getInternalData() const override { return image; }

private:
    mutable unsigned char image[SIZE] = {};
};

}

#endif
