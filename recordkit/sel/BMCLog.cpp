// SPDX-License-Identifier: Apache-2.0
#include <recordkit/sel/BMCLog.h>

#include <recordkit/serial/ImageCopy.h>

namespace TAVLib::RecordKit {

unsigned int BMCLog::getSerialized(unsigned char* buf, unsigned int size) const
{
    return copyImage(BMC_LOG_LOCATION, "BMCLog::getSerialized", buffer, validLength, buf, size);
}

bool BMCLog::setSerialized(const unsigned char* data, unsigned int size)
{
    validLength = keepImage(data, size, buffer, MAX_SIZE);
    return true;
}

}
