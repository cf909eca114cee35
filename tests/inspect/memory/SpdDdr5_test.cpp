// SPDX-License-Identifier: Apache-2.0
#include <filesystem>
#include <gtest/gtest.h>

#include <recordkit/inspect/bytes/Error.h>
#include <recordkit/inspect/memory/Spd.h>

#include "support/ScratchRoot.h"
#include "support/SpdImage.h"

using namespace recordkit::inspect;
using namespace testing_support;

namespace {

using F = SpdFact;

Spd changed(std::size_t offset, unsigned char value)
{
    Bytes image = ddr5Module();
    image[offset] = value;
    return parseSpd(image);
}

/// A fact of the module with another byte.
Value with(std::size_t offset, unsigned char value, F fact)
{
    return changed(offset, value).get(fact);
}

}

TEST(SpdDdr5, ReadsAModule)
{
    const Spd spd = parseSpd(ddr5Module());
    EXPECT_EQ(spd.megabytes, 32768U);
    EXPECT_EQ(spd.ranks, 2U);
    EXPECT_EQ(spd.deviceWidth, 8U);
    EXPECT_EQ(spd.busWidth, 64U);
    EXPECT_EQ(spd.eccWidth, 16U);
    EXPECT_EQ(spd.densityMegabits, 16384U);
    EXPECT_EQ(spd.moduleType, "RDIMM");
    EXPECT_EQ(spd.serialNumber, 0x12345678U);
    EXPECT_EQ(spd.partNumber, "RK-DDR5-PART                  ");
    EXPECT_TRUE(spd.hasManufacturerData);
    EXPECT_FALSE(spd.hasCodes);
    EXPECT_FALSE(spd.hasRepeatedPages);
    EXPECT_FALSE(spd.moduleCrc);
    EXPECT_TRUE(spd.areCrcsRight());
    EXPECT_EQ(spd.get(F::MEMORY_TYPE), words("DDR5 SDRAM"));
    EXPECT_EQ(spd.get(F::REVISION), words("1.1"));
    EXPECT_EQ(spd.get(F::BYTES_USED), NONE);
    EXPECT_EQ(spd.get(F::BYTES_TOTAL), number(1024));
    EXPECT_EQ(spd.get(F::HYBRID), NONE);
    EXPECT_EQ(spd.get(F::PACKAGE), words("monolithic"));
    EXPECT_EQ(spd.get(F::DIES), number(1));
    EXPECT_EQ(spd.get(F::CHANNELS), number(2));
    EXPECT_EQ(spd.get(F::BANK_GROUPS), number(8));
    EXPECT_EQ(spd.get(F::BANKS), number(32));
    EXPECT_EQ(spd.get(F::ROW_BITS), number(16));
    EXPECT_EQ(spd.get(F::COLUMN_BITS), number(11));
    EXPECT_EQ(spd.get(F::VOLTAGES), words("VDD 1.1 V, VDDQ 1.1 V, VPP 1.8 V"));
    EXPECT_EQ(spd.get(F::SPEED), number(4800));
    EXPECT_EQ(spd.get(F::CAS_LATENCIES),
              Value(std::vector<long long>{22, 26, 28, 30, 32, 36, 40, 98}));
    EXPECT_EQ(spd.get(F::TIMEBASES), NONE);
    EXPECT_EQ(spd.get(F::THERMAL_SENSOR), Value(true));
    EXPECT_EQ(spd.get(F::HEIGHT), number(32));
    EXPECT_EQ(spd.get(F::FRONT), number(2));
    EXPECT_EQ(spd.get(F::BACK), number(3));
    EXPECT_EQ(spd.get(F::REFERENCE_CARD), words("D revision 1"));
    EXPECT_EQ(spd.get(F::DEVICE_ROWS), number(2));
    EXPECT_EQ(spd.get(F::HEAT_SPREADER), Value(true));
    EXPECT_EQ(spd.get(F::REGISTER_TYPE), words("DDR5RCD02"));
    EXPECT_EQ(spd.get(F::REGISTER_MAKER), words("Montage Technology Group"));
    EXPECT_EQ(spd.get(F::REGISTER_REVISION), words("3.1"));
    EXPECT_EQ(spd.get(F::BUFFER_REVISION), NONE);
    EXPECT_EQ(spd.get(F::HUB_TYPE), words("SPD5118"));
    EXPECT_EQ(spd.get(F::HUB_MAKER), words("IDT"));
    EXPECT_EQ(spd.get(F::HUB_REVISION), words("2.1"));
    EXPECT_EQ(spd.get(F::PMIC_TYPE), words("PMIC5010"));
    EXPECT_EQ(spd.get(F::PMIC_MAKER), words("Richtek Power"));
    EXPECT_EQ(spd.get(F::PMIC_REVISION), words("1.4"));
    EXPECT_EQ(spd.get(F::MODULE_MAKER), words("SK Hynix"));
    EXPECT_EQ(spd.get(F::LOCATION), number(3));
    EXPECT_EQ(spd.get(F::MADE), words("2023-W09"));
    EXPECT_EQ(spd.get(F::MODULE_REVISION), words("32h"));
    EXPECT_EQ(spd.get(F::DRAM_MAKER), words("Samsung"));
    EXPECT_EQ(spd.get(F::DRAM_STEPPING), number(0x50));
    EXPECT_EQ(spd.get(F::PROFILES), words("XMP 3.0, EXPO"));
}

