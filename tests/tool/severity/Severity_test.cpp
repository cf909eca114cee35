// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <set>

#include "tool/sel/SelTest.h"

using namespace testing_support;

namespace {

class SeverityCommand : public SelTest {};

}

TEST_F(SeverityCommand, AnswersForOffsets)
{
    const Outcome outcome = run(ourCommand({"severity", "0x6F", "processor", "0,1"}));
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    for (const char* part : {"severity      non-recoverable\n", "alarm         alarm\n",
                             "mask          183Dh critical: offsets 0,2,3,4,5,11,12\n",
                             "alarm mask    183Fh\n", "warning mask  4000h\n"}) {
        EXPECT_NE(outcome.out.find(part), std::string::npos) << outcome.out;
    }
    const Json json = Json::parse(run(ourCommand({"severity", "7", "21", "7", "--json"})).out)[0];
    EXPECT_EQ(json["severity"], "monitor");
    EXPECT_EQ(json["alarm"], "none");
    EXPECT_EQ(json["masks"]["critical"], 0x24);
    const Json unknown = Json::parse(run(ourCommand({"severity", "1", "1", "9", "--json"})).out)[0];
    EXPECT_EQ(unknown["known"], false);
    EXPECT_EQ(unknown["severity"], "unrated");
}

TEST_F(SeverityCommand, FollowsThePowerSupplyMode)
{
    const Arguments question = {"--root", root.path(), "severity", "0x0B", "9", "3", "--json"};
    EXPECT_EQ(Json::parse(run(ourCommand(question)).out)[0]["severity"], "unrated");
    writeFile(root.at("/tmp/psumode"), Bytes({1}));
    EXPECT_EQ(Json::parse(run(ourCommand(question)).out)[0]["severity"], "warning");
}

TEST_F(SeverityCommand, TableHasEveryPair)
{
    const Json table = Json::parse(run(ourCommand({"severity", "--table", "--json"})).out);
    std::set<std::pair<int, int>> pairs;
    for (const Json& row : table) {
        pairs.emplace(row["event_type"], row["sensor_type"]);
    }
    EXPECT_EQ(pairs.size(), 42U);
    const std::string text = run(ourCommand({"severity", "--table"})).out;
    EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 1 + static_cast<long>(table.size()));
    EXPECT_NE(text.find("6Fh sensor-specific   07h Processor                           1       "
                        "non-recoverable  Thermal Trip\n"),
              std::string::npos)
        << text;
}

TEST_F(SeverityCommand, RefusesWhatIsNoCode)
{
    for (const Arguments& words :
         {Arguments{"severity", "256", "1", "1"}, Arguments{"severity", "1", "toast", "1"},
          Arguments{"severity", "1", "1", "16"}, Arguments{"severity", "1", "1"},
          Arguments{"severity", "1", "1", "1", "--table"}, Arguments{"severity", "1", "--table"}}) {
        EXPECT_EQ(run(ourCommand(words)).status, 2);
    }
}
