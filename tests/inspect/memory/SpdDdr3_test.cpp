// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <recordkit/inspect/memory/Spd.h>

#include "support/SpdImage.h"

using namespace recordkit::inspect;
using namespace testing_support;

namespace {

using F = SpdFact;

/// A fact of the module with another byte.
Value with(std::size_t offset, unsigned char value, F fact)
{
    Bytes image = ddr3Module();
    image[offset] = value;
    return parseSpd(image).get(fact);
}

}

TEST(SpdDdr3, ReadsAModule)
{
    const Spd spd = parseSpd(ddr3Module());
    EXPECT_EQ(spd.megabytes, 8192U);
    EXPECT_EQ(spd.moduleType, "RDIMM");
    EXPECT_EQ(spd.serialNumber, 0x12345678U);
    EXPECT_EQ(spd.partNumber, "RK-DDR3-PART      ");
    EXPECT_TRUE(spd.hasCodes);
    EXPECT_TRUE(spd.areCrcsRight());
    EXPECT_FALSE(spd.moduleCrc);
    EXPECT_EQ(spd.get(F::MEMORY_TYPE), words("DDR3 SDRAM"));
    EXPECT_EQ(spd.get(F::REVISION), words("1.3"));
    EXPECT_EQ(spd.get(F::BYTES_USED), number(176));
    EXPECT_EQ(spd.get(F::BYTES_TOTAL), number(256));
    EXPECT_EQ(spd.get(F::PACKAGE), words("monolithic"));
    EXPECT_EQ(spd.get(F::DIES), NONE);
    EXPECT_EQ(spd.get(F::BANK_GROUPS), NONE);
    EXPECT_EQ(spd.get(F::BANKS), number(8));
    EXPECT_EQ(spd.get(F::ROW_BITS), number(16));
    EXPECT_EQ(spd.get(F::COLUMN_BITS), number(10));
    EXPECT_EQ(spd.get(F::VOLTAGES), words("1.5 V, 1.35 V"));
    EXPECT_EQ(spd.get(F::SPEED), number(1600));
    EXPECT_EQ(spd.get(F::CAS_LATENCIES), Value(std::vector<long long>{5, 6, 7, 8, 9, 10, 11, 18}));
    EXPECT_EQ(spd.get(F::TIMEBASES), words("1/8 ns, 1 ps"));
    EXPECT_EQ(spd.get(F::MAX_ACTIVATES), words("unlimited"));
    EXPECT_EQ(spd.get(F::ACTIVATE_WINDOW), number(4096));
    EXPECT_EQ(spd.get(F::RZQ6), Value(true));
    EXPECT_EQ(spd.get(F::RZQ7), Value(true));
    EXPECT_EQ(spd.get(F::DLL_OFF), Value(true));
    EXPECT_EQ(spd.get(F::HOT), Value(true));
    EXPECT_EQ(spd.get(F::HOT_REFRESH), number(2));
    EXPECT_EQ(spd.get(F::AUTO_REFRESH), Value(true));
    EXPECT_EQ(spd.get(F::ON_DIE_SENSOR), Value(false));
    EXPECT_EQ(spd.get(F::PARTIAL_REFRESH), Value(true));
    EXPECT_EQ(spd.get(F::THERMAL_SENSOR), Value(true));
    EXPECT_EQ(spd.get(F::HEIGHT), number(30));
    EXPECT_EQ(spd.get(F::FRONT), number(3));
    EXPECT_EQ(spd.get(F::BACK), number(4));
    EXPECT_EQ(spd.get(F::REFERENCE_CARD), words("E revision 1"));
    EXPECT_EQ(spd.get(F::MAPPING), NONE);
    EXPECT_EQ(spd.get(F::REGISTERS), number(1));
    EXPECT_EQ(spd.get(F::DEVICE_ROWS), number(2));
    EXPECT_EQ(spd.get(F::REGISTER_TYPE), words("SSTE32882"));
    EXPECT_EQ(spd.get(F::REGISTER_MAKER), words("IDT"));
    EXPECT_EQ(spd.get(F::REGISTER_REVISION), words("6.3"));
    EXPECT_EQ(spd.get(F::HEAT_SPREADER), Value(true));
    EXPECT_EQ(spd.get(F::MODULE_MAKER), words("Samsung"));
    EXPECT_EQ(spd.get(F::LOCATION), number(2));
    EXPECT_EQ(spd.get(F::MADE), words("2016-W38"));
    EXPECT_EQ(spd.get(F::MODULE_REVISION), words("4E30h"));
    EXPECT_EQ(spd.get(F::DRAM_MAKER), words("Micron Technology"));
    EXPECT_EQ(spd.get(F::DRAM_STEPPING), NONE);
    EXPECT_EQ(spd.get(F::PROFILES), words("XMP 1.2"));
}

