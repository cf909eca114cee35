// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <recordkit/inspect/words/MemoryMakers.h>

using recordkit::inspect::memoryMakerName;

TEST(MemoryMakers, AreNamedByBankAndCode)
{
    EXPECT_EQ(memoryMakerName(0x80, 0xCE), "Samsung");
    EXPECT_EQ(memoryMakerName(0x80, 0xAD), "SK Hynix");
    EXPECT_EQ(memoryMakerName(0x80, 0x2C), "Micron Technology");
    EXPECT_EQ(memoryMakerName(0x80, 0x01), "AMD");                          // the first row
    EXPECT_EQ(memoryMakerName(0x8A, 0x91), "ChangXin Memory Technologies"); // the last
    EXPECT_EQ(memoryMakerName(0x01, 0x98), "Kingston");
    EXPECT_EQ(memoryMakerName(0x02, 0xFE), "Elpida");
    EXPECT_EQ(memoryMakerName(0x83, 0x0B), "Nanya Technology");
    EXPECT_EQ(memoryMakerName(0x04, 0xB3), "Inphi Corporation");
    EXPECT_EQ(memoryMakerName(0x85, 0x9B), "Crucial Technology");
    EXPECT_EQ(memoryMakerName(0x86, 0x32), "Montage Technology Group");
    EXPECT_EQ(memoryMakerName(0x07, 0x92), "HT Micron");
}

TEST(MemoryMakers, OthersAreShownByTheirNumbers)
{
    EXPECT_EQ(memoryMakerName(0x04, 0x2C), "bank 5, code 2Ch");
    EXPECT_EQ(memoryMakerName(0x80, 0xFE), "bank 1, code FEh");
    EXPECT_EQ(memoryMakerName(0x7F, 0x01), "bank 128, code 01h");
    EXPECT_EQ(memoryMakerName(0x00, 0x2C), "bytes 00h 2Ch, wrong parity");
    EXPECT_EQ(memoryMakerName(0x80, 0x2D), "bytes 80h 2Dh, wrong parity");
    EXPECT_EQ(memoryMakerName(0x00, 0xFF), "bytes 00h FFh, wrong parity");
    EXPECT_EQ(memoryMakerName(0x00, 0x00), "");
    EXPECT_EQ(memoryMakerName(0xFF, 0xFF), "");
}