TEST(SpdDdr5, ReadsTimesAndTheirClocks)
{
    const Spd spd = parseSpd(ddr5Module());
    EXPECT_EQ(spd.get(F::TCK_MIN), number(416));
    EXPECT_EQ(spd.get(F::TCK_MAX), number(1010));
    struct Row {
        F fact;
        long long picoseconds;
        long long clocks;
    };
    for (const Row& row :
         {Row{F::TAA, 16000, 39}, Row{F::TRCD, 16001, 39}, Row{F::TRP, 16002, 39},
          Row{F::TRAS, 32000, 77}, Row{F::TRC, 48000, 116}, Row{F::TWR, 30000, 72},
          Row{F::TRFC1, 295000, 708}, Row{F::TRFC2, 160000, 384}, Row{F::TRFC_SB, 130000, 312},
          Row{F::TRRD_L, 5000, 12}, Row{F::TCCD_L, 5001, 13}, // 12 by its time, 13 at least
          Row{F::TCCD_L_WR, 20000, 49},                       // 48 by its time
          Row{F::TCCD_L_WR2, 10000, 24}, Row{F::TFAW, 13333, 32}, Row{F::TCCD_L_WTR, 10001, 24},
          Row{F::TCCD_S_WTR, 2500, 6}, Row{F::TRTP, 7500, 19}}) {
        EXPECT_EQ(spd.get(row.fact), number(row.picoseconds)) << spdFactKey(row.fact);
        const F clocks = static_cast<F>(static_cast<unsigned int>(row.fact) + 1);
        EXPECT_EQ(spd.get(clocks), number(row.clocks)) << spdFactKey(clocks);
    }
    EXPECT_EQ(with(45, 0x01, F::TRFC2), number(416000)); // the high bytes
    EXPECT_EQ(with(47, 0x01, F::TRFC_SB), number(386000));
    EXPECT_EQ(spd.get(F::TRFC4), NONE);
    EXPECT_EQ(spd.get(F::TRRD), NONE);
}

TEST(SpdDdr5, ClocksAllowThreeThousandths)
{
    Bytes image = ddr5Module();
    put(image, 20, {0xE8, 0x03}); // cycles of 1000 ps
    put(image, 30, {0x1A, 0x4F}); // 20250 ps: 20189 thousandths
    EXPECT_EQ(parseSpd(image).get(F::TAA_CLOCKS), number(21));
    put(image, 30, {0x5D, 0x4E}); // 20061 ps: 20000 thousandths
    EXPECT_EQ(parseSpd(image).get(F::TAA_CLOCKS), number(21));
    put(image, 30, {0x5C, 0x4E}); // 20060 ps: 19999 thousandths
    EXPECT_EQ(parseSpd(image).get(F::TAA_CLOCKS), number(20));
}

