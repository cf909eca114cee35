// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_INSPECT_FRU_CPUROM_H
#define RECORDKIT_INSPECT_FRU_CPUROM_H

#include <optional>
#include <string>
#include <vector>

#include <recordkit/inspect/fru/FruImage.h>

namespace recordkit::inspect {

/// A block of a processor information ROM.
struct CpuBlock {
    const char* name;
    unsigned int offset = 0;
    std::optional<unsigned int> size;    ///< nothing for one that is not within the ROM
    std::optional<FruChecksum> checksum; ///< the same

    bool isRight() const { return checksum && checksum->isRight(); }
};

/// A field of the core block, in hex.
struct CpuCoreField {
    const char* name;
    std::optional<std::string> bytes;
};

/// A processor, identified from its information ROM. A value that cannot be read is missing, and a
/// problem says why.
struct CpuRom {
    std::optional<std::string> processorCode;
    std::optional<std::string> modelName;
    std::optional<std::string> modelNameMarkup; ///< with the markup of a web page
    std::optional<int> modelType;
    std::optional<std::string> stepping;
    std::optional<std::string> partNumber;
    std::optional<long long> cacheKilobytes;
    std::optional<long long> megahertz;
    std::vector<CpuCoreField> core;
    std::vector<CpuBlock> blocks; ///< only those that the ROM has
    std::vector<std::string> problems;
};

/// Reads a ROM. Names and part numbers come from the tables of the system root; part numbers depend
/// on the type of the system board. A wrong checksum is a problem. Throws DataError or PException
/// for bytes that do not look like a ROM: without a processor block, or with a wrong checksum of
/// the header and of more than half of the blocks.
CpuRom readCpuRom(const std::string& bytes, unsigned char board);

/// How many of header and blocks, by the header's offsets, have a right checksum: of those that are
/// not only zeroes and overlap none that counts. 0 for a header without a processor block.
unsigned int countRightCpuBlocks(ByteView bytes);

}

#endif
