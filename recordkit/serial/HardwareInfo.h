// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_SERIAL_HARDWAREINFO_H
#define RECORDKIT_SERIAL_HARDWAREINFO_H

#include <recordkit/serial/FixedSizeSerializableObject.h>

namespace TAVLib::RecordKit {

/// Which units of the cabinet are installed or connected, as the controller reports it.
///
/// | byte  | width | meaning                                                                     |
/// |-------|-------|-----------------------------------------------------------------------------|
/// | 0     | 1     | bit 0: management board 0, bit 1: management board 1                        |
/// | 1     | 1     | bit 0: GSPB 0, bit 1: GSPB 1, bit 2: SAS unit 0, bit 3: SAS unit 1, bit 4:  |
/// |       |       | SAS unit 2, bit 5: SAS unit 3                                               |
/// | 3     | 1     | bit 0: system board 0, bit 1: system board 1, bit 2: system board 2, bit 3: |
/// |       |       | system board 3                                                              |
/// | 5     | 1     | bit 0: IOB 0, bit 1: IOB 1                                                  |
/// | 7     | 1     | bit 0: PCI box 0, bit 1: PCI box 1                                          |
/// | other |       | carried unchanged                                                           |
///
/// Each query takes the unit's index. For an index outside the given range it returns false and
/// writes one trace line (level 200, message 20027, the unit kind as location); nothing is thrown.
/// The ranges belong to the image and do not follow the machine's own unit counts.
class RECORDKIT_API HardwareInfo : public FixedSizeSerializableObject {
public:
    enum Offset { TAV = 0, GSPB_AND_SASU = 1, SB = 3, IOB = 5, PCI_BOX = 7, SIZE = 8 };

    bool isTAVInstalled(int index) const;    ///< 0 and 1
    bool isGSPBInstalled(int index) const;   ///< 0 and 1
    bool isSASUInstalled(int index) const;   ///< 0 to 3
    bool isSBInstalled(int index) const;     ///< 0 to 3
    bool isIOBInstalled(int index) const;    ///< 0 and 1
    bool isPCIBOXInstalled(int index) const; ///< 0 and 1

    /// Writes the trace line of a bad index; the text is only read.
    void getParamErrorTrace(unsigned char unitKind, char* text, int value) const;

    unsigned int getSerializedSize() const override { return SIZE; }

protected:
    unsigned char* getInternalData() const override { return image; }

private:
    struct Unit {
        unsigned char kind;
        int count;
        Offset byte;
        unsigned int firstBit;
        const char* text;
    };

    bool isPresent(const Unit& unit, int index) const;

    mutable unsigned char image[SIZE] = {};
};

}

#endif
