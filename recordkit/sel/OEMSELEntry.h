// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_SEL_OEMSELENTRY_H
#define RECORDKIT_SEL_OEMSELENTRY_H

#include <string>

#include <recordkit/sel/SELEntry.h>

namespace TAVLib::RecordKit {

/// A SEL entry with the extended event data that the board controllers append to it.
///
/// | byte | width  | meaning                                                         |
/// |------|--------|-----------------------------------------------------------------|
/// | 0    |        | as SELEntry                                                     |
/// | 18   | 13 x 1 | OEM event data 1 to 13                                          |
/// | 31   | 2      | partition bitmask, low byte first; bit p stands for partition p |
/// | 33   | 19     | part number: type/length byte, 18 characters                    |
/// | 52   | 13     | serial number: type/length byte, 12 characters                  |
/// | 65   | 9      | carried unchanged: further OEM bytes                            |
///
/// Extended byte n is byte 18 + n. Type/length bytes are those of the IPMI FRU Information Storage
/// Definition v1.0, section 13. A new entry has zeroed buffers and no valid bytes.
///
/// Failures to load or store an image are traced (module 83, location 0x0A00, level 0). The
/// accessors throw PException (location 0x0A00, action 1, detail 0x0B00, message 20008,
/// "OEMSELEntry", extended bytes present, extended bytes needed) when too few extended bytes are
/// present.
class RECORDKIT_API OEMSELEntry : public SELEntry {
public:
    enum ExtendedSize : unsigned int {
        EVENT_DATA_SIZE = 13,
        EXTENDED_SIZE = 56,
        OEM_IMAGE_SIZE = IMAGE_SIZE + EXTENDED_SIZE,
    };

    /// Offsets in the extended data.
    enum ExtendedOffset : unsigned int {
        EXTENDED_EVENT_DATA = 0,
        EXTENDED_PARTITION_BITMASK = 13,
        EXTENDED_PART_NUMBER_TYPE_LENGTH = 15,
        EXTENDED_PART_NUMBER = 16,
        EXTENDED_SERIAL_NUMBER_TYPE_LENGTH = 34,
        EXTENDED_SERIAL_NUMBER = 35,
    };

    /// Bytes of the coded fields.
    enum FieldSize : unsigned int { PART_NUMBER_SIZE = 18, SERIAL_NUMBER_SIZE = 12 };

    unsigned int getSerialized(unsigned char* buf, unsigned int size) const override;
    unsigned int getSerializedSize() const override;

    /// Accepts up to 74 bytes; the rest is ignored. An image of at most 18 bytes leaves the
    /// extended data as they were: callers combine a new record with the OEM data they already
    /// have. Fewer than 2 bytes are refused and leave the object unchanged.
    bool setSerialized(const unsigned char* data, unsigned int size) override;

    /// OEM event data byte n, from 1; throws beyond the extended bytes present; 0 for n below 1.
    unsigned char getSpecifiedEventData(int n) const;

    /// The partitions that the event concerns; needs 15 extended bytes.
    unsigned short getPartitionBitmask() const;

    /// Whether partition p exists and the event concerns it; needs 15 extended bytes.
    bool isPartitionValid(unsigned char p);

    /// Part number of the unit involved, at most 18 bytes of it; needs 34 extended bytes.
    std::string getPartNo();

    /// Serial number of the unit involved, at most 12 bytes of it.
    ///
    /// Needs 45 extended bytes although the field ends with the 47th: images that end before the
    /// field does are accepted, and the missing bytes keep their earlier values.
    std::string getSerialNo();

    /// The text of a coded field of at most `maxLength` bytes: hex digits for binary, the
    /// characters up to the first zero byte for 8-bit text, nothing for BCD plus and 6-bit ASCII. A
    /// length of 1 counts as empty, because FRU fields use that code for their end mark. `data`
    /// must have min(length in `typeLength`, maxLength) bytes.
    std::string getFRUData(unsigned char typeLength, unsigned char* data, unsigned int maxLength);

protected:
    /// The extended data storage, 56 bytes, valid or not.
    const unsigned char* getExtendedData() const { return extended; }

    /// Whether partition p exists and its bit is set.
    static bool isPartitionSet(unsigned short bitmask, unsigned char p);

private:
    void requireExtendedLength(int needed) const;

    unsigned char extended[EXTENDED_SIZE] = {};
    int extendedLength = 0;
};

}

#endif
