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
              "PART NUMBER         CODES   CRC    FILE\n"
              "8192 MB    RDIMM         2         8 bits    64 + 8 bits  4096 Mbit   12345678  "
              "RK-PART-4711        3/2     right  standard input\n");
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
    other[2] = 0x0C;
    writeFile(root.at("/d"), other);
    const Outcome outcome = run(
        ourCommand({"spd", "show", root.at("/a"), root.at("/b"), root.at("/c"), root.at("/d")}));
    EXPECT_EQ(outcome.status, 1);
    EXPECT_NE(outcome.out.find("3 modules, 24576 MB\n"), std::string::npos) << outcome.out;
    EXPECT_NE(outcome.out.find("WRONG  " + root.at("/c")), std::string::npos);
    EXPECT_NE(outcome.err.find("/d: not supported: DDR4 SDRAM (device type 0Ch at offset 2)"),
              std::string::npos);
    EXPECT_NE(outcome.err.find("/c: the CRC is "), std::string::npos);
    EXPECT_NE(outcome.err.find("2 of 4 files are damaged"), std::string::npos);
    EXPECT_EQ(run(ourCommand({"spd", "show", "/nowhere"})).status, 3);
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
