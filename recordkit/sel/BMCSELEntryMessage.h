// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_SEL_BMCSELENTRYMESSAGE_H
#define RECORDKIT_SEL_BMCSELENTRYMESSAGE_H

#include <string>

#include <recordkit/sel/BMCSELEntry.h>

namespace TAVLib::RecordKit {

/// A BMC SEL entry with a trailer: the record in each slot of the event log files.
///
/// | byte | width | meaning                                             |
/// |------|-------|-----------------------------------------------------|
/// | 0    |       | as BMCSELEntry                                      |
/// | 130  | 1     | trailer kind; 1: the trailer has its own bitmask    |
/// | 131  | 1     | carried unchanged                                   |
/// | 132  | 2     | partition bitmask of trailer kind 1, low byte first |
/// | 134  | 4     | carried unchanged                                   |
///
/// Trailer byte n is byte 130 + n. A new entry has zeroed buffers and no valid bytes. Failures to
/// load or store an image are traced (module 83, location 0x1400, level 0); this class throws
/// nothing of its own.
class RECORDKIT_API BMCSELEntryMessage : public BMCSELEntry {
public:
    enum TrailerSize : unsigned int {
        TRAILER_SIZE = 8,
        MESSAGE_IMAGE_SIZE = BMC_IMAGE_SIZE + TRAILER_SIZE,
    };

    /// Offsets in the trailer.
    enum TrailerOffset : unsigned int { TRAILER_KIND = 0, TRAILER_PARTITION_BITMASK = 2 };

    /// Characters of the serial number if the trailer is of kind 1.
    enum LongFieldSize : unsigned int { LONG_SERIAL_NUMBER_SIZE = 16 };

    /// The trailer kind that carries a partition bitmask and a serial number of 16 bytes.
    static constexpr unsigned char KIND_WITH_BITMASK = 1;

    /// As BMCSELEntry; the trailer becomes complete and of kind 0, its other bytes stay unchanged.
    void convert();
    int convert(OEMSELEntry& src);

    unsigned int getSerialized(unsigned char* buf, unsigned int size) const override;
    unsigned int getSerializedSize() const override;

    /// Accepts up to 138 bytes; the rest is ignored. An image that ends with the BMC block leaves
    /// the trailer as it was, by design. A record without a block, loaded while the object has a
    /// block, keeps the trailer's bytes and makes all 8 of them valid. Fewer than 2 bytes are
    /// refused and leave the object unchanged.
    bool setSerialized(const unsigned char* data, unsigned int size) override;

    /// The trailer's bitmask for trailer kind 1 (never throws), that of BMCSELEntry otherwise.
    unsigned short getPartitionBitmask() const;
    bool isPartitionValid(unsigned char p);

    /// At most 16 bytes of the serial number for trailer kind 1, at most 12 otherwise.
    std::string getSerialNo();

    /// Writes the event in its sender's form and returns the length: the BMCSELEntry image for
    /// trailer kind 1 (up to 130 bytes), an OEMSELEntry image rebuilt from the block otherwise (74
    /// bytes, of which those that this image lacks are 0). `out` must have room for as many.
    unsigned int getEventData(unsigned char* out);

private:
    bool hasOwnBitmask() const { return trailer[TRAILER_KIND] == KIND_WITH_BITMASK; }
    void resetTrailer();

    unsigned char trailer[TRAILER_SIZE] = {};
    int trailerLength = 0;
};

}

#endif
