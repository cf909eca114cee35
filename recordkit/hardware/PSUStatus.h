// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_HARDWARE_PSUSTATUS_H
#define RECORDKIT_HARDWARE_PSUSTATUS_H

#include <recordkit/serial/BitField.h>
#include <recordkit/serial/FixedSizeSerializableObject.h>

namespace TAVLib::RecordKit {

/// State of a power supply; byte 1 has the offsets of the IPMI power supply sensor (IPMI v2.0,
/// table 42-3, sensor type 08h).
///
/// | byte | width | meaning                                                                      |
/// |------|-------|------------------------------------------------------------------------------|
/// | 0    | 1     | bit 0: powered on                                                            |
/// | 1    | 1     | bit 0: installed, bit 1: failure, bit 2: predictive failure, bit 3: AC lost, |
/// |      |       | bit 5: input out of range, bit 6: configuration error; the others are not    |
/// |      |       | read                                                                         |
class RECORDKIT_API PSUStatus : public FixedSizeSerializableObject {
public:
    enum Offset { POWER = 0, STATE = 1, SIZE = 2 };

    bool isPowerOn() const { return flag(POWER, 0); }
    bool isInstalled() const { return flag(STATE, 0); }
    bool isFailure() const { return flag(STATE, 1); }
    bool isPredictiveFailure() const { return flag(STATE, 2); }
    bool isACLost() const { return flag(STATE, 3); }
    bool isOutOfRange() const { return flag(STATE, 5); }
    bool isConfigError() const { return flag(STATE, 6); }

    unsigned int getSerializedSize() const override { return SIZE; }

protected:
    unsigned char* getInternalData() const override { return image; }

private:
    bool flag(Offset byte, unsigned int bit) const { return get_bit(image[byte], bit, 1) != 0; }

    mutable unsigned char image[SIZE] = {};
};

}

#endif