TEST(SpdDdr3, ReadsTimesAndTheirClocks)
{
    const Spd spd = parseSpd(ddr3Module());
    EXPECT_EQ(spd.get(F::TCK_MIN), number(1250));
    EXPECT_EQ(spd.get(F::TCK_MAX), NONE);
    struct Row {
        F fact;
        long long picoseconds;
        long long clocks;
    };
    for (const Row& row : {Row{F::TAA, 13751, 11}, Row{F::TWR, 15000, 12}, Row{F::TRCD, 13749, 11},
                           Row{F::TRRD, 6000, 5}, Row{F::TRP, 13752, 12}, Row{F::TRAS, 35000, 28},
                           Row{F::TRC, 48748, 39}, Row{F::TRFC1, 260000, 208},
                           Row{F::TWTR, 7500, 6}, Row{F::TRTP, 7625, 7}, Row{F::TFAW, 62000, 50}}) {
        EXPECT_EQ(spd.get(row.fact), number(row.picoseconds)) << spdFactKey(row.fact);
        const F clocks = static_cast<F>(static_cast<unsigned int>(row.fact) + 1);
        EXPECT_EQ(spd.get(clocks), number(row.clocks)) << spdFactKey(clocks);
    }
    EXPECT_EQ(spd.get(F::TRFC2), NONE);
    EXPECT_EQ(spd.get(F::TCCD_L), NONE);
}

TEST(SpdDdr3, TimesAreInTheUnitsOfTheImage)
{
    Bytes image = ddr3Module();
    image[9] = 0x52; // 5/2 ps
    image[10] = 1;
    image[11] = 12; // 1/12 ns
    EXPECT_EQ(parseSpd(image).get(F::TIMEBASES), words("1/12 ns, 5/2 ps"));
    EXPECT_EQ(parseSpd(image).get(F::TRRD), number(4000));
    EXPECT_EQ(parseSpd(image).get(F::TWTR), number(5000));
    EXPECT_EQ(parseSpd(image).get(F::TRTP), number(5083)); // 61/12 ns, to the nearest
    image[27] = 62;
    EXPECT_EQ(parseSpd(image).get(F::TRTP), number(5167));
    EXPECT_EQ(parseSpd(image).get(F::TAA), number(9169)); // 9166.67 + 2.5
    EXPECT_EQ(parseSpd(image).get(F::TRCD), number(9164));
    image[11] = 0;
    EXPECT_EQ(parseSpd(image).get(F::TRRD), NONE);
    image[11] = 8;
    image[10] = 0;
    EXPECT_EQ(parseSpd(image).get(F::TRRD), NONE);
    image = ddr3Module();
    for (const unsigned char byte : {0x10, 0x01}) {
        image[9] = byte;
        EXPECT_EQ(parseSpd(image).get(F::TAA), NONE);          // with a fine correction
        EXPECT_EQ(parseSpd(image).get(F::TRRD), number(6000)); // without
    }
}

