// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_HARDWARE_BMC_BOOTFLAGSCLEARDATA_H
#define RECORDKIT_HARDWARE_BMC_BOOTFLAGSCLEARDATA_H

#include <recordkit/serial/BitField.h>
#include <recordkit/serial/FixedSizeSerializableObject.h>

namespace TAVLib::RecordKit {

/// Which events do not clear the boot flags' valid bit (IPMI v2.0, table 28-14, parameter 3).
///
/// | byte | width | meaning                                                         |
/// |------|-------|-----------------------------------------------------------------|
/// | 0    | 1     | flags; bit 3: kept when a boot does not come within the timeout |
class RECORDKIT_API BMC_BootFlagsClearData : public FixedSizeSerializableObject {
public:
    enum Offset { FLAGS = 0, SIZE = 1 };

    void setBootFlagsClearValid(bool valid) { writeBit(image[FLAGS], 3, valid); }

    unsigned int getSerializedSize() const override { return SIZE; }

protected:
    unsigned char* getInternalData() const override { return image; }

private:
    mutable unsigned char image[SIZE] = {};
};

}

#endif
