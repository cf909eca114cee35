// SPDX-License-Identifier: Apache-2.0
#include <recordkit/version/PALSALVersion.h>

#include "VersionText.h"

namespace TAVLib::RecordKit {

namespace {

constexpr const char* SEPARATOR = " / ";

}

std::string PALSALVersion::getPALVersionString() const
{
    // PAL A generic decides and PAL A specific is shown: displays are laid out for that.
    return getPAL_A_GEN() == 0 && getPAL_B() == 0 ? NO_VERSION
                                                  : text(PAL_A_SPECIFIC) + SEPARATOR + text(PAL_B);
}

std::string PALSALVersion::getSALVersionString() const
{
    return getSAL_A() == 0 && getSAL_B() == 0 ? NO_VERSION : text(SAL_A) + SEPARATOR + text(SAL_B);
}

std::string PALSALVersion::getVersionString() const
{
    // PAL B tells whether the firmware is present, SAL B is the version that people know.
    return getPAL_B() == 0 ? NO_VERSION : text(SAL_B);
}

unsigned char PALSALVersion::BCDtoBin(unsigned char bcd) const
{
    return bcdToDecimal(bcd);
}

unsigned short PALSALVersion::number(Offset pair) const
{
    return static_cast<unsigned short>(image[pair + 1] << 8 | BCDtoBin(image[pair]));
}

std::string PALSALVersion::text(Offset pair) const
{
    return versionText(image[pair + 1], BCDtoBin(image[pair]));
}

}
