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
    Bytes image = lpddr4Module();
    image[offset] = value;
    return parseSpd(image);
}

/// A fact of the module with another byte.
Value with(std::size_t offset, unsigned char value, F fact)
{
    return changed(offset, value).get(fact);
}

Value numbers(const std::vector<long long>& list)
{
    return list;
}

/// Capacity by bytes 4 to 6, 12 and 13.
unsigned int megabytes(const Bytes& geometry, const Bytes& organization,
                       unsigned char deviceType = 0x11)
{
    Bytes image = lpddr4Module();
    image[2] = deviceType;
    image[3] = 0x0E;
    put(image, 4, geometry);
    put(image, 12, organization);
    return parseSpd(image).megabytes;
}

}

TEST(SpdLpddr, ReadsAModule)
{
    const Spd spd = parseSpd(lpddr4Module());
    EXPECT_EQ(spd.megabytes, 4096U);
    EXPECT_EQ(spd.ranks, 2U);
    EXPECT_EQ(spd.deviceWidth, 16U);
    EXPECT_EQ(spd.busWidth, 64U);
    EXPECT_EQ(spd.eccWidth, 0U);
    EXPECT_EQ(spd.densityMegabits, 8192U);
    EXPECT_EQ(spd.moduleType, "LP-DIMM");
    EXPECT_EQ(spd.serialNumber, 0x12345678U);
    EXPECT_EQ(spd.partNumber, "RK-LPDDR4-PART      ");
    EXPECT_TRUE(spd.hasManufacturerData);
    EXPECT_FALSE(spd.hasCodes);
    EXPECT_FALSE(spd.hasRepeatedPages);
    EXPECT_TRUE(spd.areCrcsRight());
    EXPECT_EQ(spd.get(F::MEMORY_TYPE), words("LPDDR4 SDRAM"));
    EXPECT_EQ(spd.get(F::REVISION), words("1.1"));
    EXPECT_EQ(spd.get(F::BYTES_USED), number(384));
    EXPECT_EQ(spd.get(F::BYTES_TOTAL), number(512));
    EXPECT_EQ(spd.get(F::HYBRID), NONE);
    EXPECT_EQ(spd.get(F::PACKAGE), words("non-monolithic"));
    EXPECT_EQ(spd.get(F::DIES), number(2));
    EXPECT_EQ(spd.get(F::DIE_CHANNELS), number(2));
    EXPECT_EQ(spd.get(F::CHANNELS), number(2));
    EXPECT_EQ(spd.get(F::BYTE_MODE), Value(false));
    EXPECT_EQ(spd.get(F::DATA_LOADS), number(4));
    EXPECT_EQ(spd.get(F::COMMAND_LOADS), number(2));
    EXPECT_EQ(spd.get(F::SELECT_LOADS), number(4));
    EXPECT_EQ(spd.get(F::BANK_GROUPS), number(1));
    EXPECT_EQ(spd.get(F::BANKS), number(8));
    EXPECT_EQ(spd.get(F::ROW_BITS), number(15));
    EXPECT_EQ(spd.get(F::COLUMN_BITS), number(10));
    EXPECT_EQ(spd.get(F::VOLTAGES), NONE);
    EXPECT_EQ(spd.get(F::SPEED), number(4267));
    EXPECT_EQ(spd.get(F::CAS_LATENCIES), numbers({6, 10, 14, 20, 24, 28, 32, 36}));
    EXPECT_EQ(spd.get(F::WRITE_LATENCIES), words("B"));
    EXPECT_EQ(spd.get(F::READ_DBI), Value(true));
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
    EXPECT_EQ(spd.get(F::MODULE_MAKER), words("Samsung"));
    EXPECT_EQ(spd.get(F::LOCATION), number(2));
    EXPECT_EQ(spd.get(F::MADE), words("2019-W27"));
    EXPECT_EQ(spd.get(F::MODULE_REVISION), words("31h"));
    EXPECT_EQ(spd.get(F::DRAM_MAKER), words("SK Hynix"));
    EXPECT_EQ(spd.get(F::DRAM_STEPPING), number(0x41));
    EXPECT_EQ(spd.get(F::PROFILES), NONE);
}

