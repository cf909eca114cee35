// SPDX-License-Identifier: Apache-2.0
#include <recordkit/version/SystemInfoParameters.h>

#include <algorithm>

#include "VersionText.h"

namespace TAVLib::RecordKit {

std::string SystemInfoParameters::getVersionString() const
{
    if (image[VALIDITY] == 0) {
        return NO_VERSION;
    }
    const unsigned char* const first = image + TEXT;
    return std::string(first, std::find(first, first + TEXT_LENGTH, 0));
}

}
