// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_EEPROM_CHECKSUM_H
#define RECORDKIT_EEPROM_CHECKSUM_H

#include <numeric>

namespace TAVLib::RecordKit {

/// Low 8 bits of the sum of n bytes.
inline unsigned char sumOf(const unsigned char* bytes, unsigned int n)
{
    return static_cast<unsigned char>(std::accumulate(bytes, bytes + n, 0U));
}

/// The byte that makes a sum 0 modulo 256.
inline unsigned char complementOf(unsigned char sum)
{
    return static_cast<unsigned char>(0U - sum);
}

}

#endif
