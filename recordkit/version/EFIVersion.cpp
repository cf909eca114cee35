// SPDX-License-Identifier: Apache-2.0
#include <recordkit/version/EFIVersion.h>

#include <cstdio>

#include "VersionText.h"

namespace TAVLib::RecordKit {

std::string EFIVersion::getVersionString() const
{
    if (getEFILow() == 0 && getEFIHigh() == 0) {
        return NO_VERSION;
    }
    char text[32];
    std::snprintf(text, sizeof text, "%d.%d.%d.%d", readLE16(image + LOW + 2),
                  readLE16(image + LOW), readLE16(image + HIGH + 2), readLE16(image + HIGH));
    return text;
}

}
