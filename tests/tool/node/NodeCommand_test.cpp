// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "support/Process.h"
#include "support/ScratchRoot.h"

using namespace testing_support;
using Json = nlohmann::json;

namespace {

Json node(const std::string& value)
{
    const Outcome outcome = run(ourCommand({"node", value, "--json"}));
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    return Json::parse(outcome.out).at(0);
}

}

TEST(NodeCommand, ConvertsBothWays)
{
    const Json fromId = node("0x87");
    EXPECT_EQ(fromId["unit_name"], "IOU3-1");
    EXPECT_EQ(fromId["board_type"], 128);
    EXPECT_EQ(fromId["unit"], 3);
    EXPECT_EQ(fromId["side"], 1);
    EXPECT_EQ(fromId["logical_unit"], nullptr);
    EXPECT_EQ(node("iou3-1")["node_id"], 0x87);
    EXPECT_EQ(node("GSPB3-1")["node_id"], 0xA7);
    EXPECT_EQ(node("MMB5")["node_id"], 0xC5);
    EXPECT_EQ(node("SB7")["node_id"], 7);
    const Json logical = node("LIOU6");
    EXPECT_EQ(logical["node_id"], 0x86);
    EXPECT_EQ(logical["management_board"], 1);
    EXPECT_EQ(logical["index"], 2);
    EXPECT_EQ(node("LIOU0")["index"], 1);
    EXPECT_EQ(node("LSB4")["node_id"], 2);
}

TEST(NodeCommand, ListsAllThatExist)
{
    const Outcome outcome = run(ourCommand({"node", "--json"}));
    const Json all = Json::parse(outcome.out);
    // 8 SB, 8 x 2 IOU, 8 x 2 GSPB, 8 MMB, 16 LSB, 16 LIOU.
    EXPECT_EQ(all.size(), 80U);
    for (const Json& each : all) {
        if (each["logical_unit"] == nullptr) {
            // What a unit is called leads back to its id.
            EXPECT_EQ(node(each["unit_name"])["node_id"], each["node_id"]);
        }
    }
    EXPECT_EQ(run(ourCommand({"node"})).out.substr(0, 28), "NODE ID  UNIT      BOARD TYP");
}

TEST(NodeCommand, RefusesWhatDoesNotExist)
{
    for (const char* const value :
         {"256", "SB8", "SB", "IOU3", "IOU3-2", "SB1-0", "LIOU16", "XY1", "-", "LSB1-0"}) {
        EXPECT_EQ(run(ourCommand({"node", "--", value})).status, 2) << value;
    }
}
