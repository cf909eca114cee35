// SPDX-License-Identifier: Apache-2.0
#include <recordkit/hardware/MemorySPDData.h>

#include <algorithm>

#include <recordkit/serial/ByteOrder.h>

namespace TAVLib::RecordKit {

namespace {

constexpr unsigned char KNOWN_WIDTHS = 4;
constexpr unsigned char KNOWN_RANKS = 4;
constexpr unsigned char KNOWN_DENSITIES = 7;

/// The first width, doubled `code` times; 0 for a code without a meaning.
unsigned int widthOf(unsigned char code, unsigned int first)
{
    return code < KNOWN_WIDTHS ? first << code : 0;
}

}

unsigned char MemorySPDData::getDIMMSize() const
{
    if (density() >= KNOWN_DENSITIES) {
        return DIMM_UNKNOWN;
    }
    const unsigned int megabits = 256U << density();
    const unsigned int busWidth = widthOf(get_bit(image[BUS_WIDTH], 0, 3), 8);
    const unsigned int deviceWidth = widthOf(get_bit(image[ORGANIZATION], 0, 3), 4);
    const unsigned int ranks = getRankNum() < KNOWN_RANKS ? getRankNum() + 1U : 0;
    if (busWidth == 0 || deviceWidth == 0 || ranks == 0) {
        return DIMM_UNKNOWN;
    }
    // In single precision, from left to right, as these codes have always been computed; a bus
    // narrower than a device yields fractions that are cut off at the end.
    const float capacity = static_cast<float>(megabits) * 0.125F * static_cast<float>(busWidth) /
                           static_cast<float>(deviceWidth) * static_cast<float>(ranks);
    switch (static_cast<unsigned int>(capacity)) {
    case 2048:
        return DIMM_2_GB;
    case 4096:
        return DIMM_4_GB;
    case 8192:
        return DIMM_8_GB;
    case 16384:
        return DIMM_16_GB;
    case 32768:
        return DIMM_32_GB;
    default:
        return DIMM_UNKNOWN;
    }
}

unsigned char MemorySPDData::getDRAMSize() const
{
    constexpr unsigned char FIRST_KNOWN = 4;
    constexpr unsigned char LAST_KNOWN = 7;
    return density() >= FIRST_KNOWN && density() <= LAST_KNOWN
               ? static_cast<unsigned char>(density() - 2)
               : static_cast<unsigned char>(1);
}

unsigned int MemorySPDData::getSerialNumber() const
{
    return readBE32(image + SERIAL_NUMBER);
}

std::string MemorySPDData::getModulePartNumber() const
{
    const unsigned char* const first = image + PART_NUMBER;
    return std::string(first, std::find(first, first + PART_NUMBER_LENGTH, 0));
}

}
