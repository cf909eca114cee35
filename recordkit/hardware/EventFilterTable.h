// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_HARDWARE_EVENTFILTERTABLE_H
#define RECORDKIT_HARDWARE_EVENTFILTERTABLE_H

#include <recordkit/serial/BitField.h>
#include <recordkit/serial/ByteOrder.h>
#include <recordkit/serial/FixedSizeSerializableObject.h>

namespace TAVLib::RecordKit {

/// An entry of the event filter table (IPMI v2.0, table 17-2).
///
/// | byte | width | meaning                            |
/// |------|-------|------------------------------------|
/// | 0    | 1     | bit 7: enabled                     |
/// | 1    | 1     | action                             |
/// | 2    | 1     | alert policy number                |
/// | 3    | 1     | event severity                     |
/// | 4    | 1     | generator id 1                     |
/// | 5    | 1     | generator id 2                     |
/// | 6    | 1     | sensor type                        |
/// | 7    | 1     | sensor number                      |
/// | 8    | 1     | event trigger                      |
/// | 9    | 2     | event offset mask, low byte first  |
/// | 11   | 9     | masks and values of the event data |
class RECORDKIT_API EventFilterTable : public FixedSizeSerializableObject {
public:
    enum Offset {
        CONFIGURATION = 0,
        ACTION = 1,
        ALERT_POLICY = 2,
        EVENT_SEVERITY = 3,
        GENERATOR_ID = 4,
        SENSOR_TYPE = 6,
        SENSOR_NUMBER = 7,
        TRIGGER = 8,
        OFFSET_MASK = 9,
        EVENT_DATA_MASKS = 11,
        SIZE = 20,
    };

    bool isFilterEnabled() const { return get_bit(image[CONFIGURATION], 7, 1) != 0; }
    unsigned char getGeneratorIdByte1() const { return image[GENERATOR_ID]; }
    unsigned char getSensorType() const { return image[SENSOR_TYPE]; }
    unsigned char getSensorNumber() const { return image[SENSOR_NUMBER]; }
    unsigned short getEventOffsetMask() const { return readLE16(image + OFFSET_MASK); }

    unsigned int getSerializedSize() const override { return SIZE; }

protected:
    unsigned char* getInternalData() const override { return image; }

private:
    mutable unsigned char image[SIZE] = {};
};

}

#endif
