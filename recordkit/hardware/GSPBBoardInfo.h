// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_HARDWARE_GSPBBOARDINFO_H
#define RECORDKIT_HARDWARE_GSPBBOARDINFO_H

#include <vector>

#include <recordkit/serial/BitField.h>
#include <recordkit/serial/SerializableObject.h>

namespace TAVLib::RecordKit {

/// One GSPB board: its state, the status of its GbE and SAS ports, and what is connected to its PCI
/// box ports.
///
/// | byte         | width    | meaning                                                           |
/// |--------------|----------|-------------------------------------------------------------------|
/// | 0            | 1        | bit 0: installed, bit 1: powered on, bit 2: fault, bit 3: divided |
/// | 1            | 3        | carried unchanged                                                 |
/// | 4            | 1        | board type                                                        |
/// | 5            | 3        | carried unchanged                                                 |
/// | 8            | 1        | g, the number of GbE ports                                        |
/// | 9            | g x 2    | status word of each GbE port, low byte first                      |
/// | 9 + 2g       | 1        | s, the number of SAS ports                                        |
/// | 10 + 2g      | s x 2    | status word of each SAS port, low byte first                      |
/// | 10 + 2g + 2s | 1        | p, the number of PCI box ports                                    |
/// | 11 + 2g + 2s | p blocks | CONNECTED_UNIT_INFO of each PCI box port                          |
///
/// | byte of a block | width | meaning                                 |
/// |-----------------|-------|-----------------------------------------|
/// | 0               | 1     | number of the connected PCI box         |
/// | 1               | 1     | number of the connected logical PCI box |
///
/// A missing port throws PException (module 83, location 0x0F00, action 1, detail 0x0B00, message
/// 20010) with the operation ("getGbEPortStatus()") and "not found GbE Port", "not found SAS Port"
/// or "not found PCI_Box Port".
class RECORDKIT_API GSPBBoardInfo : public SerializableObject {
public:
    enum Offset { FLAGS = 0, BOARD_TYPE = 4, GBE_COUNT = 8, HEADER_SIZE = 9, LEAST_SIZE = 11 };

    /// What is connected to a PCI box port; FFh means nothing.
    struct CONNECTED_UNIT_INFO {
        unsigned char pciBox;
        unsigned char logicalPCIBox;
    };

    ~GSPBBoardInfo() override;

    unsigned char getBoardType() const { return header[BOARD_TYPE]; }
    bool isInstalled() const { return flag(0); }
    bool isPowerOn() const { return flag(1); }
    bool isFault() const { return flag(2); }
    bool isDivided() const { return flag(3); }

    unsigned short getGbEPortStatus(unsigned int port) const;
    unsigned short getSASPortStatus(unsigned int port) const;
    /// Number of the PCI box at a port; -1 for none.
    int getConnectedPCIBox(unsigned int port) const;
    int getConnectedLogicalPCIBox(unsigned int port) const;

    /// Each replaces the vector's contents with 0, 1, ..., count - 1.
    void getGbEPorts(std::vector<int>& ports);
    void getSASPorts(std::vector<int>& ports);
    void getPCIBoxPorts(std::vector<int>& ports);

    unsigned int getSerializedSize() const override
    {
        return LEAST_SIZE + 2U * (header[GBE_COUNT] + sasCount + pciBoxCount);
    }
    /// 0 and a trace line (module 83, location 0x0F00, level 0, message 20008) if the buffer is too
    /// short.
    unsigned int getSerialized(unsigned char* buffer, unsigned int length) const override;
    /// False, the same trace line and an unchanged object if `length` is below the size that the
    /// counts imply. The counts are read before `length` is checked, so `data` must contain them:
    /// up to 1031 bytes (see PaddedImage.h).
    ///
    /// The entries of the PCI box ports are added to those of earlier images, because callers
    /// collect several images in one object, and all of them can be queried; sizes and
    /// getPCIBoxPorts follow the last image's count, and getSerialized writes only that many, the
    /// first ones.
    bool setSerialized(const unsigned char* data, unsigned int length) override;

private:
    bool flag(unsigned int bit) const { return get_bit(header[FLAGS], bit, 1) != 0; }
    const CONNECTED_UNIT_INFO& entryOf(unsigned int port, const char* method) const;

    unsigned char header[HEADER_SIZE] = {};
    std::vector<unsigned short> gbeStatus;
    unsigned char sasCount = 0;
    std::vector<unsigned short> sasStatus;
    unsigned char pciBoxCount = 0;
    std::vector<CONNECTED_UNIT_INFO> pciBoxes;
};

}

#endif
