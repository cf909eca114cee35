// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>
#include <set>

#include <recordkit/inspect/memory/Spd.h>

#include "support/SpdImage.h"

using namespace recordkit::inspect;
using namespace testing_support;

namespace {

using F = SpdFact;

/// A fact of the module with another byte.
Value with(std::size_t offset, unsigned char value, F fact)
{
    Bytes image = ddr4Module();
    image[offset] = value;
    return parseSpd(image).get(fact);
}

Spd changed(std::size_t offset, unsigned char value)
{
    Bytes image = ddr4Module();
    image[offset] = value;
    return parseSpd(image);
}

}

TEST(SpdDdr4, ReadsAModule)
{
    const Spd spd = parseSpd(ddr4Module());
    EXPECT_EQ(spd.megabytes, 16384U);
    EXPECT_EQ(spd.ranks, 2U);
    EXPECT_EQ(spd.deviceWidth, 8U);
    EXPECT_EQ(spd.busWidth, 64U);
    EXPECT_EQ(spd.eccWidth, 8U);
    EXPECT_EQ(spd.densityMegabits, 8192U);
    EXPECT_EQ(spd.moduleType, "RDIMM");
    EXPECT_EQ(spd.serialNumber, 0x12345678U);
    EXPECT_EQ(spd.partNumber, "RK-DDR4-PART        ");
    EXPECT_TRUE(spd.hasManufacturerData);
    EXPECT_FALSE(spd.hasCodes);
    EXPECT_TRUE(spd.areCrcsRight());
    EXPECT_EQ(spd.get(F::MEMORY_TYPE), words("DDR4 SDRAM"));
    EXPECT_EQ(spd.get(F::REVISION), words("1.1"));
    EXPECT_EQ(spd.get(F::BYTES_USED), number(384));
    EXPECT_EQ(spd.get(F::BYTES_TOTAL), number(512));
    EXPECT_EQ(spd.get(F::HYBRID), NONE);
    EXPECT_EQ(spd.get(F::PACKAGE), words("monolithic"));
    EXPECT_EQ(spd.get(F::DIES), number(1));
    EXPECT_EQ(spd.get(F::CHANNELS), NONE);
    EXPECT_EQ(spd.get(F::BANK_GROUPS), number(4));
    EXPECT_EQ(spd.get(F::BANKS), number(16));
    EXPECT_EQ(spd.get(F::ROW_BITS), number(16));
    EXPECT_EQ(spd.get(F::COLUMN_BITS), number(10));
    EXPECT_EQ(spd.get(F::VOLTAGES), words("1.2 V"));
    EXPECT_EQ(spd.get(F::SPEED), number(2400));
    EXPECT_EQ(spd.get(F::CAS_LATENCIES), Value(std::vector<long long>{10, 11, 12, 17}));
    EXPECT_EQ(spd.get(F::TIMEBASES), words("125 ps, 1 ps"));
    EXPECT_EQ(spd.get(F::MAX_ACTIVATES), words("unlimited"));
    EXPECT_EQ(spd.get(F::ACTIVATE_WINDOW), number(8192));
    EXPECT_EQ(spd.get(F::REPAIR), words("one row per bank group"));
    EXPECT_EQ(spd.get(F::SOFT_REPAIR), Value(true));
    EXPECT_EQ(spd.get(F::THERMAL_SENSOR), Value(true));
    EXPECT_EQ(spd.get(F::HEIGHT), number(32));
    EXPECT_EQ(spd.get(F::FRONT), number(2));
    EXPECT_EQ(spd.get(F::BACK), number(3));
    EXPECT_EQ(spd.get(F::REFERENCE_CARD), words("D revision 1"));
    EXPECT_EQ(spd.get(F::MAPPING), words("mirrored"));
    EXPECT_EQ(spd.get(F::REGISTERS), number(1));
    EXPECT_EQ(spd.get(F::DEVICE_ROWS), number(2));
    EXPECT_EQ(spd.get(F::REGISTER_TYPE), words("DDR4RCD02"));
    EXPECT_EQ(spd.get(F::REGISTER_MAKER), words("Montage Technology Group"));
    EXPECT_EQ(spd.get(F::REGISTER_REVISION), words("B.1"));
    EXPECT_EQ(spd.get(F::BUFFER_REVISION), NONE);
    EXPECT_EQ(spd.get(F::HEAT_SPREADER), Value(true));
    EXPECT_EQ(spd.get(F::MODULE_MAKER), words("Samsung"));
    EXPECT_EQ(spd.get(F::LOCATION), number(2));
    EXPECT_EQ(spd.get(F::MADE), words("2019-W27"));
    EXPECT_EQ(spd.get(F::MODULE_REVISION), words("31h"));
    EXPECT_EQ(spd.get(F::DRAM_MAKER), words("SK Hynix"));
    EXPECT_EQ(spd.get(F::DRAM_STEPPING), number(0x41));
    EXPECT_EQ(spd.get(F::PROFILES), words("XMP 2.0"));
}

