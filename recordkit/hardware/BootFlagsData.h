// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_HARDWARE_BOOTFLAGSDATA_H
#define RECORDKIT_HARDWARE_BOOTFLAGSDATA_H

#include <recordkit/serial/BitField.h>
#include <recordkit/serial/FixedSizeSerializableObject.h>

namespace TAVLib::RecordKit {

/// Boot flags (IPMI v2.0, table 28-14, parameter 5).
///
/// | byte | width | meaning                                                                     |
/// |------|-------|-----------------------------------------------------------------------------|
/// | 0    | 1     | flags; bit 7: valid, bit 6: persistent, bit 5: boot type (0: PC compatible) |
/// | 1    | 1     | bits 5..2: boot device                                                      |
/// | 2    | 3 x 1 | further flags                                                               |
class RECORDKIT_API BootFlagsData : public FixedSizeSerializableObject {
public:
    enum Offset { FLAGS = 0, DEVICE = 1, FURTHER = 2, SIZE = 5 };

    void setBootFlagsValid(bool valid) { writeBit(image[FLAGS], 7, valid); }
    /// The bit says "persistent", so true clears it.
    void setNextBootOnly(bool nextOnly) { writeBit(image[FLAGS], 6, !nextOnly); }
    /// The bit says "EFI", so true clears it.
    void setBiosBootType(bool flag) { writeBit(image[FLAGS], 5, !flag); }
    /// Bits 5..2 of byte 1 become those of `value`. The other bits of `value` are not masked off
    /// but added, because callers set the lock bits with them.
    void setBootFlagsData2(unsigned char value);
    /// Bits 5..2 of byte 1, in place; 0 while the flags are not valid.
    unsigned char getBootFlagsData2() const;

    unsigned int getSerializedSize() const override { return SIZE; }

protected:
    unsigned char* getInternalData() const override { return image; }

private:
    mutable unsigned char image[SIZE] = {};
};

}

#endif
