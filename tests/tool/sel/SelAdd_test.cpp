// SPDX-License-Identifier: Apache-2.0
#include "support/Terminal.h"
#include "tool/sel/SelTest.h"

using namespace testing_support;

namespace {

using Ids = std::vector<int>;

class SelAdd : public SelTest {};

}

TEST_F(SelAdd, StoresTheSampleEvents)
{
    initialise();
    const Outcome outcome = sel({"add", EVENTS, "--board", "1"});
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_EQ(outcome.out, "166 events stored on board 1\n");
    const std::vector<Json> events = listed({"--board", "1"});
    ASSERT_EQ(events.size(), 166U);
    EXPECT_EQ(events[150]["manufacturer"], 0x000157);
    EXPECT_EQ(events[0]["event"], "Upper Critical - going high");
    EXPECT_EQ(listedIds({"--board", "0"}), Ids());
}

TEST_F(SelAdd, CreatesAMissingWorkingFile)
{
    EXPECT_EQ(sel({"add", "-"}, eventAt(1, TIME_1, THERMAL_TRIP)).out,
              "1 event stored on board 0\n");
    EXPECT_EQ(listedIds({}), Ids({1}));
}

TEST_F(SelAdd, FillsTheOemData)
{
    initialise();
    ASSERT_EQ(sel({"add", "-", "--partitions", "0,3", "--part-number", "PN-12345678901234",
                   "--serial-number", "SN-1"},
                  eventAt(1, TIME_1, THERMAL_TRIP))
                  .status,
              0);
    const std::vector<Json> events = listed({});
    ASSERT_EQ(events.size(), 1U);
    EXPECT_EQ(events[0]["partitions"], Json({0, 3}));
    EXPECT_EQ(events[0]["part_number"], "PN-12345678901234");
    EXPECT_EQ(events[0]["serial_number"], "SN-1");
}

TEST_F(SelAdd, RefusesBadOemData)
{
    initialise();
    const std::string record = eventAt(1, TIME_1, THERMAL_TRIP);
    expectRefused(2, {"add", "-", "--partitions", "4"},
                  "(expected numbers from 0 to 3, such as 0,2-4)", record);
    expectRefused(2, {"add", "-", "--partitions", ""}, "--partitions", record);
    expectRefused(2, {"add", "-", "--part-number", "X"}, "2 to 18", record);
    expectRefused(2, {"add", "-", "--part-number", "1234567890123456789"}, "2 to 18", record);
    expectRefused(2, {"add", "-", "--serial-number", "1234567890123"}, "2 to 12", record);
    expectRefused(2, {"add", "-", "--serial-number", "a\tb"}, "2 to 12", record);
    expectRefused(2, {"add", "-", "--format", "toast"}, "--format", record);
}

TEST_F(SelAdd, TakesWhatListWrites)
{
    initialise();
    ASSERT_EQ(sel({"add", EVENTS, "--board", "1", "--partitions", "2"}).status, 0);
    const Outcome listing = sel({"list", "--board", "1", "--ndjson"});
    ASSERT_EQ(sel({"add", "-", "--board", "2", "--ndjson"}, listing.out).status, 0);
    EXPECT_EQ(readFile(working(2)), readFile(working(1)));
}

TEST_F(SelAdd, TakesTheJsonOfAListingToo)
{
    initialise();
    ASSERT_EQ(sel({"add", EVENTS, "--board", "1"}).status, 0);
    const Outcome listing = sel({"list", "--board", "1", "--json"});
    ASSERT_EQ(sel({"add", "-", "--board", "2"}, listing.out).status, 0);
    EXPECT_EQ(readFile(working(2)), readFile(working(1)));
    expectRefused(1, {"add", "-"}, "standard input, element 1: expected an object with a text",
                  "[{\"image\": \"\"}]");
    expectRefused(1, {"add", "-"}, "standard input: not JSON", "[{]");
}

TEST_F(SelAdd, RenumbersBehindTheLastRecord)
{
    initialise();
    fill(3);
    const std::string records =
        eventAt(0xFFFF, TIME_1, THERMAL_TRIP) + eventAt(1, TIME_1, THERMAL_TRIP);
    ASSERT_EQ(sel({"add", "-", "--board", "1", "--renumber"}, records).status, 0);
    EXPECT_EQ(listedIds({"--board", "1"}), Ids({1, 2, 3, 4, 5}));
    ASSERT_EQ(sel({"add", "-"}, eventAt(0xFFFD, TIME_1, THERMAL_TRIP)).status, 0);
    ASSERT_EQ(sel({"add", "-", "--renumber"}, records).status, 0);
    EXPECT_EQ(listedIds({}), Ids({0xFFFD, 0xFFFE, 1}));
    ASSERT_EQ(sel({"add", "-", "--renumber", "--board", "3"}, records).status, 0);
    EXPECT_EQ(listedIds({"--board", "3"}), Ids({1, 2}));
}