TEST(SpdDdr5, CapacityFollowsFromItsCodes)
{
    EXPECT_EQ(changed(4, 0x00).megabytes, 0U);
    EXPECT_EQ(changed(4, 0x01).megabytes, 8192U);
    EXPECT_EQ(changed(4, 0x03).densityMegabits, 12288U);
    EXPECT_EQ(changed(4, 0x05).densityMegabits, 24576U);
    EXPECT_EQ(changed(4, 0x08).megabytes, 131072U);
    EXPECT_EQ(changed(4, 0x09).megabytes, 0U);
    EXPECT_EQ(changed(6, 0x60).deviceWidth, 32U);
    EXPECT_EQ(changed(6, 0x80).deviceWidth, 0U);
    EXPECT_EQ(changed(6, 0x80).megabytes, 0U);
    EXPECT_EQ(changed(234, 0x38).ranks, 8U);
    EXPECT_EQ(changed(234, 0x48).megabytes, 0U); // ranks of different devices
    EXPECT_EQ(changed(235, 0x12).busWidth, 32U); // one channel
    EXPECT_EQ(changed(235, 0x12).eccWidth, 8U);
    EXPECT_EQ(changed(235, 0x12).megabytes, 16384U);
    EXPECT_EQ(changed(235, 0x2A).eccWidth, 8U); // 4 bits of each
    EXPECT_EQ(changed(235, 0x22).eccWidth, 0U);
    EXPECT_EQ(changed(235, 0x3A).eccWidth, 0U); // reserved
    EXPECT_EQ(changed(235, 0x23).busWidth, 128U);
    EXPECT_EQ(changed(235, 0x24).busWidth, 0U);
    EXPECT_EQ(changed(235, 0x52).megabytes, 0U);
    EXPECT_EQ(with(235, 0x52, F::CHANNELS), words("code 2h"));
}

TEST(SpdDdr5, DiesOfAStackAreRanks)
{
    EXPECT_EQ(changed(4, 0x44).ranks, 4U);
    EXPECT_EQ(changed(4, 0x44).megabytes, 65536U);
    EXPECT_EQ(with(4, 0x44, F::DIES), number(2));
    EXPECT_EQ(with(4, 0x44, F::PACKAGE), words("single-load stack"));
    EXPECT_EQ(with(4, 0xA4, F::DIES), number(16));
    EXPECT_EQ(with(4, 0xC4, F::DIES), words("code 6h"));
    EXPECT_EQ(with(4, 0xC4, F::PACKAGE), words("code 6h"));
    EXPECT_EQ(changed(4, 0xC4).ranks, 0U);
    EXPECT_EQ(changed(4, 0xC4).megabytes, 0U);
    EXPECT_EQ(with(4, 0x24, F::DIES), words("code 1h"));
}

