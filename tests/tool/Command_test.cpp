// SPDX-License-Identifier: Apache-2.0
// The command as a user runs it: a process with arguments, files, output and an exit status.
#include <cstdio>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <pty.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "support/Failures.h"
#include "support/Process.h"
#include "support/ScratchRoot.h"

using namespace testing_support;
using Json = nlohmann::json;

namespace {

constexpr std::size_t SLOT = 138;
constexpr std::size_t FULL_FILE = 110400;
const std::string EVENTS = RECORDKIT_EXAMPLE_DATA "/sel/events.raw";

/// A hex line of 16 record bytes.
std::string hexRecord(unsigned int id, const std::string& rest)
{
    char text[16];
    std::snprintf(text, sizeof text, "%02x%02x", id & 0xFF, id >> 8);
    return text + rest + "\n";
}

/// A system event at a time (little-endian hex digits).
std::string eventAt(unsigned int id, const std::string& time, const std::string& sensorAndEvent)
{
    return hexRecord(id, "02" + time + "200004" + sensorAndEvent);
}

const std::string TIME_1 = "ccb52967"; // 2024-11-05 06:06:04
const std::string TIME_2 = "0cb62967"; // 2024-11-05 06:07:08
const std::string THERMAL_TRIP = "07706f01ffff";
const std::string FAN_WARNING = "041001500102";
const std::string FAN_INSERTED = "0410080103ff";

class Command : public testing::Test {
protected:
    Outcome sel(const Arguments& arguments, const std::string& input = "") const
    {
        Arguments words = {"--root", root.path(), "sel"};
        words.insert(words.end(), arguments.begin(), arguments.end());
        return run(ourCommand(words), input);
    }
    void initialise() const { ASSERT_EQ(sel({"init"}).status, 0); }
    void fill(unsigned int count) const
    {
        std::string lines;
        for (unsigned int id = 1; id <= count; ++id) {
            lines += eventAt(id, TIME_1, THERMAL_TRIP);
        }
        const Outcome outcome = sel({"add", "-", "--board", "1"}, lines);
        ASSERT_EQ(outcome.status, 0) << outcome.err;
    }
    std::string working(int board) const
    {
        return root.at("/tmp/sb" + std::to_string(board) + "_bmc_sel0");
    }
    std::string kept(int board, int index) const
    {
        return root.at("/var/tav/fmem/ipmi/sb" + std::to_string(board) + "_bmc_sel" +
                       std::to_string(index));
    }
    /// The objects of an ndjson listing.
    std::vector<Json> listed(const Arguments& options) const
    {
        Arguments words = {"list", "--ndjson"};
        words.insert(words.end(), options.begin(), options.end());
        const Outcome outcome = sel(words);
        EXPECT_EQ(outcome.status, 0) << outcome.err;
        std::vector<Json> objects;
        std::istringstream lines(outcome.out);
        for (std::string line; std::getline(lines, line);) {
            objects.push_back(Json::parse(line));
        }
        return objects;
    }
    std::vector<int> listedIds(const Arguments& options) const
    {
        std::vector<int> ids;
        for (const Json& object : listed(options)) {
            ids.push_back(object["id"].get<int>());
        }
        return ids;
    }
    /// Every file below the root with its content.
    std::map<std::string, Bytes> snapshot() const
    {
        std::map<std::string, Bytes> files;
        for (const auto& entry : std::filesystem::recursive_directory_iterator(root.path())) {
            files[entry.path().string()] =
                entry.is_regular_file() ? readFile(entry.path().string()) : Bytes();
        }
        return files;
    }
    /// A run that must be refused, and change nothing.
    void expectRefused(int status, const Arguments& arguments, const std::string& message,
                       const std::string& input = "") const
    {
        const auto before = snapshot();
        const Outcome outcome = sel(arguments, input);
        EXPECT_EQ(outcome.status, status) << outcome.out << outcome.err;
        EXPECT_NE(outcome.err.find(message), std::string::npos) << outcome.err;
        EXPECT_EQ(snapshot(), before);
    }