TEST(SpdDdr3, ReservedCodesAreShownAsNumbers)
{
    EXPECT_EQ(with(0, 0x91, F::BYTES_USED), number(128));
    EXPECT_EQ(with(0, 0x93, F::BYTES_USED), number(256));
    EXPECT_EQ(with(0, 0x94, F::BYTES_USED), words("code 4h"));
    EXPECT_EQ(with(0, 0x90, F::BYTES_USED), NONE);
    EXPECT_EQ(with(0, 0x82, F::BYTES_TOTAL), NONE);
    EXPECT_EQ(with(0, 0xA2, F::BYTES_TOTAL), words("code 2h"));
    EXPECT_EQ(with(4, 0x34, F::BANKS), number(64));
    EXPECT_EQ(with(4, 0x44, F::BANKS), words("code 4h"));
    EXPECT_EQ(with(5, 0x23, F::COLUMN_BITS), number(12));
    EXPECT_EQ(with(5, 0x24, F::COLUMN_BITS), words("code 4h"));
    EXPECT_EQ(with(5, 0x01, F::ROW_BITS), number(12));
    EXPECT_EQ(with(5, 0x29, F::ROW_BITS), words("code 5h"));
    EXPECT_EQ(with(6, 0x00, F::VOLTAGES), words("1.5 V"));
    EXPECT_EQ(with(6, 0x03, F::VOLTAGES), words("1.35 V"));
    EXPECT_EQ(with(6, 0x06, F::VOLTAGES), words("1.5 V, 1.35 V, 1.25 V"));
    EXPECT_EQ(with(6, 0x01, F::VOLTAGES), NONE);
    EXPECT_EQ(with(6, 0x08, F::VOLTAGES), words("code 8h"));
    EXPECT_EQ(with(14, 0x00, F::CAS_LATENCIES), Value(std::vector<long long>{18}));
    EXPECT_EQ(with(15, 0x80, F::CAS_LATENCIES),
              Value(std::vector<long long>{5, 6, 7, 8, 9, 10, 11}));
    EXPECT_EQ(with(30, 0x7E, F::RZQ6), Value(false));
    EXPECT_EQ(with(30, 0x7D, F::RZQ7), Value(false));
    EXPECT_EQ(with(30, 0x7F, F::DLL_OFF), Value(false));
    EXPECT_EQ(with(31, 0xFE, F::HOT), Value(false));
    EXPECT_EQ(with(31, 0x02, F::HOT_REFRESH), number(1));
    EXPECT_EQ(with(31, 0xFB, F::AUTO_REFRESH), Value(false));
    EXPECT_EQ(with(31, 0x08, F::ON_DIE_SENSOR), Value(true));
    EXPECT_EQ(with(31, 0x7F, F::PARTIAL_REFRESH), Value(false));
    EXPECT_EQ(with(32, 0x7F, F::THERMAL_SENSOR), Value(false));
    EXPECT_EQ(with(33, 0x03, F::PACKAGE), words("monolithic"));
    EXPECT_EQ(with(33, 0x80, F::PACKAGE), words("stack"));
    EXPECT_EQ(with(33, 0x81, F::PACKAGE), words("multi-load stack"));
    EXPECT_EQ(with(33, 0x82, F::PACKAGE), words("single-load stack"));
    EXPECT_EQ(with(33, 0x83, F::PACKAGE), words("code 3h"));
    EXPECT_EQ(with(33, 0x90, F::DIES), number(1));
    EXPECT_EQ(with(33, 0xC0, F::DIES), number(8));
    EXPECT_EQ(with(33, 0xD0, F::DIES), words("code 5h"));
    EXPECT_EQ(with(63, 0x00, F::REGISTERS), NONE);
    EXPECT_EQ(with(64, 0x7F, F::HEAT_SPREADER), Value(false));
    EXPECT_EQ(with(68, 0x01, F::REGISTER_TYPE), words("code 1h"));
    EXPECT_EQ(with(68, 0xF8, F::REGISTER_TYPE), words("SSTE32882"));
    EXPECT_EQ(with(177, 0x4B, F::PROFILES), NONE);
}

