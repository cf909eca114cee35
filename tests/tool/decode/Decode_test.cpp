// SPDX-License-Identifier: Apache-2.0
// The decode command; tests/inspect/fields/ test what it shows.
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "support/Process.h"
#include "tool/decode/FieldListing.h"

using namespace recordkit::tool;
using namespace testing_support;

TEST(DecodeCommand, ShowsFieldsWithTheirBytesAndMeanings)
{
    const Outcome outcome = run(ourCommand({"decode", "psustatus", "--hex", "01 13"}));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.out, "FIELD                     BYTES         VALUE                 MEANING\n"
                           "power_on                  0 bit 0       yes                   \n"
                           "installed                 1 bit 0       yes                   \n"
                           "failure                   1 bit 1       yes                   \n"
                           "predictive_failure        1 bit 2       no                    \n"
                           "ac_lost                   1 bit 3       no                    \n"
                           "out_of_range              1 bit 5       no                    \n"
                           "config_error              1 bit 6       no                    \n");
    const Outcome json =
        run(ourCommand({"decode", "DIMMType", "--hex", "0x01020203 04", "--json"}));
    ASSERT_EQ(json.status, 0) << json.err;
    const auto fields = nlohmann::json::parse(json.out);
    EXPECT_EQ(fields[2]["name"], "dimm_size");
    EXPECT_EQ(fields[2]["value"], 2);
    EXPECT_EQ(fields[2]["meaning"], "4096 MB");
    EXPECT_EQ(fields[2]["offset"], 2);
}

TEST(DecodeCommand, ReadsFilesAndStandardInput)
{
    const std::string fru = RECORDKIT_EXAMPLE_DATA "/fru/ascii-all.bin";
    const Outcome outcome = run(ourCommand({"decode", "FRUData", fru}));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_NE(outcome.out.find("board.serial              81 to 92      SBS00998877"),
              std::string::npos)
        << outcome.out;
    const Outcome rom =
        run(ourCommand({"decode", "FRUData.ROM", RECORDKIT_EXAMPLE_DATA "/cpu/sample.bin"}));
    EXPECT_NE(rom.out.find("area51.item59             14 to 19      535230303432"),
              std::string::npos)
        << rom.out;
    EXPECT_EQ(run(ourCommand({"decode", "BMCLog", "-"}), "abc").out,
              "FIELD                     BYTES         VALUE                 MEANING\n"
              "bytes                     0 to 2        616263                \n");
}

TEST(DecodeCommand, TrailingBytesAreRefusedOrCounted)
{
    const Outcome refused = run(ourCommand({"decode", "PSUStatus", "--hex", "010303"}));
    EXPECT_EQ(refused.status, 1);
    EXPECT_EQ(refused.err,
              "recordkit: --hex: 1 byte after the 2 of PSUStatus; --allow-trailing ignores them\n");
    const Outcome ignored =
        run(ourCommand({"decode", "PSUStatus", "--hex", "01030303", "--allow-trailing"}));
    EXPECT_EQ(ignored.status, 0);
    EXPECT_EQ(ignored.err, "recordkit: --hex: 2 bytes after the 2 of PSUStatus ignored\n");
    EXPECT_EQ(ignored.out, run(ourCommand({"decode", "PSUStatus", "--hex", "0103"})).out);
}

TEST(DecodeCommand, RefusesWhatItCannotShow)
{
    const auto status = [](const Arguments& words) {
        Arguments all = {"decode"};
        all.insert(all.end(), words.begin(), words.end());
        return run(ourCommand(all));
    };
    EXPECT_EQ(status({"PSUStatus", "--hex", "01"}).err,
              "recordkit: --hex: not an image of PSUStatus: size 1, expected 2\n");
    EXPECT_EQ(status({"PSUStatus", "--hex", "01"}).status, 1);
    EXPECT_EQ(status({"SELEntryLongText", "--hex", "01"}).status, 1);
    EXPECT_EQ(status({"FRUData", "--hex", "FF"}).status, 1);
    EXPECT_EQ(status({"FRUData.ROM", "--hex", "FF"}).status, 1);
    EXPECT_EQ(status({"PSUStatus", "--hex", "0g"}).status, 2);
    EXPECT_EQ(status({"Nothing", "--hex", "00"}).status, 2);
    EXPECT_EQ(status({"PSUStatus"}).status, 2);
    EXPECT_EQ(status({"PSUStatus", "-", "--hex", "00"}).status, 2);
    EXPECT_EQ(status({"PSUStatus", "--list"}).status, 2);
    EXPECT_EQ(status({}).status, 2);
    EXPECT_EQ(status({"PSUStatus", "/nowhere"}).status, 3);
    EXPECT_EQ(status({"--list"}).status, 0);
    const auto list = nlohmann::json::parse(status({"--list", "--json"}).out);
    EXPECT_EQ(list.size(), decodableClasses().size()); // FRU images and processor ROMs
}

TEST(DecodeCommand, RefusesAnImageThatPromisesMoreThanItHas)
{
    // Three nodes, of which two or none are there.
    for (const auto& [hex, size] :
         {std::pair("1003", "2"), std::pair("1003AA", "3"), std::pair("1003AABB", "4")}) {
        const Outcome outcome = run(ourCommand({"decode", "PartitionInfo", "--hex", hex}));
        EXPECT_EQ(outcome.status, 1);
        EXPECT_EQ(outcome.out, "");
        EXPECT_NE(outcome.err.find(std::string("not a whole image of PartitionInfo: size ") + size +
                                   ", expected 5 by its counts\n"),
                  std::string::npos)
            << outcome.err;
    }
    EXPECT_EQ(run(ourCommand({"decode", "PartitionInfo", "--hex", "1003AABBCC"})).status, 0);
    EXPECT_EQ(run(ourCommand({"decode", "PartitionInfo", "--hex", "1000"})).status, 0);
}

TEST(DecodeCommand, FieldsEndWithTheImage)
{
    const auto serial = [](std::size_t size) {
        std::string hex;
        for (std::size_t i = 0; i < size; ++i) {
            hex += "DD";
        }
        const auto fields = nlohmann::json::parse(
            run(ourCommand({"decode", "OEMSELEntry", "--hex", hex, "--json"})).out);
        return fields.back();
    };
    EXPECT_EQ(serial(65)["width"], 13);
    EXPECT_EQ(serial(63)["offset"], 52);
    EXPECT_EQ(serial(63)["width"], 11);
    EXPECT_TRUE(serial(62)["value"].is_null());
}