    ScratchRoot root;
};

using Ids = std::vector<int>;

/// Runs a program with a terminal for its streams; false if none is available.
bool runOnTerminal(const Arguments& words, const Arguments& environment, std::string& shown)
{
    int terminal = -1;
    const pid_t child = ::forkpty(&terminal, nullptr, nullptr, nullptr);
    if (child == -1) {
        return false;
    }
    if (child == 0) {
        ::unsetenv("NO_COLOR");
        execute(words, environment);
    }
    shown.clear();
    char piece[4096];
    // The terminal reports an error when its last user is gone.
    for (ssize_t count = 0; (count = ::read(terminal, piece, sizeof piece)) > 0;) {
        shown.append(piece, static_cast<std::size_t>(count));
    }
    ::close(terminal);
    ::waitpid(child, nullptr, 0);
    return true;
}

}

TEST_F(Command, TellsItsVersionAndItsHelp)
{
    EXPECT_EQ(run(ourCommand({"--version"})).out, "recordkit 1.0.0\n");
    const Outcome help = run(ourCommand({"--help"}));
    EXPECT_EQ(help.status, 0);
    EXPECT_NE(help.out.find("Subcommands:"), std::string::npos);
}

TEST_F(Command, EveryHelpHasAnExample)
{
    const Arguments commands[] = {{"sel"},
                                  {"sel", "init"},
                                  {"sel", "add"},
                                  {"sel", "list"},
                                  {"sel", "show"},
                                  {"sel", "status"},
                                  {"sel", "check"},
                                  {"sel", "rotate"},
                                  {"sel", "backup"},
                                  {"sel", "restore"},
                                  {"sel", "clear"},
                                  {"severity"},
                                  {}};
    for (Arguments words : commands) {
        words.push_back("--help");
        const Outcome help = run(ourCommand(words));
        EXPECT_EQ(help.status, 0);
        EXPECT_NE(help.out.find("Example:\n  "), std::string::npos) << help.out;
    }
}

TEST_F(Command, WrongUsageIsStatusTwo)
{
    for (const Arguments& words :
         {Arguments{}, Arguments{"toast"}, Arguments{"sel"}, Arguments{"sel", "toast"},
          Arguments{"sel", "list", "--toast"}, Arguments{"sel", "list", "--last", "0"},
          Arguments{"sel", "list", "--json", "--csv"}, Arguments{"--boards", "0", "sel", "list"},
          Arguments{"--boards", "257", "sel", "list"}, Arguments{"--root", "a b", "sel", "list"},
          Arguments{"--root", "/a;b", "sel", "list"}, Arguments{"severity"}}) {
        const Outcome outcome = run(ourCommand(words));
        EXPECT_EQ(outcome.status, 2) << outcome.out << outcome.err;
        EXPECT_FALSE(outcome.err.empty());
    }
}

TEST_F(Command, InitCreatesFoldersAndWorkingFiles)
{
    std::filesystem::remove_all(root.at("/tmp"));
    std::filesystem::remove_all(root.at("/var"));
    const Outcome outcome =
        run(ourCommand({"--root", root.path(), "--boards", "2", "sel", "init"}));
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_EQ(outcome.out,
              "board 0: " + working(0) + " created\nboard 1: " + working(1) + " created\n");
    EXPECT_EQ(readFile(working(1)), Bytes(FULL_FILE, 0xFF));
    EXPECT_FALSE(fileExists(working(2)));
    EXPECT_TRUE(fileExists(root.at("/var/tav/fmem/ipmi")));
}

TEST_F(Command, InitKeepsAndRestores)
{
    initialise();
    fill(3);
    ASSERT_EQ(sel({"backup", "--board", "1"}).status, 0);
    std::filesystem::remove(working(1));
    EXPECT_NE(sel({"init"}).out.find("board 1: " + working(1) + " taken from its backup"),
              std::string::npos);
    EXPECT_EQ(listedIds({"--board", "1"}), Ids({1, 2, 3}));
    EXPECT_NE(sel({"init"}).out.find("board 0: " + working(0) + " kept"), std::string::npos);
}

TEST_F(Command, InitOnAnUnwritableRootIsStatusThree)
{
    writeFile(root.at("/file"), "x");
    const Outcome outcome = run(ourCommand({"--root", root.at("/file"), "sel", "init"}));
    EXPECT_EQ(outcome.status, 3);
    EXPECT_NE(outcome.err.find("cannot be created: Not a directory"), std::string::npos);
}

TEST_F(Command, AddStoresTheSampleEvents)
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

TEST_F(Command, AddCreatesAMissingWorkingFile)
{
    EXPECT_EQ(sel({"add", "-"}, eventAt(1, TIME_1, THERMAL_TRIP)).out,
              "1 event stored on board 0\n");
    EXPECT_EQ(listedIds({}), Ids({1}));
}

