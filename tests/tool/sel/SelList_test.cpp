// SPDX-License-Identifier: Apache-2.0
#include <csignal>
#include <sys/wait.h>
#include <unistd.h>

#include "support/Terminal.h"
#include "tool/sel/SelTest.h"

using namespace testing_support;

namespace {

using Ids = std::vector<int>;

class SelList : public SelTest {};

}

TEST_F(SelList, IsATableWithoutColourWhenPiped)
{
    initialise();
    ASSERT_EQ(sel({"add", "-", "--partitions", "1"}, eventAt(0x1A, TIME_2, THERMAL_TRIP)).status,
              0);
    EXPECT_EQ(sel({"list"}).out,
              "BOARD  LOG   ID     TIME (UTC)           SEVERITY         SENSOR TYPE               "
              "SENSOR  DIRECTION   DATA    PARTITIONS  EVENT\n"
              "0      1     001Ah  2024-11-05 06:07:08  non-recoverable  Processor                 "
              "70h     asserted    01ffff  1           Thermal Trip\n");
}

TEST_F(SelList, IsColouredOnATerminal)
{
    initialise();
    ASSERT_EQ(sel({"add", "-"}, eventAt(1, TIME_2, THERMAL_TRIP)).status, 0);
    const Arguments words = ourCommand({"--root", root.path(), "sel", "list"});
    std::string shown;
    if (!runOnTerminal(words, {}, shown)) {
        GTEST_SKIP() << "no terminal can be made here";
    }
    EXPECT_NE(shown.find("\033[1;31mnon-recoverable\033[0m"), std::string::npos) << shown;
    ASSERT_TRUE(runOnTerminal(words, {"NO_COLOR=1"}, shown));
    EXPECT_NE(shown.find("non-recoverable"), std::string::npos);
    EXPECT_EQ(shown.find('\033'), std::string::npos) << shown;
}

TEST_F(SelList, IsInColourAsTheOptionSays)
{
    initialise();
    ASSERT_EQ(sel({"add", "-"}, eventAt(1, TIME_2, THERMAL_TRIP)).status, 0);
    EXPECT_NE(sel({"list", "--color", "always"}).out.find("\033[1;31mThermal Trip\033[0m\n"),
              std::string::npos);
    EXPECT_EQ(sel({"list", "--color", "auto"}).out.find('\033'), std::string::npos);
    std::string shown;
    if (!runOnTerminal(ourCommand({"--root", root.path(), "--color", "never", "sel", "list"}), {},
                       shown)) {
        GTEST_SKIP() << "no terminal can be made here";
    }
    EXPECT_EQ(shown.find('\033'), std::string::npos) << shown;
    ASSERT_TRUE(
        runOnTerminal(ourCommand({"--root", root.path(), "sel", "list"}), {"TERM=dumb"}, shown));
    EXPECT_EQ(shown.find('\033'), std::string::npos) << shown;
    expectRefused(2, {"list", "--color", "sometimes"},
                  "--color: invalid value \"sometimes\" (expected auto, always, never)");
}

TEST_F(SelList, DimsWhatWentAway)
{
    initialise();
    ASSERT_EQ(
        sel({"add", "-"}, eventAt(1, TIME_2, "07706f01ffff") + eventAt(2, TIME_2, "0770ef01ffff"))
            .status,
        0);
    EXPECT_EQ(sel({"list", "--color", "always", "--columns", "id,severity,event"}).out,
              "ID     SEVERITY         EVENT\n"
              "0001h  \033[1;31mnon-recoverable\033[0m  \033[1;31mThermal Trip\033[0m\n"
              "0002h  \033[2mnon-recoverable\033[0m  \033[2mThermal Trip\033[0m\n");
}