TEST(SpdDdr4, ReadsTimesAndTheirClocks)
{
    const Spd spd = parseSpd(ddr4Module());
    EXPECT_EQ(spd.get(F::TCK_MIN), number(833)); // 7 * 125 - 42
    EXPECT_EQ(spd.get(F::TCK_MAX), number(1600));
    struct Row {
        F fact;
        long long picoseconds;
        long long clocks;
    };
    for (const Row& row :
         {Row{F::TAA, 13750, 17}, Row{F::TRCD, 13751, 17}, Row{F::TRP, 13749, 17},
          Row{F::TRAS, 32000, 39}, Row{F::TRC, 45748, 55}, Row{F::TRFC1, 350000, 421},
          Row{F::TRFC2, 260000, 313}, Row{F::TRFC4, 160000, 193}, Row{F::TFAW, 53000, 64},
          Row{F::TRRD, 3300, 4}, Row{F::TRRD_L, 4900, 6}, Row{F::TCCD_L, 5000, 6},
          Row{F::TWR, 47000, 57}, Row{F::TWTR, 66500, 80}, Row{F::TWTR_L, 103500, 125}}) {
        EXPECT_EQ(spd.get(row.fact), number(row.picoseconds)) << spdFactKey(row.fact);
        const F clocks = static_cast<F>(static_cast<unsigned int>(row.fact) + 1);
        EXPECT_EQ(spd.get(clocks), number(row.clocks)) << spdFactKey(clocks);
    }
    EXPECT_EQ(spd.get(F::TRTP), NONE);
}

TEST(SpdDdr4, ATimeOfZeroIsNotSpecified)
{
    EXPECT_EQ(with(24, 0, F::TAA), NONE);
    EXPECT_EQ(with(24, 0, F::TAA_CLOCKS), NONE);
    EXPECT_EQ(with(18, 0, F::TCK_MIN), NONE);
    EXPECT_EQ(with(18, 0, F::SPEED), NONE);
    EXPECT_EQ(with(18, 0, F::TAA), number(13750));
    EXPECT_EQ(with(18, 0, F::TAA_CLOCKS), NONE);
    // A fine correction of more than the time.
    Bytes image = ddr4Module();
    image[25] = 1;
    image[122] = 0x83; // 125 - 125
    EXPECT_EQ(parseSpd(image).get(F::TRCD), NONE);
    image[122] = 0x84;
    EXPECT_EQ(parseSpd(image).get(F::TRCD), number(1));
    image[122] = 0x80;
    EXPECT_EQ(parseSpd(image).get(F::TRCD), NONE);
    image[122] = 0x7F;
    EXPECT_EQ(parseSpd(image).get(F::TRCD), number(252));
}

TEST(SpdDdr4, ClocksAllowAFortiethOfOne)
{
    Bytes image = ddr4Module();
    image[18] = 8; // cycles of 1000 ps
    image[125] = 0;
    image[24] = 96; // 12000 ps
    image[123] = 25;
    EXPECT_EQ(parseSpd(image).get(F::TAA_CLOCKS), number(12));
    image[123] = 26;
    EXPECT_EQ(parseSpd(image).get(F::TAA_CLOCKS), number(13));
}

