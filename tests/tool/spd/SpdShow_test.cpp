// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "support/HexDumps.h"
#include "support/Process.h"
#include "support/ScratchRoot.h"
#include "support/SpdImage.h"

using namespace testing_support;

TEST(SpdShow, ShowsOneModule)
{
    const Bytes image = spdModule();
    const Outcome outcome =
        run(ourCommand({"spd", "show", "-"}), std::string(image.begin(), image.end()));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.out.substr(0, outcome.out.find("CRC")),
              "capacity      8192 MB\n"
              "module        RDIMM\n"
              "ranks         2\n"
              "device width  8 bits\n"
              "bus width     64 + 8 bits\n"
              "density       4096 Mbit\n"
              "serial        12345678\n"
              "part number   RK-PART-4711      \n"
              "codes         DIMM size 3, DRAM size 2, rank field 1\n");
    EXPECT_EQ(run(ourCommand({"spd", "show", "-"}), i2cdump(image)).out, outcome.out);
    const auto json =
        nlohmann::json::parse(run(ourCommand({"spd", "show", "-", "--json"}), xxd(image)).out);
    EXPECT_EQ(json["capacity_mb"], 8192);
    EXPECT_EQ(json["serial_number"], "12345678");
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
    EXPECT_NE(outcome.err.find("/d: not DDR3 SPD data: device type 0Ch (DDR4) at offset 2"),
              std::string::npos);
    EXPECT_NE(outcome.err.find("2 of 4 files are damaged"), std::string::npos);
    EXPECT_EQ(run(ourCommand({"spd", "show", "/nowhere"})).status, 3);
}
