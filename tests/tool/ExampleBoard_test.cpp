// SPDX-License-Identifier: Apache-2.0
// The example board: that it is what its generator writes, and that it tells its story.
#include <filesystem>
#include <gtest/gtest.h>
#include <map>
#include <nlohmann/json.hpp>
#include <set>
#include <sstream>

#include "support/Process.h"
#include "support/ScratchRoot.h"

using namespace testing_support;

namespace {

using Json = nlohmann::json;

const std::string BOARD = RECORDKIT_SOURCE "/examples/board";

/// The files of a folder by their paths in it, in order.
std::set<std::string> filesOf(const std::string& folder)
{
    std::set<std::string> files;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
        if (entry.is_regular_file()) {
            files.insert(std::filesystem::relative(entry.path(), folder).string());
        }
    }
    return files;
}

std::set<std::string> imagesIn(const std::string& folder)
{
    std::set<std::string> paths;
    for (const std::string& file : filesOf(BOARD + "/" + folder)) {
        paths.insert(BOARD + "/" + folder + "/" + file);
    }
    return paths;
}

/// Whether the generator writes a file: the others are written by hand.
bool isGenerated(const std::string& file)
{
    return file != "README.md" && file.rfind("siblings/", 0) != 0 && file.rfind("etc/tav/", 0) != 0;
}

Outcome generate(const Arguments& arguments)
{
    Arguments words = programOfThisBuild(BOARD_GENERATOR);
    words.insert(words.end(), arguments.begin(), arguments.end());
    return run(words);
}

Outcome onBoard(const Arguments& arguments)
{
    Arguments words = {"--root", BOARD, "--boards", "2"};
    words.insert(words.end(), arguments.begin(), arguments.end());
    return run(ourCommand(words));
}

/// The objects that a listing of events prints.
std::vector<Json> events(const Arguments& options)
{
    Arguments words = {"sel", "list", "--board", "all", "--ndjson"};
    words.insert(words.end(), options.begin(), options.end());
    const Outcome outcome = onBoard(words);
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    std::vector<Json> objects;
    std::istringstream lines(outcome.out);
    for (std::string line; std::getline(lines, line);) {
        objects.push_back(Json::parse(line));
    }
    return objects;
}

std::string textOf(const Json& event)
{
    return event["time"].is_null()
               ? event["event"].get<std::string>()
               : event["time"].get<std::string>() + " " + event["sensor_name"].get<std::string>() +
                     ": " + event["event"].get<std::string>();
}

std::vector<std::string> textsOf(const Arguments& options)
{
    std::vector<std::string> texts;
    for (const Json& event : events(options)) {
        texts.push_back(textOf(event));
    }
    return texts;
}

using Texts = std::vector<std::string>;

}

TEST(ExampleBoard, IsWhatItsGeneratorWrites)
{
    const ScratchRoot scratch;
    const std::string folder = scratch.at("/board");
    for (const char* time : {"first", "again"}) {
        const Outcome outcome = generate({folder});
        ASSERT_EQ(outcome.status, 0) << outcome.err;
        std::set<std::string> committed;
        for (const std::string& file : filesOf(BOARD)) {
            if (isGenerated(file)) {
                committed.insert(file);
            }
        }
        EXPECT_EQ(filesOf(folder), committed) << time;
        for (const std::string& file : committed) {
            EXPECT_TRUE(readFile(folder + "/" + file) == readFile(BOARD + "/" + file))
                << time << ": " << file << " differs: generate_board examples/board";
        }
    }
}

TEST(ExampleBoard, TakesAtMostAMegabyte)
{
    std::uintmax_t size = 0;
    for (const std::string& file : filesOf(BOARD)) {
        size += isGenerated(file) ? std::filesystem::file_size(BOARD + "/" + file) : 0;
    }
    EXPECT_LT(size, 1000000U);
}

TEST(ExampleBoard, GeneratorRefusesAFolderThatItCannotWrite)
{
    const ScratchRoot scratch;
    writeFile(scratch.at("/file"), std::string("not a folder"));
    const Outcome outcome = generate({scratch.at("/file")});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.err.rfind("generate_board: ", 0), 0U) << outcome.err;
    EXPECT_EQ(generate({}).status, 2);
}

