// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_SENSOR_FULLSENSORRECORD_H
#define RECORDKIT_SENSOR_FULLSENSORRECORD_H

#include <recordkit/sensor/RecordSensorCommon.h>
#include <recordkit/serial/SerializableObject.h>

namespace TAVLib::RecordKit {

/// A full sensor record (IPMI v2.0, section 43.1).
///
/// | byte | width    | meaning                                                 |
/// |------|----------|---------------------------------------------------------|
/// | 0    |          | as RecordSensorCommon                                   |
/// | 23   | 19       | carried unchanged                                       |
/// | 42   | 1        | positive-going threshold hysteresis                     |
/// | 43   | 1        | negative-going threshold hysteresis                     |
/// | 44   | 3        | carried unchanged                                       |
/// | 47   | 1        | bits 7..6: type of the id string, bits 4..0: its length |
/// | 48   | up to 16 | id string                                               |
/// | 64   | up to 15 | carried unchanged: zero if the length is above 16       |
///
/// A new record is all zero. A copy has its own image.
class RECORDKIT_API FullSensorRecord : public RecordSensorCommon, public SerializableObject {
public:
    enum Offset : unsigned int {
        POSITIVE_HYST = 42,
        NEGATIVE_HYST = 43,
        ID_STRING = 47,
        FIXED_SIZE = 48,
        SIZE = FIXED_SIZE + VARIABLE_FIELD_LENGTH,
    };

    FullSensorRecord();
    ~FullSensorRecord() override;
    FullSensorRecord(const FullSensorRecord& other);
    FullSensorRecord& operator=(const FullSensorRecord& other);

    unsigned char getPositiveGoingThresholdHyst() const override { return image[POSITIVE_HYST]; }
    void setPositiveGoingThresholdHyst(unsigned char value) override
    {
        image[POSITIVE_HYST] = value;
    }
    unsigned char getNegativeGoingThresholdHyst() const override { return image[NEGATIVE_HYST]; }
    void setNegativeGoingThresholdHyst(unsigned char value) override
    {
        image[NEGATIVE_HYST] = value;
    }
    unsigned char* getIDStringStruct() override { return image + ID_STRING; }
    const unsigned char* getIDStringStructConst() const override { return image + ID_STRING; }
    unsigned char getCurrentRecordLength() const override;

    /// 0 and an untouched buffer if it is too short.
    unsigned int getSerialized(unsigned char* buf, unsigned int size) const override;
    /// 48 plus the length of the id string, as its field declares it.
    unsigned int getSerializedSize() const override { return FIXED_SIZE + getIDStringLength(); }
    /// Accepts 48 bytes and the id string, of which it keeps 16 bytes; the rest is ignored. False
    /// and an unchanged record below 48 bytes; false, and a record with a new fixed part and the
    /// old string, if the string is incomplete.
    bool setSerialized(const unsigned char* data, unsigned int len) override
    {
        return takeImage(data, len, FIXED_SIZE);
    }

private:
    unsigned char image[SIZE] = {};
};

}

#endif
