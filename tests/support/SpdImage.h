// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_TESTS_SUPPORT_SPDIMAGE_H
#define RECORDKIT_TESTS_SUPPORT_SPDIMAGE_H

#include <recordkit/inspect/memory/Spd.h>

#include "support/Bytes.h"

namespace testing_support {

/// A registered module of 8 GB with a right CRC.
inline Bytes spdModule()
{
    Bytes image(256, 0);
    image[0] = 0x92; // the CRC covers 117 bytes
    image[2] = 0x0B;
    image[3] = 0x01;
    image[4] = 0x04; // 4 Gbit
    image[7] = 0x09; // two ranks of 8 bits
    image[8] = 0x0B; // 64 bits and ECC
    const unsigned short crc =
        recordkit::inspect::spdCrc(recordkit::inspect::ByteView(image).part(0, 117));
    image[126] = static_cast<unsigned char>(crc & 0xFF);
    image[127] = static_cast<unsigned char>(crc >> 8);
    const Bytes serial = {0x12, 0x34, 0x56, 0x78};
    std::copy(serial.begin(), serial.end(), image.begin() + 122);
    const Bytes part = textBytes("RK-PART-4711      ");
    std::copy(part.begin(), part.end(), image.begin() + 128);
    return image;
}

}

#endif
