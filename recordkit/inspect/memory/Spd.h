// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_INSPECT_MEMORY_SPD_H
#define RECORDKIT_INSPECT_MEMORY_SPD_H

#include <string>

#include <recordkit/inspect/bytes/ByteView.h>

namespace recordkit::inspect {

/// A DDR3 module, decoded from its serial presence detect data (JEDEC Annex K).
struct Spd {
    bool hasManufacturerData = false; ///< the image is long enough for serial and part number
    unsigned int megabytes = 0;       ///< 0 if it cannot be determined
    unsigned int ranks = 0;           ///< 0 for a reserved code
    unsigned int deviceWidth = 0;     ///< bits; 0 for a reserved code
    unsigned int busWidth = 0;
    unsigned int eccWidth = 0;
    unsigned int densityMegabits = 0; ///< of one device; 0 for a reserved code
    std::string moduleType;
    unsigned int serialNumber = 0;
    std::string partNumber; ///< UTF-8
    unsigned char rankField = 0;
    unsigned char dimmSize = 0; ///< codes of DIMMType
    unsigned char dramSize = 0;
    unsigned short storedCrc = 0;
    unsigned short expectedCrc = 0;

    bool isCrcRight() const { return storedCrc == expectedCrc; }
};

/// Reads an image of 128 bytes or more. Throws DataError for anything but a DDR3 module; the
/// text says "not supported" for a module of another known kind.
Spd parseSpd(ByteView bytes);

/// CRC-16 as JEDEC defines it: polynomial 1021h, from 0.
unsigned short spdCrc(ByteView bytes);

}

#endif
