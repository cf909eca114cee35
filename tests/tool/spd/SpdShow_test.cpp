// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "support/HexDumps.h"
#include "support/Process.h"
#include "support/ScratchRoot.h"
#include "support/SpdImage.h"
#include "support/Terminal.h"

using namespace testing_support;

TEST(SpdShow, ShowsOneModule)
{
    const Bytes image = spdModule();
    const Outcome outcome =
        run(ourCommand({"spd", "show", "-"}), std::string(image.begin(), image.end()));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.out,
              "CAPACITY   MODULE        RANKS     DEVICE    BUS          DENSITY     SERIAL    "
              "PART NUMBER         CODES   CRC    TYPE     SPEED      MAKER              FILE\n"
              "8192 MB    RDIMM         2         8 bits    64 + 8 bits  4096 Mbit   12345678  "
              "RK-PART-4711        3/2     right  DDR3     -          -                  standard "
              "input\n");
    EXPECT_EQ(run(ourCommand({"spd", "show", "-"}), i2cdump(image)).out, outcome.out);
    const auto json =
        nlohmann::json::parse(run(ourCommand({"spd", "show", "-", "--json"}), xxd(image)).out);
    EXPECT_EQ(json[0]["capacity_mb"], 8192);
    EXPECT_EQ(json[0]["serial_number"], "12345678");
    EXPECT_EQ(json[0]["rank_field"], 1);
}

TEST(SpdShow, ShowsSeveralModulesWithTheirTotal)
{
    const ScratchRoot root;
    Bytes wrong = spdModule();
    wrong[126] ^= 1;
    writeFile(root.at("/a"), spdModule());
    writeFile(root.at("/b"), part(spdModule(), 0, 128));
    writeFile(root.at("/c"), wrong);
    Bytes other = spdModule();
    other[2] = 0x08;
    writeFile(root.at("/d"), other);
    const Outcome outcome = run(
        ourCommand({"spd", "show", root.at("/a"), root.at("/b"), root.at("/c"), root.at("/d")}));
    EXPECT_EQ(outcome.status, 1);
    EXPECT_NE(outcome.out.find("3 modules, 24576 MB\n"), std::string::npos) << outcome.out;
    EXPECT_NE(outcome.out.find("WRONG  DDR3     -          -                  " + root.at("/c")),
              std::string::npos);
    EXPECT_NE(outcome.err.find("/d: not supported: DDR2 SDRAM (device type 08h at offset 2)"),
              std::string::npos);
    EXPECT_NE(outcome.err.find("/c: the CRC is "), std::string::npos);
    EXPECT_NE(outcome.err.find("2 of 4 files are damaged"), std::string::npos);
    EXPECT_EQ(run(ourCommand({"spd", "show", "/nowhere"})).status, 3);
}

TEST(SpdShow, ShowsAModuleOfDdr4)
{
    const Bytes image = ddr4Module();
    const std::string bytes(image.begin(), image.end());
    const Outcome outcome = run(ourCommand({"spd", "show", "-"}), bytes);
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.out,
              "CAPACITY   MODULE        RANKS     DEVICE    BUS          DENSITY     SERIAL    "
              "PART NUMBER         CODES   CRC    TYPE     SPEED      MAKER              FILE\n"
              "16384 MB   RDIMM         2         8 bits    64 + 8 bits  8192 Mbit   12345678  "
              "RK-DDR4-PART        -       right  DDR4     2400 MT/s  Samsung            standard "
              "input\n");
    EXPECT_EQ(
        run(ourCommand({"spd", "show", "-", "--columns", "taa_ps,taa_clocks,cas_latencies"}), bytes)
            .out.substr(0, 34),
        "TAA PS  TAA CLOCKS  CAS LATENCIES\n");
    const auto json =
        nlohmann::json::parse(run(ourCommand({"spd", "show", "-", "--json"}), bytes).out);
    EXPECT_EQ(json[0]["taa_ps"], 13750);
    EXPECT_EQ(json[0]["cas_latencies"], (std::vector<int>{10, 11, 12, 17}));
    EXPECT_EQ(json[0]["module_maker"], "Samsung");
    EXPECT_EQ(json[0]["thermal_sensor"], true);
    EXPECT_EQ(json[0]["rank_field"], nullptr);
    EXPECT_EQ(json[0]["dimm_size_code"], nullptr);
    EXPECT_EQ(json[0]["dram_size_code"], nullptr);
    EXPECT_EQ(json[0]["trtp_ps"], nullptr);
    EXPECT_EQ(json[0]["module_crc_right"], true);
    EXPECT_EQ(json[0]["module_crc_stored"], json[0]["module_crc_expected"]);
    // Every fact has its key.
    for (std::size_t i = 0; i < static_cast<std::size_t>(recordkit::inspect::SpdFact::COUNT); ++i) {
        const char* const key = spdFactKey(static_cast<recordkit::inspect::SpdFact>(i));
        EXPECT_TRUE(json[0].contains(key)) << key;
    }
}

