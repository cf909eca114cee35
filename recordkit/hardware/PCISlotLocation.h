// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_HARDWARE_PCISLOTLOCATION_H
#define RECORDKIT_HARDWARE_PCISLOTLOCATION_H

#include <recordkit/serial/FixedSizeSerializableObject.h>

namespace TAVLib::RecordKit {

/// Where a PCI slot is, packed in two bytes.
///
/// | byte | width | meaning                                                                      |
/// |------|-------|------------------------------------------------------------------------------|
/// | 0    | 1     | kind and position; bits 7..6: kind of board, 0 to 3, bits 2..0: position, by |
/// |      |       | kind                                                                         |
/// | 1    | 1     | the rest of the address, as it was given                                     |
class RECORDKIT_API PCISlotLocation : public FixedSizeSerializableObject {
public:
    enum Offset { LOCATION = 0, SECOND = 1, SIZE = 2 };

    /// Packs an address, by the type of the board.
    ///
    /// | boardType | kind | position                | flag       |
    /// |-----------|------|-------------------------|------------|
    /// | 8         | 1    | bit 0 to bit 0          | -          |
    /// | 35        | 0    | bit 0 to bit 0          | -          |
    /// | 38        | 2    | bit 0 to bit 2          | to bit 0   |
    /// | 40        | 3    | bits 1..0 to bits 1..0  | -          |
    ///
    /// Bits of byte 0 that the kind does not use keep their old value, which callers have set. For
    /// any other type nothing changes, byte 1 included.
    void setPCISlotLocation(unsigned int boardType, unsigned int position, unsigned char second,
                            unsigned char flag);

    unsigned int getSerializedSize() const override { return SIZE; }

protected:
    unsigned char* getInternalData() const override { return image; }

private:
    void setField(unsigned int bit, unsigned int width, unsigned int value);

    mutable unsigned char image[SIZE] = {};
};

}

#endif