TEST(SpdLpddr, ReadsTimesAndTheirClocks)
{
    const Spd spd = parseSpd(lpddr4Module());
    EXPECT_EQ(spd.get(F::TCK_MIN), number(469));
    EXPECT_EQ(spd.get(F::TCK_MAX), number(1498));
    struct Row {
        F fact;
        long long picoseconds;
        long long clocks;
    };
    for (const Row& row :
         {Row{F::TAA, 16848, 36}, Row{F::TRCD, 18002, 39}, Row{F::TRP, 20999, 45},
          Row{F::TRP_PB, 18126, 39}, Row{F::TRFC1, 280000, 598}, Row{F::TRFC_PB, 140000, 299}}) {
        EXPECT_EQ(spd.get(row.fact), number(row.picoseconds)) << spdFactKey(row.fact);
        const F clocks = static_cast<F>(static_cast<int>(row.fact) + 1);
        EXPECT_EQ(spd.get(clocks), number(row.clocks)) << spdFactKey(clocks);
    }
    for (const F none : {F::TRAS, F::TRC, F::TRFC2, F::TRFC_SB, F::TFAW, F::TRRD, F::TWR}) {
        EXPECT_EQ(spd.get(none), NONE) << spdFactKey(none);
    }
}

TEST(SpdLpddr, AClockThatIsNotFullCounts)
{
    // 1250 ps, and 18 ns: 14.4 clocks.
    Bytes image = lpddr4Module();
    put(image, 18, {0x0A});
    image[125] = 0;
    image[122] = 0;
    EXPECT_EQ(parseSpd(image).get(F::TRCD_CLOCKS), number(15));
    image[26] = 140; // 17.5 ns: 14 clocks
    EXPECT_EQ(parseSpd(image).get(F::TRCD_CLOCKS), number(14));
    image[122] = 1; // less than a thousandth of a clock does not count
    EXPECT_EQ(parseSpd(image).get(F::TRCD_CLOCKS), number(14));
    image[122] = 2;
    EXPECT_EQ(parseSpd(image).get(F::TRCD_CLOCKS), number(15));
}

TEST(SpdLpddr, NamesTheSpeedGrade)
{
    struct Row {
        unsigned char medium;
        unsigned char fine;
        long long speed;
    };
    for (const Row& row :
         {Row{15, 0x00, 1066}, Row{12, 0x00, 1333}, Row{10, 0x00, 1600}, Row{10, 0x01, 1600},
          Row{10, 0x02, 1597}, Row{10, 0xFF, 1600}, Row{10, 0xFE, 1602}, Row{9, 0xCA, 1866},
          Row{9, 0xC9, 1869}, // 1070 ps is of no grade
          Row{8, 0xC2, 2133},  Row{6, 0x00, 2667},  Row{5, 0x00, 3200},  Row{4, 0x23, 3733},
          Row{4, 0x24, 3733},  Row{4, 0x22, 3745},  Row{4, 0x25, 3724},  Row{4, 0xE0, 4267},
          Row{4, 0xE1, 4267},  Row{4, 0xDF, 4282},  Row{4, 0xE2, 4255}}) {
        Bytes image = lpddr4Module();
        image[18] = row.medium;
        image[125] = row.fine;
        EXPECT_EQ(parseSpd(image).get(F::SPEED), number(row.speed))
            << int{row.medium} << " " << int{row.fine};
    }
    EXPECT_EQ(with(18, 0, F::SPEED), NONE);
    EXPECT_EQ(with(18, 0, F::TAA_CLOCKS), NONE);
}

