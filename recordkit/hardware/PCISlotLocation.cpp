// SPDX-License-Identifier: Apache-2.0
#include <recordkit/hardware/PCISlotLocation.h>

namespace TAVLib::RecordKit {

void PCISlotLocation::setPCISlotLocation(unsigned int boardType, unsigned int position,
                                         unsigned char second, unsigned char flag)
{
    unsigned int kind = 0;
    switch (boardType) {
    case 8:
        kind = 1;
        setField(0, 1, position);
        break;
    case 35:
        kind = 0;
        setField(0, 1, position);
        break;
    case 38:
        kind = 2;
        setField(0, 1, flag);
        setField(2, 1, position);
        break;
    case 40:
        kind = 3;
        setField(0, 2, position);
        break;
    default:
        return;
    }
    setField(6, 2, kind);
    image[SECOND] = second;
}

void PCISlotLocation::setField(unsigned int bit, unsigned int width, unsigned int value)
{
    const unsigned int mask = (1U << width) - 1U;
    image[LOCATION] =
        static_cast<unsigned char>((image[LOCATION] & ~(mask << bit)) | (value & mask) << bit);
}

}
