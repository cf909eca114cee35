// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_HARDWARE_SLOTBOARDINFO_H
#define RECORDKIT_HARDWARE_SLOTBOARDINFO_H

#include <vector>

#include <recordkit/serial/BitField.h>
#include <recordkit/serial/SerializableObject.h>

namespace TAVLib::RecordKit {

/// The common part of boards with PCI slots: IOUBoardInfo and SASUBoardInfo derive from it.
///
/// | byte | width | meaning                                           |
/// |------|-------|---------------------------------------------------|
/// | 0    | 1     | bit 0: installed, bit 1: powered on, bit 2: fault |
/// | 1    | 3     | carried unchanged                                 |
/// | 4    | 1     | board type                                        |
/// | 5    | 3     | carried unchanged                                 |
/// | 8    | 1     | n, the number of PCI slots                        |
/// | 9    | n x 2 | status word of each slot, low byte first          |
class RECORDKIT_API SlotBoardInfo : public SerializableObject {
public:
    enum Offset { FLAGS = 0, BOARD_TYPE = 4, SLOT_COUNT = 8, HEADER_SIZE = 9 };

    unsigned char getBoardType() const { return header[BOARD_TYPE]; }
    bool isInstalled() const { return flag(0); }
    bool isPowerOn() const { return flag(1); }
    bool isFault() const { return flag(2); }

    /// Status word of a slot. Throws PException (module 83, the class's location, action 1, detail
    /// 0x0B00, message 20010, "getPCISlotStatus()", "not found PCISlot") for a missing slot.
    unsigned short getPCISlotStatus(unsigned int slot) const;
    /// Replaces the contents of `slots` with 0, 1, ..., n - 1.
    void getPCISlots(std::vector<int>& slots);

    unsigned int getSerializedSize() const override
    {
        return HEADER_SIZE + 2U * header[SLOT_COUNT];
    }
    /// 0 and a trace line (module 83, the class's location, level 0, message 20008) if the buffer
    /// is too short.
    unsigned int getSerialized(unsigned char* buffer, unsigned int length) const override;
    /// False, the same trace line and an unchanged object if `length` is below 9 + 2 n. Byte 8 is
    /// read before `length` is checked, so `data` must contain it; bytes after the image are
    /// ignored.
    bool setSerialized(const unsigned char* data, unsigned int length) override;

protected:
    /// `locationCode` is that of the derived class, for its failures.
    explicit SlotBoardInfo(unsigned short locationCode) : location(locationCode) {}

    bool flag(unsigned int bit) const { return get_bit(header[FLAGS], bit, 1) != 0; }

private:
    unsigned char header[HEADER_SIZE] = {};
    std::vector<unsigned short> slotStatus;
    unsigned short location;
};

}

#endif
