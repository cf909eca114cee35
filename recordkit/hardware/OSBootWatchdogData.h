// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_HARDWARE_OSBOOTWATCHDOGDATA_H
#define RECORDKIT_HARDWARE_OSBOOTWATCHDOGDATA_H

#include <algorithm>

#include <recordkit/serial/FixedSizeSerializableObject.h>

namespace TAVLib::RecordKit {

/// The OS boot watchdog's data; the meaning of the bytes is up to the callers.
///
/// | byte | width | meaning               |
/// |------|-------|-----------------------|
/// | 0    | 1     | watchdog data 1       |
/// | 1    | 4     | carried unchanged     |
class RECORDKIT_API OSBootWatchdogData : public FixedSizeSerializableObject {
public:
    unsigned char getBootWatchdogData1() const { return image[DATA_1]; }
    void setBootWatchdogData1(unsigned char value) { image[DATA_1] = value; }
    /// Copies five bytes.
    void setOSBootWatchdogData(unsigned char* data) { std::copy_n(data, SIZE, image); }

    unsigned int getSerializedSize() const override { return SIZE; }

protected:
    unsigned char* getInternalData() const override { return image; }

private:
    enum Offset { DATA_1 = 0, SIZE = 5 };

    mutable unsigned char image[SIZE] = {};
};

}

#endif
