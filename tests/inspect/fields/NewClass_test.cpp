// SPDX-License-Identifier: Apache-2.0
// A class with a header and a field table, and nothing else, is in everything that is made from the
// tables: the command and the generator of the pages of this build, with one more class.
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "support/Process.h"
#include "support/ScratchRoot.h"

using namespace testing_support;

namespace {

Outcome runCommand(const Arguments& words)
{
    Arguments all = programOfThisBuild(COMMAND_WITH_FAN_TRAY);
    all.insert(all.end(), words.begin(), words.end());
    return run(all);
}

/// What the generator writes for these words.
std::string generated(Arguments words)
{
    const ScratchRoot root;
    Arguments all = programOfThisBuild(RECORDS_WITH_FAN_TRAY);
    words.push_back(root.at("/page"));
    all.insert(all.end(), words.begin(), words.end());
    const Outcome outcome = run(all);
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    const Bytes page = readFile(root.at("/page"));
    return {page.begin(), page.end()};
}

bool contains(const std::string& text, const std::string& part)
{
    return text.find(part) != std::string::npos;
}

const Arguments DECODE = {"decode", "fantrayinfo", "--hex", "01 00 100E 0000 0000 FF01"};

}

TEST(NewClass, IsDecoded)
{
    EXPECT_TRUE(
        contains(runCommand({"decode", "--list"}).out,
                 "FanTrayInfo             10                             state of a fan tray"));
    EXPECT_EQ(runCommand(DECODE).out,
              "FIELD                     BYTES         VALUE                 MEANING\n"
              "installed                 0 bit 0       yes                   \n"
              "fault                     0 bit 2       no                    \n"
              "fan0_speed                2 to 3        3600                  3600 rpm\n"
              "fan1_speed                4 to 5        0                     0 rpm\n"
              "fan2_speed                6 to 7        0                     0 rpm\n"
              "fan3_speed                8 to 9        511                   511 rpm\n");
}

TEST(NewClass, IsInJson)
{
    Arguments words = DECODE;
    words.push_back("--json");
    const auto json = nlohmann::json::parse(runCommand(words).out);
    EXPECT_EQ(json[2], nlohmann::json::parse(R"({
        "name": "fan0_speed", "value": 3600, "meaning": "3600 rpm",
        "offset": 2, "width": 2, "bits": "", "also": []})"));
    const auto list = nlohmann::json::parse(runCommand({"decode", "--list", "--json"}).out);
    EXPECT_NE(std::find(list.begin(), list.end(), nlohmann::json::parse(R"({
        "class": "FanTrayInfo", "size": "10", "description": "state of a fan tray"})")),
              list.end());
}

TEST(NewClass, IsInThePageOfRecords)
{
    EXPECT_TRUE(contains(generated({"page"}), "## FanTrayInfo\n"
                                              "\n"
                                              "Contents: state of a fan tray. Size in bytes: 10.\n"
                                              "\n"
                                              "| field | byte | width | bits | meaning |\n"
                                              "|---|---|---|---|---|\n"
                                              "| `installed` | 0 | 1 | 0 |  |\n"
                                              "| `fault` | 0 | 1 | 2 |  |\n"
                                              "| `fanN_speed` | 2 | 4 x 2 |  |  |\n"));
}

TEST(NewClass, IsInTheManualPage)
{
    const std::string page = generated({"man", RECORDKIT_SOURCE "/docs/man/recordkit.1.in"});
    EXPECT_TRUE(contains(page, ".TP\n.BR FanTrayInfo \" (size 10)\"\n"
                               "installed (0 bit 0), fault (0 bit 2), "
                               "fanN_speed (2, 4 x 2).\n"))
        << page;
    EXPECT_FALSE(contains(page, ".\\\" FIELDS"));
}
