// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_HARDWARE_PCICARDINFO_H
#define RECORDKIT_HARDWARE_PCICARDINFO_H

#include <recordkit/serial/BitField.h>
#include <recordkit/serial/ByteOrder.h>
#include <recordkit/serial/FixedSizeSerializableObject.h>

namespace TAVLib::RecordKit {

/// The card in a PCI slot.
///
/// | byte | width | meaning                                                               |
/// |------|-------|-----------------------------------------------------------------------|
/// | 0    | 1     | segment number                                                        |
/// | 1    | 1     | bus number                                                            |
/// | 2    | 1     | device and function number                                            |
/// | 3    | 2     | vendor id, low byte first                                             |
/// | 5    | 2     | device id, low byte first                                             |
/// | 7    | 1     | bit 7: the frequency is in byte 8; bits 2..0: frequency code          |
/// | 8    | 1     | bits 5..0: extended frequency                                         |
class RECORDKIT_API PCICardInfo : public FixedSizeSerializableObject {
public:
    enum Offset {
        SEGMENT = 0,
        BUS = 1,
        DEVICE_FUNCTION = 2,
        VENDOR = 3,
        DEVICE = 5,
        FREQUENCY = 7,
        EXTENDED_FREQUENCY = 8,
        SIZE = 9,
    };

    unsigned char getSegmentNum() const { return image[SEGMENT]; }
    unsigned char getBusNum() const { return image[BUS]; }
    unsigned char getDevFun() const { return image[DEVICE_FUNCTION]; }
    unsigned short getVendorId() const { return readLE16(image + VENDOR); }
    unsigned short getDeviceId() const { return readLE16(image + DEVICE); }
    /// Vendor and device id are both FFFFh.
    bool isUnknownPCICard() { return getVendorId() == UNKNOWN && getDeviceId() == UNKNOWN; }
    /// The frequency code, or 80h and the extended frequency.
    unsigned char getPCIFrequency() const;

    unsigned int getSerializedSize() const override { return SIZE; }

protected:
    unsigned char* getInternalData() const override { return image; }

private:
    static constexpr unsigned short UNKNOWN = 0xFFFF;

    mutable unsigned char image[SIZE] = {};
};

}

#endif
