// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_HARDWARE_MEMORYSPDDATA_H
#define RECORDKIT_HARDWARE_MEMORYSPDDATA_H

#include <string>

#include <recordkit/serial/BitField.h>
#include <recordkit/serial/FixedSizeSerializableObject.h>

namespace TAVLib::RecordKit {

/// A DDR3 DIMM's serial presence detect data (JEDEC Annex K), decoded to the codes of DIMMType.
///
/// | byte  | width | meaning                                                                     |
/// |-------|-------|-----------------------------------------------------------------------------|
/// | 4     | 1     | bits 3..0: density of one device, 256 Mbit doubled as often                 |
/// | 7     | 1     | bits 5..3: ranks less one, bits 2..0: device width, 4 bits doubled as often |
/// | 8     | 1     | bits 2..0: bus width, 8 bits doubled as often                               |
/// | 122   | 4     | serial number, most significant byte first                                  |
/// | 128   | 18    | part number                                                                 |
/// | other |       | carried unchanged                                                           |
///
/// Nothing is thrown: there is a code for what cannot be decoded.
class RECORDKIT_API MemorySPDData : public FixedSizeSerializableObject {
public:
    enum Offset {
        DENSITY = 4,
        ORGANIZATION = 7,
        BUS_WIDTH = 8,
        SERIAL_NUMBER = 122,
        PART_NUMBER = 128,
        SIZE = 146,
    };
    static constexpr unsigned int PART_NUMBER_LENGTH = 18;

    /// Codes of a module's capacity.
    enum DIMMSize : unsigned char {
        DIMM_2_GB = 1,
        DIMM_4_GB = 2,
        DIMM_8_GB = 3,
        DIMM_16_GB = 4,
        DIMM_32_GB = 5,
        DIMM_UNKNOWN = 15, ///< any other capacity, and what cannot be decoded
    };

    /// The rank field as stored: 0 means one rank.
    unsigned char getRankNum() const { return get_bit(image[ORGANIZATION], 3, 3); }
    /// One of DIMMSize.
    unsigned char getDIMMSize() const;
    /// 2 for devices of 4 Gbit, 3 of 8, 4 of 16, 5 of 32; 1 for all others.
    unsigned char getDRAMSize() const;
    /// Always 0: callers read the rate from the controller's own record.
    unsigned char getDataRate() const { return 0; }
    unsigned int getSerialNumber() const;
    /// Up to 18 characters, cut at the first zero byte; trailing blanks are kept.
    std::string getModulePartNumber() const;

    unsigned int getSerializedSize() const override { return SIZE; }

protected:
    unsigned char* getInternalData() const override { return image; }

private:
    unsigned char density() const { return get_bit(image[DENSITY], 0, 4); }

    mutable unsigned char image[SIZE] = {};
};

}

#endif
