// SPDX-License-Identifier: Apache-2.0
#include <recordkit/version/TAVFirmwareVersion.h>

#include "VersionText.h"

namespace TAVLib::RecordKit {

unsigned char TAVFirmwareVersion::getFirmMinorVersion() const
{
    return bcdToDecimal(image[FIRM_MINOR]);
}

unsigned char TAVFirmwareVersion::getBootFirmMinorRevision() const
{
    return bcdToDecimal(image[BOOT_MINOR]);
}

std::string TAVFirmwareVersion::getVersionString() const
{
    return versionText(getFirmMajorVersion(), getFirmMinorVersion());
}

}
