// SPDX-License-Identifier: Apache-2.0
// DDR3 modules: JEDEC 21-C, Annex K.
#include <recordkit/inspect/memory/SpdRows.h>

#include <algorithm>
#include <iterator>

#include <fmt/format.h>

#include <recordkit/hardware/MemorySPDData.h>
#include <recordkit/inspect/bytes/Text.h>
#include <recordkit/serial/PaddedImage.h>

namespace recordkit::inspect {

using TAVLib::RecordKit::MemorySPDData;

namespace {

enum Offset {
    BYTES_USED = 0,
    MODULE_TYPE = 3,
    DENSITY = 4,
    ORGANIZATION = 7,
    BUS_WIDTH = 8,
    CRC = 126,
};

std::string moduleTypeName(unsigned int type)
{
    constexpr const char* NAMES[] = {"undefined",    "RDIMM",        "UDIMM",        "SO-DIMM",
                                     "Micro-DIMM",   "Mini-RDIMM",   "Mini-UDIMM",   "Mini-CDIMM",
                                     "72b-SO-UDIMM", "72b-SO-RDIMM", "72b-SO-CDIMM", "LRDIMM",
                                     "16b-SO-DIMM",  "32b-SO-DIMM"};
    return type < std::size(NAMES) ? NAMES[type] : fmt::format("type {:X}h", type);
}

}

void readDdr3(Spd& spd, ByteView image)
{
    MemorySPDData memory;
    Bytes padded = image.copy();
    spd.hasManufacturerData = padded.size() >= memory.getSerializedSize();
    padded.resize(std::max<std::size_t>(padded.size(), memory.getSerializedSize()), 0);
    TAVLib::setSerializedPadded(memory, padded);
    spd.hasCodes = true;
    spd.rankField = memory.getRankNum();
    spd.dimmSize = memory.getDIMMSize();
    spd.dramSize = memory.getDRAMSize();
    spd.serialNumber = memory.getSerialNumber();
    spd.partNumber = toUtf8(memory.getModulePartNumber());

    constexpr unsigned char KNOWN_RANKS = 4;
    constexpr unsigned int KNOWN_DENSITIES = 7;
    spd.densityMegabits = widthOf(codeAt(image, bitsAt(DENSITY, 3, 0)), 256, KNOWN_DENSITIES);
    spd.ranks = spd.rankField < KNOWN_RANKS ? spd.rankField + 1U : 0;
    spd.deviceWidth = widthOf(codeAt(image, bitsAt(ORGANIZATION, 2, 0)), 4);
    spd.busWidth = widthOf(codeAt(image, bitsAt(BUS_WIDTH, 2, 0)), 8);
    spd.eccWidth = codeAt(image, bitsAt(BUS_WIDTH, 4, 3)) == 1 ? 8 : 0;
    spd.megabytes = capacityOf(spd);
    spd.moduleType = moduleTypeName(codeAt(image, bitsAt(MODULE_TYPE, 3, 0)));
    // Bit 7 of byte 0: the CRC covers only the bytes that do not differ between modules of a kind.
    const bool isShort = codeAt(image, bitAt(BYTES_USED, 7)) != 0;
    const SpdCrc crc = crcAt(image, 0, isShort ? 116 : 125, CRC);
    spd.storedCrc = crc.stored;
    spd.expectedCrc = crc.expected;
}

}