TEST(SpdDdr5, ReservedCodesAreShownAsNumbers)
{
    EXPECT_EQ(changed(3, 0x00).moduleType, "type 0h");
    EXPECT_EQ(changed(3, 0x03).moduleType, "SO-DIMM");
    EXPECT_EQ(changed(3, 0x09).moduleType, "type 9h");
    EXPECT_EQ(changed(3, 0x0B).moduleType, "solder down");
    EXPECT_EQ(changed(3, 0x0C).moduleType, "type Ch");
    EXPECT_EQ(with(0, 0x00, F::BYTES_TOTAL), NONE);
    EXPECT_EQ(with(0, 0x10, F::BYTES_TOTAL), number(256));
    EXPECT_EQ(with(0, 0x40, F::BYTES_TOTAL), number(2048));
    EXPECT_EQ(with(0, 0x50, F::BYTES_TOTAL), words("code 5h"));
    EXPECT_EQ(with(3, 0x91, F::HYBRID), words("NVDIMM-N"));
    EXPECT_EQ(with(3, 0xA1, F::HYBRID), words("NVDIMM-P"));
    EXPECT_EQ(with(3, 0xB1, F::HYBRID), words("code Bh"));
    EXPECT_EQ(with(3, 0x71, F::HYBRID), NONE);
    EXPECT_EQ(with(5, 0x22, F::ROW_BITS), number(18));
    EXPECT_EQ(with(5, 0x23, F::ROW_BITS), words("code 3h"));
    EXPECT_EQ(with(5, 0x00, F::COLUMN_BITS), number(10));
    EXPECT_EQ(with(5, 0x40, F::COLUMN_BITS), words("code 2h"));
    EXPECT_EQ(with(7, 0x80, F::BANK_GROUPS), words("code 4h"));
    EXPECT_EQ(with(7, 0x80, F::BANKS), words("code 80h"));
    EXPECT_EQ(with(7, 0x00, F::BANKS), number(1));
    EXPECT_EQ(with(7, 0x63, F::BANKS), words("code 63h"));
    EXPECT_EQ(with(16, 0x10, F::VOLTAGES), words("VDD code 10h, VDDQ 1.1 V, VPP 1.8 V"));
    EXPECT_EQ(with(17, 0x10, F::VOLTAGES), words("VDD 1.1 V, VDDQ code 10h, VPP 1.8 V"));
    EXPECT_EQ(with(18, 0x01, F::VOLTAGES), words("VDD 1.1 V, VDDQ 1.1 V, VPP code 1h"));
    EXPECT_EQ(with(196, 0x81, F::HUB_TYPE), words("SPD5108"));
    EXPECT_EQ(with(196, 0x82, F::HUB_TYPE), words("code 2h"));
    EXPECT_EQ(with(196, 0x00, F::HUB_TYPE), NONE);
    EXPECT_EQ(with(196, 0x00, F::HUB_MAKER), NONE);
    EXPECT_EQ(with(196, 0x00, F::HUB_REVISION), NONE);
    EXPECT_EQ(with(200, 0x82, F::PMIC_TYPE), words("PMIC5100"));
    EXPECT_EQ(with(200, 0x83, F::PMIC_TYPE), words("PMIC5020"));
    EXPECT_EQ(with(200, 0x84, F::PMIC_TYPE), words("PMIC5120"));
    EXPECT_EQ(with(200, 0x85, F::PMIC_TYPE), words("PMIC5200"));
    EXPECT_EQ(with(200, 0x86, F::PMIC_TYPE), words("PMIC5030"));
    EXPECT_EQ(with(200, 0x87, F::PMIC_TYPE), words("code 7h"));
    EXPECT_EQ(with(200, 0x01, F::PMIC_MAKER), NONE);
    EXPECT_EQ(with(212, 0x40, F::THERMAL_SENSOR), Value(true));
    EXPECT_EQ(with(212, 0x3F, F::THERMAL_SENSOR), Value(false));
    EXPECT_EQ(with(233, 0x02, F::HEAT_SPREADER), Value(false));
    EXPECT_EQ(with(233, 0x04, F::DEVICE_ROWS), NONE);
    EXPECT_EQ(with(242, 0x82, F::REGISTER_TYPE), words("DDR5RCD03"));
    EXPECT_EQ(with(242, 0x83, F::REGISTER_TYPE), words("code 3h"));
    EXPECT_EQ(with(242, 0x01, F::REGISTER_TYPE), NONE);
    EXPECT_EQ(with(242, 0x01, F::REGISTER_MAKER), NONE);
    EXPECT_EQ(with(640, 0x0D, F::PROFILES), words("EXPO"));
    EXPECT_EQ(with(835, 0x4E, F::PROFILES), words("XMP 3.0"));
}

TEST(SpdDdr5, NeighbouringBitsAreNotPartOfAField)
{
    EXPECT_EQ(with(0, 0xBF, F::BYTES_TOTAL), number(1024));
    EXPECT_EQ(with(5, 0x20, F::ROW_BITS), number(16));
    EXPECT_EQ(with(7, 0x7A, F::BANKS), number(32));
    EXPECT_EQ(with(7, 0x7A, F::BANK_GROUPS), number(8));
    EXPECT_EQ(with(196, 0xF0, F::HUB_TYPE), words("SPD5118"));
    EXPECT_EQ(with(200, 0xF1, F::PMIC_TYPE), words("PMIC5010"));
    EXPECT_EQ(with(242, 0xF1, F::REGISTER_TYPE), words("DDR5RCD02"));
    EXPECT_EQ(with(230, 0xF1, F::HEIGHT), number(32));
    EXPECT_EQ(with(233, 0xFA, F::DEVICE_ROWS), number(2));
    EXPECT_EQ(changed(3, 0xF1).moduleType, "RDIMM");
    EXPECT_EQ(changed(4, 0x07).densityMegabits, 49152U);
    EXPECT_EQ(changed(6, 0x3F).deviceWidth, 8U);
    EXPECT_EQ(changed(234, 0x8F).ranks, 2U);
}