TEST(SpdDdr4, UnknownTimebasesLeaveTheTimesOpen)
{
    for (const unsigned char code : {1, 2, 4, 8, 15}) {
        EXPECT_EQ(with(17, code, F::TAA), NONE);
        EXPECT_EQ(with(17, code, F::TCK_MIN), NONE);
    }
    EXPECT_EQ(with(17, 4, F::TIMEBASES), words("code 4h"));
    EXPECT_EQ(with(17, 0xF0, F::TAA), number(13750));
}

TEST(SpdDdr4, SpeedsHaveTheNamesOfGrades)
{
    const auto speed = [](unsigned char cycle, unsigned char correction) {
        Bytes image = ddr4Module();
        image[18] = cycle;
        image[125] = correction;
        return parseSpd(image).get(F::SPEED);
    };
    EXPECT_EQ(speed(10, 0), number(1600));
    EXPECT_EQ(speed(9, 0xCA), number(1866)); // 1071 ps
    EXPECT_EQ(speed(9, 0xCB), number(1866)); // 1072 ps
    EXPECT_EQ(speed(9, 0xC9), number(1869)); // 1070 ps is none
    EXPECT_EQ(speed(8, 0xC1), number(2133)); // 937 ps
    EXPECT_EQ(speed(8, 0xC2), number(2133)); // 938 ps
    EXPECT_EQ(speed(6, 0), number(2666));
    EXPECT_EQ(speed(6, 0xBC), number(2933)); // 682 ps
    EXPECT_EQ(speed(5, 0), number(3200));
}

TEST(SpdDdr4, CasLatenciesHaveTwoRanges)
{
    Bytes image = ddr4Module();
    image[20] = 0x01;
    image[21] = 0;
    image[22] = 0;
    image[23] = 0x20;
    EXPECT_EQ(parseSpd(image).get(F::CAS_LATENCIES), Value(std::vector<long long>{7, 36}));
    image[23] = 0xA0;
    EXPECT_EQ(parseSpd(image).get(F::CAS_LATENCIES), Value(std::vector<long long>{23, 52}));
    image[20] = 0;
    image[23] = 0x40; // reserved
    EXPECT_EQ(parseSpd(image).get(F::CAS_LATENCIES), NONE);
}

TEST(SpdDdr4, CapacityFollowsFromItsCodes)
{
    EXPECT_EQ(changed(4, 0x80).megabytes, 512U); // 256 Mbit
    EXPECT_EQ(changed(4, 0x87).megabytes, 65536U);
    EXPECT_EQ(changed(4, 0x88).megabytes, 24576U); // 12 Gbit
    EXPECT_EQ(changed(4, 0x89).megabytes, 49152U); // 24 Gbit
    EXPECT_EQ(changed(4, 0x8A).megabytes, 0U);
    EXPECT_EQ(changed(4, 0x8A).densityMegabits, 0U);
    EXPECT_EQ(changed(12, 0x3B).ranks, 8U);
    EXPECT_EQ(changed(12, 0x3B).deviceWidth, 32U);
    EXPECT_EQ(changed(12, 0x3B).megabytes, 16384U);
    EXPECT_EQ(changed(12, 0x0C).deviceWidth, 0U);
    EXPECT_EQ(changed(12, 0x0C).megabytes, 0U);
    EXPECT_EQ(changed(13, 0x00).megabytes, 2048U);
    EXPECT_EQ(changed(13, 0x04).megabytes, 0U);
    EXPECT_EQ(changed(13, 0x03).eccWidth, 0U);
    EXPECT_EQ(changed(13, 0x13).eccWidth, 0U); // reserved
    // Ranks of different devices.
    EXPECT_EQ(changed(12, 0x49).megabytes, 0U);
    EXPECT_EQ(changed(12, 0x49).ranks, 2U);
}

