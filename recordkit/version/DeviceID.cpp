// SPDX-License-Identifier: Apache-2.0
#include <recordkit/version/DeviceID.h>

#include <recordkit/serial/Failure.h>

#include "VersionText.h"

namespace TAVLib::RecordKit {

std::string DeviceID::getVersionString() const
{
    if (!hasVersion()) {
        traceLine(DEVICE_ID_LOCATION, LEVEL_ERROR, "Major Version and Minor Version is zero.");
        return NO_VERSION;
    }
    return versionText(getFirmMajorVersion(), getFirmMinorVersion());
}

}
