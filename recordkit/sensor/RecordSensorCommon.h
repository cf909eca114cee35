// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_SENSOR_RECORDSENSORCOMMON_H
#define RECORDKIT_SENSOR_RECORDSENSORCOMMON_H

#include <algorithm>
#include <cstring>

#include <recordkit/sensor/RecordHeader.h>
#include <recordkit/serial/BitField.h>

namespace TAVLib::RecordKit {

/// What full and compact sensor records have in common (IPMI v2.0, sections 43.1 and 43.2). Offsets
/// are those of the record.
///
/// | byte | width | meaning                                                |
/// |------|-------|--------------------------------------------------------|
/// | 0    |       | as RecordHeader                                        |
/// | 5    | 1     | sensor owner id                                        |
/// | 6    | 1     | bits 7..4: channel number, bits 1..0: sensor owner LUN |
/// | 7    | 1     | sensor number                                          |
/// | 8    | 1     | entity id                                              |
/// | 9    | 1     | entity instance                                        |
/// | 10   | 1     | sensor initialization                                  |
/// | 11   | 1     | sensor capabilities                                    |
/// | 12   | 1     | sensor type                                            |
/// | 13   | 1     | event/reading type code                                |
/// | 14   | 2     | assertion event mask, low byte first                   |
/// | 16   | 2     | deassertion event mask, low byte first                 |
/// | 18   | 2     | discrete reading mask, low byte first                  |
/// | 20   | 1     | sensor units 1; bits 7..6: analog data format          |
/// | 21   | 1     | sensor units 2: base unit                              |
/// | 22   | 1     | sensor units 3: modifier unit                          |
///
/// After these bytes the two kinds differ. Each ends in an id string: a type/length byte (bits 7..6
/// type, bits 4..0 length; bit 5 stays unchanged) and up to 16 bytes.
///
/// Accessors copy bytes and bits, and check nothing. Only setIDStringBytes throws. The order of the
/// virtual operations is part of the binary interface.
class RECORDKIT_API RecordSensorCommon : public RecordHeader {
public:
    enum Offset {
        OWNER_ID = 5,
        OWNER_LUN = 6,
        SENSOR_NUMBER = 7,
        ENTITY_ID = 8,
        ENTITY_INSTANCE = 9,
        INITIALIZATION = 10,
        CAPABILITIES = 11,
        SENSOR_TYPE = 12,
        EVENT_TYPE = 13,
        ASSERTION_MASK = 14,
        DEASSERTION_MASK = 16,
        READING_MASK = 18,
        UNITS_1 = 20,
        UNITS_2 = 21,
        UNITS_3 = 22,
    };

    /// Maximum length of an id string in bytes.
    static constexpr unsigned int VARIABLE_FIELD_LENGTH = 16;

    ~RecordSensorCommon() override;

