// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_HARDWARE_SBBOARDINFO_H
#define RECORDKIT_HARDWARE_SBBOARDINFO_H

#include <recordkit/serial/BitField.h>
#include <recordkit/serial/FixedSizeSerializableObject.h>

namespace TAVLib::RecordKit {

/// One system board: its type, its CPU and DIMM sockets, and their status words.
///
/// | byte  | width  | meaning                                          |
/// |-------|--------|--------------------------------------------------|
/// | 0     | 1      | board status; bit 4: the board is not supported  |
/// | 4     | 1      | board type                                       |
/// | 8     | 1      | CPU socket map, a bit for each populated socket  |
/// | 12    | 2 x 2  | status word of CPU 0 and 1, low byte first       |
/// | 16    | 4      | DIMM socket map, a bit for each populated socket |
/// | 32    | 32 x 2 | status word of DIMM 0 to 31, low byte first      |
/// | other |        | carried unchanged                                |
class RECORDKIT_API SBBoardInfo : public FixedSizeSerializableObject {
public:
    enum Offset : unsigned int {
        BOARD_STATUS = 0,
        BOARD_TYPE = 4,
        CPU_MAP = 8,
        CPU_STATUS = 12,
        DIMM_MAP = 16,
        DIMM_STATUS = 32,
        SIZE = 96,
    };

    /// Sockets, from 0.
    enum CPUIndex : unsigned int { CPU_0 = 0, CPU_1 = 1, CPUS = 2 };
    enum DIMMIndex : unsigned int { DIMM_0 = 0, DIMM_31 = 31, DIMMS = 32 };

    virtual unsigned char getBoardStatus() const { return image[BOARD_STATUS]; }
    bool isUnsupportedSB() const { return get_bit(getBoardStatus(), 4, 1) != 0; }
    unsigned char getBoardType() const { return image[BOARD_TYPE]; }

    /// Number of populated sockets.
    unsigned int getCPUSocketNum() const;
    unsigned int getDIMMSocketNum() const;

    /// Status word of a socket. Throws PException (module 83, location 0x0500, action 1, detail
    /// 0x0B00, message 20034, the text and the index) for a CPU above 1 ("getCPUStatus(cpuNum)")
    /// or a DIMM above 31 ("getDIMMStatus(dimmNum)").
    unsigned short getCPUStatus(CPUIndex cpu) const;
    unsigned short getDIMMStatus(DIMMIndex dimm) const;

    unsigned int getSerializedSize() const override { return SIZE; }

protected:
    unsigned char* getInternalData() const override { return image; }

private:
    mutable unsigned char image[SIZE] = {};
};

}

#endif