TEST_F(Command, AddFillsTheOemData)
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

TEST_F(Command, AddRefusesBadOemData)
{
    initialise();
    const std::string record = eventAt(1, TIME_1, THERMAL_TRIP);
    expectRefused(2, {"add", "-", "--partitions", "4"}, "partitions 0 to 3", record);
    expectRefused(2, {"add", "-", "--partitions", ""}, "--partitions", record);
    expectRefused(2, {"add", "-", "--part-number", "X"}, "2 to 18", record);
    expectRefused(2, {"add", "-", "--part-number", "1234567890123456789"}, "2 to 18", record);
    expectRefused(2, {"add", "-", "--serial-number", "1234567890123"}, "2 to 12", record);
    expectRefused(2, {"add", "-", "--serial-number", "a\tb"}, "2 to 12", record);
    expectRefused(2, {"add", "-", "--format", "toast"}, "--format", record);
}

TEST_F(Command, AddTakesWhatListWrites)
{
    initialise();
    ASSERT_EQ(sel({"add", EVENTS, "--board", "1", "--partitions", "2"}).status, 0);
    const Outcome listing = sel({"list", "--board", "1", "--ndjson"});
    ASSERT_EQ(sel({"add", "-", "--board", "2", "--ndjson"}, listing.out).status, 0);
    EXPECT_EQ(readFile(working(2)), readFile(working(1)));
}

TEST_F(Command, AddRenumbersBehindTheLastRecord)
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

TEST_F(Command, AddRefusesTheIdOfAnEmptySlot)
{
    initialise();
    expectRefused(1, {"add", "-"}, "standard input, line 2: record id FFFFh marks an empty slot",
                  eventAt(1, TIME_1, THERMAL_TRIP) + eventAt(0xFFFF, TIME_1, THERMAL_TRIP));
}

TEST_F(Command, AddStopsAtAFullFileAndSaysWhereTheRestBegins)
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

TEST_F(Command, AddRotatesAFullFileWhenToldTo)
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

TEST_F(Command, AddRefusesWrongInput)
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
    expectRefused(2, {"add", EVENTS, "--board", "300"}, "\"300\" is not a board, expected 0 to 3");
    expectRefused(2, {"add", EVENTS, "--board", "-1"}, "is not a board");
}

TEST_F(Command, AddToAnUnwritableRootIsStatusThree)
{
    writeFile(root.at("/file"), "x");
    const Outcome outcome = run(ourCommand({"--root", root.at("/file"), "sel", "add", EVENTS}));
    EXPECT_EQ(outcome.status, 3);
    EXPECT_FALSE(outcome.err.empty());
    std::filesystem::remove_all(root.at("/tmp"));
    EXPECT_EQ(sel({"add", EVENTS}).status, 3);
}

TEST_F(Command, AddToADamagedFileIsStatusOne)
{
    initialise();
    fill(2);
    patchFile(working(1), 2 * SLOT + 9, {0});
    expectRefused(1, {"add", EVENTS, "--board", "1"}, "is damaged");
}

TEST_F(Command, EveryBoardIsRefusedThatTheMachineDoesNotHave)
{
    initialise();
    for (const char* name :
         {"list", "show", "status", "check", "rotate", "backup", "restore", "clear"}) {
        expectRefused(2, {name, "--board", "300"}, "is not a board, expected 0 to 3");
        expectRefused(2, {name, "--board", "4"}, "is not a board, expected 0 to 3");
        expectRefused(2, {name, "--board", "x"}, "is not a board, expected 0 to 3");
    }
}

TEST_F(Command, ListIsATableWithoutColourWhenPiped)
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

TEST_F(Command, ListIsColouredOnATerminal)
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

TEST_F(Command, AddDrawsAProgressBarOnATerminal)
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

TEST_F(Command, ListGivesStableFieldNames)
{
    initialise();
    ASSERT_EQ(sel({"add", "-"}, eventAt(1, TIME_2, FAN_WARNING)).status, 0);
    const std::vector<Json> events = listed({});
    ASSERT_EQ(events.size(), 1U);
    const Json expected = Json::parse(R"({
        "board": 0, "log": 1, "file": 0, "slot": 0, "id": 1, "record_type": 2,
        "kind": "system-event", "time": "2024-11-05T06:07:08Z", "timestamp": 1730786828,
        "pre_init": false, "severity": "warning", "generator": "2000", "sensor_type": 4,
        "sensor_type_name": "Fan", "sensor": 16, "event_type": 1,
        "event_type_name": "threshold", "event_offset": 0,
        "event": "Lower Non-critical - going low", "direction": "asserted",
        "event_data": "500102", "manufacturer": null, "oem_data": null, "partitions": [],
        "part_number": null, "serial_number": null})");
    Json actual = events[0];
    EXPECT_EQ(actual["image"].get<std::string>().substr(0, 36),
              "ffff0100020cb62967200004041001500102");
    EXPECT_EQ(actual["image"].get<std::string>().size(), 276U);
    actual.erase("image");
    EXPECT_EQ(actual, expected);
}

