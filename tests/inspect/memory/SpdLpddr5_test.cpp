// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <recordkit/inspect/bytes/Error.h>
#include <recordkit/inspect/memory/Spd.h>

#include "support/SpdImage.h"

using namespace recordkit::inspect;
using namespace testing_support;

namespace {

using F = SpdFact;

Spd changed(std::size_t offset, unsigned char value)
{
    Bytes image = lpddr5Module();
    image[offset] = value;
    return parseSpd(image);
}

/// A fact of the module with another byte.
Value with(std::size_t offset, unsigned char value, F fact)
{
    return changed(offset, value).get(fact);
}

}

TEST(SpdLpddr5, ReadsAModule)
{
    const Spd spd = parseSpd(lpddr5Module());
    EXPECT_EQ(spd.megabytes, 32768U);
    EXPECT_EQ(spd.ranks, 2U);
    EXPECT_EQ(spd.deviceWidth, 16U);
    EXPECT_EQ(spd.busWidth, 128U);
    EXPECT_EQ(spd.eccWidth, 0U);
    EXPECT_EQ(spd.densityMegabits, 16384U);
    EXPECT_EQ(spd.moduleType, "CAMM2");
    EXPECT_EQ(spd.serialNumber, 0x12345678U);
    EXPECT_EQ(spd.partNumber, "RK-LPDDR5-PART                ");
    EXPECT_TRUE(spd.hasManufacturerData);
    EXPECT_FALSE(spd.hasCodes);
    EXPECT_FALSE(spd.moduleCrc);
    EXPECT_TRUE(spd.areCrcsRight());
    EXPECT_EQ(spd.get(F::MEMORY_TYPE), words("LPDDR5X SDRAM"));
    EXPECT_EQ(spd.get(F::REVISION), words("1.0"));
    EXPECT_EQ(spd.get(F::BYTES_USED), NONE);
    EXPECT_EQ(spd.get(F::BYTES_TOTAL), number(1024));
    EXPECT_EQ(spd.get(F::HYBRID), NONE);
    EXPECT_EQ(spd.get(F::PACKAGE), words("non-monolithic"));
    EXPECT_EQ(spd.get(F::DIES), number(2));
    EXPECT_EQ(spd.get(F::DIE_CHANNELS), NONE);
    EXPECT_EQ(spd.get(F::CHANNELS), number(8));
    EXPECT_EQ(spd.get(F::BYTE_MODE), Value(false));
    EXPECT_EQ(spd.get(F::DATA_LOADS), number(2));
    EXPECT_EQ(spd.get(F::COMMAND_LOADS), number(2));
    EXPECT_EQ(spd.get(F::SELECT_LOADS), number(1));
    EXPECT_EQ(spd.get(F::BANK_GROUPS), number(4));
    EXPECT_EQ(spd.get(F::BANKS), number(16));
    EXPECT_EQ(spd.get(F::ROW_BITS), number(16));
    EXPECT_EQ(spd.get(F::COLUMN_BITS), number(6));
    EXPECT_EQ(spd.get(F::SPEED), number(8533));
    EXPECT_EQ(spd.get(F::CAS_LATENCIES), NONE);
    EXPECT_EQ(spd.get(F::TIMEBASES), words("125 ps, 1 ps"));
    EXPECT_EQ(spd.get(F::REPAIR), words("supported"));
    EXPECT_EQ(spd.get(F::SOFT_REPAIR), Value(true));
    EXPECT_EQ(spd.get(F::MAX_ACTIVATES), NONE);
    EXPECT_EQ(spd.get(F::THERMAL_SENSOR), Value(true));
    EXPECT_EQ(spd.get(F::HEIGHT), number(32));
    EXPECT_EQ(spd.get(F::FRONT), number(2));
    EXPECT_EQ(spd.get(F::BACK), number(3));
    EXPECT_EQ(spd.get(F::REFERENCE_CARD), words("D revision 1"));
    EXPECT_EQ(spd.get(F::HUB_TYPE), words("SPD5118"));
    EXPECT_EQ(spd.get(F::HUB_MAKER), words("IDT"));
    EXPECT_EQ(spd.get(F::PMIC_TYPE), words("PMIC5200"));
    EXPECT_EQ(spd.get(F::PMIC_MAKER), words("Richtek Power"));
    EXPECT_EQ(spd.get(F::PMIC_REVISION), words("1.4"));
    EXPECT_EQ(spd.get(F::MODULE_MAKER), words("SK Hynix"));
    EXPECT_EQ(spd.get(F::LOCATION), number(3));
    EXPECT_EQ(spd.get(F::MADE), words("2023-W09"));
    EXPECT_EQ(spd.get(F::MODULE_REVISION), words("32h"));
    EXPECT_EQ(spd.get(F::DRAM_MAKER), words("Samsung"));
    EXPECT_EQ(spd.get(F::DRAM_STEPPING), number(0x50));
    EXPECT_EQ(spd.get(F::PROFILES), NONE);
    EXPECT_EQ(spd.get(F::VOLTAGES), NONE);
}

