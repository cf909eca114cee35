// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_HARDWARE_PCIBOXINFO_H
#define RECORDKIT_HARDWARE_PCIBOXINFO_H

#include <vector>

#include <recordkit/serial/BitField.h>
#include <recordkit/serial/SerializableObject.h>

namespace TAVLib::RecordKit {

/// One PCI box: its state, and its link cards with the slots behind them.
///
/// | byte | width    | meaning                                                        |
/// |------|----------|----------------------------------------------------------------|
/// | 0    | 1        | bit 0: present, bit 1: powered on, bit 2: fault                |
/// | 1    | 7        | carried unchanged                                              |
/// | 8    | 1        | bit 0: PEXU present, bit 1: PEXU powered on, bit 2: PEXU fault |
/// | 9    | 3        | carried unchanged                                              |
/// | 12   | 1        | l, the number of link cards                                    |
/// | 13   | l blocks | a block for each link card, CONNECT_GSPB_INFO first            |
///
/// | byte of a block | width | meaning                                           |
/// |-----------------|-------|---------------------------------------------------|
/// | 0               | 1     | the GSPB that the card is cabled to; 255 for none |
/// | 1               | 1     | the port on that GSPB                             |
/// | 2               | 1     | c, the number of slots of the card                |
/// | 3               | c x 2 | status word of each slot, low byte first          |
///
/// Nothing is thrown. A query for a missing card or slot writes one trace line (module 83, location
/// 0x0D00, level 0, message 20010; "isParamError(lnkc)" or "isParamError(slotNum)", and "out of
/// range:N, size=M") and returns a neutral value. A card without slots counts as missing, except
/// for getLinkCards.
class RECORDKIT_API PCIBOXInfo : public SerializableObject {
public:
    enum Offset { BOX_FLAGS = 0, PEXU_FLAGS = 8, CARD_COUNT = 12, HEADER_SIZE = 13 };

    /// The first three bytes of a link card block.
    struct CONNECT_GSPB_INFO {
        unsigned char connectedId;
        unsigned char portNo;
        unsigned char slotCount;
    };

    ~PCIBOXInfo() override;

    bool isPresent() const { return flag(BOX_FLAGS, 0); }
    bool isPowerON() const { return flag(BOX_FLAGS, 1); }
    bool isFault() const { return flag(BOX_FLAGS, 2); }
    bool isPEXUPresent() const { return flag(PEXU_FLAGS, 0); }
    bool isPEXUPowerON() const { return flag(PEXU_FLAGS, 1); }
    bool isPEXUFault() const { return flag(PEXU_FLAGS, 2); }

    /// Replaces the contents of `cards` with 0, 1, ..., l - 1.
    void getLinkCards(std::vector<int>& cards) const;
    /// 255 for a missing card.
    unsigned char getConnectedId(int card) const;
    bool isConnected(int card) const;
    unsigned char getPortNo(int card) const;
    /// 0 for a missing slot.
    unsigned short getPCISlotStatus(int card, int slot) const;
    /// Replaces the contents of `slots` with 0, 1, ..., c - 1; clears it for a missing card.
    void getPCISlots(int card, std::vector<int>& slots) const;
    /// Whether a card or a slot is missing; traces it if so.
    bool isParamError(int card, int slot) const;

    unsigned int getSerializedSize() const override;
    /// 0 and a trace line (module 83, location 0x0D00, level 0, message 20008) if the buffer is too
    /// short.
    unsigned int getSerialized(unsigned char* buffer, unsigned int length) const override;
    /// False, the same trace line and an unchanged object if `length` is too short. Images of up to
    /// 12 bytes are too short (13 needed); without a PEXU there are no link cards, whatever byte 12
    /// says.
    ///
    /// The check counts one byte for each slot, not two, because controllers cut images short. So
    /// `data` must contain all blocks and slots that its counts declare, whatever `length` says: up
    /// to 130828 bytes (see PaddedImage.h).
    bool setSerialized(const unsigned char* data, unsigned int length) override;

private:
    bool flag(Offset byte, unsigned int bit) const { return get_bit(header[byte], bit, 1) != 0; }

    unsigned char header[HEADER_SIZE] = {};
    std::vector<CONNECT_GSPB_INFO> cards;
    std::vector<std::vector<unsigned short>> slotStatus; ///< by card
};

}

#endif