TEST(SpdLpddr, ReadsEveryCasLatency)
{
    Bytes image = lpddr4Module();
    put(image, 20, {0xFF, 0xFF, 0xFF, 0xFF});
    EXPECT_EQ(
        parseSpd(image).get(F::CAS_LATENCIES),
        numbers({3, 6, 8, 9, 10, 11, 12, 14, 16, 18, 20, 22, 24, 26, 28, 30, 32, 36, 40, 44}));
    put(image, 20, {0x00, 0x00, 0xAA, 0xFF}); // reserved bits only
    EXPECT_EQ(parseSpd(image).get(F::CAS_LATENCIES), NONE);
    for (const auto& [byte, bit, latency] :
         {std::tuple(20, 0, 3), std::tuple(20, 7, 14), std::tuple(21, 0, 16), std::tuple(21, 7, 30),
          std::tuple(22, 0, 32), std::tuple(22, 2, 36), std::tuple(22, 4, 40),
          std::tuple(22, 6, 44)}) {
        put(image, 20, {0, 0, 0, 0});
        image[static_cast<std::size_t>(byte)] = static_cast<unsigned char>(1U << bit);
        EXPECT_EQ(parseSpd(image).get(F::CAS_LATENCIES), numbers({latency}));
    }
}

TEST(SpdLpddr, ReservedCodesAreShown)
{
    EXPECT_EQ(with(0, 0x44, F::BYTES_USED), number(512));
    EXPECT_EQ(with(0, 0x15, F::BYTES_USED), words("code 5h"));
    EXPECT_EQ(with(0, 0x10, F::BYTES_USED), NONE);
    EXPECT_EQ(with(0, 0x13, F::BYTES_TOTAL), number(256));
    EXPECT_EQ(with(0, 0x33, F::BYTES_TOTAL), words("code 3h"));
    EXPECT_EQ(with(0, 0x03, F::BYTES_TOTAL), NONE);
    EXPECT_EQ(with(3, 0x77, F::HYBRID), NONE) << "only bit 7 says that it is hybrid";
    EXPECT_EQ(with(3, 0x87, F::HYBRID), words("code 8h"));
    EXPECT_EQ(with(3, 0x97, F::HYBRID), words("code 9h"));
    EXPECT_EQ(with(4, 0x05, F::BANKS), number(4));
    EXPECT_EQ(with(4, 0x25, F::BANKS), words("code 2h")) << "16 banks are of LPDDR5";
    EXPECT_EQ(with(4, 0x95, F::BANKS), number(32));
    EXPECT_EQ(with(4, 0x95, F::BANK_GROUPS), number(4));
    EXPECT_EQ(with(4, 0xD5, F::BANKS), words("code Dh"));
    EXPECT_EQ(with(4, 0xD5, F::BANK_GROUPS), words("code 3h"));
    EXPECT_EQ(with(5, 0x01, F::ROW_BITS), number(12));
    EXPECT_EQ(with(5, 0x31, F::ROW_BITS), number(18));
    EXPECT_EQ(with(5, 0x39, F::ROW_BITS), words("code 7h"));
    EXPECT_EQ(with(5, 0x18, F::COLUMN_BITS), number(9));
    EXPECT_EQ(with(5, 0x1B, F::COLUMN_BITS), number(12));
    EXPECT_EQ(with(5, 0x1C, F::COLUMN_BITS), words("code 4h"));
    EXPECT_EQ(with(6, 0x05, F::PACKAGE), words("monolithic"));
    EXPECT_EQ(with(6, 0x05, F::DIES), number(1));
    EXPECT_EQ(with(6, 0xF1, F::DIES), number(8));
    EXPECT_EQ(with(6, 0x91, F::DIE_CHANNELS), number(1));
    EXPECT_EQ(with(6, 0x99, F::DIE_CHANNELS), number(4));
    EXPECT_EQ(with(6, 0x9D, F::DIE_CHANNELS), words("code 3h"));
    EXPECT_EQ(with(7, 0x27, F::MAX_ACTIVATES), words("code 7h"));
    EXPECT_EQ(with(7, 0x26, F::MAX_ACTIVATES), words("200 K"));
    EXPECT_EQ(with(7, 0x26, F::ACTIVATE_WINDOW), number(2048));
    EXPECT_EQ(with(7, 0x36, F::ACTIVATE_WINDOW), words("code 3h"));
    EXPECT_EQ(with(9, 0x00, F::REPAIR), words("not supported"));
    EXPECT_EQ(with(9, 0x80, F::REPAIR), words("code 2h"));
    EXPECT_EQ(with(9, 0x40, F::SOFT_REPAIR), Value(false));
    EXPECT_EQ(with(12, 0x4A, F::BYTE_MODE), Value(true));
    EXPECT_EQ(with(13, 0x02, F::CHANNELS), number(1));
    EXPECT_EQ(with(13, 0x42, F::CHANNELS), number(3));
    EXPECT_EQ(with(13, 0x62, F::CHANNELS), number(4));
    EXPECT_EQ(with(13, 0x82, F::CHANNELS), number(8));
    EXPECT_EQ(with(13, 0xA2, F::CHANNELS), words("code 5h"));
    EXPECT_EQ(with(14, 0x7F, F::THERMAL_SENSOR), Value(false));
    EXPECT_EQ(with(25, 0x00, F::WRITE_LATENCIES), words("A"));
    EXPECT_EQ(with(25, 0x08, F::WRITE_LATENCIES), words("code 2h"));
    EXPECT_EQ(with(25, 0x00, F::READ_DBI), Value(false));
    EXPECT_EQ(with(25, 0x02, F::READ_DBI), words("code 2h"));
}

