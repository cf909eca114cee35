// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_HARDWARE_DIMMTYPE_H
#define RECORDKIT_HARDWARE_DIMMTYPE_H

#include <recordkit/serial/FixedSizeSerializableObject.h>

namespace TAVLib::RecordKit {

/// One DIMM, as the controller condenses it.
///
/// | byte | width | meaning                                             |
/// |------|-------|-----------------------------------------------------|
/// | 0    | 1     | slot status                                         |
/// | 1    | 1     | rank number                                         |
/// | 2    | 1     | DIMM size code, as MemorySPDData::getDIMMSize       |
/// | 3    | 1     | DRAM size code, as MemorySPDData::getDRAMSize       |
/// | 4    | 1     | data rate                                           |
class RECORDKIT_API DIMMType : public FixedSizeSerializableObject {
public:
    enum Offset {
        SLOT_STATUS = 0,
        RANKS = 1,
        DIMM_SIZE = 2,
        DRAM_SIZE = 3,
        DATA_RATE = 4,
        SIZE = 5
    };

    unsigned char getDIMMSlotStatus() const { return image[SLOT_STATUS]; }
    unsigned char getRankNum() const { return image[RANKS]; }
    unsigned char getDIMMSize() const { return image[DIMM_SIZE]; }
    unsigned char getDRAMSize() const { return image[DRAM_SIZE]; }
    unsigned char getDataRate() const { return image[DATA_RATE]; }

    unsigned int getSerializedSize() const override { return SIZE; }

protected:
    unsigned char* getInternalData() const override { return image; }

private:
    mutable unsigned char image[SIZE] = {};
};

}

#endif
