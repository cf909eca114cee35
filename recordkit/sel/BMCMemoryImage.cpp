// SPDX-License-Identifier: Apache-2.0
#include <recordkit/sel/BMCMemoryImage.h>

#include <recordkit/serial/ImageCopy.h>

namespace TAVLib::RecordKit {

unsigned int BMCMemoryImage::getSerialized(unsigned char* buf, unsigned int size) const
{
    // Reported under the location of BMCLog, with which it shares its codes.
    return copyImage(BMC_LOG_LOCATION, "BMCMemoryImage::getSerialized", buffer, validLength, buf,
                     size);
}

bool BMCMemoryImage::setSerialized(const unsigned char* data, unsigned int size)
{
    validLength = keepImage(data, size, buffer, MAX_SIZE);
    return true;
}

}
