// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_SEL_BMCSELENTRY_H
#define RECORDKIT_SEL_BMCSELENTRY_H

#include <string>

#include <recordkit/sel/OEMSELEntry.h>

namespace TAVLib::RecordKit {

/// The management board's wider form of an OEM SEL entry: the SELEntry image and a block of
/// 112 BMC bytes.
///
/// | byte | width | meaning                                              |
/// |------|-------|------------------------------------------------------|
/// | 0    |       | as SELEntry                                          |
/// | 18   | 1     | number of OEM event data bytes that follow, 13       |
/// | 19   | 13    | OEM event data 1 to 13                               |
/// | 32   | 55    | carried unchanged; zero in a new block               |
/// | 87   | 2     | partition bitmask, low byte first                    |
/// | 89   | 19    | part number: type/length byte, 18 characters         |
/// | 108  | 17    | serial number: type/length byte, 12 or 16 characters |
/// | 125  | 5     | carried unchanged: further OEM bytes                 |
///
/// Block byte n is byte 18 + n. Block bytes 69 to 111 are extended bytes 13 to 55 of the OEM entry.
/// The extended data inherited from OEMSELEntry are not part of this image; only convert() reads
/// them. A new entry has zeroed buffers and no valid bytes.
///
/// Failures are traced (module 83, location 0x1300, level 0). The accessors throw PException
/// (location 0x1300, action 1, detail 0x0B00, message 20008, "BMCSELEntry", block bytes present,
/// block bytes needed) when too few block bytes are present.
class RECORDKIT_API BMCSELEntry : public OEMSELEntry {
public:
    enum BlockSize : unsigned int {
        BMC_BLOCK_SIZE = 112,
        BMC_IMAGE_SIZE = IMAGE_SIZE + BMC_BLOCK_SIZE,
    };

    /// Offsets in the BMC block.
    enum BlockOffset : unsigned int {
        BLOCK_EVENT_DATA_COUNT = 0,
        BLOCK_EVENT_DATA = 1,
        BLOCK_PARTITION_BITMASK = 69,
        BLOCK_PART_NUMBER_TYPE_LENGTH = 71,
        BLOCK_PART_NUMBER = 72,
        BLOCK_SERIAL_NUMBER_TYPE_LENGTH = 90,
        BLOCK_SERIAL_NUMBER = 91,
    };

    /// Rebuilds the BMC block from the OEM extended data of this object.
    void convert();

    /// Copies the SEL record and the OEM data of `src`, which must contain a complete record for
    /// its OEM data to be found. 1, or 0 and a trace line when `src` has no image; the BMC block is
    /// then zeroed and the record kept.
    int convert(OEMSELEntry& src);

    /// Stores a part number of at most 18 characters, padded with zero bytes and always declared as
    /// 18 bytes of text: readers stop at the first zero byte. A longer part number is traced and
    /// changes nothing.
    void setPartNo(std::string& partNo);

    unsigned int getSerialized(unsigned char* buf, unsigned int size) const override;
    unsigned int getSerializedSize() const override;

    /// Accepts up to 130 bytes; the rest is ignored. An image of at most 18 bytes leaves the BMC
    /// block as it was, by design. Fewer than 2 bytes are refused and leave the object unchanged.
    bool setSerialized(const unsigned char* data, unsigned int size) override;

    /// The partitions that the event concerns; needs 71 block bytes.
    unsigned short getPartitionBitmask() const;

    /// Whether partition p exists and the event concerns it; needs 71 block bytes.
    bool isPartitionValid(unsigned char p);

    /// Part number of the unit involved, at most 18 bytes of it; needs 90 block bytes.
    std::string getPartNo();

    /// Serial number of the unit involved, at most `maxLength` bytes of it and never more than the
    /// 21 in the block; needs 103 block bytes.
    std::string getSerialNo(unsigned int maxLength);

protected:
    /// The BMC block storage, 112 bytes, valid or not.
    const unsigned char* getBlock() const { return block; }

private:
    void fillBlock(const unsigned char* extendedData);
    void requireBlockLength(int needed) const;

    unsigned char block[BMC_BLOCK_SIZE] = {};
    int blockLength = 0;
};

}

#endif
