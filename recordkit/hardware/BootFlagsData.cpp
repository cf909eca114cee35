// SPDX-License-Identifier: Apache-2.0
#include <recordkit/hardware/BootFlagsData.h>

namespace TAVLib::RecordKit {

namespace {

constexpr unsigned char DEVICE_BITS = 0x3C;

}

void BootFlagsData::setBootFlagsData2(unsigned char value)
{
    image[DEVICE] = static_cast<unsigned char>((image[DEVICE] & ~DEVICE_BITS) | value);
}

unsigned char BootFlagsData::getBootFlagsData2() const
{
    const bool isValid = get_bit(image[FLAGS], 7, 1) != 0;
    return isValid ? static_cast<unsigned char>(image[DEVICE] & DEVICE_BITS)
                   : static_cast<unsigned char>(0);
}

}