TEST_F(Command, EveryFieldNameIsInTheManualPage)
{
    initialise();
    ASSERT_EQ(sel({"add", "-"}, eventAt(1, TIME_2, FAN_WARNING)).status, 0);
    const Bytes bytes = readFile(RECORDKIT_MANUAL);
    const std::string page(bytes.begin(), bytes.end());
    const std::string fields = page.substr(page.find(".SH FIELDS"), page.find(".SH EXIT STATUS"));
    const std::vector<Json> events = listed({});
    for (const auto& field : events.at(0).items()) {
        EXPECT_NE(fields.find(".TP\n.B " + field.key() + "\n"), std::string::npos) << field.key();
    }
}

TEST_F(Command, ListWritesTheSameEventsInEveryFormat)
{
    initialise();
    ASSERT_EQ(sel({"add", EVENTS}).status, 0);
    const Json array = Json::parse(sel({"list", "--json"}).out);
    EXPECT_EQ(array, Json(listed({})));
    const std::string csv = sel({"list", "--csv"}).out;
    EXPECT_EQ(std::count(csv.begin(), csv.end(), '\n'), 167);
    EXPECT_EQ(csv.find("board,log,file,slot,id,record_type,kind,time,"), 0U);
    const std::string table = sel({"list"}).out;
    EXPECT_EQ(std::count(table.begin(), table.end(), '\n'), 167);
    EXPECT_EQ(sel({"list", "--json", "--board", "1"}).out, "[]\n");
}

TEST_F(Command, ListChoosesEvents)
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
    EXPECT_EQ(listedIds({"--until", "2024-11-05T06:07:07Z"}), Ids({1}));
    EXPECT_EQ(listedIds({"--since", "2024-11-05", "--until", "2024-11-06"}), Ids({1, 2, 5}));
    EXPECT_EQ(listedIds({"--sensor-type", "fan"}), Ids({2, 3}));
    EXPECT_EQ(listedIds({"--sensor-type", "0x07"}), Ids({1, 5}));
    EXPECT_EQ(listedIds({"--partition", "1"}), Ids({1, 2, 3, 4}));
    EXPECT_EQ(listedIds({"--partition", "0"}), Ids());
    EXPECT_EQ(listedIds({"--last", "2"}), Ids({4, 5}));
    EXPECT_EQ(listedIds({"--last", "9", "--sensor-type", "fan"}), Ids({2, 3}));
}

TEST_F(Command, ListRefusesFiltersThatMakeNoSense)
{
    initialise();
    expectRefused(2, {"list", "--severity", "bad"}, "is none of informational");
    expectRefused(2, {"list", "--since", "yesterday"}, "is not a time");
    expectRefused(2, {"list", "--until", "2024-02-30"}, "is not a time");
    expectRefused(2, {"list", "--sensor-type", "toaster"}, "sensor type");
    expectRefused(2, {"list", "--partition", "16"}, "expected 0 to 15");
    expectRefused(2, {"list", "--follow", "--json"}, "--ndjson");
}

TEST_F(Command, ListGoesThroughAllBoards)
{
    initialise();
    ASSERT_EQ(sel({"add", "-", "--board", "2"}, eventAt(7, TIME_1, THERMAL_TRIP)).status, 0);
    ASSERT_EQ(sel({"add", "-", "--board", "0"}, eventAt(9, TIME_1, THERMAL_TRIP)).status, 0);
    EXPECT_EQ(listedIds({"--board", "all"}), Ids({9, 7}));
}

TEST_F(Command, ListOfADamagedLogShowsTheRestAndIsStatusOne)
{
    initialise();
    fill(3);
    ASSERT_EQ(sel({"rotate", "--board", "1"}).status, 0);
    fill(2);
    patchFile(kept(1, 1), 3 * SLOT + 9, {0});
    const Outcome outcome = sel({"list", "--board", "1", "--ndjson"});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(std::count(outcome.out.begin(), outcome.out.end(), '\n'), 5);
    EXPECT_NE(outcome.err.find(kept(1, 1) + ": slot 3 (offset 414) has record id FFFFh"),
              std::string::npos)
        << outcome.err;
}