TEST(SpdLpddr, LoadsAreThoseOfTheFirstMatrix)
{
    for (const unsigned char byte : {0x94, 0x96, 0x97}) {
        for (const F loads : {F::DATA_LOADS, F::COMMAND_LOADS, F::SELECT_LOADS}) {
            EXPECT_EQ(with(6, byte, loads), NONE) << int{byte};
        }
    }
    EXPECT_EQ(with(16, 0x00, F::DATA_LOADS), number(1));
    EXPECT_EQ(with(16, 0xC0, F::DATA_LOADS), words("code 3h"));
    EXPECT_EQ(with(16, 0x18, F::COMMAND_LOADS), number(8));
    EXPECT_EQ(with(16, 0x20, F::COMMAND_LOADS), words("code 4h"));
    EXPECT_EQ(with(16, 0x03, F::SELECT_LOADS), number(8));
    EXPECT_EQ(with(16, 0x04, F::SELECT_LOADS), words("code 4h"));
}

TEST(SpdLpddr, UnknownTimebasesLeaveTimesOpen)
{
    for (const unsigned char byte : {0x01, 0x04, 0x08, 0x0C}) {
        const Spd spd = changed(17, byte);
        EXPECT_EQ(std::get<std::string>(spd.get(F::TIMEBASES)).substr(0, 5), "code ");
        EXPECT_EQ(spd.get(F::TCK_MIN), NONE);
        EXPECT_EQ(spd.get(F::SPEED), NONE);
        EXPECT_EQ(spd.get(F::TRFC_PB), NONE);
    }
    EXPECT_EQ(with(17, 0xF0, F::TIMEBASES), words("125 ps, 1 ps")) << "these bits are reserved";
}

TEST(SpdLpddr, NamesModuleTypes)
{
    EXPECT_EQ(changed(3, 0x00).moduleType, "extended");
    EXPECT_EQ(changed(3, 0x07).moduleType, "LP-DIMM");
    EXPECT_EQ(changed(3, 0x0E).moduleType, "non-DIMM");
    EXPECT_EQ(changed(3, 0x06).moduleType, "type 6h");
    EXPECT_EQ(changed(3, 0x0F).moduleType, "type Fh");
}

TEST(SpdLpddr, OnlyAnLpDimmHasASecondBlock)
{
    Bytes image = lpddr4Module();
    EXPECT_TRUE(parseSpd(image).moduleCrc.has_value());
    image[254] ^= 1;
    EXPECT_FALSE(parseSpd(image).areCrcsRight());
    EXPECT_TRUE(parseSpd(image).isCrcRight());
    image[3] = 0x0E;
    const Spd spd = parseSpd(image);
    EXPECT_FALSE(spd.moduleCrc.has_value());
    EXPECT_FALSE(spd.isCrcRight()) << "of the first one";
    EXPECT_EQ(spd.get(F::HEIGHT), NONE);
    EXPECT_EQ(spd.get(F::REFERENCE_CARD), NONE);
}

