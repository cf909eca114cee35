// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_TESTS_INSPECT_FIELDS_FANTRAYINFO_H
#define RECORDKIT_TESTS_INSPECT_FIELDS_FANTRAYINFO_H

#include <recordkit/serial/BitField.h>
#include <recordkit/serial/ByteOrder.h>
#include <recordkit/serial/FixedSizeSerializableObject.h>

namespace TAVLib::RecordKit {

/// State of one fan tray: an invented record, which shows what a new class needs.
///
/// | byte | width | meaning                             |
/// |------|-------|-------------------------------------|
/// | 0    | 1     | bit 0: installed, bit 2: fault      |
/// | 1    | 1     | carried unchanged                   |
/// | 2    | 4 x 2 | speed of fan 0 to 3, low byte first |
class FanTrayInfo : public FixedSizeSerializableObject {
public:
    enum Offset { FLAGS = 0, SPEED = 2, SIZE = 10 };
    static constexpr unsigned int FANS = 4;

    bool isInstalled() const { return get_bit(image[FLAGS], 0, 1) != 0; }
    bool isFault() const { return get_bit(image[FLAGS], 2, 1) != 0; }
    /// Speed of one fan in rpm, from 0.
    unsigned short getSpeed(unsigned int fan) const { return readLE16(image + SPEED + 2 * fan); }

    unsigned int getSerializedSize() const override { return SIZE; }

protected:
    unsigned char* getInternalData() const override { return image; }

private:
    mutable unsigned char image[SIZE] = {};
};

}

#endif