TEST_F(Command, ListOfAnAbsentLogIsStatusOne)
{
    expectRefused(1, {"list"}, "cannot be read: No such file or directory");
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

TEST_F(Command, ListFollowsABoardAcrossARotation)
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

TEST_F(Command, ShowExplainsEveryFieldAndByte)
{
    initialise();
    ASSERT_EQ(sel({"add", "-", "--partitions", "0,2", "--part-number", "PN-1"},
                  eventAt(0x1A, TIME_2, FAN_WARNING))
                  .status,
              0);
    const Outcome shown = sel({"show", "0x1A"});
    EXPECT_EQ(shown.status, 0) << shown.err;
    for (const char* part :
         {"record id         001Ah\n", "time              2024-11-05 06:07:08\n",
          "severity          warning\n", "generator         slave address 20h, LUN 0, channel 0\n",
          "sensor type       04h Fan\n", "event             Lower Non-critical - going low\n",
          "event data        50h 01h 02h (2: reading, 3: threshold)\n", "partitions        0, 2\n",
          "part number       PN-1\n", "     5  0c b6 29 67",
          "    10  00                                               generator_id_2, lun\n",
          "    15  50                                               event_data_1\n",
          "    87  05 00                                            partition_bitmask\n",
          "   134  00 00 00 00                                      carried unchanged\n"}) {
        EXPECT_NE(shown.out.find(part), std::string::npos) << part << "\n" << shown.out;
    }
    EXPECT_EQ(sel({"show", "26"}).out, shown.out);
    EXPECT_EQ(sel({"show", "--log", "1"}).out, shown.out);
    EXPECT_EQ(Json::parse(sel({"show", "26", "--json"}).out)["id"], 26);
}

TEST_F(Command, ShowLetsNoControlCharacterOfARecordThrough)
{
    initialise();
    std::string oem(112, '0');           // 56 extended bytes as hex
    oem.replace(30, 12, "c5411b5b319b"); // part number: A, ESC, [, 1, CSI
    const std::string image = "ffff" + eventAt(1, TIME_2, FAN_WARNING).substr(0, 32) + oem;
    ASSERT_EQ(sel({"add", "-"}, image).status, 0);
    EXPECT_NE(sel({"show", "1"}).out.find("part number       A?[1?\n"), std::string::npos);
    EXPECT_EQ(listed({}).at(0)["part_number"], "A\x1b[1\xc2\x9b");
}

TEST_F(Command, ShowDumpsEveryByteOfEveryKindOfRecordOnce)
{
    initialise();
    const std::string records =
        eventAt(1, TIME_1, FAN_WARNING) + hexRecord(2, "c0" + TIME_1 + "570100010203040506") +
        hexRecord(3, "e00102030405060708090a0b0c0d") + hexRecord(4, "050102030405060708090a0b0c0d");
    ASSERT_EQ(sel({"add", "-"}, records).status, 0);
    for (int log = 1; log <= 4; ++log) {
        const std::string out = sel({"show", "--log", std::to_string(log)}).out;
        std::istringstream lines(out.substr(out.find("offset  bytes")));
        std::string line;
        std::getline(lines, line);
        unsigned int next = 0;
        while (std::getline(lines, line)) {
            EXPECT_EQ(std::stoul(line.substr(0, 6)), next) << out;
            std::istringstream bytes(line.substr(8, 47));
            for (std::string byte; bytes >> byte;) {
                ++next;
            }
        }
        EXPECT_EQ(next, 138U);
    }
}

TEST_F(Command, ShowFindsTheNewestOfSeveralAndEventsInRotatedFiles)
{
    initialise();
    ASSERT_EQ(sel({"add", "-"}, eventAt(1, TIME_1, THERMAL_TRIP)).status, 0);
    ASSERT_EQ(sel({"rotate"}).status, 0);
    ASSERT_EQ(sel({"add", "-"}, eventAt(2, TIME_1, THERMAL_TRIP)).status, 0);
    EXPECT_NE(sel({"show", "1"}).out.find("stored in         sel1, slot 0"), std::string::npos);
    ASSERT_EQ(sel({"add", "-"}, eventAt(1, TIME_1, THERMAL_TRIP)).status, 0);
    EXPECT_NE(sel({"show", "1"}).out.find("stored in         sel0, slot 1"), std::string::npos);
    EXPECT_NE(sel({"show", "--log", "1"}).out.find("sel1, slot 0"), std::string::npos);
}

TEST_F(Command, ShowRefusesWhatIsNotThere)
{
    initialise();
    fill(2);
    expectRefused(1, {"show", "9", "--board", "1"}, "board 1 has no event with record id 0009h");
    expectRefused(1, {"show", "--log", "3", "--board", "1"}, "no event with log number 3");
    expectRefused(1, {"show", "--log", "0", "--board", "1"}, "no event with log number 0");
    expectRefused(2, {"show"}, "expected a record id or --log N");
    expectRefused(2, {"show", "1", "--log", "1"}, "expected a record id or --log N");
    expectRefused(2, {"show", "65536"}, "is not a number");
    expectRefused(2, {"show", "x"}, "is not a number");
}

TEST_F(Command, StatusShowsEachBoard)
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
    EXPECT_EQ(outcome.status, 0);
    const Json status = Json::parse(outcome.out);
    ASSERT_EQ(status.size(), 4U);
    EXPECT_EQ(status[1], Json::parse(R"({"board": 1, "working_file": true,
        "events_in_working_file": 1, "free_slots": 799, "rotated_files": 1, "events": 3,
        "oldest": "2024-11-05T06:06:04Z", "newest": "2024-11-05T06:07:08Z",
        "events_in_backup": 1, "findings": 0})"));
    EXPECT_EQ(status[0]["oldest"], nullptr);
    EXPECT_EQ(status[2]["working_file"], false);
    EXPECT_EQ(status[2]["findings"], 1);
    const std::string table = sel({"status"}).out;
    EXPECT_NE(table.find("1      1/800     1        3       2024-11-05 06:06:04     2024-11-05 "
                         "06:07:08     1 events    sound\n"),
              std::string::npos)
        << table;
    EXPECT_NE(table.find("2      missing"), std::string::npos);
}

