// SPDX-License-Identifier: Apache-2.0
#include <recordkit/platform/FirmupFile.h>

namespace TAVLib {

unsigned char FirmupFile::BCDtoBin(char bcd)
{
    const auto digits = static_cast<unsigned char>(bcd);
    return static_cast<unsigned char>((digits >> 4) * 10 + (digits & 0x0F));
}

}
