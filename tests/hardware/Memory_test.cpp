// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <recordkit/hardware/DIMMType.h>
#include <recordkit/hardware/MemorySPDData.h>

#include "support/Bytes.h"

using namespace TAVLib::RecordKit;
using namespace testing_support;

namespace {

Bytes spd(unsigned char density, unsigned char organization, unsigned char bus)
{
    Bytes image(146, 0);
    image[4] = density;
    image[7] = organization;
    image[8] = bus;
    return image;
}

unsigned int sizeCode(unsigned char density, unsigned char organization, unsigned char bus)
{
    return fromBytes<MemorySPDData>(spd(density, organization, bus)).getDIMMSize();
}

/// What the capacity in whole megabytes is coded as.
unsigned int codeOf(unsigned int megabytes)
{
    switch (megabytes) {
    case 2048:
        return 1;
    case 4096:
        return 2;
    case 8192:
        return 3;
    case 16384:
        return 4;
    case 32768:
        return 5;
    default:
        return 15;
    }
}

}

TEST(DIMMType, ReadsEachByte)
{
    const auto dimm = fromBytes<DIMMType>({1, 2, 3, 4, 5});
    EXPECT_EQ(dimm.getDIMMSlotStatus(), 1);
    EXPECT_EQ(dimm.getRankNum(), 2);
    EXPECT_EQ(dimm.getDIMMSize(), 3);
    EXPECT_EQ(dimm.getDRAMSize(), 4);
    EXPECT_EQ(dimm.getDataRate(), 5);
}

TEST(MemorySPDData, CapacitiesOfTheText)
{
    // 2 Gbit devices of 8 bits, two ranks, on 64 bits: 4096 MB.
    EXPECT_EQ(sizeCode(3, 0x09, 0x03), 2U);
    // 1 Gbit devices, one rank: 1024 MB, which has no code.
    EXPECT_EQ(sizeCode(2, 0x01, 0x03), 15U);
    EXPECT_EQ(sizeCode(7, 0x09, 0x03), 15U);
    EXPECT_EQ(sizeCode(3, 0x0C, 0x03), 15U);
}

TEST(MemorySPDData, EveryCombinationHasItsCode)
{
    constexpr unsigned int WIDTHS[] = {8, 16, 32, 64};
    for (unsigned int density = 0; density < 16; ++density) {
        for (unsigned int ranks = 0; ranks < 8; ++ranks) {
            for (unsigned int device = 0; device < 8; ++device) {
                for (unsigned int bus = 0; bus < 8; ++bus) {
                    unsigned int expected = 15;
                    if (density < 7 && ranks < 4 && device < 4 && bus < 4) {
                        // In eighths of a megabyte, so that nothing is cut off before the end.
                        const unsigned int eighths =
                            (256U << density) * WIDTHS[bus] / (4U << device) * (ranks + 1);
                        expected = codeOf(eighths / 8);
                    }
                    EXPECT_EQ(sizeCode(static_cast<unsigned char>(0xF0 | density),
                                       static_cast<unsigned char>(0xC0 | ranks << 3 | device),
                                       static_cast<unsigned char>(0xF8 | bus)),
                              expected)
                        << density << " " << ranks << " " << device << " " << bus;
                }
            }
        }
    }
}

TEST(MemorySPDData, DeviceDensitiesHaveCodes)
{
    constexpr unsigned int CODES[] = {1, 1, 1, 1, 2, 3, 4, 5, 1, 1, 1, 1, 1, 1, 1, 1};
    for (unsigned char density = 0; density < 16; ++density) {
        EXPECT_EQ(fromBytes<MemorySPDData>(spd(density, 0, 0)).getDRAMSize(), CODES[density]);
        EXPECT_EQ(fromBytes<MemorySPDData>(spd(density | 0xF0, 0, 0)).getDRAMSize(),
                  CODES[density]);
    }
}

TEST(MemorySPDData, RanksAreAsTheyAreStoredAndTheRateIsZero)
{
    for (unsigned char ranks = 0; ranks < 8; ++ranks) {
        const auto memory = fromBytes<MemorySPDData>(
            spd(0xFF, static_cast<unsigned char>(0xC7 | ranks << 3), 0xFF));
        EXPECT_EQ(memory.getRankNum(), ranks);
        EXPECT_EQ(memory.getDataRate(), 0);
    }
}

TEST(MemorySPDData, SerialNumberHasItsMostSignificantByteFirst)
{
    Bytes image(146, 0);
    image[122] = 0x80;
    image[123] = 0x11;
    image[124] = 0x22;
    image[125] = 0x33;
    EXPECT_EQ(fromBytes<MemorySPDData>(image).getSerialNumber(), 0x80112233U);
}

TEST(MemorySPDData, PartNumberIsCutAtAZeroByte)
{
    Bytes image = Bytes(128, 0) + textBytes("M393B1K70CH0-CH9  ");
    EXPECT_EQ(fromBytes<MemorySPDData>(image).getModulePartNumber(), "M393B1K70CH0-CH9  ");
    image[133] = 0;
    EXPECT_EQ(fromBytes<MemorySPDData>(image).getModulePartNumber(), "M393B");
    image[128] = 0;
    EXPECT_EQ(fromBytes<MemorySPDData>(image).getModulePartNumber(), "");
}
