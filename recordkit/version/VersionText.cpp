// SPDX-License-Identifier: Apache-2.0
#include "VersionText.h"

#include <cstdio>

#include <recordkit/serial/BitField.h>

namespace TAVLib::RecordKit {

unsigned char bcdToDecimal(unsigned char bcd)
{
    return static_cast<unsigned char>(get_bit(bcd, 4, 4) * 10 + get_bit(bcd, 0, 4));
}

std::string versionText(unsigned char major, unsigned char minor)
{
    char text[16];
    std::snprintf(text, sizeof text, "%01d.%02d", major, minor);
    return text;
}

}