TEST(SpdLpddr, DecodesWhatACutOffImageHas)
{
    const Bytes whole = lpddr4Module();
    const auto cutTo = [&whole](std::size_t size) { return parseSpd(part(whole, 0, size)); };
    EXPECT_THROW(cutTo(127), DataError);
    EXPECT_EQ(cutTo(128).megabytes, 4096U);
    EXPECT_TRUE(cutTo(128).isCrcRight());
    EXPECT_EQ(cutTo(128).get(F::HEIGHT), NONE);
    EXPECT_EQ(cutTo(129).get(F::HEIGHT), number(32));
    EXPECT_FALSE(cutTo(255).moduleCrc.has_value());
    EXPECT_TRUE(cutTo(256).moduleCrc.has_value());
    EXPECT_EQ(cutTo(321).get(F::MODULE_MAKER), NONE);
    EXPECT_EQ(cutTo(322).get(F::MODULE_MAKER), words("Samsung"));
    EXPECT_EQ(cutTo(328).serialNumber, 0U);
    EXPECT_EQ(cutTo(329).serialNumber, 0x12345678U);
    EXPECT_FALSE(cutTo(348).hasManufacturerData);
    EXPECT_TRUE(cutTo(349).hasManufacturerData);
    EXPECT_EQ(cutTo(352).get(F::DRAM_STEPPING), NONE);
    EXPECT_EQ(cutTo(353).get(F::DRAM_STEPPING), number(0x41));
}

TEST(SpdLpddr, ReadsEveryDensity)
{
    const std::vector<unsigned int> gigabits = {0,  0,  1, 2, 4,  8, 16, 32,
                                                12, 24, 3, 6, 18, 0, 0,  0};
    for (std::size_t code = 0; code < gigabits.size(); ++code) {
        EXPECT_EQ(changed(4, static_cast<unsigned char>(0x10 | code)).densityMegabits,
                  gigabits[code] * 1024)
            << code;
    }
}

TEST(SpdLpddr, CapacityIsThatOfTheAddressBits)
{
    const Bytes x16 = {0x02, 0x01}; // one rank of 16 bits, one channel of 16 bits
    // A channel of 8 Gbit: 8 banks, 16 rows, 10 columns. The density is that of a die with one
    // channel, with two, with four.
    EXPECT_EQ(megabytes({0x15, 0x21, 0x01}, x16), 1024U);
    EXPECT_EQ(megabytes({0x16, 0x21, 0x05}, x16), 1024U);
    EXPECT_EQ(megabytes({0x17, 0x21, 0x09}, x16), 1024U);
    // A density that no number of channels makes.
    EXPECT_EQ(megabytes({0x14, 0x21, 0x01}, x16), 0U);
    EXPECT_EQ(megabytes({0x17, 0x19, 0x01}, x16), 0U);
    // 6 Gbit have the address bits of 8, 12 those of 16.
    EXPECT_EQ(megabytes({0x1B, 0x21, 0x01}, x16), 768U);
    EXPECT_EQ(megabytes({0x18, 0x21, 0x05}, x16), 768U);
    EXPECT_EQ(megabytes({0x18, 0x29, 0x01}, x16), 1536U);
    EXPECT_EQ(megabytes({0x1A, 0x19, 0x01}, x16), 384U);
    EXPECT_EQ(megabytes({0x1C, 0x29, 0x01}, x16), 0U) << "18 Gbit";
    // Ranks, widths, channels.
    EXPECT_EQ(megabytes({0x15, 0x21, 0x01}, {0x0A, 0x01}), 2048U);
    EXPECT_EQ(megabytes({0x15, 0x21, 0x01}, {0x1A, 0x01}), 4096U);
    EXPECT_EQ(megabytes({0x15, 0x21, 0x01}, {0x22, 0x01}), 0U) << "five ranks";
    EXPECT_EQ(megabytes({0x15, 0x21, 0x01}, {0x02, 0x02}), 2048U);
    EXPECT_EQ(megabytes({0x15, 0x21, 0x01}, {0x02, 0x03}), 4096U);
    EXPECT_EQ(megabytes({0x15, 0x21, 0x01}, {0x02, 0x04}), 0U) << "128 bits";
    EXPECT_EQ(megabytes({0x15, 0x21, 0x01}, {0x02, 0x81}), 8192U);
    EXPECT_EQ(megabytes({0x15, 0x21, 0x01}, {0x02, 0xA1}), 0U) << "a reserved number of channels";
    EXPECT_EQ(megabytes({0x14, 0x21, 0x01}, {0x01, 0x01}), 1024U);
    EXPECT_EQ(megabytes({0x16, 0x21, 0x01}, {0x03, 0x02}), 2048U);
    EXPECT_EQ(megabytes({0x16, 0x21, 0x01}, {0x04, 0x02}), 0U) << "devices of 64 bits";
    // Reserved codes of the address bits.
    EXPECT_EQ(megabytes({0x15, 0x39, 0x01}, x16), 0U);
    EXPECT_EQ(megabytes({0x15, 0x24, 0x01}, x16), 0U);
    EXPECT_EQ(megabytes({0x35, 0x21, 0x01}, x16), 0U);
    EXPECT_EQ(megabytes({0x10, 0x21, 0x01}, x16), 0U);
    // LPDDR5 in this layout may have 16 banks.
    EXPECT_EQ(megabytes({0x25, 0x19, 0x01}, x16, 0x13), 1024U);
    EXPECT_EQ(megabytes({0x35, 0x19, 0x01}, x16, 0x13), 0U);
}

