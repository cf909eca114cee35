// SPDX-License-Identifier: Apache-2.0
#include "tool/sel/SelTest.h"

using namespace testing_support;

namespace {

class SelStatus : public SelTest {};

}

TEST_F(SelStatus, ShowsEachBoard)
{
    initialise();
    ASSERT_EQ(sel({"add", "-", "--board", "1"},
                  eventAt(1, TIME_1, THERMAL_TRIP) + eventAt(2, TIME_2, THERMAL_TRIP))
                  .status,
              0);
    ASSERT_EQ(sel({"rotate", "--board", "1"}).status, 0);
    ASSERT_EQ(
        sel({"add", "-", "--board", "1"}, hexRecord(3, "e00102030405060708090a0b0c0d")).status, 0);
    ASSERT_EQ(sel({"backup", "--board", "1"}).status, 0);
    std::filesystem::remove(working(2));
    const Outcome outcome = sel({"status", "--json"});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.err, "recordkit: " + working(2) +
                               ": cannot be read: No such file or directory; run \"recordkit sel "
                               "init\"\n");
    const Json status = Json::parse(outcome.out);
    ASSERT_EQ(status.size(), 4U);
    EXPECT_EQ(status[1], Json::parse(R"({"board": 1, "working_file": true,
        "events_in_working_file": 1, "free_slots": 799, "rotated_files": 1, "events": 3, "events_counted": 3,
        "oldest": "2024-11-05T06:06:04Z", "newest": "2024-11-05T06:07:08Z",
        "events_in_backup": 1, "findings": 0})"));
    EXPECT_EQ(status[0]["oldest"], nullptr);
    EXPECT_EQ(status[2]["working_file"], false);
    EXPECT_EQ(status[2]["findings"], 1);
    const std::string table = sel({"status"}).out;
    EXPECT_NE(
        table.find("1      1/800     1        3       3        2024-11-05 06:06:04     2024-11-05 "
                   "06:07:08     1 event     sound\n"),
        std::string::npos)
        << table;
    EXPECT_NE(table.find("2      missing"), std::string::npos);
}
