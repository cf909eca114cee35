// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_SEL_SELENTRY_H
#define RECORDKIT_SEL_SELENTRY_H

#include <string>

#include <recordkit/serial/SerializableObject.h>

namespace TAVLib::RecordKit {

/// The body of an IPMI Get SEL Entry response: the next record id and one SEL record
/// (IPMI v2.0, section 32.1).
///
/// | byte | width | meaning                                                                   |
/// |------|-------|---------------------------------------------------------------------------|
/// | 0    | 2     | next record id, low byte first                                            |
/// | 2    | 2     | record id, low byte first                                                 |
/// | 4    | 1     | record type                                                               |
/// | 5    | 4     | timestamp, low byte first                                                 |
/// | 9    | 1     | generator id 1: a slave address in bits 7..1, or if bit 0 is set a system |
/// |      |       | software id                                                               |
/// | 10   | 1     | generator id 2; bits 1..0: LUN of the generator                           |
/// | 11   | 1     | event message format revision                                             |
/// | 12   | 1     | sensor type                                                               |
/// | 13   | 1     | sensor number                                                             |
/// | 14   | 1     | bit 7: direction, bits 6..0: event/reading type                           |
/// | 15   | 3 x 1 | event data 1 to 3                                                         |
///
/// Record bytes are numbered from 1 as in IPMI: record byte n is at offset n + 1. A new entry has a
/// zeroed image and no record bytes.
///
/// Failures to load or store an image are traced (module 83, location 0x0900, level 0, message
/// 20008). The accessors throw PException (location 0x0900, action 1) when the record is too short
/// for them (detail 0x0B00, message 20008, "SELEntry", bytes present, bytes needed).
class RECORDKIT_API SELEntry : public SerializableObject {
public:
    enum Size : unsigned int { HEADER_SIZE = 2, RECORD_SIZE = 16, IMAGE_SIZE = 18 };

    /// Record bytes by their IPMI number.
    enum RecordByte : int {
        RECORD_ID = 1,
        RECORD_TYPE = 3,
        TIMESTAMP = 4,
        GENERATOR_ID_1 = 8,
        GENERATOR_ID_2 = 9,
        EVM_REVISION = 10,
        SENSOR_TYPE = 11,
        SENSOR_NUMBER = 12,
        EVENT_TYPE = 13,
        EVENT_DATA_1 = 14,
        // Of OEM records: with a timestamp, and without.
        OEM_MANUFACTURER_ID = 8,
        OEM_TIMESTAMPED_DATA = 11,
        OEM_UNTIMESTAMPED_DATA = 4,
    };

    /// Record types (IPMI v2.0, sections 32.1 to 32.3); those of the OEM range up to DFh and FFh.
    enum RecordType : unsigned char {
        SYSTEM_EVENT_RECORD = 0x02,
        FIRST_OEM_TIMESTAMPED_RECORD = 0xC0,
        FIRST_OEM_UNTIMESTAMPED_RECORD = 0xE0,
    };

    /// 0 and a trace line when `size` is below the serialized size.
    unsigned int getSerialized(unsigned char* buf, unsigned int size) const override;
    unsigned int getSerializedSize() const override { return HEADER_SIZE + recordSize(); }

    /// Accepts up to 18 bytes; the rest is ignored. Fewer than 2 bytes are refused with a trace
    /// line and leave the object unchanged.
    bool setSerialized(const unsigned char* data, unsigned int size) override;

    /// The 16 record bytes as 32 lower-case hex digits; needs a complete record.
    std::string printSELData() const;

    /// Record byte `pos`, 1 to 16; throws for a byte beyond the end of the record.
    ///
    /// There is no lower bound: 0 and -1 return the next record id's high and low byte, which
    /// callers use. Positions before the image return 0.
    unsigned char getSpecifiedBytePosData(int pos) const;

    /// The 8-bit IPMB slave address of the generator; needs record byte 8.
    ///
    /// The generator id bytes of system software map to one of the two controllers: 5Fh, 71h and
    /// 81h to 24h; 01h, 37h and 41h to 20h. Throws for any other (detail 0x0B01, message 20030,
    /// "Get Slave Address", "GeneratorID_byte1", the id).
    unsigned char getSlaveAddress() const;

    /// The LUN of the generator, 0 to 3; needs record byte 9. Generator id byte 5Fh is always
    /// LUN 1.
    ///
    /// Throws for a generator id byte that is not listed at getSlaveAddress (detail 0x0B01, message
    /// 20030, "Get LUN", "GeneratorID_byte1", and generator id byte 2 as the value).
    unsigned char getLUN() const;

protected:
    /// The whole image storage, 18 bytes, of which recordLength + 2 are valid.
    const unsigned char* getImage() const { return image; }
    int getRecordLength() const { return recordLength; }
    /// Ends an image with the `rest` bytes that its size claims: those present, then zeroes if a
    /// derived class claims a larger size.
    static void appendPart(unsigned char* end, unsigned int rest, const unsigned char* part,
                           unsigned int partSize);
    unsigned int recordSize() const { return static_cast<unsigned int>(recordLength); }

private:
    unsigned char at(RecordByte byte) const { return image[byte + 1]; }
    void requireRecordLength(int needed) const;

    unsigned char image[IMAGE_SIZE] = {};
    int recordLength = 0;
};

}

#endif
