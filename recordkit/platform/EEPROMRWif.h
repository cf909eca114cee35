// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_PLATFORM_EEPROMRWIF_H
#define RECORDKIT_PLATFORM_EEPROMRWIF_H

#include <recordkit/platform/Export.h>

namespace TAVLib {

/// Byte reader and writer of the management board's EEPROMs, supplied by the caller. Results are
/// not examined: a failure is thrown as PException. Offsets count from the device's first byte.
class RECORDKIT_API EEPROMRWif {
public:
    virtual ~EEPROMRWif() = default;
    virtual int read(int select, unsigned long offset, unsigned char* buffer,
                     unsigned int length) = 0;
    virtual int write(int select, unsigned long offset, const unsigned char* buffer,
                      unsigned int length) = 0;
};

}

#endif