TEST(SpdDdr4, DiesOfASingleLoadStackAreRanks)
{
    EXPECT_EQ(changed(6, 0xB2).ranks, 8U);
    EXPECT_EQ(changed(6, 0xB2).megabytes, 65536U);
    EXPECT_EQ(with(6, 0xB2, F::PACKAGE), words("single-load stack"));
    EXPECT_EQ(with(6, 0xB2, F::DIES), number(4));
    EXPECT_EQ(changed(6, 0x91).ranks, 2U);
    EXPECT_EQ(with(6, 0x91, F::PACKAGE), words("multi-load stack"));
    EXPECT_EQ(with(6, 0xF0, F::PACKAGE), words("stack"));
    EXPECT_EQ(with(6, 0xF0, F::DIES), number(8));
    EXPECT_EQ(with(6, 0x83, F::PACKAGE), words("code 3h"));
    EXPECT_EQ(changed(6, 0x32).ranks, 2U); // bit 7 is missing
}

TEST(SpdDdr4, ReservedCodesAreShownAsNumbers)
{
    EXPECT_EQ(changed(3, 0x07).moduleType, "type 7h");
    EXPECT_EQ(changed(3, 0x0D).moduleType, "32b-SO-DIMM");
    EXPECT_EQ(changed(3, 0x0E).moduleType, "type Eh");
    EXPECT_EQ(changed(3, 0x00).moduleType, "extended");
    EXPECT_EQ(with(0, 0x24, F::BYTES_USED), number(512));
    EXPECT_EQ(with(0, 0x25, F::BYTES_USED), words("code 5h"));
    EXPECT_EQ(with(0, 0x20, F::BYTES_USED), NONE);
    EXPECT_EQ(with(0, 0x13, F::BYTES_TOTAL), number(256));
    EXPECT_EQ(with(0, 0x33, F::BYTES_TOTAL), words("code 3h"));
    EXPECT_EQ(with(0, 0x03, F::BYTES_TOTAL), NONE);
    EXPECT_EQ(with(3, 0x91, F::HYBRID), words("NVDIMM"));
    EXPECT_EQ(with(3, 0xA1, F::HYBRID), words("code Ah"));
    EXPECT_EQ(with(3, 0x81, F::HYBRID), words("code 8h"));
    EXPECT_EQ(with(3, 0x11, F::HYBRID), NONE);
    EXPECT_EQ(with(4, 0x45, F::BANKS), number(8));
    EXPECT_EQ(with(4, 0x95, F::BANKS), number(32));
    EXPECT_EQ(with(4, 0xA5, F::BANKS), words("code Ah"));
    EXPECT_EQ(with(4, 0xC5, F::BANKS), words("code Ch"));
    EXPECT_EQ(with(4, 0x05, F::BANK_GROUPS), number(1));
    EXPECT_EQ(with(4, 0xC5, F::BANK_GROUPS), words("code 3h"));
    EXPECT_EQ(with(5, 0x33, F::COLUMN_BITS), number(12));
    EXPECT_EQ(with(5, 0x34, F::COLUMN_BITS), words("code 4h"));
    EXPECT_EQ(with(5, 0x33, F::ROW_BITS), number(18));
    EXPECT_EQ(with(5, 0x3B, F::ROW_BITS), words("code 7h"));
    EXPECT_EQ(with(7, 0x00, F::MAX_ACTIVATES), words("untested"));
    EXPECT_EQ(with(7, 0x01, F::MAX_ACTIVATES), words("700 K"));
    EXPECT_EQ(with(7, 0x06, F::MAX_ACTIVATES), words("200 K"));
    EXPECT_EQ(with(7, 0x07, F::MAX_ACTIVATES), words("code 7h"));
    EXPECT_EQ(with(7, 0x09, F::MAX_ACTIVATES), words("code 9h"));
    EXPECT_EQ(with(7, 0x20, F::ACTIVATE_WINDOW), number(2048));
    EXPECT_EQ(with(7, 0x30, F::ACTIVATE_WINDOW), words("code 3h"));
    EXPECT_EQ(with(9, 0x00, F::REPAIR), words("not supported"));
    EXPECT_EQ(with(9, 0x80, F::REPAIR), words("code 2h"));
    EXPECT_EQ(with(9, 0x40, F::SOFT_REPAIR), Value(false));
    EXPECT_EQ(with(11, 0x00, F::VOLTAGES), NONE);
    EXPECT_EQ(with(11, 0x02, F::VOLTAGES), words("1.2 V endurant"));
    EXPECT_EQ(with(11, 0x04, F::VOLTAGES), words("code 4h"));
    EXPECT_EQ(with(14, 0x7F, F::THERMAL_SENSOR), Value(false));
    EXPECT_EQ(with(131, 0x04, F::REGISTERS), NONE);
    EXPECT_EQ(with(131, 0x0F, F::REGISTERS), number(4));
    EXPECT_EQ(with(131, 0x0F, F::DEVICE_ROWS), number(4));
    EXPECT_EQ(with(131, 0x20, F::REGISTER_TYPE), words("code 2h"));
    EXPECT_EQ(with(135, 0xFF, F::REGISTER_REVISION), NONE);
    EXPECT_EQ(with(134, 0x00, F::REGISTER_MAKER), words("bytes 86h 00h, wrong parity"));
}

