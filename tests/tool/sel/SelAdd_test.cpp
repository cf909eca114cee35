// SPDX-License-Identifier: Apache-2.0
#include "support/Answers.h"
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
    const Outcome images = sel({"list", "--board", "1", "--ndjson", "--fields", "image"});
    ASSERT_EQ(sel({"add", "-", "--board", "3"}, images.out).status, 0);
    EXPECT_EQ(readFile(working(3)), readFile(working(1)));
    expectRefused(1, {"add", "-"}, "standard input, element 1: expected an object with",
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

TEST_F(SelAdd, RefusesWhatDoesNotLookLikeEvents)
{
    initialise();
    const std::string end =
        "; this does not look like an event, and nothing was stored; --force stores all records\n";
    const std::string fru = RECORDKIT_EXAMPLE_DATA "/fru/ascii-all.bin";
    writeFile(root.at("/fru"), contentOf(fru).substr(0, 192));
    const auto before = snapshot();
    const Outcome outcome = sel({"add", root.at("/fru")});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.out, "");
    EXPECT_EQ(outcome.err,
              "recordkit: " + root.at("/fru") + ", offset 0: record type 01h is unknown" + end);
    EXPECT_EQ(snapshot(), before);

    const auto refusal = [this](const std::string& records) {
        const Outcome refused = sel({"add", "-"}, records);
        EXPECT_EQ(refused.status, 1);
        EXPECT_EQ(refused.out, "");
        return refused.err;
    };
    const std::string good = eventAt(5, TIME_1, THERMAL_TRIP);
    const std::string start = "recordkit: standard input, line 2: ";
    EXPECT_EQ(refusal(good + hexRecord(6, "02" + TIME_1 +
                                              "2000050410"
                                              "01500102")),
              start + "event message revision 05h is unknown" + end);
    EXPECT_EQ(refusal(good + eventAt(6, TIME_1, "2f7001500000")),
              start + "sensor type 2Fh is reserved" + end);
    EXPECT_EQ(refusal(good + eventAt(6, TIME_1, "04702f500000")),
              start + "event type 2Fh is reserved" + end);
    EXPECT_EQ(refusal(good + eventAt(6, TIME_1, "0470015c0000")),
              start + "event type 01h has no offset 12" + end);
    EXPECT_EQ(refusal(good + eventAt(4, TIME_1, THERMAL_TRIP)),
              start + "record id 0004h comes after 0005h" + end);
    EXPECT_EQ(snapshot(), before);

    EXPECT_EQ(sel({"add", root.at("/fru"), "--force"}).out, "12 events stored on board 0\n");
    // Ids start again after the last one; those that are renumbered need no order.
    EXPECT_EQ(sel({"add", "-", "--board", "1"},
                  eventAt(0xFFFE, TIME_1, THERMAL_TRIP) + eventAt(1, TIME_1, THERMAL_TRIP))
                  .status,
              0);
    EXPECT_EQ(sel({"add", "-", "--board", "1", "--renumber"},
                  eventAt(9, TIME_1, THERMAL_TRIP) + eventAt(2, TIME_1, THERMAL_TRIP))
                  .status,
              0);
    EXPECT_EQ(listedIds({"--board", "1"}), Ids({0xFFFE, 1, 2, 3}));
}

TEST_F(SelAdd, SkipsWhatTheBoardAlreadyHas)
{
    initialise();
    ASSERT_EQ(sel({"add", EVENTS}).status, 0);
    const auto before = snapshot();
    EXPECT_EQ(sel({"add", EVENTS}).out,
              "0 events stored on board 0, 166 skipped that the board already has\n");
    EXPECT_EQ(snapshot(), before);
    // Also those that a rotation has moved on, and that only the chain beyond a gap contains.
    ASSERT_EQ(sel({"rotate"}).status, 0);
    std::filesystem::rename(kept(0, 1), kept(0, 3));
    const std::string more =
        contentOf(EVENTS) + std::string("\xa8\0\x02\0\0\0\x67\x20\0\x04\x04\x10\x01\x50\1\2", 16);
    EXPECT_EQ(sel({"add", "-"}, more).out,
              "1 event stored on board 0, 166 skipped that the board already has\n");
    EXPECT_EQ(sel({"add", EVENTS, "--duplicates"}).out, "166 events stored on board 0\n");
    // The same record with other OEM data is another one.
    EXPECT_EQ(sel({"add", EVENTS, "--partitions", "1"}).out, "166 events stored on board 0\n");
}

TEST_F(SelAdd, CountsTheEventsThatRotationsDrop)
{
    initialise();
    std::string records;
    for (unsigned int id = 1; id <= 8000; ++id) {
        records += eventAt(id, TIME_1, THERMAL_TRIP);
    }
    EXPECT_EQ(sel({"add", "-", "--rotate"}, records).out,
              "8000 events stored on board 0, 9 rotations, 1600 oldest events dropped\n");
    EXPECT_EQ(sel({"rotate"}).out, "board 0: working file rotated to sel1; a new, empty working "
                                   "file is in place; 800 oldest events dropped\n");
}

TEST_F(SelAdd, WithoutSpaceSaysTheReasonAndHowManyWereStored)
{
    // Persistent memory with room for one and a half event files, in a mount namespace of its own.
    const std::string folder = root.at("/var/tav/fmem/ipmi");
    if (run({"unshare", "-rm", "mount", "-t", "tmpfs", "none", folder}).status != 0) {
        GTEST_SKIP() << "no file system can be mounted here";
    }
    std::string records;
    for (unsigned int id = 1; id <= 2500; ++id) {
        records += eventAt(id, TIME_1, THERMAL_TRIP);
    }
    writeFile(root.at("/records"), records);
    std::string command;
    for (const std::string& word : ourCommand({"--root", root.path(), "sel"})) {
        command += "'" + word + "' ";
    }
    const Outcome outcome =
        run({"unshare", "-rm", "sh", "-c",
             "mount -t tmpfs -o size=160k none '" + folder + "' && " + command + "add '" +
                 root.at("/records") + "' --rotate; s=$?; " + command + "list --ndjson | wc -l; " +
                 command + "check --recover --board 0 >/dev/null; echo $?; exit $s"});
    EXPECT_EQ(outcome.status, 3);
    EXPECT_EQ(outcome.err.substr(0, outcome.err.find('\n') + 1),
              "recordkit: " + kept(0, 0) +
                  " cannot be copied or renamed: No space left on device: 1600 of 2500 events "
                  "stored, the rest begins at line 1601 of " +
                  root.at("/records") + "\n");
    EXPECT_EQ(outcome.out, "1600\n0\n"); // the short backup is no reason for a loss
}