TEST_F(SelList, ShowsTheMostWantedColumnsOnANarrowTerminal)
{
    initialise();
    ASSERT_EQ(sel({"add", "-"}, eventAt(1, TIME_2, THERMAL_TRIP)).status, 0);
    const auto listing = [&](unsigned short columns, const Arguments& more = {}) {
        Arguments words = {"--root", root.path(), "--color", "never", "sel", "list"};
        words.insert(words.end(), more.begin(), more.end());
        std::string shown;
        EXPECT_TRUE(runOnTerminal(ourCommand(words), {}, shown, columns));
        shown.erase(std::remove(shown.begin(), shown.end(), '\r'), shown.end());
        return shown;
    };
    std::string ignored;
    if (!runOnTerminal({"true"}, {}, ignored)) {
        GTEST_SKIP() << "no terminal can be made here";
    }
    EXPECT_EQ(listing(80), "ID     TIME (UTC)           SEVERITY   DIRECTI\u2026  EVENT\n"
                           "0001h  2024-11-05 06:07:08  non-reco\u2026  asserted  Thermal Trip\n");
    EXPECT_EQ(listing(60), "ID     TIME (UTC)           EVENT\n"
                           "0001h  2024-11-05 06:07:08  Thermal Trip\n");
    EXPECT_EQ(
        listing(154).find("BOARD  LOG   ID     TIME (UTC)           SEVERITY         SENSOR TYPE "
                          "             SENSOR"),
        0U);
    EXPECT_EQ(listing(155), sel({"list"}).out);
    EXPECT_EQ(listing(0), sel({"list"}).out);
    EXPECT_EQ(listing(80, {"--wide"}), sel({"list"}).out);
}

TEST_F(SelList, GivesStableFieldNames)
{
    initialise();
    ASSERT_EQ(sel({"add", "-"}, eventAt(1, TIME_2, FAN_WARNING)).status, 0);
    const std::vector<Json> events = listed({});
    ASSERT_EQ(events.size(), 1U);
    const Json expected = Json::parse(R"({
        "board": 0, "log": 1, "file": 0, "slot": 0, "state": "regular", "source": null, "id": 1, "record_type": 2,
        "kind": "system-event", "time": "2024-11-05T06:07:08Z", "timestamp": 1730786828,
        "pre_init": false, "severity": "warning", "generator": "2000", "sensor_type": 4,
        "sensor_type_name": "Fan", "sensor": 16, "event_type": 1,
        "event_type_name": "threshold", "event_offset": 0,
        "event": "Lower Non-critical - going low", "cause": null, "direction": "asserted",
        "event_data": "500102", "manufacturer": null, "oem_data": null, "partitions": [],
        "part_number": null, "serial_number": null, "next_id": 65535,
        "record": "0100020cb62967200004041001500102"})");
    Json actual = events[0];
    // The store appends bytes of its own to a record of 16.
    EXPECT_EQ(actual["extended"], "0d");
    actual.erase("extended");
    EXPECT_EQ(actual, expected);
}

TEST_F(SelList, GivesTheCauseOfAnEvent)
{
    initialise();
    ASSERT_EQ(sel({"add", "-"}, eventAt(1, TIME_2, "21406ff0010c")).status, 0);
    const std::vector<Json> events = listed({});
    ASSERT_EQ(events.size(), 1U);
    EXPECT_EQ(events[0]["event"], "Fault Status asserted: Drive Array, slot 12");
    EXPECT_EQ(events[0]["cause"], "Drive Array, slot 12");
}

TEST_F(SelList, GivesTheFieldsThatAreAskedFor)
{
    initialise();
    ASSERT_EQ(sel({"add", "-"}, eventAt(1, TIME_2, FAN_WARNING)).status, 0);
    EXPECT_EQ(sel({"list", "--ndjson", "--fields", "id,SEV,event_o"}).out,
              "{\"id\":1,\"severity\":\"warning\",\"event_offset\":0}\n");
    EXPECT_EQ(sel({"list", "--csv", "--fields", "event,id"}).out,
              "event,id\r\nLower Non-critical - going low,1\r\n");
    const Json more = listed({"--fields", "+image"})[0];
    EXPECT_EQ(more["image"].get<std::string>(),
              "ffff0100020cb629672000040410015001020d" + std::string(238, '0'));
    EXPECT_EQ(more.size(), listed({})[0].size() + 1);
    EXPECT_EQ(listed({"--fields", "+id"}), listed({}));
    expectRefused(2, {"list", "--json", "--fields", "id,colour"},
                  "--fields: unknown or ambiguous \"colour\" (expected board, log, id, time,");
    expectRefused(2, {"list", "--json", "--fields", "sev,sensor_"},
                  "unknown or ambiguous \"sensor_\"");
    expectRefused(2, {"list", "--json", "--fields", ","}, "unknown or ambiguous \"\"");
    expectRefused(2, {"list", "--json", "--fields", "+"}, "--fields: expected some of board,");
    expectRefused(2, {"list", "--fields", "id"}, "--fields is for --json, --ndjson and --csv");
}