TEST(SpdDdr4, NeighbouringBitsAreNotPartOfAField)
{
    EXPECT_EQ(with(0, 0x13, F::BYTES_USED), number(384));
    EXPECT_EQ(with(0, 0xA3, F::BYTES_TOTAL), number(512));
    EXPECT_EQ(with(5, 0xE1, F::ROW_BITS), number(16));
    EXPECT_EQ(with(5, 0xE9, F::COLUMN_BITS), number(10));
    EXPECT_EQ(with(6, 0x8C, F::PACKAGE), words("stack"));
    EXPECT_EQ(with(6, 0x8C, F::DIES), number(1));
    EXPECT_EQ(with(7, 0x18, F::MAX_ACTIVATES), words("unlimited"));
    EXPECT_EQ(with(7, 0xC8, F::ACTIVATE_WINDOW), number(8192));
    EXPECT_EQ(with(9, 0x5F, F::SOFT_REPAIR), Value(false));
    EXPECT_EQ(with(17, 0xF0, F::TIMEBASES), words("125 ps, 1 ps"));
    EXPECT_EQ(with(27, 0x21, F::TRAS), number(32000));
    EXPECT_EQ(with(36, 0xF1, F::TFAW), number(53000));
    EXPECT_EQ(with(41, 0xF1, F::TWR), number(47000));
    EXPECT_EQ(with(43, 0x42, F::TWTR), number(66500));
    EXPECT_EQ(with(128, 0xF1, F::HEIGHT), number(32));
    EXPECT_EQ(with(129, 0xF1, F::FRONT), number(2));
    EXPECT_EQ(with(131, 0x1D, F::REGISTERS), number(1));
    EXPECT_EQ(with(132, 0x7F, F::HEAT_SPREADER), Value(false));
    EXPECT_EQ(with(136, 0xFE, F::MAPPING), words("standard"));
    EXPECT_EQ(changed(4, 0x45).densityMegabits, 8192U);
    EXPECT_EQ(changed(4, 0x80).densityMegabits, 256U);
    EXPECT_EQ(changed(12, 0x89).ranks, 2U);
    EXPECT_EQ(changed(13, 0xEB).eccWidth, 8U);
    EXPECT_EQ(changed(13, 0xEB).busWidth, 64U);
}

TEST(SpdDdr4, ModuleTypesHaveBytesOfTheirOwn)
{
    Bytes image = ddr4Module();
    image[3] = 0x02; // UDIMM
    const Spd plain = parseSpd(image);
    EXPECT_EQ(plain.get(F::REGISTERS), NONE);
    EXPECT_EQ(plain.get(F::REGISTER_MAKER), NONE);
    EXPECT_EQ(plain.get(F::HEAT_SPREADER), NONE);
    EXPECT_EQ(plain.get(F::MAPPING), words("mirrored")); // byte 131, bit 0
    image[131] = 0xFE;
    EXPECT_EQ(parseSpd(image).get(F::MAPPING), words("standard"));
    image = ddr4Module();
    image[3] = 0x04; // LRDIMM
    image[139] = 0x21;
    const Spd buffered = parseSpd(image);
    EXPECT_EQ(buffered.get(F::REGISTER_TYPE), words("DDR4RCD02, DDR4DB02"));
    EXPECT_EQ(buffered.get(F::BUFFER_REVISION), words("2.1"));
    EXPECT_EQ(buffered.get(F::REGISTER_MAKER), words("Montage Technology Group"));
    for (const unsigned char type : {5, 8}) {
        image[3] = type;
        EXPECT_EQ(parseSpd(image).get(F::REGISTERS), number(1));
        EXPECT_EQ(parseSpd(image).get(F::BUFFER_REVISION), NONE);
    }
}