TEST_F(Command, CheckNamesWhatIsWrongAndRecovers)
{
    initialise();
    fill(5);
    ASSERT_EQ(sel({"backup", "--board", "1"}).status, 0);
    EXPECT_EQ(sel({"check"}).status, 0);
    writeFile(working(1), Bytes(FULL_FILE, 0xFF)); // as an interrupted rotation leaves it
    const Outcome checked = sel({"check", "--board", "1"});
    EXPECT_EQ(checked.status, 1);
    EXPECT_NE(checked.out.find("holds 5 events that the working file does not"), std::string::npos);
    expectRefused(1, {"rotate", "--board", "1"}, "nothing to rotate");
    const Outcome recovered = sel({"check", "--board", "1", "--recover"});
    EXPECT_EQ(recovered.status, 0) << recovered.err;
    EXPECT_EQ(recovered.out.find("board 1: sel0 renamed to sel1\nboard 1: sound\n"), 0U)
        << recovered.out;
    EXPECT_EQ(listedIds({"--board", "1"}), Ids({1, 2, 3, 4, 5}));
}

TEST_F(Command, CheckInJsonHasFilesFindingsAndActions)
{
    initialise();
    fill(2);
    patchFile(working(1), 2 * SLOT + 9, {0});
    const Outcome outcome = sel({"check", "--board", "1", "--json", "--recover"});
    EXPECT_EQ(outcome.status, 1);
    const Json json = Json::parse(outcome.out);
    EXPECT_EQ(json[0]["sound"], false);
    EXPECT_EQ(json[0]["files"].size(), 9U);
    EXPECT_EQ(json[0]["files"][0]["events"], 2);
    EXPECT_EQ(json[0]["files"][0]["first_id"], 1);
    EXPECT_EQ(json[0]["findings"].size(), 1U);
    EXPECT_EQ(json[0]["actions"], Json::array());
}

TEST_F(Command, RotateDoesNotDeleteALeftOverBackup)
{
    initialise();
    fill(5);
    ASSERT_EQ(sel({"backup", "--board", "1"}).status, 0);
    writeFile(working(1), Bytes(FULL_FILE, 0xFF));
    ASSERT_EQ(sel({"add", "-", "--board", "1"}, eventAt(9, TIME_1, THERMAL_TRIP)).status, 0);
    expectRefused(1, {"rotate", "--board", "1"}, "run \"recordkit sel check --recover\" first");
    ASSERT_EQ(sel({"check", "--board", "1", "--recover"}).status, 0);
    EXPECT_EQ(sel({"rotate", "--board", "1"}).status, 0);
    EXPECT_EQ(listedIds({"--board", "1"}), Ids({1, 2, 3, 4, 5, 9}));
}

