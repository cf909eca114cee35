// SPDX-License-Identifier: Apache-2.0
#include <recordkit/sel/BMCLog.h>

#include <algorithm>

#include <recordkit/serial/ImageCopy.h>

namespace TAVLib::RecordKit {

unsigned int BMCLog::getSerialized(unsigned char* buf, unsigned int size) const
{
    return copyImage(BMC_LOG_LOCATION, "BMCLog::getSerialized", buffer, validLength, buf, size);
}

bool BMCLog::setSerialized(const unsigned char* data, unsigned int size)
{
    validLength = std::min<unsigned int>(size, MAX_SIZE);
    std::copy_n(data, validLength, buffer);
    return true;
}

}