TEST(SpdDdr4, ReferenceCardsHaveTwoAlphabets)
{
    EXPECT_EQ(with(130, 0x00, F::REFERENCE_CARD), words("A revision 0"));
    EXPECT_EQ(with(130, 0x1E, F::REFERENCE_CARD), words("AL revision 0"));
    EXPECT_EQ(with(130, 0x1F, F::REFERENCE_CARD), words("ZZ"));
    EXPECT_EQ(with(130, 0x80, F::REFERENCE_CARD), words("AM revision 0"));
    EXPECT_EQ(with(130, 0x9E, F::REFERENCE_CARD), words("CB revision 0"));
    EXPECT_EQ(with(130, 0x9F, F::REFERENCE_CARD), words("ZZ"));
    // Revisions from 3 on are continued in byte 128.
    Bytes image = ddr4Module();
    image[128] = 0x51;
    image[130] = 0x43;
    EXPECT_EQ(parseSpd(image).get(F::REFERENCE_CARD), words("D revision 2"));
    image[130] = 0x63;
    EXPECT_EQ(parseSpd(image).get(F::REFERENCE_CARD), words("D revision 5"));
    EXPECT_EQ(parseSpd(image).get(F::HEIGHT), number(32));
    image[128] = 0x1F;
    EXPECT_EQ(parseSpd(image).get(F::HEIGHT), number(46));
}

TEST(SpdDdr4, OriginThatWasNeverWrittenIsNull)
{
    for (const unsigned char fill : {0x00, 0xFF}) {
        Bytes image = ddr4Module();
        std::fill(image.begin() + 320, image.begin() + 384, fill);
        const Spd spd = parseSpd(image);
        for (const F fact :
             {F::MODULE_MAKER, F::LOCATION, F::MADE, F::MODULE_REVISION, F::DRAM_MAKER}) {
            EXPECT_EQ(spd.get(fact), NONE) << spdFactKey(fact) << +fill;
        }
        EXPECT_EQ(spd.partNumber, "");
        EXPECT_EQ(spd.get(F::DRAM_STEPPING), fill == 0 ? number(0) : NONE);
    }
    EXPECT_EQ(with(324, 0x53, F::MADE), words("2019-W53"));
    EXPECT_EQ(with(324, 0x54, F::MADE), words("year 19h, week 54h"));
    EXPECT_EQ(with(324, 0x00, F::MADE), words("year 19h, week 00h"));
    EXPECT_EQ(with(324, 0x1A, F::MADE), words("year 19h, week 1Ah"));
    EXPECT_EQ(with(323, 0xA0, F::MADE), words("year A0h, week 27h"));
    EXPECT_EQ(with(323, 0x99, F::MADE), words("2099-W27"));
}

TEST(SpdDdr4, HasTwoCrcs)
{
    Bytes image = ddr4Module();
    image[125] ^= 1; // the last byte of the first block
    EXPECT_FALSE(parseSpd(image).isCrcRight());
    EXPECT_TRUE(parseSpd(image).moduleCrc->isRight());
    EXPECT_FALSE(parseSpd(image).areCrcsRight());
    for (const std::size_t offset : {128, 253}) {
        image = ddr4Module();
        image[offset] ^= 1;
        EXPECT_TRUE(parseSpd(image).isCrcRight());
        EXPECT_FALSE(parseSpd(image).moduleCrc->isRight());
        EXPECT_FALSE(parseSpd(image).areCrcsRight());
    }
    image = ddr4Module();
    image[256] ^= 1;
    image[0] |= 0x80; // no bit of this generation's coverage
    const unsigned short crc = spdCrc(ByteView(image).part(0, 126));
    image[126] = static_cast<unsigned char>(crc & 0xFF);
    image[127] = static_cast<unsigned char>(crc >> 8);
    EXPECT_TRUE(parseSpd(image).areCrcsRight());
    const Spd spd = parseSpd(ddr4Module());
    EXPECT_EQ(spd.moduleCrc->first, 128);
    EXPECT_EQ(spd.moduleCrc->last, 253);
}

