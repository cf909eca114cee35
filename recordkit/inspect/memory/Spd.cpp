// SPDX-License-Identifier: Apache-2.0
#include <recordkit/inspect/memory/Spd.h>

#include <iterator>

#include <fmt/format.h>

#include <recordkit/inspect/bytes/Error.h>
#include <recordkit/inspect/memory/SpdRows.h>

namespace recordkit::inspect {

namespace {

constexpr std::size_t LEAST_SIZE = 128;
constexpr std::size_t PAGE = 256;
constexpr std::size_t DEVICE_TYPE = 2;
constexpr unsigned char LPDDR3_AS_DDR3 = 0xF1;
constexpr unsigned char DDR5 = 0x12;
constexpr unsigned char LPDDR5 = 0x13;
constexpr unsigned char LPDDR5X = 0x15;
constexpr std::size_t LEAST_DDR5_SIZE = 512; // its only CRC is at the end of them

constexpr const char* KEYS[] = {"memory_type",
                                "spd_revision",
                                "spd_bytes_used",
                                "spd_bytes_total",
                                "hybrid",
                                "package",
                                "dies",
                                "channels",
                                "die_channels",
                                "byte_mode",
                                "data_loads",
                                "command_loads",
                                "select_loads",
                                "bank_groups",
                                "banks",
                                "row_bits",
                                "column_bits",
                                "voltages",
                                "speed_mts",
                                "cas_latencies",
                                "write_latencies",
                                "read_dbi",
                                "timebases",
                                "tck_min_ps",
                                "tck_max_ps",
                                "taa_ps",
                                "taa_clocks",
                                "trcd_ps",
                                "trcd_clocks",
                                "trp_ps",
                                "trp_clocks",
                                "trp_pb_ps",
                                "trp_pb_clocks",
                                "tras_ps",
                                "tras_clocks",
                                "trc_ps",
                                "trc_clocks",
                                "trfc1_ps",
                                "trfc1_clocks",
                                "trfc2_ps",
                                "trfc2_clocks",
                                "trfc4_ps",
                                "trfc4_clocks",
                                "trfc_sb_ps",
                                "trfc_sb_clocks",
                                "trfc_pb_ps",
                                "trfc_pb_clocks",
                                "tfaw_ps",
                                "tfaw_clocks",
                                "trrd_ps",
                                "trrd_clocks",
                                "trrd_l_ps",
                                "trrd_l_clocks",
                                "tccd_l_ps",
                                "tccd_l_clocks",
                                "tccd_l_wr_ps",
                                "tccd_l_wr_clocks",
                                "tccd_l_wr2_ps",
                                "tccd_l_wr2_clocks",
                                "tccd_l_wtr_ps",
                                "tccd_l_wtr_clocks",
                                "tccd_s_wtr_ps",
                                "tccd_s_wtr_clocks",
                                "twr_ps",
                                "twr_clocks",
                                "twtr_ps",
                                "twtr_clocks",
                                "twtr_l_ps",
                                "twtr_l_clocks",
                                "trtp_ps",
                                "trtp_clocks",
                                "max_activates",
                                "activate_window",
                                "repair",
                                "soft_repair",
                                "rzq6",
                                "rzq7",
                                "dll_off",
                                "hot",
                                "hot_refresh",
                                "auto_refresh",
                                "on_die_sensor",
                                "partial_refresh",
                                "thermal_sensor",
                                "height_mm",
                                "front_mm",
                                "back_mm",
                                "reference_card",
                                "mapping",
                                "registers",
                                "device_rows",
                                "register_type",
                                "register_maker",
                                "register_revision",
                                "buffer_revision",
                                "heat_spreader",
                                "module_maker",
                                "location",
                                "made",
                                "module_revision",
                                "dram_maker",
                                "dram_stepping",
                                "hub_type",
                                "hub_maker",
                                "hub_revision",
                                "pmic_type",
                                "pmic_maker",
                                "pmic_revision",
                                "profiles"};
static_assert(std::size(KEYS) == static_cast<std::size_t>(SpdFact::COUNT), "one key for each fact");

/// The kind of memory (JEDEC, key byte 2); nullptr for an unknown one.
const char* deviceTypeName(unsigned char type)
{
    switch (type) {
    case 0x07:
        return "DDR SDRAM";
    case 0x08:
        return "DDR2 SDRAM";
    case 0x0B:
        return "DDR3 SDRAM";
    case 0x0C:
        return "DDR4 SDRAM";
    case 0x0E:
        return "DDR4E SDRAM";
    case 0x0F:
    case LPDDR3_AS_DDR3:
        return "LPDDR3 SDRAM";
    case 0x10:
        return "LPDDR4 SDRAM";
    case 0x11:
        return "LPDDR4X SDRAM";
    case DDR5:
        return "DDR5 SDRAM";
    case LPDDR5:
        return "LPDDR5 SDRAM";
    case LPDDR5X:
        return "LPDDR5X SDRAM";
    default:
        return nullptr;
    }
}

using Reader = void (*)(Spd& spd, ByteView image);

/// What decodes a kind of memory; nullptr for one that is not supported.
Reader readerOf(ByteView image)
{
    switch (image[DEVICE_TYPE]) {
    case 0x0B:
    case LPDDR3_AS_DDR3:
        return readDdr3;
    case 0x0C:
        return readDdr4;
    case 0x0F:
    case 0x10:
    case 0x11:
        return readLpddr;
    case DDR5:
        return readDdr5;
    case LPDDR5:
    case LPDDR5X:
        return isAnnexM(image) ? readLpddr : readLpddr5;
    default:
        return nullptr;
    }
}

/// Whether every whole or cut off page after the first one repeats it: the page was not switched.
bool repeatsPages(ByteView bytes)
{
    for (std::size_t at = PAGE; at < bytes.size(); at += PAGE) {
        const ByteView page = bytes.part(at, PAGE);
        if (page != bytes.part(0, page.size())) {
            return false;
        }
    }
    return bytes.size() >= 2 * PAGE;
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
    if (name == nullptr) {
        throw DataError(fmt::format("not SPD data: unknown device type {:02X}h at offset 2", type));
    }
    const Reader read = readerOf(bytes);
    if (read == nullptr) {
        throw DataError(
            fmt::format("not supported: {} (device type {:02X}h at offset 2)", name, type));
    }
    Spd spd;
    spd.hasRepeatedPages = repeatsPages(bytes);
    set(spd, SpdFact::MEMORY_TYPE, std::string(name));
    const ByteView known = spd.hasRepeatedPages ? bytes.part(0, PAGE) : bytes;
    if ((read == readDdr5 || read == readLpddr5) && known.size() < LEAST_DDR5_SIZE) {
        throw DataError(
            fmt::format("not the whole data of {}: {} different bytes, expected at least {}", name,
                        known.size(), LEAST_DDR5_SIZE));
    }
    read(spd, known);
    return spd;
}

const char* spdFactKey(SpdFact fact)
{
    return KEYS[static_cast<std::size_t>(fact)];
}

std::vector<std::string> spdProblems(const Spd& spd)
{
    std::vector<std::string> wrong;
    if (!spd.isCrcRight()) {
        wrong.push_back(
            fmt::format("the CRC is {:04X}h, expected {:04X}h", spd.storedCrc, spd.expectedCrc));
    }
    if (spd.moduleCrc && !spd.moduleCrc->isRight()) {
        wrong.push_back(fmt::format("the CRC of bytes {} to {} is {:04X}h, expected {:04X}h",
                                    spd.moduleCrc->first, spd.moduleCrc->last,
                                    spd.moduleCrc->stored, spd.moduleCrc->expected));
    }
    if (spd.hasRepeatedPages) {
        wrong.push_back("every page is the first one: the dump did not switch pages");
    }
    return wrong;
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
