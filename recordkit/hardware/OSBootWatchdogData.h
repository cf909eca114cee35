// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_HARDWARE_OSBOOTWATCHDOGDATA_H
#define RECORDKIT_HARDWARE_OSBOOTWATCHDOGDATA_H

#include <algorithm>

#include <recordkit/serial/FixedSizeSerializableObject.h>

namespace TAVLib::RecordKit {

/// The OS boot watchdog's data; the meaning of the bytes is up to the callers.
///
/// | byte | width | meaning         |
/// |------|-------|-----------------|
/// | 0    | 1     | watchdog data 1 |
/// | 1    | 4 x 1 | further bytes   |
class RECORDKIT_API OSBootWatchdogData : public FixedSizeSerializableObject {
public:
    enum Offset { DATA_1 = 0, FURTHER = 1, SIZE = 5 };

    unsigned char getBootWatchdogData1() const { return image[DATA_1]; }
    void setBootWatchdogData1(unsigned char value) { image[DATA_1] = value; }
    /// Copies five bytes.
    void setOSBootWatchdogData(unsigned char* data) { std::copy_n(data, SIZE, image); }

    unsigned int getSerializedSize() const override { return SIZE; }

protected:
    unsigned char* getInternalData() const override { return image; }

private:
    mutable unsigned char image[SIZE] = {};
};

}

#endif
