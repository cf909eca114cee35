// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "support/Process.h"
#include "support/ScratchRoot.h"

using namespace testing_support;
using Json = nlohmann::json;

namespace {

const std::string ROM = RECORDKIT_EXAMPLE_DATA "/cpu/sample.bin";

Outcome cpu(const Arguments& arguments, const std::string& input = "")
{
    Arguments words = {"--root", RECORDKIT_SOURCE "/examples/board", "cpu"};
    words.insert(words.end(), arguments.begin(), arguments.end());
    return run(ourCommand(words), input);
}

}

TEST(CpuCommand, NamesAProcessor)
{
    const Outcome outcome = cpu({ROM, "--json"});
    ASSERT_EQ(outcome.status, 0) << outcome.err;
    const Json json = Json::parse(outcome.out);
    EXPECT_EQ(json["processor_code"], "SR0042");
    EXPECT_EQ(json["model_name"], "Example(R) Processor Model 42");
    EXPECT_EQ(json["model_name_markup"], "Example&reg; Processor Model 42");
    EXPECT_EQ(json["model_type"], 6);
    EXPECT_EQ(json["stepping"], "C0");
    EXPECT_EQ(json["part_number"], "CA0042-0001");
    EXPECT_EQ(json["cache_kb"], 24576);
    EXPECT_EQ(json["speed_mhz"], 2667);
    EXPECT_EQ(json["core"]["core0"], "E612");
    EXPECT_EQ(json["core"]["core1"], "2710");
    EXPECT_EQ(json["blocks"].size(), 8U);
    EXPECT_EQ(json["blocks"][7]["name"], "other");
    EXPECT_EQ(json["blocks"][7]["offset"], 119);
    EXPECT_EQ(json["blocks"][7]["size"], 9);
    const Outcome text = cpu({ROM});
    EXPECT_NE(text.out.find("stepping        C0\n"), std::string::npos);
    EXPECT_NE(text.out.find("cache         42      34\n"), std::string::npos);
}

TEST(CpuCommand, BoardTypeChoosesThePartNumberTable)
{
    EXPECT_NE(cpu({ROM, "--sb-type", "2"}).out.find("part number     CA0042-0003\n"),
              std::string::npos);
    EXPECT_NE(cpu({ROM, "--sb-type", "2", "--board", "3"}).out.find("CA0042-0003"),
              std::string::npos);
    EXPECT_NE(cpu({ROM, "--sb-type", "1"}).out.find("CA0042-0001"), std::string::npos);
    EXPECT_EQ(cpu({ROM, "--board", "4"}).status, 2);
}

TEST(CpuCommand, WithoutTablesTheRomSpeaksForItself)
{
    const ScratchRoot root;
    const Outcome outcome = run(ourCommand({"--root", root.path(), "cpu", ROM, "--json"}));
    ASSERT_EQ(outcome.status, 0) << outcome.err;
    const Json json = Json::parse(outcome.out);
    EXPECT_EQ(json["model_name_markup"], "Intel&reg; Xeon&reg; Processor  2.66 GHz 24MB");
    EXPECT_EQ(json["stepping"], " ");
    EXPECT_EQ(json["part_number"], "ROM-PN-1");
}

TEST(CpuCommand, ShowsWhatIsLeftOfACutRom)
{
    const Bytes rom = readFile(ROM);
    const std::string half(rom.begin(), rom.begin() + 50);
    const Outcome outcome = cpu({"-", "--json"}, half);
    EXPECT_EQ(outcome.status, 1);
    const Json json = Json::parse(outcome.out);
    EXPECT_EQ(json["stepping"], "C0");
    EXPECT_TRUE(json["cache_kb"].is_null());
    EXPECT_EQ(json["problems"][0],
              "cache (KB): 34 bytes at offset 42 are not within the 50 bytes of the image");
    const Outcome none = cpu({"-"}, half.substr(0, 13));
    EXPECT_EQ(none.status, 1);
    EXPECT_EQ(none.err,
              "recordkit: standard input: not a processor ROM: 14 bytes at offset 0 are not "
              "within the 13 bytes of the image\n");
    EXPECT_EQ(cpu({"/nowhere"}).status, 3);
}