TEST_F(SelList, ShowsTheColumnsThatAreAskedFor)
{
    initialise();
    ASSERT_EQ(sel({"add", "-"}, eventAt(1, TIME_2, FAN_WARNING)).status, 0);
    EXPECT_EQ(sel({"list", "--columns", "id,event"}).out,
              "ID     EVENT\n0001h  Lower Non-critical - going low\n");
    // Also fields that the table usually does not have.
    EXPECT_EQ(sel({"list", "--columns", "event,source,record_type"}).out,
              "EVENT                                     SOURCE  RECORD TYPE\n"
              "Lower Non-critical - going low            -       2\n");
    EXPECT_EQ(sel({"list", "--wide"}).out, sel({"list"}).out);
    expectRefused(2, {"list", "--columns", "colour"}, "--columns: unknown or ambiguous \"colour\"");
    for (const Arguments& choice : {Arguments{"--columns", "id"}, {"--wide"}}) {
        Arguments words = {"list", "--json"};
        words.insert(words.end(), choice.begin(), choice.end());
        expectRefused(2, words, "--columns and --wide are for tables; --fields chooses what");
    }
}

TEST_F(SelList, GivesTimesInAZoneWithTheirOffset)
{
    initialise();
    ASSERT_EQ(sel({"add", "-"}, eventAt(1, "ccb52967", THERMAL_TRIP) +
                                    eventAt(2, "feffffff", THERMAL_TRIP) +
                                    eventAt(3, "770e0000", THERMAL_TRIP))
                  .status,
              0);
    const Arguments times = {"--columns", "id,time"};
    const auto inZone = [&](const Arguments& zone, const Arguments& choice) {
        Arguments words = {"list"};
        words.insert(words.end(), zone.begin(), zone.end());
        words.insert(words.end(), choice.begin(), choice.end());
        return sel(words).out;
    };
    EXPECT_EQ(inZone({"--tz", "+05:30"}, times), "ID     TIME\n"
                                                 "0001h  2024-11-05 11:36:04+05:30\n"
                                                 "0002h  2106-02-07 11:58:14+05:30\n"
                                                 "0003h  pre-init +3703 s\n");
    EXPECT_EQ(inZone({"--tz", "-01:00"}, {"--ndjson", "--fields", "time,timestamp"}),
              "{\"time\":\"2024-11-05T05:06:04-01:00\",\"timestamp\":1730786764}\n"
              "{\"time\":\"2106-02-07T05:28:14-01:00\",\"timestamp\":4294967294}\n"
              "{\"time\":null,\"timestamp\":3703}\n");
    EXPECT_EQ(inZone({"--tz", "UTC"}, times), inZone({}, times));
    // Also what --since and --until say.
    EXPECT_EQ(
        inZone({"--tz", "+05:30", "--until", "2024-11-05 11:36:04"}, {"--csv", "--fields", "id"}),
        "id\r\n1\r\n");
    EXPECT_EQ(
        inZone({"--tz", "+05:30", "--until", "2024-11-05 11:36:03"}, {"--csv", "--fields", "id"}),
        "id\r\n");
}

TEST_F(SelList, TakesTheZoneOfTheMachine)
{
    initialise();
    // Winter and summer.
    ASSERT_EQ(sel({"add", "-"},
                  eventAt(1, "ccb52967", THERMAL_TRIP) + eventAt(2, "80b38166", THERMAL_TRIP))
                  .status,
              0);
    const Outcome outcome =
        run(ourCommand({"--root", root.path(), "sel", "list", "--local", "--columns", "time"}), "",
            {"TZ=CET-1CEST,M3.5.0,M10.5.0/3"});
    EXPECT_EQ(outcome.out, "TIME\n2024-11-05 07:06:04+01:00\n2024-06-30 21:35:28+02:00\n");
    EXPECT_EQ(outcome.err, "");
}