TEST(SpdLpddr5, ReadsTimesAndTheirClocks)
{
    const Spd spd = parseSpd(lpddr5Module());
    EXPECT_EQ(spd.get(F::TCK_MIN), number(937));
    EXPECT_EQ(spd.get(F::TCK_MAX), number(31875));
    struct Row {
        F fact;
        long long picoseconds;
        long long clocks;
    };
    for (const Row& row :
         {Row{F::TAA, 21551, 23}, Row{F::TRCD, 18002, 20}, Row{F::TRP, 20999, 23},
          Row{F::TRP_PB, 18126, 20}, Row{F::TRFC1, 280000, 299}, Row{F::TRFC_PB, 140000, 150}}) {
        EXPECT_EQ(spd.get(row.fact), number(row.picoseconds)) << spdFactKey(row.fact);
        const F clocks = static_cast<F>(static_cast<int>(row.fact) + 1);
        EXPECT_EQ(spd.get(clocks), number(row.clocks)) << spdFactKey(clocks);
    }
}

TEST(SpdLpddr5, NamesTheSpeedGradeByEitherClock)
{
    struct Row {
        unsigned char medium;
        unsigned char fine;
        long long speed;
    };
    // The clock, 8 transfers in a cycle; then the data clock, 2 transfers.
    for (const Row& row :
         {Row{15, 0x00, 4267}, Row{12, 0xD3, 5500}, Row{11, 0xD6, 6000}, Row{10, 0x00, 6400},
          Row{9, 0xC5, 7500}, Row{9, 0xC6, 7500}, Row{8, 0xC1, 8533}, Row{8, 0xC2, 8533},
          Row{7, 0xD6, 9600}, Row{6, 0x00, 10667}, Row{6, 0xCE, 11428}, Row{6, 0xCD, 2861},
          Row{5, 0x00, 3200}, Row{3, 0xF4, 5500}, Row{3, 0xC1, 6400}, Row{2, 0x10, 7500},
          Row{2, 0xF0, 8533}, Row{2, 0xD6, 9600}}) {
        Bytes image = lpddr5Module();
        image[18] = row.medium;
        image[125] = row.fine;
        EXPECT_EQ(parseSpd(image).get(F::SPEED), number(row.speed))
            << int{row.medium} << " " << int{row.fine};
    }
    EXPECT_EQ(with(18, 0, F::SPEED), NONE);
}