TEST(SpdDdr4, APartOfTheImageHasAPartOfTheFacts)
{
    const Bytes whole = ddr4Module();
    const Spd least = parseSpd(part(whole, 0, 128));
    EXPECT_TRUE(least.isCrcRight());
    EXPECT_FALSE(least.moduleCrc);
    EXPECT_EQ(least.megabytes, 16384U);
    EXPECT_EQ(least.get(F::HEIGHT), NONE);
    EXPECT_FALSE(least.hasManufacturerData);
    EXPECT_FALSE(parseSpd(part(whole, 0, 255)).moduleCrc);
    EXPECT_TRUE(parseSpd(part(whole, 0, 256)).moduleCrc);
    EXPECT_EQ(parseSpd(part(whole, 0, 321)).get(F::MODULE_MAKER), NONE);
    EXPECT_EQ(parseSpd(part(whole, 0, 322)).get(F::MODULE_MAKER), words("Samsung"));
    EXPECT_EQ(parseSpd(part(whole, 0, 351)).get(F::DRAM_MAKER), NONE);
    EXPECT_EQ(parseSpd(part(whole, 0, 352)).get(F::DRAM_MAKER), words("SK Hynix"));
    EXPECT_FALSE(parseSpd(part(whole, 0, 348)).hasManufacturerData);
    EXPECT_TRUE(parseSpd(part(whole, 0, 349)).hasManufacturerData);
    EXPECT_EQ(parseSpd(part(whole, 0, 387)).get(F::PROFILES), NONE);
    EXPECT_EQ(parseSpd(part(whole, 0, 388)).get(F::PROFILES), words("XMP 2.0"));
    EXPECT_EQ(with(385, 0x4B, F::PROFILES), NONE);
    EXPECT_EQ(with(384, 0x0D, F::PROFILES), NONE);
}

TEST(SpdDdr4, ADumpThatDidNotSwitchPagesIsItsFirstPage)
{
    const Bytes page = part(ddr4Module(), 0, 256);
    for (const std::size_t pages : {2, 4}) {
        Bytes image;
        for (std::size_t i = 0; i < pages; ++i) {
            image.insert(image.end(), page.begin(), page.end());
        }
        const Spd spd = parseSpd(image);
        EXPECT_TRUE(spd.hasRepeatedPages);
        EXPECT_FALSE(spd.hasManufacturerData);
        EXPECT_EQ(spd.get(F::MODULE_MAKER), NONE);
        EXPECT_EQ(spd.get(F::HEIGHT), number(32));
        image.back() ^= 1;
        EXPECT_FALSE(parseSpd(image).hasRepeatedPages);
        EXPECT_TRUE(parseSpd(image).hasManufacturerData);
        image.pop_back();
        EXPECT_EQ(parseSpd(image).hasRepeatedPages, pages == 4);
    }
    EXPECT_FALSE(parseSpd(page).hasRepeatedPages);
    EXPECT_FALSE(parseSpd(ddr4Module()).hasRepeatedPages);
}

TEST(SpdFacts, HaveDifferentKeys)
{
    std::set<std::string> keys;
    for (unsigned int i = 0; i < static_cast<unsigned int>(F::COUNT); ++i) {
        keys.insert(spdFactKey(static_cast<F>(i)));
    }
    EXPECT_EQ(keys.size(), static_cast<std::size_t>(F::COUNT));
    EXPECT_STREQ(spdFactKey(F::TAA), "taa_ps");
    EXPECT_STREQ(spdFactKey(F::TAA_CLOCKS), "taa_clocks");
    EXPECT_STREQ(spdFactKey(F::PROFILES), "profiles");
}