TEST_F(Command, RotateNeedsAWorkingFile)
{
    expectRefused(1, {"rotate"}, "there is nothing to rotate");
    initialise();
    expectRefused(1, {"rotate"}, "nothing to rotate");
}

TEST_F(Command, BackupAndRestoreCarryTheLogOverAnEmptyVolatileFolder)
{
    initialise();
    fill(4);
    EXPECT_EQ(sel({"backup", "--board", "1"}).out,
              "board 1: " + working(1) + " copied to " + kept(1, 0) + "\n");
    std::filesystem::remove_all(root.at("/tmp"));
    EXPECT_EQ(sel({"restore", "--board", "1"}).out,
              "board 1: " + kept(1, 0) + " copied to " + working(1) + "\n");
    EXPECT_EQ(listedIds({"--board", "1"}), Ids({1, 2, 3, 4}));
}

TEST_F(Command, AddDoesNotRewriteAFileThatHoldsEvents)
{
    initialise();
    fill(3);
    std::filesystem::resize_file(working(1), FULL_FILE - 1);
    expectRefused(1, {"add", EVENTS, "--board", "1"},
                  "110399 bytes long, expected 110400; it holds 3 events and is left as it is");
    std::filesystem::resize_file(working(1), 0);
    EXPECT_EQ(sel({"add", EVENTS, "--board", "1"}).status, 0);
}

TEST_F(Command, InitDoesNotOverwriteEventsThatWereNotBackedUp)
{
    initialise();
    fill(3);
    ASSERT_EQ(sel({"backup", "--board", "1"}).status, 0);
    ASSERT_EQ(sel({"add", "-", "--board", "1"}, eventAt(4, TIME_1, THERMAL_TRIP)).status, 0);
    ASSERT_EQ(sel({"init"}).status, 0);
    EXPECT_EQ(listedIds({"--board", "1"}), Ids({1, 2, 3, 4}));
}

TEST_F(Command, RestoreLosesEventsOnlyWhenToldTo)
{
    initialise();
    fill(3);
    ASSERT_EQ(sel({"backup", "--board", "1"}).status, 0);
    EXPECT_EQ(sel({"restore", "--board", "1"}).status, 0);
    ASSERT_EQ(sel({"add", "-", "--board", "1"}, eventAt(4, TIME_1, THERMAL_TRIP)).status, 0);
    expectRefused(2, {"restore", "--board", "1"}, "to lose them, say --yes");
    EXPECT_EQ(sel({"restore", "--board", "1", "--yes"}).status, 0);
    EXPECT_EQ(listedIds({"--board", "1"}), Ids({1, 2, 3}));
}

TEST_F(Command, BackupDoesNotOverwriteALeftOverOne)
{
    initialise();
    fill(5);
    ASSERT_EQ(sel({"backup", "--board", "1"}).status, 0);
    writeFile(working(1), Bytes(FULL_FILE, 0xFF));
    expectRefused(1, {"backup", "--board", "1"}, "run \"recordkit sel check --recover\" first");
}

TEST_F(Command, BackupAndRestoreRefuseWhatIsNotThere)
{
    expectRefused(1, {"backup"}, "there is nothing to back up");
    expectRefused(1, {"restore"}, "there is nothing to restore");
    writeFile(kept(0, 0), "short");
    expectRefused(1, {"restore"}, "5 bytes long, expected 110400");
    initialise();
    std::filesystem::remove_all(root.at("/var/tav"));
    expectRefused(3, {"backup"}, "cannot be copied");
}

TEST_F(Command, ClearWantsToBeSure)
{
    initialise();
    fill(4);
    expectRefused(2, {"clear", "--board", "1"}, "say --yes");
    EXPECT_EQ(sel({"clear", "--board", "1", "--yes"}).out,
              "board 1: 4 events deleted, all files are empty\n");
    EXPECT_EQ(listedIds({"--board", "1"}), Ids());
    EXPECT_EQ(readFile(kept(1, 7)), Bytes(FULL_FILE, 0xFF));
}

