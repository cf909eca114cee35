// SPDX-License-Identifier: Apache-2.0
#include <recordkit/inspect/memory/SpdAudit.h>

#include <gtest/gtest.h>

#include "support/SpdImage.h"

using namespace recordkit::inspect;
using namespace testing_support;

namespace {

using Lines = std::vector<std::string>;

constexpr unsigned int NOW = 1577836800; // 2020-01-01

/// A DDR4 module with its own serial number, and other bytes.
Bytes ddr4(unsigned char serial,
           const std::vector<std::pair<std::size_t, unsigned char>>& bytes = {})
{
    Bytes image = ddr4Module();
    image[328] = serial;
    for (const auto& [offset, value] : bytes) {
        image[offset] = value;
    }
    writeSpdCrc(image, 0, 126, 126);
    writeSpdCrc(image, 128, 126, 254);
    return image;
}

/// "NUMBER error FIELD: TEXT".
Lines audited(const std::vector<Bytes>& board, unsigned int now = NOW)
{
    std::vector<Spd> modules;
    modules.reserve(board.size());
    for (const Bytes& image : board) {
        modules.push_back(parseSpd(image));
    }
    Lines lines;
    for (const SpdFinding& finding : auditSpdModules(modules, now)) {
        lines.push_back(std::to_string(finding.module) +
                        (finding.isError ? " error " : " warning ") + finding.field + ": " +
                        finding.text);
    }
    return lines;
}

}

TEST(SpdAudit, FindsNothingAmongEqualModules)
{
    EXPECT_EQ(audited({}), Lines());
    EXPECT_EQ(audited({ddr4(1)}), Lines());
    EXPECT_EQ(audited({ddr4(1), ddr4(2), ddr4(3), ddr4(4)}), Lines());
}

TEST(SpdAudit, FindsDamage)
{
    Bytes wrong = ddr4(1);
    wrong[126] ^= 1;
    wrong[254] ^= 1;
    const Lines lines = audited({wrong});
    ASSERT_EQ(lines.size(), 2U);
    EXPECT_EQ(lines[0].substr(0, 21), "0 error : the CRC is ");
    EXPECT_EQ(lines[1].substr(0, 37), "0 error : the CRC of bytes 128 to 253");
    Bytes repeated = part(ddr4(1), 0, 256);
    repeated.insert(repeated.end(), repeated.begin(), repeated.begin() + 256);
    EXPECT_EQ(audited({repeated}),
              Lines{"0 error : every page is the first one: the dump did not switch pages"});
}

TEST(SpdAudit, FindsAnotherTypeOfMemory)
{
    EXPECT_EQ(audited({ddr4(1), ddr3Module(), ddr4(2)}),
              Lines{"1 error memory_type: is \"DDR3 SDRAM\", \"DDR4 SDRAM\" in 2 of 3 modules"});
    EXPECT_EQ(audited({ddr3Module(), ddr4(1)}),
              Lines{"1 error memory_type: is \"DDR4 SDRAM\", \"DDR3 SDRAM\" in 1 of 2 modules"})
        << "the first one of equally many; of another type nothing else is compared";
}