TEST(SpdDdr3, NeighbouringBitsAreNotPartOfAField)
{
    EXPECT_EQ(with(0, 0x82, F::BYTES_USED), number(176));
    EXPECT_EQ(with(0, 0x12, F::BYTES_TOTAL), number(256));
    EXPECT_EQ(with(4, 0x84, F::BANKS), number(8));
    EXPECT_EQ(with(5, 0xE1, F::ROW_BITS), number(16));
    EXPECT_EQ(with(5, 0x09, F::COLUMN_BITS), number(10));
    EXPECT_EQ(with(21, 0x21, F::TRAS), number(35000));
    EXPECT_EQ(with(28, 0xF1, F::TFAW), number(62000));
    EXPECT_EQ(with(33, 0x7C, F::PACKAGE), words("monolithic"));
    EXPECT_EQ(with(41, 0xD8, F::MAX_ACTIVATES), words("unlimited"));
    EXPECT_EQ(with(41, 0xD8, F::ACTIVATE_WINDOW), number(4096));
    EXPECT_EQ(with(60, 0xEF, F::HEIGHT), number(30));
    EXPECT_EQ(with(61, 0xF2, F::FRONT), number(3));
    EXPECT_EQ(with(63, 0xF9, F::DEVICE_ROWS), number(2));
    EXPECT_EQ(with(63, 0xFD, F::REGISTERS), number(1));
}

TEST(SpdDdr3, ModuleTypesHaveBytesOfTheirOwn)
{
    Bytes image = ddr3Module();
    for (const unsigned char type : {2, 3, 4, 6, 8, 12, 13}) {
        image[3] = type;
        EXPECT_EQ(parseSpd(image).get(F::MAPPING), words("mirrored")) << +type;
        EXPECT_EQ(parseSpd(image).get(F::REGISTER_MAKER), NONE) << +type;
    }
    for (const unsigned char type : {1, 5, 9}) {
        image[3] = type;
        EXPECT_EQ(parseSpd(image).get(F::MAPPING), NONE) << +type;
        EXPECT_EQ(parseSpd(image).get(F::REGISTER_MAKER), words("IDT")) << +type;
        EXPECT_EQ(parseSpd(image).get(F::BUFFER_REVISION), NONE) << +type;
    }
    for (const unsigned char type : {0, 7, 10, 14}) {
        image[3] = type;
        EXPECT_EQ(parseSpd(image).get(F::MAPPING), NONE) << +type;
        EXPECT_EQ(parseSpd(image).get(F::REGISTER_MAKER), NONE) << +type;
    }
    image[3] = 11; // LRDIMM
    image[63] = 0x89;
    image[64] = 0x22;
    const Spd spd = parseSpd(image);
    EXPECT_EQ(spd.get(F::MAPPING), words("mirrored"));
    EXPECT_EQ(spd.get(F::DEVICE_ROWS), number(2));
    EXPECT_EQ(spd.get(F::HEAT_SPREADER), Value(true));
    EXPECT_EQ(spd.get(F::BUFFER_REVISION), words("2.2"));
    EXPECT_EQ(spd.get(F::REGISTER_MAKER), words("IDT"));
    EXPECT_EQ(spd.get(F::REGISTERS), NONE);
    image[63] = 0x08;
    EXPECT_EQ(parseSpd(image).get(F::HEAT_SPREADER), Value(false));
    EXPECT_EQ(parseSpd(image).get(F::MAPPING), words("standard"));
}

TEST(SpdDdr3, APartOfTheImageHasAPartOfTheFacts)
{
    const Bytes whole = ddr3Module();
    const Spd least = parseSpd(part(whole, 0, 128));
    EXPECT_EQ(least.get(F::MODULE_MAKER), words("Samsung"));
    EXPECT_EQ(least.get(F::DRAM_MAKER), NONE);
    EXPECT_EQ(least.get(F::PROFILES), NONE);
    EXPECT_FALSE(least.hasManufacturerData);
    EXPECT_EQ(parseSpd(part(whole, 0, 147)).get(F::MODULE_REVISION), NONE);
    EXPECT_EQ(parseSpd(part(whole, 0, 148)).get(F::MODULE_REVISION), words("4E30h"));
    EXPECT_EQ(parseSpd(part(whole, 0, 149)).get(F::DRAM_MAKER), NONE);
    EXPECT_EQ(parseSpd(part(whole, 0, 150)).get(F::DRAM_MAKER), words("Micron Technology"));
    EXPECT_EQ(parseSpd(part(whole, 0, 179)).get(F::PROFILES), NONE);
    EXPECT_EQ(parseSpd(part(whole, 0, 180)).get(F::PROFILES), words("XMP 1.2"));
}