TEST_F(SelAdd, RefusesTheIdOfAnEmptySlot)
{
    initialise();
    expectRefused(1, {"add", "-"}, "standard input, line 2: record id FFFFh marks an empty slot",
                  eventAt(1, TIME_1, THERMAL_TRIP) + eventAt(0xFFFF, TIME_1, THERMAL_TRIP));
}

TEST_F(SelAdd, StopsAtAFullFileAndSaysWhereTheRestBegins)
{
    initialise();
    fill(798);
    std::string records;
    for (unsigned int id = 900; id < 905; ++id) {
        records += eventAt(id, TIME_1, THERMAL_TRIP);
    }
    const Outcome outcome = sel({"add", "-", "--board", "1"}, records);
    EXPECT_EQ(outcome.status, 1);
    EXPECT_NE(outcome.err.find("is full: 2 of 5 events stored, the rest begins at line 3 of "
                               "standard input"),
              std::string::npos)
        << outcome.err;
    EXPECT_EQ(listedIds({"--board", "1", "--last", "3"}), Ids({798, 900, 901}));
}

TEST_F(SelAdd, RotatesAFullFileWhenToldTo)
{
    initialise();
    fill(798);
    std::string records;
    for (unsigned int id = 900; id < 905; ++id) {
        records += eventAt(id, TIME_1, THERMAL_TRIP);
    }
    const Outcome outcome = sel({"add", "-", "--board", "1", "--rotate"}, records);
    EXPECT_EQ(outcome.out, "5 events stored on board 1, 1 rotation\n") << outcome.err;
    EXPECT_EQ(listedIds({"--board", "1", "--last", "6"}), Ids({798, 900, 901, 902, 903, 904}));
    EXPECT_EQ(readFile(kept(1, 1)).size(), FULL_FILE);
    EXPECT_EQ(sel({"check"}).status, 0);
}

TEST_F(SelAdd, RefusesWrongInput)
{
    initialise();
    writeFile(root.at("/empty"), "");
    writeFile(root.at("/text"), "This is a text file.\n");
    writeFile(root.at("/seventeen"), Bytes(17, 0x02));
    expectRefused(1, {"add", root.at("/empty")}, "/empty is empty");
    expectRefused(1, {"add", root.at("/text")}, "/text, line 1: column 1: expected two hex digits");
    expectRefused(1, {"add", root.at("/seventeen")},
                  "/seventeen, offset 16: 1 bytes, expected a record of 16");
    expectRefused(3, {"add", root.at("/tmp")}, "Is a directory");
    expectRefused(3, {"add", root.at("/none")}, "/none cannot be opened: No such file");
    expectRefused(2, {"add"}, "FILE is required");
    expectRefused(2, {"add", EVENTS, "--board", "300"},
                  "--board: invalid value \"300\" (expected 0 to 3)");
    expectRefused(2, {"add", EVENTS, "--board", "-1"}, "(expected 0 to 3)");
}

TEST_F(SelAdd, ToAnUnwritableRootIsStatusThree)
{
    writeFile(root.at("/file"), "x");
    const Outcome outcome = run(ourCommand({"--root", root.at("/file"), "sel", "add", EVENTS}));
    EXPECT_EQ(outcome.status, 3);
    EXPECT_FALSE(outcome.err.empty());
    std::filesystem::remove_all(root.at("/tmp"));
    EXPECT_EQ(sel({"add", EVENTS}).status, 3);
}

TEST_F(SelAdd, ToADamagedFileIsStatusOne)
{
    initialise();
    fill(2);
    patchFile(working(1), 2 * SLOT + 9, {0});
    expectRefused(1, {"add", EVENTS, "--board", "1"}, "is damaged");
}

TEST_F(SelAdd, DrawsAProgressBarOnATerminal)
{
    initialise();
    std::string lines;
    for (unsigned int id = 1; id <= 2500; ++id) {
        lines += eventAt(id, TIME_1, THERMAL_TRIP);
    }
    writeFile(root.at("/events"), lines);
    std::string shown;
    if (!runOnTerminal(
            ourCommand({"--root", root.path(), "sel", "add", root.at("/events"), "--rotate"}), {},
            shown)) {
        GTEST_SKIP() << "no terminal can be made here";
    }
    EXPECT_NE(shown.find("] 50 %"), std::string::npos) << shown;
    EXPECT_NE(shown.find("2500 events stored on board 0, 3 rotations"), std::string::npos);
}

TEST_F(SelAdd, DoesNotRewriteAFileThatHoldsEvents)
{
    initialise();
    fill(3);
    std::filesystem::resize_file(working(1), FULL_FILE - 1);
    expectRefused(1, {"add", EVENTS, "--board", "1"},
                  "110399 bytes long, expected 110400; it contains 3 events and stays as it is");
    std::filesystem::resize_file(working(1), 0);
    EXPECT_EQ(sel({"add", EVENTS, "--board", "1"}).status, 0);
}