TEST_F(SelList, RefusesAZoneThatTheSystemDoesNotKnow)
{
    initialise();
    for (const char* const zone :
         {"Nowhere/Town", "", "/etc/passwd", "../zoneinfo/UTC", "+25:00", "+1", "."}) {
        expectRefused(2, {"list", "--tz", zone},
                      std::string("--tz: unknown time zone \"") + zone +
                          "\" (expected a name such as "
                          "Europe/Berlin, or an offset such as +01:00)");
    }
    expectRefused(2, {"list", "--tz", "UTC", "--local"}, "--local and --tz exclude each other");
}

TEST_F(SelList, WritesTheSameEventsInEveryFormat)
{
    initialise();
    ASSERT_EQ(sel({"add", EVENTS}).status, 0);
    const Json array = Json::parse(sel({"list", "--json"}).out);
    EXPECT_EQ(array, Json(listed({})));
    const std::string csv = sel({"list", "--csv"}).out;
    EXPECT_EQ(std::count(csv.begin(), csv.end(), '\n'), 167);
    EXPECT_EQ(csv.find("board,log,file,slot,state,source,id,record_type,kind,time,"), 0U);
    const std::string table = sel({"list"}).out;
    EXPECT_EQ(std::count(table.begin(), table.end(), '\n'), 167);
    EXPECT_EQ(sel({"list", "--json", "--board", "1"}).out, "[]\n");
}

TEST_F(SelList, ChoosesEvents)
{
    initialise();
    const std::string records = eventAt(1, TIME_1, THERMAL_TRIP) + eventAt(2, TIME_2, FAN_WARNING) +
                                eventAt(3, "00010000", FAN_INSERTED) +
                                hexRecord(4, "e00102030405060708090a0b0c0d");
    ASSERT_EQ(sel({"add", "-", "--partitions", "1"}, records).status, 0);
    ASSERT_EQ(sel({"add", "-"}, eventAt(5, TIME_2, THERMAL_TRIP)).status, 0);
    EXPECT_EQ(listedIds({}), Ids({1, 2, 3, 4, 5}));
    EXPECT_EQ(listedIds({"--severity", "warning"}), Ids({1, 2, 5}));
    EXPECT_EQ(listedIds({"--severity", "critical"}), Ids({1, 5}));
    EXPECT_EQ(listedIds({"--severity", "informational"}), Ids({1, 2, 3, 5}));
    EXPECT_EQ(listedIds({"--since", "2024-11-05T06:07:08Z"}), Ids({2, 5}));
    EXPECT_EQ(sel({"list", "--since", "2024-11-05"}).err,
              "recordkit: 2 events without a date are not shown: --since and --until cannot place "
              "them\n");
    EXPECT_EQ(
        sel({"list", "--since", "2024-11-05", "--sensor-type", "fan"}).err,
        "recordkit: 1 event without a date is not shown: --since and --until cannot place it\n");
    EXPECT_EQ(listedIds({"--until", "2024-11-05T06:07:07Z"}), Ids({1}));
    EXPECT_EQ(listedIds({"--since", "2024-11-05", "--until", "2024-11-06"}), Ids({1, 2, 5}));
    EXPECT_EQ(listedIds({"--sensor-type", "fan"}), Ids({2, 3}));
    EXPECT_EQ(listedIds({"--severity", "CRIT"}), Ids({1, 5}));
    EXPECT_EQ(listedIds({"--severity", "unrated"}), Ids());
    EXPECT_EQ(listedIds({"--since", "2024-11-05", "--until", "2024-11-05"}), Ids({1, 2, 5}));
    EXPECT_EQ(listedIds({"--since", "2024-11-05T07:07:08+01:00"}), Ids({2, 5}));
    EXPECT_EQ(listedIds({"--since", "1730786828"}), Ids({2, 5}));
    EXPECT_EQ(listedIds({"--since", "-12h"}), Ids());
    EXPECT_EQ(listedIds({"--sensor-type", "0x07"}), Ids({1, 5}));
    EXPECT_EQ(listedIds({"--partition", "1"}), Ids({1, 2, 3, 4}));
    EXPECT_EQ(listedIds({"--partition", "0"}), Ids());
    EXPECT_EQ(listedIds({"--last", "2"}), Ids({4, 5}));
    EXPECT_EQ(listedIds({"--last", "9", "--sensor-type", "fan"}), Ids({2, 3}));
}

