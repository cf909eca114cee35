// SPDX-License-Identifier: Apache-2.0
#include <recordkit/version/DeviceIDResponse.h>

#include "VersionText.h"

namespace TAVLib::RecordKit {

unsigned char DeviceIDResponse::getFirmMinorVersion() const
{
    return bcdToDecimal(image[MINOR]);
}

}