TEST(SpdLpddr, ReadsLpddr5ThatHasTheSameLayout)
{
    Bytes image = lpddr4Module();
    image[3] = 0x0E;
    for (const unsigned char type : {0x13, 0x15}) {
        image[2] = type;
        writeSpdCrc(image, 0, 126, 126);
        const Spd spd = parseSpd(image);
        EXPECT_EQ(spd.get(F::MEMORY_TYPE), words(type == 0x13 ? "LPDDR5 SDRAM" : "LPDDR5X SDRAM"));
        EXPECT_TRUE(spd.areCrcsRight());
        EXPECT_EQ(spd.moduleType, "non-DIMM");
        EXPECT_EQ(spd.partNumber, "RK-LPDDR4-PART      ");
        EXPECT_EQ(spd.get(F::CAS_LATENCIES), NONE);
        EXPECT_EQ(spd.get(F::WRITE_LATENCIES), NONE);
        EXPECT_EQ(spd.get(F::READ_DBI), NONE);
    }
    image[2] = 0x13;
    EXPECT_EQ(parseSpd(part(image, 0, 128)).megabytes, 4096U) << "it has the CRC at 126";
    image[3] = 0x07;
    EXPECT_EQ(parseSpd(image).moduleType, "MRDIMM") << "the layout of JESD406-5";
}

TEST(SpdLpddr, ReadsLpddr3InTheLayoutOfDdr3)
{
    Bytes image = ddr3Module();
    image[2] = 0xF1;
    writeSpdCrc(image, 0, 117, 126);
    const Spd spd = parseSpd(image);
    EXPECT_EQ(spd.get(F::MEMORY_TYPE), words("LPDDR3 SDRAM"));
    EXPECT_TRUE(spd.areCrcsRight());
    EXPECT_EQ(spd.megabytes, 8192U);
    EXPECT_EQ(spd.serialNumber, 0x12345678U);
    EXPECT_EQ(spd.get(F::TRCD), parseSpd(ddr3Module()).get(F::TRCD));
    EXPECT_EQ(spd.get(F::VOLTAGES), NONE) << "it has others";
    EXPECT_FALSE(spd.hasCodes);
}