TEST_F(SelList, FindsUnratedEventsOnlyWhenAskedFor)
{
    initialise();
    // Offset 1 of physical security has no severity in the map.
    ASSERT_EQ(
        sel({"add", "-"}, eventAt(1, TIME_1, "05706f01ffff") + eventAt(2, TIME_2, FAN_WARNING))
            .status,
        0);
    EXPECT_EQ(listedIds({"--severity", "unrated"}), Ids({1}));
    EXPECT_EQ(listedIds({"--severity", "informational"}), Ids({2}));
    EXPECT_EQ(listed({}).at(0)["severity"], "unrated");
}

TEST_F(SelList, RefusesFiltersThatMakeNoSense)
{
    initialise();
    expectRefused(2, {"list", "--severity", "bad"}, "(expected unrated, informational");
    expectRefused(2, {"list", "--since", "soon"}, "(expected a time such as 2024-11-05");
    expectRefused(2, {"list", "--until", "2024-02-30"}, "(expected a time such as 2024-11-05");
    expectRefused(2, {"list", "--sensor-type", "toaster"},
                  "(expected a number from 0 to 255 or one of Temperature, Voltage");
    expectRefused(2, {"list", "--partition", "16"}, "(expected 0 to 15)");
    expectRefused(2, {"list", "--follow", "--json"}, "--ndjson");
}

TEST_F(SelList, GoesThroughAllBoards)
{
    initialise();
    ASSERT_EQ(sel({"add", "-", "--board", "2"}, eventAt(7, TIME_1, THERMAL_TRIP)).status, 0);
    ASSERT_EQ(sel({"add", "-", "--board", "0"}, eventAt(9, TIME_1, THERMAL_TRIP)).status, 0);
    EXPECT_EQ(listedIds({"--board", "all"}), Ids({9, 7}));
}

TEST_F(SelList, MergesBoardsByTime)
{
    initialise();
    const std::string preInit = "00010000";
    ASSERT_EQ(sel({"add", "-", "--board", "0"},
                  eventAt(1, preInit, THERMAL_TRIP) + eventAt(2, TIME_1, THERMAL_TRIP) +
                      eventAt(3, preInit, THERMAL_TRIP) + eventAt(4, TIME_2, THERMAL_TRIP))
                  .status,
              0);
    // 2024-11-05 06:06:05; then the clock was set back to 05:06:05.
    ASSERT_EQ(sel({"add", "-", "--board", "1"},
                  eventAt(11, "cdb52967", THERMAL_TRIP) + eventAt(12, "bda72967", THERMAL_TRIP))
                  .status,
              0);
    EXPECT_EQ(listedIds({"--board", "all"}), Ids({1, 2, 3, 11, 12, 4}));
    EXPECT_EQ(listedIds({"--board", "all", "--last", "1"}), Ids({4}));
    EXPECT_EQ(listedIds({"--board", "all", "--since", "2024-11-05T06:06:05Z"}), Ids({11, 4}));
    EXPECT_EQ(listedIds({"--board", "all", "--until", "2024-11-05T06:06:05Z", "--last", "2"}),
              Ids({11, 12}));
}