TEST(ExampleBoard, EveryImageIsGood)
{
    const std::map<std::string, std::size_t> counts = {{"fru", 7}, {"rom", 4}, {"spd", 16}};
    for (const auto& [folder, count] : counts) {
        EXPECT_EQ(imagesIn(folder).size(), count) << folder;
    }
    for (const std::string& image : imagesIn("fru")) {
        const Outcome outcome = onBoard({"fru", "verify", image});
        EXPECT_EQ(outcome.status, 0) << outcome.out << outcome.err;
        EXPECT_EQ(outcome.err, "");
    }
    for (const std::string& image : imagesIn("spd")) {
        const Outcome outcome = onBoard({"spd", "show", image});
        EXPECT_EQ(outcome.status, 0) << outcome.err;
        EXPECT_NE(outcome.out.find("16384 MB"), std::string::npos) << outcome.out;
    }
    for (const std::string& image : imagesIn("rom")) {
        const Outcome outcome = onBoard({"cpu", image});
        EXPECT_EQ(outcome.status, 0) << outcome.err;
        EXPECT_EQ(outcome.err, "");
        EXPECT_NE(outcome.out.find("Example(R) Processor"), std::string::npos) << outcome.out;
    }
}

TEST(ExampleBoard, EveryRecordIsDecoded)
{
    for (const char* folder : {"boards", "firmware"}) {
        for (const std::string& image : imagesIn(folder)) {
            const std::string name = std::filesystem::path(image).filename().string();
            const Outcome outcome = onBoard({"decode", name.substr(0, name.find('.')), image});
            EXPECT_EQ(outcome.status, 0) << name << ": " << outcome.err;
            EXPECT_EQ(outcome.err, "") << name;
        }
    }
}

TEST(ExampleBoard, NothingIsOddAmongItsUnits)
{
    const auto audit = [](const char* command, const char* folder) {
        Arguments words = {command, "audit", "--json"};
        for (const std::string& image : imagesIn(folder)) {
            words.push_back(image);
        }
        const Outcome outcome = onBoard(words);
        EXPECT_EQ(outcome.status, 0) << outcome.out << outcome.err;
    };
    audit("fru", "fru");
    audit("spd", "spd");
    const Outcome sensors = onBoard({"sdr", "check", BOARD + "/etc/default/config/sdr.bin"});
    EXPECT_EQ(sensors.status, 0) << sensors.out << sensors.err;
}

TEST(ExampleBoard, EepromsHaveSettingsAndAnEfiBackup)
{
    const std::string images = BOARD + "/eeprom";
    const Outcome settings = onBoard({"eeprom", "setting", "read", "0", "--images", images});
    EXPECT_EQ(settings.status, 0) << settings.err;
    EXPECT_EQ(settings.out.rfind("system-name=example-server-1\n", 0), 0U);
    const Outcome list = onBoard({"eeprom", "setting", "list", "--images", images});
    EXPECT_EQ(list.status, 0) << list.out << list.err;
    const Outcome backup = onBoard({"eeprom", "efi", "status", "--images", images});
    EXPECT_EQ(backup.status, 0) << backup.err;
    EXPECT_NE(backup.out.find("CH26A00017"), std::string::npos) << backup.out;
    EXPECT_NE(backup.out.find("1 block pending erasure"), std::string::npos) << backup.out;
}

TEST(ExampleBoard, LogsAreSoundAndWereRotated)
{
    const Outcome check = onBoard({"sel", "check", "--board", "all"});
    EXPECT_EQ(check.status, 0) << check.out << check.err;
    const Outcome outcome = onBoard({"sel", "status", "--json"});
    ASSERT_EQ(outcome.status, 0) << outcome.err;
    const Json status = Json::parse(outcome.out);
    ASSERT_EQ(status.size(), 2U);
    EXPECT_EQ(status[0]["events"], 1517);
    EXPECT_EQ(status[1]["events"], 899);
    for (const Json& board : status) {
        EXPECT_EQ(board["rotated_files"], 1);
    }
}

TEST(ExampleBoard, EveryEventHasASensorOrARule)
{
    for (const Json& event : events({})) {
        if (event["kind"] == "system-event") {
            EXPECT_FALSE(event["sensor_name"].is_null()) << event;
        } else {
            const std::string text = event["event"];
            EXPECT_TRUE(text.find(" was reset by ") != std::string::npos ||
                        text.rfind("service console: ", 0) == 0)
                << text;
        }
        EXPECT_FALSE(event["partitions"].empty()) << event;
        EXPECT_NE(event["part_number"], "") << event;
    }
}

