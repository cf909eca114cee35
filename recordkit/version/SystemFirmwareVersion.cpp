// SPDX-License-Identifier: Apache-2.0
#include <recordkit/version/SystemFirmwareVersion.h>

#include <cstdio>

#include <recordkit/platform/FirmupFile.h>

#include "VersionText.h"

namespace TAVLib::RecordKit {

std::string SystemFirmwareVersion::getVersionString() const
{
    if (image[FIRST] == 0 && image[SECOND] == 0) {
        return NO_VERSION;
    }
    constexpr int BEFORE_A = 0x40;
    char text[64];
    std::snprintf(text, sizeof text, "%c%c%02d%02d%01d", 'S', image[LETTER] + BEFORE_A,
                  FirmupFile::BCDtoBin(static_cast<char>(image[FIRST])),
                  FirmupFile::BCDtoBin(static_cast<char>(image[SECOND])), image[THIRD]);
    return text;
}

}