TEST_F(SelList, OfADamagedLogShowsTheRestAndIsStatusOne)
{
    initialise();
    fill(3);
    ASSERT_EQ(sel({"rotate", "--board", "1"}).status, 0);
    fill(2, 4);
    patchFile(kept(1, 1), 3 * SLOT + 9, {0});
    const Outcome outcome = sel({"list", "--board", "1", "--ndjson"});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(std::count(outcome.out.begin(), outcome.out.end(), '\n'), 5);
    EXPECT_NE(outcome.err.find(kept(1, 1) + ": slot 3 (offset 414) has record id FFFFh"),
              std::string::npos)
        << outcome.err;
}

TEST_F(SelList, OfAnAbsentLogIsStatusOne)
{
    expectRefused(1, {"list"},
                  "cannot be read: No such file or directory; run \"recordkit sel init\"\n");
}

namespace {

/// A listing that follows a board, read line by line.
class Following {
public:
    explicit Following(const Arguments& words)
    {
        int ends[2];
        if (::pipe(ends) != 0) {
            return;
        }
        child = ::fork();
        if (child == 0) {
            ::dup2(ends[1], STDOUT_FILENO);
            ::close(ends[0]);
            execute(words);
        }
        ::close(ends[1]);
        output = ::fdopen(ends[0], "r");
    }
    ~Following()
    {
        ::kill(child, SIGTERM);
        ::waitpid(child, nullptr, 0);
        std::fclose(output);
    }
    Following(const Following&) = delete;
    Following& operator=(const Following&) = delete;

    /// The id of the next event; waits for it.
    int nextId()
    {
        char* line = nullptr;
        std::size_t size = 0;
        const int id =
            ::getline(&line, &size, output) > 0 ? Json::parse(line)["id"].get<int>() : -1;
        std::free(line);
        return id;
    }

private:
    pid_t child = -1;
    std::FILE* output = nullptr;
};

}

TEST_F(SelList, FollowsABoardAcrossARotation)
{
    initialise();
    fill(3);
    Following listing(ourCommand({"--root", root.path(), "sel", "list", "--board", "1", "--follow",
                                  "--ndjson", "--last", "2"}));
    EXPECT_EQ(listing.nextId(), 2);
    EXPECT_EQ(listing.nextId(), 3);
    ASSERT_EQ(sel({"add", "-", "--board", "1"}, eventAt(4, TIME_2, THERMAL_TRIP)).status, 0);
    EXPECT_EQ(listing.nextId(), 4);
    ASSERT_EQ(sel({"rotate", "--board", "1"}).status, 0);
    ASSERT_EQ(sel({"add", "-", "--board", "1"}, eventAt(5, TIME_2, THERMAL_TRIP)).status, 0);
    EXPECT_EQ(listing.nextId(), 5);
    ASSERT_EQ(sel({"add", "-", "--board", "2"}, eventAt(6, TIME_2, THERMAL_TRIP)).status, 0);
    ASSERT_EQ(sel({"add", "-", "--board", "1"}, eventAt(7, TIME_2, THERMAL_TRIP)).status, 0);
    EXPECT_EQ(listing.nextId(), 7);
}

TEST_F(SelList, FollowingReportsDamageOnce)
{
    initialise();
    fill(1);
    writeFile(root.at("/var/tav/fmem/ipmi/sb1_bmc_sel3"), Bytes(100, 0));
    const std::string errors = root.at("/errors");
    Arguments words = {"sh", "-c", "exec \"$@\" 2>" + errors, "sh"};
    const Arguments list =
        ourCommand({"--root", root.path(), "sel", "list", "--board", "1", "--follow", "--ndjson"});
    words.insert(words.end(), list.begin(), list.end());
    Following listing(words);
    EXPECT_EQ(listing.nextId(), 1);
    for (int id = 2; id < 5; ++id) {
        ASSERT_EQ(sel({"add", "-", "--board", "1"},
                      eventAt(static_cast<unsigned int>(id), TIME_2, THERMAL_TRIP))
                      .status,
                  0);
        EXPECT_EQ(listing.nextId(), id);
    }
    const Bytes text = readFile(errors);
    const std::string reported(text.begin(), text.end());
    const std::string name = "sb1_bmc_sel3: ";
    EXPECT_NE(reported.find(name), std::string::npos) << reported;
    EXPECT_EQ(reported.find(name), reported.rfind(name)) << reported;
}