TEST(SpdDdr5, ModuleTypesHaveBytesOfTheirOwn)
{
    EXPECT_EQ(with(3, 0x02, F::REGISTER_MAKER), NONE);
    EXPECT_EQ(with(3, 0x02, F::BUFFER_REVISION), NONE);
    EXPECT_EQ(with(3, 0x04, F::REGISTER_MAKER), words("Montage Technology Group"));
    EXPECT_EQ(with(3, 0x04, F::BUFFER_REVISION), words("2.2"));
}

TEST(SpdDdr5, OneCrcCovers510Bytes)
{
    for (const std::size_t offset : {0, 126, 509}) {
        Bytes image = ddr5Module();
        image[offset] ^= 0x80;
        EXPECT_FALSE(parseSpd(image).isCrcRight()) << offset;
    }
    Bytes image = ddr5Module();
    image[512] ^= 1;
    EXPECT_TRUE(parseSpd(image).isCrcRight());
}

TEST(SpdDdr5, APartOfTheImageHasAPartOfTheFacts)
{
    const Bytes whole = ddr5Module();
    EXPECT_THROW(parseSpd(part(whole, 0, 511)), DataError);
    const Spd least = parseSpd(part(whole, 0, 512));
    EXPECT_TRUE(least.isCrcRight());
    EXPECT_FALSE(least.hasManufacturerData);
    EXPECT_EQ(least.get(F::MODULE_MAKER), NONE);
    EXPECT_EQ(least.get(F::PROFILES), NONE);
    EXPECT_FALSE(parseSpd(part(whole, 0, 550)).hasManufacturerData);
    EXPECT_TRUE(parseSpd(part(whole, 0, 551)).hasManufacturerData);
    EXPECT_EQ(parseSpd(part(whole, 0, 642)).get(F::PROFILES), NONE);
    EXPECT_EQ(parseSpd(part(whole, 0, 643)).get(F::PROFILES), words("XMP 3.0"));
    EXPECT_EQ(parseSpd(part(whole, 0, 835)).get(F::PROFILES), words("XMP 3.0"));
    EXPECT_EQ(parseSpd(part(whole, 0, 836)).get(F::PROFILES), words("XMP 3.0, EXPO"));
}

TEST(SpdDdr5, ADumpThatDidNotSwitchPagesIsRefused)
{
    const Bytes page = part(ddr5Module(), 0, 256);
    Bytes image;
    for (int i = 0; i < 4; ++i) {
        image.insert(image.end(), page.begin(), page.end());
    }
    try {
        parseSpd(image);
        FAIL() << "read";
    } catch (const DataError& e) {
        EXPECT_STREQ(
            e.what(),
            "not the whole data of DDR5 SDRAM: 256 different bytes, expected at least 512");
    }
}

TEST(SpdDdr5, ReadsASample)
{
    const std::string file =
        RECORDKIT_PUBLIC_DATA "/spd-more/coreboot__system76_mtl_spd_samsung-M425R1GB4PB0-CWMOD.bin";
    if (!std::filesystem::exists(file)) {
        GTEST_SKIP() << "the public samples are not at " RECORDKIT_PUBLIC_DATA;
    }
    // What the part number means: a SO-DIMM of 8 GB, one rank of 16 bits, DDR5-5600B (46-45-45).
    const Spd spd = parseSpd(readFile(file));
    EXPECT_TRUE(spd.isCrcRight());
    EXPECT_EQ(spd.partNumber.substr(0, 18), "M425R1GB4PB0-CWMOD");
    EXPECT_EQ(spd.moduleType, "SO-DIMM");
    EXPECT_EQ(spd.megabytes, 8192U);
    EXPECT_EQ(spd.ranks, 1U);
    EXPECT_EQ(spd.deviceWidth, 16U);
    EXPECT_EQ(spd.get(F::SPEED), number(5600));
    EXPECT_EQ(spd.get(F::TRCD_CLOCKS), number(45));
    EXPECT_EQ(spd.get(F::TFAW_CLOCKS), number(40));
    EXPECT_EQ(spd.get(F::MODULE_MAKER), words("Samsung"));
}
