// SPDX-License-Identifier: Apache-2.0
#include <recordkit/hardware/PCICardInfo.h>

namespace TAVLib::RecordKit {

unsigned char PCICardInfo::getPCIFrequency() const
{
    constexpr unsigned char EXTENDED = 0x80;
    if (get_bit(image[FREQUENCY], 7, 1) == 0) {
        return get_bit(image[FREQUENCY], 0, 3);
    }
    return static_cast<unsigned char>(EXTENDED | get_bit(image[EXTENDED_FREQUENCY], 0, 6));
}

}
