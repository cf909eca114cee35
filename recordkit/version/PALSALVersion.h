// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_VERSION_PALSALVERSION_H
#define RECORDKIT_VERSION_PALSALVERSION_H

#include <string>

#include <recordkit/serial/FixedSizeSerializableObject.h>

namespace TAVLib::RecordKit {

/// Versions of PAL and SAL: five pairs of bytes, the minor number (BCD) before the major one.
///
/// | byte | width | meaning          |
/// |------|-------|------------------|
/// | 0    | 2     | PAL A generic    |
/// | 2    | 2     | PAL A specific   |
/// | 4    | 2     | PAL B            |
/// | 6    | 2     | SAL A            |
/// | 8    | 2     | SAL B            |
///
/// Numbers are 256 x major + decimal minor.
class RECORDKIT_API PALSALVersion : public FixedSizeSerializableObject {
public:
    enum Offset {
        PAL_A_GENERIC = 0,
        PAL_A_SPECIFIC = 2,
        PAL_B = 4,
        SAL_A = 6,
        SAL_B = 8,
        SIZE = 10,
    };

    unsigned short getPAL_A_GEN() const { return number(PAL_A_GENERIC); }
    unsigned short getPAL_A_SPEC() const { return number(PAL_A_SPECIFIC); }
    unsigned short getPAL_B() const { return number(PAL_B); }
    unsigned short getSAL_A() const { return number(SAL_A); }
    unsigned short getSAL_B() const { return number(SAL_B); }

    /// "5.07 / 5.09": PAL A specific and PAL B; "-" when PAL A generic and PAL B are both 0.
    std::string getPALVersionString() const;
    /// SAL A and SAL B; "-" when both are 0.
    std::string getSALVersionString() const;
    /// SAL B; "-" when PAL B is 0.
    std::string getVersionString() const;

    unsigned char BCDtoBin(unsigned char bcd) const;

    unsigned int getSerializedSize() const override { return SIZE; }

protected:
    unsigned char* getInternalData() const override { return image; }

private:
    unsigned short number(Offset pair) const;
    std::string text(Offset pair) const;

    mutable unsigned char image[SIZE] = {};
};

}

#endif