TEST(SpdShow, ReadsPagesThatWereDumpedOneByOne)
{
    for (const Bytes& image : {ddr4Module(), ddr5Module()}) {
        std::string pages;
        for (std::size_t at = 0; at < image.size(); at += 256) {
            pages += i2cdump(part(image, at, 256));
        }
        const Outcome whole =
            run(ourCommand({"spd", "show", "-"}), std::string(image.begin(), image.end()));
        EXPECT_EQ(whole.status, 0) << whole.err;
        EXPECT_NE(whole.out.find(image.size() == 512 ? "64 + 8 bits " : "64 + 16 bits"),
                  std::string::npos)
            << whole.out;
        EXPECT_EQ(run(ourCommand({"spd", "show", "-"}), pages).out, whole.out);
        EXPECT_EQ(run(ourCommand({"spd", "show", "-"}), xxd(image)).out, whole.out);
    }
}

TEST(SpdShow, ReportsTheSecondCrcAndRepeatedPages)
{
    Bytes image = ddr4Module();
    image[200] ^= 1;
    const Outcome wrong =
        run(ourCommand({"spd", "show", "-"}), std::string(image.begin(), image.end()));
    EXPECT_EQ(wrong.status, 1);
    EXPECT_NE(wrong.out.find("  WRONG  DDR4"), std::string::npos) << wrong.out;
    EXPECT_NE(wrong.err.find("standard input: the CRC of bytes 128 to 253 is "), std::string::npos)
        << wrong.err;
    image = part(ddr4Module(), 0, 256);
    std::string twice(image.begin(), image.end());
    twice += twice;
    const Outcome repeated = run(ourCommand({"spd", "show", "-"}), twice);
    EXPECT_EQ(repeated.status, 1);
    EXPECT_NE(repeated.err.find("every page is the first one: the dump did not switch pages"),
              std::string::npos)
        << repeated.err;
    EXPECT_EQ(repeated.out.find("12345678"), std::string::npos);
}

TEST(SpdShow, ShowsTheMostWantedColumnsOnANarrowTerminal)
{
    const Arguments words =
        ourCommand({"spd", "show", RECORDKIT_EXAMPLE_DATA "/spd/dimm.bin", "--color", "never"});
    std::string shown;
    if (!runOnTerminal(words, {}, shown, 60)) {
        GTEST_SKIP() << "no terminal can be made here";
    }
    EXPECT_EQ(shown,
              "CAPACITY   PART NUMBER         CRC    FILE\r\n"
              "2048 MB    EXAMPLE-DDR3-2G     right  " RECORDKIT_EXAMPLE_DATA "/spd/dimm.bin\r\n");
    ASSERT_TRUE(runOnTerminal(words, {}, shown, 80));
    EXPECT_EQ(shown.substr(0, shown.find('\r')),
              "CAPACITY   MODULE   RANKS  SERIAL    PART NUMBER         CRC    FILE");
}
