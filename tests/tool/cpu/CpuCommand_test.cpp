// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <random>

#include "support/Process.h"
#include "support/ScratchRoot.h"

using namespace testing_support;
using Json = nlohmann::json;

namespace {

const std::string ROM = RECORDKIT_EXAMPLE_DATA "/cpu/sample.bin";
const std::string EVENTS_FILE = RECORDKIT_EXAMPLE_DATA "/sel/events.raw";

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
    EXPECT_NE(text.out.find("cache         42      34      right\n"), std::string::npos);
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
              "cache: 34 bytes at offset 42 are not within the 50 bytes of the image");
    const Outcome none = cpu({"-"}, half.substr(0, 13));
    EXPECT_EQ(none.status, 1);
    EXPECT_EQ(none.err,
              "recordkit: standard input: not a processor ROM: 14 bytes at offset 0 are not "
              "within the 13 bytes of the image\n");
    EXPECT_EQ(cpu({"/nowhere"}).status, 3);
}

namespace {

/// The sample with some bytes changed.
std::string changed(const std::vector<std::size_t>& offsets)
{
    const Bytes rom = readFile(ROM);
    std::string bytes(rom.begin(), rom.end());
    for (const std::size_t offset : offsets) {
        bytes[offset] = static_cast<char>(bytes[offset] ^ 1);
    }
    return bytes;
}

// A byte of each block that decides nothing else: its checksum.
const std::vector<std::size_t> CHECKSUMS = {26, 41, 75, 83, 101, 107, 118, 127};
constexpr std::size_t HEADER_CHECKSUM = 13;

}

TEST(CpuCommand, ReportsEachWrongChecksum)
{
    const Outcome outcome = cpu({"-"}, changed({26, 127}));
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.err,
              "recordkit: standard input: processor: the checksum is 00h, expected 01h\n"
              "recordkit: standard input: other: the checksum is DDh, expected DCh\n");
    EXPECT_NE(outcome.out.find("BLOCK         OFFSET  SIZE    CHECKSUM\n"
                               "processor     14      13      WRONG\n"
                               "core          27      15      right\n"),
              std::string::npos)
        << outcome.out;
    const Json json = Json::parse(cpu({"-", "--json"}, changed({26, 127})).out);
    EXPECT_EQ(json["blocks"][0]["checksum_right"], false);
    EXPECT_EQ(json["blocks"][1]["checksum_right"], true);
    EXPECT_EQ(json["problems"].size(), 2U);
    EXPECT_EQ(json["processor_code"], "SR0042");
}

TEST(CpuCommand, TakesARomWithARightHeaderOrHalfOfTheBlocks)
{
    const Outcome noBlock = cpu({"-", "--json"}, changed(CHECKSUMS));
    EXPECT_EQ(noBlock.status, 1);
    EXPECT_EQ(Json::parse(noBlock.out)["problems"].size(), 8U);
    std::vector<std::size_t> half(CHECKSUMS.begin(), CHECKSUMS.begin() + 4);
    half.push_back(HEADER_CHECKSUM);
    const Outcome halfRight = cpu({"-", "--json"}, changed(half));
    EXPECT_EQ(halfRight.status, 1);
    EXPECT_EQ(Json::parse(halfRight.out)["problems"][0],
              "header: the checksum is 43h, expected 42h");
    std::vector<std::size_t> most(CHECKSUMS.begin(), CHECKSUMS.begin() + 5);
    most.push_back(HEADER_CHECKSUM);
    const Outcome refused = cpu({"-", "--json"}, changed(most));
    EXPECT_EQ(refused.status, 1);
    EXPECT_EQ(refused.out, "");
    EXPECT_EQ(refused.err, "recordkit: standard input: not a processor ROM: the checksum of the "
                           "header is 43h, expected 42h, and those of 5 of 8 blocks are wrong\n");
}

TEST(CpuCommand, RefusesBytesThatAreNoRom)
{
    // All zero: the checksum is right, but there is no block.
    const Outcome zeroes = cpu({"-"}, std::string(128, '\0'));
    EXPECT_EQ(zeroes.status, 1);
    EXPECT_EQ(zeroes.out, "");
    EXPECT_EQ(
        zeroes.err,
        "recordkit: standard input: not a processor ROM: the header has no processor block\n");
    EXPECT_EQ(cpu({"-"}, std::string(128, '\xFF')).out, "");
    EXPECT_EQ(cpu({EVENTS_FILE}).out, "");
    // Random bytes, none of which has a right checksum of the header by chance.
    std::mt19937 random(20261122);
    for (int i = 0; i < 20; ++i) {
        std::string bytes(4096, '\0');
        for (char& byte : bytes) {
            byte = static_cast<char>(random());
        }
        const Outcome outcome = cpu({"-"}, bytes);
        EXPECT_EQ(outcome.status, 1) << i;
        EXPECT_EQ(outcome.out, "") << i;
        EXPECT_NE(outcome.err.find("not a processor ROM: "), std::string::npos) << outcome.err;
    }
}