TEST(SpdAudit, FindsWhatDiffersFromMostModules)
{
    EXPECT_EQ(audited({ddr4(1), ddr4(2, {{3, 0x02}}), ddr4(3)}),
              Lines{"1 error module_type: is \"UDIMM\", \"RDIMM\" in 2 of 3 modules"});
    EXPECT_EQ(audited({ddr4(1), ddr4(2), ddr4(3, {{18, 0x06}, {125, 0}})}),
              Lines{"2 warning speed_mts: is 2666 MT/s, 2400 MT/s in 2 of 3 modules"});
    EXPECT_EQ(audited({ddr4(1, {{11, 0x02}}), ddr4(2), ddr4(3)}),
              Lines{"0 warning voltages: is \"1.2 V endurant\", \"1.2 V\" in 2 of 3 modules"});
    EXPECT_EQ(audited({ddr4(1), ddr4(2), ddr4(3, {{4, 0x84}})}),
              Lines{"2 warning capacity_mb: is 8192 MB, 16384 MB in 2 of 3 modules"});
    EXPECT_EQ(audited({ddr4(1), ddr4(2), ddr4(3, {{4, 0x86}, {12, 0x01}})}),
              Lines{"2 warning ranks: is 1, 2 in 2 of 3 modules"});
    EXPECT_EQ(audited({ddr4(1), ddr4(2), ddr4(3, {{4, 0x84}, {12, 0x08}})}),
              Lines{"2 warning device_width: is 4 bits, 8 bits in 2 of 3 modules"});
    EXPECT_EQ(audited({ddr4(1), ddr4(2), ddr4(3, {{4, 0x86}, {13, 0x0A}})}),
              Lines{"2 warning bus_width: is 32 bits, 64 bits in 2 of 3 modules"});
    EXPECT_EQ(audited({ddr4(1), ddr4(2), ddr4(3, {{13, 0x03}})}),
              Lines{"2 warning ecc_width: is 0 bits, 8 bits in 2 of 3 modules"});
}

TEST(SpdAudit, FindsSeveralThingsInTheOrderOfModules)
{
    EXPECT_EQ(audited({ddr4(1, {{13, 0x03}}), ddr4(2), ddr4(3), ddr4(2, {{12, 0x01}})}),
              (Lines{"0 warning ecc_width: is 0 bits, 8 bits in 3 of 4 modules",
                     "1 warning serial_number: 12345602 is in 2 modules",
                     "3 warning capacity_mb: is 8192 MB, 16384 MB in 3 of 4 modules",
                     "3 warning ranks: is 1, 2 in 3 of 4 modules",
                     "3 warning serial_number: 12345602 is in 2 modules"}));
    // Most of three values, wherever it is found first.
    EXPECT_EQ(audited({ddr4(1, {{4, 0x84}}), ddr4(2, {{4, 0x86}}), ddr4(3), ddr4(4)}),
              (Lines{"0 warning capacity_mb: is 8192 MB, 16384 MB in 2 of 4 modules",
                     "1 warning capacity_mb: is 32768 MB, 16384 MB in 2 of 4 modules"}));
}

TEST(SpdAudit, DoesNotCompareWhatIsUnknown)
{
    EXPECT_EQ(audited({ddr4(1), ddr4(2, {{18, 0}, {125, 0}}), ddr4(3)}), Lines());
    EXPECT_EQ(audited({ddr4(1), ddr4(2, {{11, 0}}), ddr4(3)}), Lines());
    EXPECT_EQ(audited({ddr4(1), ddr4(2, {{12, 0x0C}}), ddr4(3, {{12, 0x01}})}),
              (Lines{"2 warning capacity_mb: is 8192 MB, 16384 MB in 1 of 2 modules",
                     "2 warning ranks: is 1, 2 in 2 of 3 modules"}));
}

TEST(SpdAudit, ComparesModulesOfEachTypeOfMemory)
{
    Bytes small = ddr3Module();
    small[4] = 0x03;
    small[125] = 0x11;
    writeSpdCrc(small, 0, 117, 126);
    EXPECT_EQ(audited({ddr4(1), ddr3Module(), ddr4(2), small, ddr4(3)}),
              (Lines{"1 error memory_type: is \"DDR3 SDRAM\", \"DDR4 SDRAM\" in 3 of 5 modules",
                     "3 error memory_type: is \"DDR3 SDRAM\", \"DDR4 SDRAM\" in 3 of 5 modules",
                     "3 warning capacity_mb: is 4096 MB, 8192 MB in 1 of 2 modules"}));
}

