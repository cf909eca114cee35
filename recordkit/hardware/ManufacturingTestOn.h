// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_HARDWARE_MANUFACTURINGTESTON_H
#define RECORDKIT_HARDWARE_MANUFACTURINGTESTON_H

#include <recordkit/serial/BitField.h>
#include <recordkit/serial/FixedSizeSerializableObject.h>

namespace TAVLib::RecordKit {

/// Switches of the manufacturing test.
///
/// | byte | width | meaning                                              |
/// |------|-------|------------------------------------------------------|
/// | 0    | 1     | bit 1: both system boards updated; bit 3: debug mode |
class RECORDKIT_API ManufacturingTestOn : public FixedSizeSerializableObject {
public:
    enum Offset { SWITCHES = 0, SIZE = 1 };

    bool isSBBothUpdate() const { return get_bit(image[SWITCHES], 1, 1) != 0; }
    bool isDebugMode() const { return get_bit(image[SWITCHES], 3, 1) != 0; }

    unsigned int getSerializedSize() const override { return SIZE; }

protected:
    unsigned char* getInternalData() const override { return image; }

private:
    mutable unsigned char image[SIZE] = {};
};

}

#endif
