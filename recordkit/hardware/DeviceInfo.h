// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_HARDWARE_DEVICEINFO_H
#define RECORDKIT_HARDWARE_DEVICEINFO_H

#include <algorithm>

#include <recordkit/serial/FixedSizeSerializableObject.h>

namespace TAVLib::RecordKit {

/// The identity of a unit, 12 bytes whose meaning is up to the callers.
///
/// | byte | width | meaning              |
/// |------|-------|----------------------|
/// | 0    | 12    | identity of the unit |
class RECORDKIT_API DeviceInfo : public FixedSizeSerializableObject {
public:
    struct UnitID {
        unsigned char data[12];
    };
    enum Size { SIZE = sizeof(UnitID) };

    /// Fills `unit`.
    void getDeviceInfo(UnitID* unit) const { std::copy_n(image, SIZE, unit->data); }

    unsigned int getSerializedSize() const override { return SIZE; }

protected:
    unsigned char* getInternalData() const override { return image; }

private:
    mutable unsigned char image[SIZE] = {};
};

}

#endif
