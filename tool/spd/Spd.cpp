// SPDX-License-Identifier: Apache-2.0
#include "Spd.h"

#include <fmt/format.h>
#include <recordkit/hardware/MemorySPDData.h>
#include <recordkit/serial/BitField.h>
#include <recordkit/serial/ByteOrder.h>
#include <recordkit/serial/PaddedImage.h>

#include "../Errors.h"

namespace recordkit::tool {

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

/// The first width doubled as often; 0 for a reserved code.
unsigned int widthOf(unsigned char code, unsigned int first)
{
    constexpr unsigned char KNOWN = 4;
    return code < KNOWN ? first << code : 0;
}

const char* deviceTypeName(unsigned char type)
{
    switch (type) {
    case 0x08:
        return "DDR2";
    case 0x07:
        return "DDR";
    case 0x0C:
        return "DDR4";
    case 0x0F:
    case 0xF1:
        return "LPDDR3";
    case 0x10:
    case 0x11:
        return "LPDDR4";
    case 0x12:
        return "DDR5";
    case 0x13:
        return "LPDDR5";
    default:
        return "unknown";
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

Spd parseSpd(const std::vector<unsigned char>& bytes)
{
    if (bytes.size() < LEAST_SIZE) {
        throw dataError(
            fmt::format("no DDR3 SPD: {} bytes, expected at least {}", bytes.size(), LEAST_SIZE));
    }
    if (bytes[DEVICE_TYPE] != DDR3) {
        throw dataError(fmt::format("no DDR3 SPD: device type {:02X}h ({}) at offset 2, expected "
                                    "0Bh",
                                    bytes[DEVICE_TYPE], deviceTypeName(bytes[DEVICE_TYPE])));
    }
    MemorySPDData memory;
    std::vector<unsigned char> image = bytes;
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
    // Bit 7 of byte 0: the CRC covers what does not differ between modules of a kind.
    const std::size_t covered = get_bit(image[BYTES_USED], 7, 1) != 0 ? 117 : 126;
    spd.storedCrc = TAVLib::readLE16(image.data() + CRC);
    spd.expectedCrc = spdCrc(image.data(), covered);
    return spd;
}

unsigned short spdCrc(const unsigned char* bytes, std::size_t size)
{
    constexpr unsigned int POLYNOMIAL = 0x1021;
    unsigned int crc = 0;
    for (std::size_t i = 0; i < size; ++i) {
        crc ^= static_cast<unsigned int>(bytes[i]) << 8;
        for (int bit = 0; bit < 8; ++bit) {
            crc = (crc & 0x8000U) != 0 ? (crc << 1 ^ POLYNOMIAL) & 0xFFFFU : crc << 1;
        }
    }
    return static_cast<unsigned short>(crc);
}

Json toJson(const Spd& spd)
{
    const auto known = [](unsigned int value) { return value == 0 ? Json(nullptr) : Json(value); };
    Json json;
    json["capacity_mb"] = known(spd.megabytes);
    json["ranks"] = known(spd.ranks);
    json["device_width"] = known(spd.deviceWidth);
    json["bus_width"] = known(spd.busWidth);
    json["ecc_width"] = spd.eccWidth;
    json["density_mbit"] = known(spd.densityMegabits);
    json["module_type"] = spd.moduleType;
    json["serial_number"] =
        spd.hasManufacturerData ? Json(fmt::format("{:08X}", spd.serialNumber)) : Json(nullptr);
    json["part_number"] = spd.hasManufacturerData ? Json(spd.partNumber) : Json(nullptr);
    json["rank_field"] = spd.rankField;
    json["dimm_size_code"] = spd.dimmSize;
    json["dram_size_code"] = spd.dramSize;
    json["crc_stored"] = spd.storedCrc;
    json["crc_expected"] = spd.expectedCrc;
    json["crc_right"] = spd.isCrcRight();
    return json;
}

}
