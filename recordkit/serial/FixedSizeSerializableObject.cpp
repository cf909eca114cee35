// SPDX-License-Identifier: Apache-2.0
#include <recordkit/serial/FixedSizeSerializableObject.h>

#include <algorithm>

namespace TAVLib {

unsigned int FixedSizeSerializableObject::getSerialized(unsigned char* buffer,
                                                        unsigned int length) const
{
    const unsigned int size = getSerializedSize();
    if (size > length) {
        return 0;
    }
    std::copy_n(getInternalData(), size, buffer);
    return size;
}

bool FixedSizeSerializableObject::setSerialized(const unsigned char* data, unsigned int length)
{
    const unsigned int size = getSerializedSize();
    if (size > length) {
        return false;
    }
    std::copy_n(data, size, getInternalData());
    return true;
}

}
