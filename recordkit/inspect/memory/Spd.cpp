// SPDX-License-Identifier: Apache-2.0
#include <recordkit/inspect/memory/Spd.h>

#include <fmt/format.h>

#include <recordkit/hardware/MemorySPDData.h>
#include <recordkit/inspect/bytes/Error.h>
#include <recordkit/inspect/bytes/Text.h>
#include <recordkit/serial/BitField.h>
#include <recordkit/serial/PaddedImage.h>

namespace recordkit::inspect {

using TAVLib::get_bit;
using TAVLib::RecordKit::MemorySPDData;

namespace {

constexpr std::size_t LEAST_SIZE = 128;
constexpr unsigned char DDR3 = 0x0B;
enum Offset {
    BYTES_USED = 0,
    DEVICE_TYPE = 2,
    MODULE_TYPE = 3,
    DENSITY = 4,
    ORGANIZATION = 7,
    BUS_WIDTH = 8,
    CRC = 126
};

/// The first width, doubled `code` times; 0 for a reserved code.
unsigned int widthOf(unsigned char code, unsigned int first)
{
    constexpr unsigned char KNOWN = 4;
    return code < KNOWN ? first << code : 0;
}

/// The kind of memory (JEDEC, key byte 2); nullptr for an unknown one.
const char* deviceTypeName(unsigned char type)
{
    switch (type) {
    case 0x07:
        return "DDR SDRAM";
    case 0x08:
        return "DDR2 SDRAM";
    case 0x0C:
        return "DDR4 SDRAM";
    case 0x0E:
        return "DDR4E SDRAM";
    case 0x0F:
    case 0xF1:
        return "LPDDR3 SDRAM";
    case 0x10:
        return "LPDDR4 SDRAM";
    case 0x11:
        return "LPDDR4X SDRAM";
    case 0x12:
        return "DDR5 SDRAM";
    case 0x13:
        return "LPDDR5 SDRAM";
    case 0x15:
        return "LPDDR5X SDRAM";
    default:
        return nullptr;
    }
}

std::string moduleTypeName(unsigned char type)
{
    constexpr const char* NAMES[] = {"undefined",    "RDIMM",        "UDIMM",        "SO-DIMM",
                                     "Micro-DIMM",   "Mini-RDIMM",   "Mini-UDIMM",   "Mini-CDIMM",
                                     "72b-SO-UDIMM", "72b-SO-RDIMM", "72b-SO-CDIMM", "LRDIMM",
                                     "16b-SO-DIMM",  "32b-SO-DIMM"};
    return type < std::size(NAMES) ? NAMES[type] : fmt::format("type {:X}h", type);
}

unsigned int capacityOf(const Spd& spd)
{
    if (spd.deviceWidth == 0 || spd.busWidth == 0) {
        return 0;
    }
    return spd.densityMegabits / 8 * spd.busWidth / spd.deviceWidth * spd.ranks;
}

}

Spd parseSpd(ByteView bytes)
{
    if (bytes.size() < LEAST_SIZE) {
        throw DataError(
            fmt::format("not SPD data: {} bytes, expected at least {}", bytes.size(), LEAST_SIZE));
    }
    const unsigned char type = bytes[DEVICE_TYPE];
    const char* const name = deviceTypeName(type);
    if (type != DDR3 && name == nullptr) {
        throw DataError(fmt::format("not SPD data: unknown device type {:02X}h at offset 2", type));
    }
    if (type != DDR3) {
        throw DataError(
            fmt::format("not supported: {} (device type {:02X}h at offset 2)", name, type));
    }
    MemorySPDData memory;
    Bytes image = bytes.copy();
    Spd spd;
    spd.hasManufacturerData = image.size() >= memory.getSerializedSize();
    image.resize(std::max<std::size_t>(image.size(), memory.getSerializedSize()), 0);
    TAVLib::setSerializedPadded(memory, image);
    spd.rankField = memory.getRankNum();
    spd.dimmSize = memory.getDIMMSize();
    spd.dramSize = memory.getDRAMSize();
    spd.serialNumber = memory.getSerialNumber();
    spd.partNumber = toUtf8(memory.getModulePartNumber());

    constexpr unsigned char KNOWN_RANKS = 4;
    constexpr unsigned char KNOWN_DENSITIES = 7;
    const unsigned char density = get_bit(image[DENSITY], 0, 4);
    spd.densityMegabits = density < KNOWN_DENSITIES ? 256U << density : 0;
    spd.ranks = spd.rankField < KNOWN_RANKS ? spd.rankField + 1U : 0;
    spd.deviceWidth = widthOf(get_bit(image[ORGANIZATION], 0, 3), 4);
    spd.busWidth = widthOf(get_bit(image[BUS_WIDTH], 0, 3), 8);
    spd.eccWidth = get_bit(image[BUS_WIDTH], 3, 2) == 1 ? 8 : 0;
    spd.megabytes = capacityOf(spd);
    spd.moduleType = moduleTypeName(get_bit(image[MODULE_TYPE], 0, 4));
    // Bit 7 of byte 0: the CRC covers only the bytes that do not differ between modules of a kind.
    const std::size_t covered = get_bit(image[BYTES_USED], 7, 1) != 0 ? 117 : 126;
    spd.storedCrc = static_cast<unsigned short>(bytes.le16(CRC));
    spd.expectedCrc = spdCrc(bytes.part(0, covered));
    return spd;
}

unsigned short spdCrc(ByteView bytes)
{
    constexpr unsigned int POLYNOMIAL = 0x1021;
    unsigned int crc = 0;
    for (const unsigned char byte : bytes) {
        crc ^= static_cast<unsigned int>(byte) << 8;
        for (int bit = 0; bit < 8; ++bit) {
            crc = (crc & 0x8000U) != 0 ? (crc << 1 ^ POLYNOMIAL) & 0xFFFFU : crc << 1;
        }
    }
    return static_cast<unsigned short>(crc);
}

}