    virtual unsigned char getSensorOwnerID() const { return common[OWNER_ID]; }
    virtual void setSensorOwnerID(unsigned char value) { common[OWNER_ID] = value; }
    virtual unsigned char getChannelNumber() const { return get_bit(common[OWNER_LUN], 4, 4); }
    /// Bits 3..0 of the value.
    virtual void setChannelNumber(unsigned char channel);
    virtual unsigned char getSensorOwnerLUN() const { return get_bit(common[OWNER_LUN], 0, 2); }
    /// Bits 1..0 of the value.
    virtual void setSensorOwnerLUN(unsigned char lun);
    virtual unsigned char getSensorNumber() const { return common[SENSOR_NUMBER]; }
    virtual void setSensorNumber(unsigned char value) { common[SENSOR_NUMBER] = value; }
    virtual unsigned char getEntityID() const { return common[ENTITY_ID]; }
    virtual void setEntityID(unsigned char value) { common[ENTITY_ID] = value; }
    virtual unsigned char getEntityInstance() const { return common[ENTITY_INSTANCE]; }
    virtual void setEntityInstance(unsigned char value) { common[ENTITY_INSTANCE] = value; }
    virtual unsigned char getSensorInitialization() const { return common[INITIALIZATION]; }
    virtual void setSensorInitialization(unsigned char value) { common[INITIALIZATION] = value; }
    virtual unsigned char getSensorCapabilities() const { return common[CAPABILITIES]; }
    virtual void setSensorCapabilities(unsigned char value) { common[CAPABILITIES] = value; }
    virtual unsigned char getSensorType() const { return common[SENSOR_TYPE]; }
    virtual void setSensorType(unsigned char value) { common[SENSOR_TYPE] = value; }
    virtual unsigned char getEvtReadTypeCode() const { return common[EVENT_TYPE]; }
    virtual void setEvtReadTypeCode(unsigned char value) { common[EVENT_TYPE] = value; }
    virtual unsigned short getAssertEventMask() const { return readLE16(common + ASSERTION_MASK); }
    virtual void setAssertEventMask(unsigned short mask)
    {
        writeLE16(mask, common + ASSERTION_MASK);
    }
    virtual unsigned short getDeassertEventMask() const
    {
        return readLE16(common + DEASSERTION_MASK);
    }
    virtual void setDeassertEventMask(unsigned short mask)
    {
        writeLE16(mask, common + DEASSERTION_MASK);
    }
    virtual unsigned short getDiscreteReadMask() const { return readLE16(common + READING_MASK); }
    virtual void setDiscreteReadMask(unsigned short mask)
    {
        writeLE16(mask, common + READING_MASK);
    }
    virtual unsigned char getSensorUnits1() const { return common[UNITS_1]; }
    virtual unsigned char getAnalogDataFormat() const { return get_bit(common[UNITS_1], 6, 2); }
    virtual void setSensorUnits1(unsigned char value) { common[UNITS_1] = value; }
    virtual unsigned char getSensorUnits2() const { return common[UNITS_2]; }
    virtual void setSensorUnits2(unsigned char value) { common[UNITS_2] = value; }
    virtual unsigned char getSensorUnits3() const { return common[UNITS_3]; }
    virtual void setSensorUnits3(unsigned char value) { common[UNITS_3] = value; }

    virtual unsigned char getPositiveGoingThresholdHyst() const = 0;
    virtual void setPositiveGoingThresholdHyst(unsigned char value) = 0;
    virtual unsigned char getNegativeGoingThresholdHyst() const = 0;
    virtual void setNegativeGoingThresholdHyst(unsigned char value) = 0;

    /// Stores up to 16 bytes, their type and their length, and corrects the record length; the
    /// bytes after them stay. More bytes throw PException (module 83, location 0x0700, action 1,
    /// detail 0x0B00, message 20034, "setIDStringBytes(len)" and the length) and change nothing.
    virtual void setIDStringBytes(const unsigned char* bytes, unsigned int len, unsigned char type);
    /// Copies the string, or its first `size` bytes, and returns how many. Bytes beyond the image,
    /// which a length field of 17 to 31 claims, are 0.
    virtual unsigned int getIDStringBytes(unsigned char* buf, unsigned int size) const;
    virtual unsigned char getIDStringType() const;
    /// 0 to 31: the field as stored; an image can contain values above 16.
    virtual unsigned int getIDStringLength() const;

    /// The type/length byte; the string follows it.
    virtual unsigned char* getIDStringStruct() = 0;
    virtual const unsigned char* getIDStringStructConst() const = 0;
    /// What the record length of the header should be.
    virtual unsigned char getCurrentRecordLength() const = 0;

    void setIDStringType(unsigned char type);
    /// Values above 16 become 16.
    void setIDStringLength(unsigned int length);

protected:
    explicit RecordSensorCommon(unsigned char* image) : RecordHeader(image), common(image) {}

    /// SerializableObject's operations for a record whose fixed part, which the type/length byte
    /// ends, has this size.
    bool takeImage(const unsigned char* data, unsigned int length, unsigned int fixedSize)
    {
        if (length < fixedSize) {
            return false;
        }
        // An object may be loaded from its own image, or from a part of it.
        std::memmove(common, data, fixedSize);
        const unsigned int string =
            std::min(common[fixedSize - 1] & LENGTH_BITS, VARIABLE_FIELD_LENGTH);
        // An incomplete string is refused, but the fixed part is replaced anyway: callers read it
        // after such a failure.
        if (length < fixedSize + string) {
            return false;
        }
        std::memmove(common + fixedSize, data + fixedSize, string);
        std::fill_n(common + fixedSize + string, VARIABLE_FIELD_LENGTH - string,
                    static_cast<unsigned char>(0));
        return true;
    }
    unsigned int giveImage(unsigned char* buffer, unsigned int length,
                           unsigned int fixedSize) const;

private:
    /// Of a type/length byte.
    static constexpr unsigned int LENGTH_BITS = 0x1F;

    unsigned char* const common;
};

}

#endif