TEST(SpdAudit, FindsBlankSerialNumbers)
{
    const auto numbered = [](const Bytes& serial) {
        Bytes image = ddr4(0);
        put(image, 325, serial);
        return image;
    };
    EXPECT_EQ(audited({numbered({0, 0, 0, 0})}), Lines{"0 warning serial_number: is blank"});
    EXPECT_EQ(audited({numbered({0xFF, 0xFF, 0xFF, 0xFF})}),
              Lines{"0 warning serial_number: is blank"});
    EXPECT_EQ(audited({numbered({0, 0, 0, 1})}), Lines());
    EXPECT_EQ(audited({numbered({0xFF, 0xFF, 0xFF, 0xFE})}), Lines());
    EXPECT_EQ(audited({numbered({0, 0, 0, 0}), numbered({0, 0, 0, 0})}).size(), 2U)
        << "a blank one is one finding";
    EXPECT_EQ(audited({part(ddr4(0), 0, 348)}), Lines()) << "it is not in the data";
}

TEST(SpdAudit, FindsTheSameSerialNumberOfAMaker)
{
    EXPECT_EQ(audited({ddr4(1), ddr4(2), ddr4(1), ddr4(1)}),
              (Lines{"0 warning serial_number: 12345601 is in 3 modules",
                     "2 warning serial_number: 12345601 is in 3 modules",
                     "3 warning serial_number: 12345601 is in 3 modules"}));
    EXPECT_EQ(audited({ddr4(1), ddr4(1, {{321, 0xAD}})}), Lines()) << "of another maker";
    EXPECT_EQ(audited({part(ddr4(1), 0, 348), part(ddr4(1), 0, 348)}), Lines());
}

TEST(SpdAudit, FindsDatesInTheFuture)
{
    const auto made = [](unsigned char year, unsigned char week) {
        return ddr4(1, {{323, year}, {324, week}});
    };
    EXPECT_EQ(audited({made(0x19, 0x52)}), Lines());
    EXPECT_EQ(audited({made(0x20, 0x01)}), Lines()) << "the week of the day";
    EXPECT_EQ(audited({made(0x20, 0x02)}), Lines{"0 warning made: 2020-W02 is in the future"});
    EXPECT_EQ(audited({made(0x21, 0x01)}), Lines{"0 warning made: 2021-W01 is in the future"});
    EXPECT_EQ(audited({made(0x99, 0x53)}), Lines{"0 warning made: 2099-W53 is in the future"});
    // A week begins up to three days before its seventh of the year.
    constexpr unsigned int DAY = 86400;
    EXPECT_EQ(audited({made(0x20, 0x02)}, NOW + 4 * DAY), Lines());
    EXPECT_EQ(audited({made(0x20, 0x02)}, NOW + 4 * DAY - 1).size(), 1U);
    EXPECT_EQ(audited({made(0x20, 0x01)}, NOW - 3 * DAY), Lines());
    EXPECT_EQ(audited({made(0x20, 0x01)}, NOW - 3 * DAY - 1).size(), 1U);
    EXPECT_EQ(audited({made(0x00, 0x00)}), Lines()) << "not given";
}

TEST(SpdAudit, FindsDatesThatAreNone)
{
    const auto made = [](unsigned char year, unsigned char week) {
        return ddr4(1, {{323, year}, {324, week}});
    };
    EXPECT_EQ(audited({made(0x19, 0x54)}),
              Lines{"0 warning made: year 19h, week 54h is not a date"});
    EXPECT_EQ(audited({made(0x19, 0x53)}), Lines());
    EXPECT_EQ(audited({made(0x19, 0x00)}),
              Lines{"0 warning made: year 19h, week 00h is not a date"});
    EXPECT_EQ(audited({made(0x1A, 0x10)}),
              Lines{"0 warning made: year 1Ah, week 10h is not a date"});
    EXPECT_EQ(audited({made(0x19, 0x1A)}),
              Lines{"0 warning made: year 19h, week 1Ah is not a date"});
}