TEST(SpdLpddr, DeviceTypesAreNamed)
{
    for (const auto& [type, name] :
         {std::pair(0x0F, "LPDDR3 SDRAM"), std::pair(0x10, "LPDDR4 SDRAM"),
          std::pair(0x11, "LPDDR4X SDRAM")}) {
        EXPECT_EQ(with(2, static_cast<unsigned char>(type), F::MEMORY_TYPE), words(name));
    }
}

// Images that firmware of boards with soldered memory contains, by the parts that they are for:
// densities and speeds are those that the parts' numbers say.
TEST(SpdLpddrSamples, HaveTheCapacityAndSpeedOfTheirParts)
{
    const std::string data = RECORDKIT_PUBLIC_DATA "/";
    if (!std::filesystem::exists(data + "spd-more")) {
        GTEST_SKIP() << "the public samples are not at " RECORDKIT_PUBLIC_DATA;
    }
    struct Row {
        const char* file;
        unsigned int megabytes;
        long long speed;
    };
    for (const Row& row : {
             // Two channels of 64 bits make the 16, 8 and 4 GB of the names.
             Row{"spd/other/coreboot__google_auron_samus_hynix_16.bin", 8192, 1600},
             Row{"spd/other/coreboot__google_auron_samus_elpida_16.bin", 8192, 1600},
             Row{"spd/other/coreboot__google_auron_samus_hynix_8.bin", 4096, 1600},
             Row{"spd/other/coreboot__google_hatch_LP_16G_2133.bin", 8192, 2133},
             Row{"spd/other/coreboot__google_hatch_LP_4G_2133.bin", 2048, 2133},
             Row{"spd-more/coreboot__google_hatch_spd_LP_8G_2133.bin", 4096, 2133},
             // H9HCNNNBKMMLXR-NEE: 16 Gbit, two channels of 16 bits; the image is one of them.
             Row{"spd-more/coreboot__spd_lp4x_set-0_spd-1.bin", 1024, 4267},
             // H9HCNNNFAMMLXR-NEE: 64 Gbit, devices of 8 bits
             Row{"spd-more/coreboot__spd_lp4x_set-0_spd-2.bin", 4096, 4267},
             // MT53E1G32D2NP-046 WT:A: 32 Gbit
             Row{"spd-more/coreboot__spd_lp4x_set-0_spd-4.bin", 2048, 4267},
             // NT6AP256T32AV-J1: 8 Gbit
             Row{"spd-more/coreboot__spd_lp4x_set-0_spd-6.bin", 512, 4267},
             // H9HCNNNBKMMLXR-NEE twice: two channels of 32 bits
             Row{"spd-more/coreboot__spd_lp4x_set-1_spd-1.bin", 4096, 4267},
             // MT62F512M32D2DR-031: 16 Gbit, two channels of 16 bits; the image is one of them.
             Row{"spd-more/coreboot__spd_lp5_set-0_spd-1.bin", 1024, 6400},
             // MT62F1G32D4DR-031: 32 Gbit
             Row{"spd-more/coreboot__spd_lp5_set-0_spd-2.bin", 2048, 6400},
             // MT62F2G32D8DR-031: 64 Gbit, devices of 8 bits
             Row{"spd-more/coreboot__spd_lp5_set-0_spd-4.bin", 4096, 6400},
             // H58G66AK6BX070: 64 Gbit
             Row{"spd-more/coreboot__spd_lp5_set-0_spd-6.bin", 4096, 6400},
             // MT62F2G32D4DS-026, MT62F2G32D4DS-023: 64 Gbit
             Row{"spd-more/coreboot__spd_lp5_set-0_spd-8.bin", 4096, 7500},
             Row{"spd-more/coreboot__spd_lp5_set-0_spd-10.bin", 4096, 8533},
             // The same as one channel of 32 bits; its cycle is that of the data clock.
             Row{"spd-more/coreboot__spd_lp5_set-1_spd-10.bin", 8192, 8533},
         }) {
        const Spd spd = parseSpd(readFile(data + row.file));
        EXPECT_EQ(spd.megabytes, row.megabytes) << row.file;
        EXPECT_EQ(spd.get(F::SPEED), number(row.speed)) << row.file;
    }
}