TEST(ExampleBoard, EventsHaveTheSeveritiesOfTheLibrary)
{
    std::map<std::string, int> counts;
    for (const Json& event : events({})) {
        ++counts[event["severity"].is_null() ? "OEM" : event["severity"].get<std::string>()];
    }
    const std::map<std::string, int> expected = {
        {"OEM", 6},       {"critical", 12}, {"informational", 304},
        {"monitor", 354}, {"unrated", 328}, {"warning", 1412}};
    EXPECT_EQ(counts, expected);
}

TEST(ExampleBoard, OnlyTheFanAndTheModuleAreStillAsserted)
{
    EXPECT_EQ(textsOf({"--still-asserted"}),
              (Texts{"2026-11-19T18:22:07Z SB1 DIMM 5: Correctable ECC / other correctable memory "
                     "error logging limit reached: memory module 5",
                     "2026-11-20T13:59:31Z Fan 3: Lower Non-critical - going low, reading 5160 < "
                     "threshold 6000 RPM",
                     "2026-11-20T14:02:31Z Fan 3: Lower Critical - going low, reading 4740 < "
                     "threshold 4800 RPM",
                     "2026-11-20T20:45:52Z SB1 DIMM 5: Uncorrectable ECC / other uncorrectable "
                     "memory error: memory module 5"}));
    const Outcome summary =
        onBoard({"sel", "summary", "--board", "all", "--still-asserted", "--fail-on", "critical"});
    EXPECT_EQ(summary.status, 1) << summary.out << summary.err;
    EXPECT_NE(summary.out.find("STILL ASSERTED after the last event: 4 states"), std::string::npos)
        << summary.out;
}

TEST(ExampleBoard, FanAndModuleGetWorseFromDayToDay)
{
    for (const char* sensor : {"Fan 3", "SB1 DIMM 5"}) {
        std::size_t before = 0;
        for (int day = 14; day <= 19; ++day) {
            const std::string date = "2026-11-" + std::to_string(day);
            const std::size_t count =
                events({"--sensor", sensor, "--since", date, "--until", date}).size();
            EXPECT_GT(count, before) << sensor << " " << date;
            before = count;
        }
    }
}

TEST(ExampleBoard, EventsNameTheUnitsOfTheImages)
{
    const Json failed = events({"--sensor", "SB1 DIMM 5", "--last", "1"}).front();
    const Json module =
        Json::parse(onBoard({"spd", "show", "--json", BOARD + "/spd/sb1/dimm5.bin"}).out).front();
    EXPECT_EQ(failed["part_number"], "EX-DDR4-16G-2666");
    EXPECT_EQ(module["part_number"], "EX-DDR4-16G-2666    ");
    EXPECT_EQ(failed["serial_number"], module["serial_number"]);
    const auto serialOf = [](const char* unit) {
        const std::string image = BOARD + "/fru/" + unit + ".bin";
        const Outcome outcome = onBoard({"fru", "get", image, "product.serial"});
        return outcome.out.substr(0, outcome.out.find('\n'));
    };
    EXPECT_EQ(events({"--sensor", "Fan 3", "--last", "1"}).front()["serial_number"],
              serialOf("fan-tray"));
    EXPECT_EQ(events({"--sensor", "Chassis", "--last", "1"}).front()["serial_number"],
              serialOf("chassis"));
    // The power supply that failed is not the one that is there now.
    const std::vector<Json> redundancy = events({"--sensor", "PSU Redundancy"});
    ASSERT_EQ(redundancy.size(), 2U);
    EXPECT_EQ(redundancy.front()["serial_number"], "PS26A00032");
    EXPECT_EQ(redundancy.back()["serial_number"], serialOf("power-supply1"));
}

TEST(ExampleBoard, AfterThePowerCutTimesCountFromItsEnd)
{
    for (const char* board : {"0", "1"}) {
        const Outcome outcome = onBoard({"sel", "list", "--board", board, "--ndjson", "--sensor",
                                         std::string("SB") + board + " Power"});
        std::istringstream lines(outcome.out);
        std::string line;
        ASSERT_TRUE(std::getline(lines, line)) << outcome.err;
        EXPECT_EQ(Json::parse(line)["time"], "2026-11-17T03:12:41Z");
        ASSERT_TRUE(std::getline(lines, line));
        EXPECT_EQ(Json::parse(line)["timestamp"], 15);
        EXPECT_EQ(Json::parse(line)["pre_init"], true);
    }
}
