// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_TOOL_SPD_SPD_H
#define RECORDKIT_TOOL_SPD_SPD_H

#include <string>
#include <vector>

#include "../print/Json.h"

namespace recordkit::tool {

/// A DDR3 module by its serial presence detect data (JEDEC Annex K).
struct Spd {
    bool hasManufacturerData = false; ///< the image reaches serial and part number
    unsigned int megabytes = 0;       ///< 0 when it cannot be told
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

/// Reads an image of 128 bytes and more. Throws CommandError (data) for what is no DDR3 module.
Spd parseSpd(const std::vector<unsigned char>& bytes);

/// CRC-16 as JEDEC has it: polynomial 1021h, from 0.
unsigned short spdCrc(const unsigned char* bytes, std::size_t size);

Json toJson(const Spd& spd);

}

#endif