TEST_F(Command, ClearThatFailsIsStatusThree)
{
    initialise();
    std::filesystem::remove_all(root.at("/tmp"));
    expectRefused(3, {"clear", "--yes"}, "No such file or directory");
}

TEST_F(Command, OutputThatCannotBeWrittenIsStatusThree)
{
    initialise();
    if (!fileExists("/dev/full")) {
        GTEST_SKIP() << "there is no /dev/full here";
    }
    std::string line;
    for (const std::string& word : ourCommand({"--root", root.path(), "sel", "list"})) {
        line += word + " ";
    }
    const Outcome outcome = run({"sh", "-c", line + "> /dev/full"});
    EXPECT_EQ(outcome.status, 3);
    EXPECT_EQ(outcome.err, "recordkit: standard output cannot be written\n");
}

TEST_F(Command, RootMayComeFromTheEnvironmentAndBeRelative)
{
    initialise();
    const Arguments root_ = {"RECORDKIT_ROOT=" + root.path()};
    EXPECT_EQ(run(ourCommand({"sel", "status"}), "", root_).out, sel({"status"}).out);
    const Outcome outcome = run({"sh", "-c", "cd " + root.path() + "/tmp && exec " + [] {
                                     std::string line;
                                     for (const std::string& word : ourCommand({})) {
                                         line += word + " ";
                                     }
                                     return line;
                                 }() + "--root .. sel status"});
    EXPECT_EQ(outcome.out, sel({"status"}).out) << outcome.err;
}

TEST_F(Command, TracesAreShownOnlyWhenAskedFor)
{
    std::filesystem::remove_all(root.at("/tmp"));
    const Outcome quiet = sel({"add", EVENTS});
    EXPECT_EQ(quiet.err.find("recordkit["), std::string::npos);
    const Outcome verbose = sel({"add", EVENTS, "--verbose"});
    EXPECT_NE(
        verbose.err.find("recordkit[1:83:0x1000] level 0: BMCSELDataFile::truncate " + working(0)),
        std::string::npos)
        << verbose.err;
}

TEST_F(Command, SeverityAnswersForOffsets)
{
    const Outcome outcome = run(ourCommand({"severity", "0x6F", "processor", "0,1"}));
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    for (const char* part : {"severity      non-recoverable\n", "alarm         alarm\n",
                             "mask          183Dh critical: offsets 0, 2, 3, 4, 5, 11, 12\n",
                             "alarm mask    183Fh\n", "warning mask  4000h\n"}) {
        EXPECT_NE(outcome.out.find(part), std::string::npos) << outcome.out;
    }
    const Json json = Json::parse(run(ourCommand({"severity", "7", "21", "7", "--json"})).out);
    EXPECT_EQ(json["severity"], "monitor");
    EXPECT_EQ(json["alarm"], "none");
    EXPECT_EQ(json["masks"]["critical"], 0x24);
    const Json unknown = Json::parse(run(ourCommand({"severity", "1", "1", "9", "--json"})).out);
    EXPECT_EQ(unknown["known"], false);
    EXPECT_EQ(unknown["severity"], "none");
}

TEST_F(Command, SeverityFollowsThePowerSupplyMode)
{
    const Arguments question = {"--root", root.path(), "severity", "0x0B", "9", "3", "--json"};
    EXPECT_EQ(Json::parse(run(ourCommand(question)).out)["severity"], "none");
    writeFile(root.at("/tmp/psumode"), Bytes({1}));
    EXPECT_EQ(Json::parse(run(ourCommand(question)).out)["severity"], "warning");
}

TEST_F(Command, SeverityTableHasEveryPair)
{
    const Json table = Json::parse(run(ourCommand({"severity", "--table", "--json"})).out);
    EXPECT_EQ(table.size(), 42U);
    const std::string text = run(ourCommand({"severity", "--table"})).out;
    EXPECT_NE(text.find("6Fh sensor-specific   07h Processor                           1       "
                        "non-recoverable  Thermal Trip\n"),
              std::string::npos)
        << text;
}

TEST_F(Command, SeverityRefusesWhatIsNoCode)
{
    for (const Arguments& words :
         {Arguments{"severity", "256", "1", "1"}, Arguments{"severity", "1", "toast", "1"},
          Arguments{"severity", "1", "1", "16"}, Arguments{"severity", "1", "1"},
          Arguments{"severity", "1", "1", "1", "--table"}, Arguments{"severity", "1", "--table"}}) {
        EXPECT_EQ(run(ourCommand(words)).status, 2);
    }
}