TEST(SpdLpddr5, ReservedCodesAreShown)
{
    EXPECT_EQ(with(0, 0x40, F::BYTES_TOTAL), number(2048));
    EXPECT_EQ(with(0, 0x50, F::BYTES_TOTAL), words("code 5h"));
    EXPECT_EQ(with(3, 0x98, F::HYBRID), words("NVDIMM-N"));
    EXPECT_EQ(with(4, 0x26, F::BANKS), number(16));
    EXPECT_EQ(with(4, 0x36, F::BANKS), words("code 3h"));
    EXPECT_EQ(with(5, 0x20, F::COLUMN_BITS), number(6));
    EXPECT_EQ(with(5, 0x22, F::COLUMN_BITS), words("code 2h"));
    EXPECT_EQ(with(5, 0x31, F::ROW_BITS), number(18));
    EXPECT_EQ(with(5, 0x39, F::ROW_BITS), words("code 7h"));
    const std::vector<long long> dies = {1, 2, 3, 4, 5, 6, 16, 8};
    for (std::size_t code = 0; code < dies.size(); ++code) {
        EXPECT_EQ(with(6, static_cast<unsigned char>(0x81 | code << 4), F::DIES),
                  number(dies[code]));
    }
    EXPECT_EQ(with(6, 0x11, F::PACKAGE), words("monolithic"));
    EXPECT_EQ(with(9, 0x00, F::REPAIR), words("not supported"));
    EXPECT_EQ(with(9, 0x80, F::REPAIR), words("code 2h"));
    EXPECT_EQ(with(12, 0x4A, F::BYTE_MODE), Value(true));
    EXPECT_EQ(with(235, 0x01, F::CHANNELS), number(1));
    EXPECT_EQ(with(235, 0x81, F::CHANNELS), words("code 4h"));
}

TEST(SpdLpddr5, CapacityIsThatOfDiesAndWidths)
{
    EXPECT_EQ(changed(235, 0x01).megabytes, 4096U);
    EXPECT_EQ(changed(235, 0x02).megabytes, 8192U);
    EXPECT_EQ(changed(235, 0x69).eccWidth, 32U) << "4 bits a channel";
    EXPECT_EQ(changed(235, 0x71).eccWidth, 64U);
    EXPECT_EQ(changed(235, 0x79).eccWidth, 0U) << "a reserved code";
    EXPECT_EQ(changed(235, 0x69).megabytes, 32768U);
    EXPECT_EQ(changed(235, 0x04).megabytes, 0U) << "a reserved width";
    EXPECT_EQ(changed(235, 0x81).megabytes, 0U) << "a reserved number of channels";
    EXPECT_EQ(changed(235, 0x81).busWidth, 0U);
    EXPECT_EQ(changed(12, 0x02).megabytes, 16384U);
    EXPECT_EQ(changed(12, 0x09).megabytes, 65536U);
    EXPECT_EQ(changed(12, 0x22).megabytes, 0U) << "five ranks";
    EXPECT_EQ(changed(12, 0x0C).megabytes, 0U) << "devices of 64 bits";
    EXPECT_EQ(changed(4, 0x88).megabytes, 24576U);
    EXPECT_EQ(changed(4, 0x8D).megabytes, 0U);
}

TEST(SpdLpddr5, NamesModuleTypes)
{
    EXPECT_EQ(changed(3, 0x09).moduleType, "SOCAMM2");
    EXPECT_EQ(changed(3, 0x0B).moduleType, "solder down");
    EXPECT_EQ(changed(3, 0x0F).moduleType, "type Fh");
    Bytes ddr5 = ddr5Module();
    ddr5[3] = 0x09;
    EXPECT_EQ(parseSpd(ddr5).moduleType, "type 9h");
}

TEST(SpdLpddr5, DecodesWhatACutOffImageHas)
{
    const Bytes whole = lpddr5Module();
    const auto cutTo = [&whole](std::size_t size) { return parseSpd(part(whole, 0, size)); };
    EXPECT_THROW(cutTo(511), DataError);
    EXPECT_TRUE(cutTo(512).isCrcRight());
    EXPECT_EQ(cutTo(512).megabytes, 32768U);
    EXPECT_EQ(cutTo(513).get(F::MODULE_MAKER), NONE);
    EXPECT_EQ(cutTo(514).get(F::MODULE_MAKER), words("SK Hynix"));
    EXPECT_FALSE(cutTo(550).hasManufacturerData);
    EXPECT_TRUE(cutTo(551).hasManufacturerData);
    Bytes wrong = whole;
    wrong[509] ^= 1;
    EXPECT_FALSE(parseSpd(wrong).isCrcRight());
}
