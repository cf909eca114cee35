// SPDX-License-Identifier: Apache-2.0
#include <recordkit/version/BMCVersion.h>

#include "VersionText.h"

namespace TAVLib::RecordKit {

std::string BMCVersion::getVersionString() const
{
    return hasVersion() ? versionText(getFirmMajorVersion(), getFirmMinorVersion()) : NO_VERSION;
}

}
