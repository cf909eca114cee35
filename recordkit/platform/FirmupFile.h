// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_PLATFORM_FIRMUPFILE_H
#define RECORDKIT_PLATFORM_FIRMUPFILE_H

#include <recordkit/platform/Export.h>

namespace TAVLib {

/// Files of the firmware update.
class RECORDKIT_API FirmupFile {
public:
    /// Value of one BCD byte: ten times its upper four bits plus its lower four, whatever they are.
    static unsigned char BCDtoBin(char bcd);
};

}

#endif
