// SPDX-License-Identifier: Apache-2.0
// The document of a report: that it says what the other sub-commands say of the same input, takes
// any mixture of inputs, and hides nothing.
#include <filesystem>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <set>

#include "support/FruImages.h"
#include "support/Process.h"
#include "support/ScratchRoot.h"
#include "support/SdrRecords.h"
#include "tool/report/ReportPage.h"

using namespace testing_support;
namespace fs = std::filesystem;

namespace {

using Json = nlohmann::json;

const std::string BOARD = RECORDKIT_SOURCE "/examples/board";
const std::string DATA = RECORDKIT_EXAMPLE_DATA;

Outcome command(const Arguments& words)
{
    return run(ourCommand(words), "", {"SOURCE_DATE_EPOCH=1795211546"});
}

/// What a sub-command answers as JSON for the example board.
Json answer(Arguments words)
{
    words.insert(words.begin(), {"--root", BOARD, "--boards", "2"});
    words.emplace_back("--json");
    const Outcome outcome = command(words);
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    return Json::parse(outcome.out);
}

Json documentOf(Arguments paths, int status = 0)
{
    paths.insert(paths.begin(), "report");
    paths.emplace_back("--json");
    const Outcome outcome = command(paths);
    EXPECT_EQ(outcome.status, status) << outcome.err;
    return Json::parse(outcome.out);
}

const Json& board()
{
    static const Json document = documentOf({BOARD});
    return document;
}

Bytes fromBase64(const std::string& text)
{
    const std::string digits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    Bytes bytes;
    unsigned int bits = 0;
    unsigned int count = 0;
    for (const char character : text) {
        if (character == '=') {
            break;
        }
        bits = bits << 6 | static_cast<unsigned int>(digits.find(character));
        count += 6;
        if (count >= 8) {
            count -= 8;
            bytes.push_back(static_cast<unsigned char>(bits >> count));
        }
    }
    return bytes;
}

/// The numbers of a column.
std::vector<unsigned int> column(const Json& events, const std::string& name)
{
    const Json& stored = events["columns"][name];
    const Bytes bytes = fromBase64(stored["data"]);
    const std::string type = stored["type"];
    const std::size_t width = type == "u8" ? 1 : type == "u16" ? 2 : 4;
    std::vector<unsigned int> numbers;
    for (std::size_t at = 0; at < bytes.size(); at += width) {
        unsigned int number = 0;
        for (std::size_t i = 0; i < width; ++i) {
            number |= static_cast<unsigned int>(bytes[at + i]) << 8 * i;
        }
        numbers.push_back(number);
    }
    return numbers;
}

std::vector<std::string> textsOf(const Json& coded)
{
    std::vector<std::string> texts;
    std::string text;
    for (std::size_t i = 0; i < coded.size(); i += 2) {
        text = text.substr(0, coded[i]) + coded[i + 1].get<std::string>();
        texts.push_back(text);
    }
    return texts;
}

std::string hexOf(const Bytes& bytes, std::size_t at, std::size_t count)
{
    std::string text;
    for (std::size_t i = at; i < at + count; ++i) {
        const char* const digits = "0123456789abcdef";
        text += digits[bytes[i] >> 4];
        text += digits[bytes[i] & 15];
    }
    return text;
}

Json without(Json object, const std::vector<std::string>& keys)
{
    for (const std::string& key : keys) {
        object.erase(key);
    }
    return object;
}

/// The objects of a list, each without what only the document has.
Json plain(const Json& list, const std::vector<std::string>& keys)
{
    Json result = Json::array();
    for (const Json& each : list) {
        result.push_back(without(each, keys));
    }
    return result;
}

/// Paths of the images below a folder of the example board, in order.
Arguments imagesIn(const std::string& folder)
{
    std::set<std::string> paths;
    for (const auto& entry : fs::recursive_directory_iterator(BOARD + "/" + folder)) {
        if (entry.is_regular_file()) {
            paths.insert(entry.path());
        }
    }
    return {paths.begin(), paths.end()};
}

Arguments operator+(Arguments left, const Arguments& right)
{
    left.insert(left.end(), right.begin(), right.end());
    return left;
}

/// "name: kind" of the inputs that are not roots.
std::set<std::string> kindsOf(const Json& document)
{
    std::set<std::string> kinds;
    for (const Json& input : document["inputs"]) {
        kinds.insert(fs::path(input["name"].get<std::string>()).filename().string() + ": " +
                     input["kind"].get<std::string>() + (input["left_out"] ? ", left out" : ""));
    }
    return kinds;
}

}

TEST(ReportNumbers, OfEventsAreThoseOfTheList)
{
    const Json list = answer({"sel", "list", "--board", "all"});
    const Json asserted = answer({"sel", "list", "--board", "all", "--still-asserted"});
    std::set<std::pair<int, int>> still;
    for (const Json& each : asserted) {
        still.emplace(each["board"].get<int>(), each["log"].get<int>());
    }
    const Json& events = board()["events"];
    ASSERT_EQ(events["count"], list.size());
    ASSERT_EQ(list.size(), 2416U);
    const auto times = column(events, "time");
    const auto severities = column(events, "severity");
    const auto directions = column(events, "direction");
    const auto flags = column(events, "flags");
    const auto states = column(events, "state");
    const auto files = column(events, "file");
    const auto slots = column(events, "slot");
    const auto numbers = column(events, "number");
    const auto sensors = column(events, "sensor");
    const auto texts = column(events, "text");
    const auto causes = column(events, "cause");
    const auto blocks = column(events, "block");
    const auto eventTexts = textsOf(events["texts"]);
    const auto causeTexts = textsOf(events["causes"]);
    const Bytes records = fromBase64(events["columns"]["record"]["data"]);
    for (std::size_t i = 0; i < list.size(); ++i) {
        const Json& event = list[i];
        SCOPED_TRACE(event.dump());
        const bool isDated = !event["time"].is_null();
        ASSERT_EQ(times[i], isDated ? event["timestamp"].get<unsigned int>() : 0xFFFFFFFF);
        const Json none = "none";
        ASSERT_EQ(events["severities"][severities[i]],
                  event["severity"].is_null() ? none : event["severity"]);
        ASSERT_EQ(events["directions"][directions[i]],
                  event["direction"].is_null() ? Json("") : event["direction"]);
        ASSERT_EQ(events["states"][states[i]], event["state"]);
        ASSERT_EQ(files[i], event["file"]);
        ASSERT_EQ(slots[i], event["slot"]);
        ASSERT_EQ(numbers[i], event["log"]);
        ASSERT_EQ((flags[i] & 1) != 0,
                  still.count(std::pair<int, int>(event["board"], event["log"])) != 0);
        ASSERT_EQ((flags[i] & 2) != 0, event["pre_init"] == true);
        ASSERT_EQ(eventTexts[texts[i]], event["event"]);
        ASSERT_EQ(causeTexts[causes[i]], event["cause"].is_null() ? "" : event["cause"]);
        ASSERT_EQ(hexOf(records, i * 16, 16), event["record"]);
        const Json& sensor = events["sensors"][sensors[i]];
        ASSERT_EQ(sensor["log"], event["board"]);
        if (event["kind"] == "system-event") {
            ASSERT_EQ(sensor["generator"], event["generator"]);
            ASSERT_EQ(sensor["type"], event["sensor_type"]);
            ASSERT_EQ(sensor["type_name"], event["sensor_type_name"]);
            ASSERT_EQ(sensor["number"], event["sensor"]);
            ASSERT_EQ(sensor["name"], event["sensor_name"]);
            ASSERT_EQ(sensor["entity"], event["entity"]);
            ASSERT_EQ(sensor["entity_name"], event["entity_name"]);
        }
        const Json& block = events["blocks"][blocks[i]];
        ASSERT_EQ(block["partitions"], event["partitions"]);
        ASSERT_EQ(block["part_number"], event["part_number"]);
        ASSERT_EQ(block["serial_number"], event["serial_number"]);
        const Bytes image = fromBase64(block["image"]);
        ASSERT_EQ(image.size(), 120U);
        const std::string extended = event["extended"].is_null() ? "" : event["extended"];
        ASSERT_EQ(hexOf(image, 0, extended.size() / 2), extended);
    }
}

TEST(ReportNumbers, OfTheSummaryAreItsOwn)
{
    const Json summary = answer({"sel", "summary", "--board", "all"});
    EXPECT_EQ(board()["summary"], without(summary, {"logs", "sensors", "still_asserted", "longest",
                                                    "most_frequent", "newest"}));
    EXPECT_EQ(plain(board()["asserted"], {"log", "row", "since_row", "unit"}),
              summary["still_asserted"]);
    ASSERT_EQ(board()["logs"].size(), 2U);
    for (std::size_t i = 0; i < 2; ++i) {
        EXPECT_EQ(board()["logs"][i]["events"], summary["logs"][i]["events"]);
        EXPECT_EQ(board()["logs"][i]["still_asserted"], summary["logs"][i]["still_asserted"]);
        const Json own = answer({"sel", "summary", "--board", std::to_string(i)});
        EXPECT_EQ(board()["logs"][i]["severities"], own["severities"]);
    }
}

TEST(ReportNumbers, OfLogsAreThoseOfStatusAndCheck)
{
    const Json status = answer({"sel", "status"});
    const Json check = answer({"sel", "check"});
    for (std::size_t i = 0; i < 2; ++i) {
        const Json& log = board()["logs"][i];
        EXPECT_EQ(log["name"], "board " + std::to_string(i));
        EXPECT_EQ(log["board"], i);
        EXPECT_EQ(log["root"], BOARD);
        EXPECT_EQ(log["status"], status[i]);
        EXPECT_EQ(log["sound"], check[i]["sound"]);
        EXPECT_EQ(log["files"], check[i]["files"]);
        EXPECT_EQ(log["findings"], check[i]["findings"]);
        EXPECT_EQ(log["slots"], 800);
    }
}

TEST(ReportNumbers, OfFailuresAreThoseOfTheEventsList)
{
    const Json list =
        answer({"sel", "list", "--board", "all", "--severity", "warning", "--asserted"});
    std::map<std::pair<int, std::string>, int> bySensor;
    std::map<std::pair<std::string, std::string>, int> byUnit;
    for (const Json& event : list) {
        ++bySensor[{event["board"], event["sensor_name"]}];
        if (!event["serial_number"].is_null()) {
            ++byUnit[{event["part_number"], event["serial_number"]}];
        }
    }
    const Json& failures = board()["sensor_failures"];
    EXPECT_EQ(failures.size(), bySensor.size());
    for (const Json& failure : failures) {
        const Json& sensor = board()["events"]["sensors"][failure["sensor"].get<std::size_t>()];
        EXPECT_EQ(failure["assertions"], (bySensor[{failure["log"], sensor["name"]}]));
        EXPECT_EQ(failure["log"], sensor["log"]);
        int sum = 0;
        for (const auto& each : failure["severities"].items()) {
            sum += each.value().get<int>();
        }
        EXPECT_EQ(failure["assertions"], sum);
    }
    for (std::size_t i = 1; i < failures.size(); ++i) {
        EXPECT_GE(failures[i - 1]["assertions"], failures[i]["assertions"]);
    }
    std::size_t withSerial = 0;
    for (const Json& failure : board()["unit_failures"]) {
        const Json& unit = board()["units"][failure["unit"].get<std::size_t>()];
        if (!unit["serial_number"].is_null()) {
            ++withSerial;
            EXPECT_EQ(failure["assertions"],
                      (byUnit[{unit["part_number"], unit["serial_number"]}]));
        }
    }
    EXPECT_EQ(withSerial, byUnit.size());
    EXPECT_EQ(board()["units"][0]["name"], "EX-FT-0600, serial FT26A00009");
    EXPECT_EQ(board()["asserted"][0]["unit"], 0);
}

TEST(ReportNumbers, OfTheInventoryAreThoseOfItsSubCommands)
{
    const std::vector<std::string> extra = {"root", "image"};
    EXPECT_EQ(plain(board()["fru"], extra), answer(Arguments{"fru", "show"} + imagesIn("fru")));
    EXPECT_EQ(plain(board()["memory"], extra), answer(Arguments{"spd", "show"} + imagesIn("spd")));
    EXPECT_EQ(plain(board()["sensors"], {"root", "file", "readings"}),
              answer({"sdr", "list", BOARD + "/etc/default/config/sdr.bin"}));
    const Arguments roms = imagesIn("rom");
    ASSERT_EQ(board()["processors"].size(), roms.size());
    for (std::size_t i = 0; i < roms.size(); ++i) {
        EXPECT_EQ(board()["processors"][i]["file"], roms[i]);
        EXPECT_EQ(without(board()["processors"][i], {"root", "file"}), answer({"cpu", roms[i]}));
    }
    for (const Json& fru : board()["fru"]) {
        const std::string path = fru["file"];
        EXPECT_EQ(fromBase64(fru["image"]), readFile(path)) << path;
    }
}

TEST(ReportNumbers, OfRecordsAndEepromsAreThoseOfTheirSubCommands)
{
    const Arguments records = imagesIn("boards") + imagesIn("firmware");
    ASSERT_EQ(board()["records"].size(), records.size());
    for (std::size_t i = 0; i < records.size(); ++i) {
        const Json& record = board()["records"][i];
        EXPECT_EQ(record["file"], records[i]);
        EXPECT_EQ(record["fields"], answer({"decode", record["class"], records[i]}));
    }
    ASSERT_EQ(board()["settings"].size(), 1U);
    EXPECT_EQ(board()["settings"][0]["areas"],
              answer({"eeprom", "setting", "list", "--images", BOARD + "/eeprom"}));
    EXPECT_EQ(board()["settings"][0]["problems"], Json::array());
    ASSERT_EQ(board()["efi"].size(), 1U);
    EXPECT_EQ(board()["efi"][0]["banks"],
              answer({"eeprom", "efi", "status", "--images", BOARD + "/eeprom"}));
    EXPECT_EQ(board()["efi"][0]["checksum_right"], true);
    EXPECT_EQ(board()["efi"][0]["serial"], "CH26A00017");
    EXPECT_EQ(board()["efi"][0]["folder"], BOARD + "/eeprom");
    EXPECT_EQ(board()["settings"][0]["folder"], BOARD + "/eeprom");
}

TEST(ReportNumbers, OfReadingsAreThoseOfTheEvents)
{
    std::map<std::pair<int, std::string>, std::map<double, int>> readings;
    for (const Json& event : answer({"sel", "list", "--board", "all"})) {
        if (!event["reading"].is_null()) {
            ++readings[{event["board"], event["sensor_name"]}][event["reading"]];
        }
    }
    std::size_t found = 0;
    for (const Json& sensor : board()["sensors"]) {
        for (const Json& seen : sensor["readings"]) {
            std::map<double, int> values;
            for (const Json& each : seen["values"]) {
                values[each[0]] = each[1];
            }
            EXPECT_EQ(values, (readings[{seen["log"], sensor["name"]}])) << sensor["name"];
            ++found;
        }
    }
    EXPECT_EQ(found, readings.size());
    EXPECT_GT(found, 5U);
}

TEST(ReportDocument, SaysWhatItIsAndWhenItWasMade)
{
    EXPECT_EQ(board()["format"], "recordkit-report");
    EXPECT_EQ(board()["version"], 1);
    EXPECT_EQ(board()["title"], "Report on " + BOARD);
    EXPECT_EQ(board()["made"]["time"], "2026-11-20T21:52:26Z");
    EXPECT_EQ(board()["verdict"]["level"], "critical");
    EXPECT_EQ(board()["verdict"]["text"], "4 states still asserted");
    EXPECT_EQ(board()["verdict"]["reasons"][0],
              (Json{{"kind", "asserted"}, {"severity", "critical"}, {"state", 0}}));
    EXPECT_EQ(board()["asserted"][0]["sensor_name"], "Fan 3");
    EXPECT_EQ(board()["chosen"], "");
    EXPECT_EQ(board()["left_out"], 0);
    EXPECT_EQ(documentOf({BOARD, "--title", "A <b>title</b>"})["title"], "A <b>title</b>");
    EXPECT_EQ(documentOf({BOARD + "/fru", BOARD + "/spd"})["title"],
              "Report on " + BOARD + "/fru/chassis.bin and 22 other inputs");
}

TEST(ReportDocument, FieldsOfRecordsHaveTheirPlacesInThe16Bytes)
{
    const Json& fields = board()["events"]["fields"];
    ASSERT_GE(fields.size(), 2U);
    EXPECT_EQ(fields[0]["first"], 2);
    EXPECT_EQ(fields[0]["last"], 2);
    EXPECT_EQ(fields[0]["kind"], "system-event");
    std::map<std::string, Json> byName;
    for (const Json& field : fields[0]["fields"]) {
        byName[field["name"]] = without(field, {"name"});
    }
    EXPECT_EQ(byName["record_id"], (Json{{"offset", 0}, {"width", 2}, {"as", "hex"}}));
    EXPECT_EQ(byName["timestamp"], (Json{{"offset", 3}, {"width", 4}, {"as", "time"}}));
    EXPECT_EQ(byName["sensor_type"], (Json{{"offset", 10}, {"width", 1}, {"as", "word"}}));
    EXPECT_EQ(byName["deassertion"],
              (Json{{"offset", 12}, {"width", 1}, {"as", "number"}, {"bits", {7, 7}}}));
    EXPECT_EQ(byName["event_type"],
              (Json{{"offset", 12}, {"width", 1}, {"as", "word"}, {"bits", {6, 0}}}));
    EXPECT_EQ(byName["event_data_3"], (Json{{"offset", 15}, {"width", 1}, {"as", "hex"}}));
    EXPECT_EQ(board()["events"]["words"]["sensor_type"]["4"], "Fan");
    EXPECT_EQ(board()["events"]["words"]["event_type"]["1"], "threshold");
}

TEST(ReportInputs, OfTheBoardAreAllRecognised)
{
    const std::set<std::string> kinds = kindsOf(board());
    for (const char* const kind :
         {"board: root", "sdr.bin: sensor repository", "chassis.bin: FRU image",
          "dimm0.bin: SPD image", "sb0-cpu0.bin: processor ROM", "SBBoardInfo.sb0.bin: record",
          "eeprom4.bin: setting index", "eeprom10.bin: EFI backup index", "eeprom11.bin: EEPROM",
          "README.md: text", "events.rules: text"}) {
        EXPECT_EQ(kinds.count(kind), 1U) << kind;
    }
    for (const std::string& kind : kinds) {
        EXPECT_EQ(kind.find("left out"), std::string::npos) << kind;
    }
}

TEST(ReportInputs, WithoutAPathAreThoseOfTheRoot)
{
    const Outcome outcome = command({"--root", BOARD, "report", "--json"});
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_EQ(Json::parse(outcome.out), board());
    const ScratchRoot empty;
    const Outcome odd = command({"--root", empty.path(), "report", "--json"});
    EXPECT_EQ(odd.status, 1);
    EXPECT_EQ(odd.err, "recordkit: " + empty.path() + ": no board has an event log\n");
    EXPECT_EQ(Json::parse(odd.out)["verdict"]["level"], "warning");
    EXPECT_EQ(command({"--root", empty.path() + "/missing", "report", "--json"}).status, 3);
}

TEST(ReportInputs, AreFilesOfAnyKind)
{
    const ScratchRoot root;
    const std::string at = root.path() + "/saved";
    fs::create_directories(at);
    fs::copy(BOARD + "/fru/fan-tray.bin", at + "/one");
    fs::copy(BOARD + "/spd/sb0/dimm0.bin", at + "/two");
    fs::copy(BOARD + "/etc/default/config/sdr.bin", at + "/three");
    fs::copy(BOARD + "/var/tav/fmem/ipmi/sb1_bmc_sel1", at + "/four");
    fs::copy(BOARD + "/rom/sb0-cpu0.bin", at + "/five");
    fs::copy(BOARD + "/eeprom/eeprom10.bin", at + "/six");
    fs::copy(DATA + "/sel/events.raw", at + "/seven");
    const Json document = documentOf({at + "/seven", at + "/one", at});
    EXPECT_EQ(kindsOf(document),
              (std::set<std::string>{"one: FRU image", "two: SPD image", "three: sensor repository",
                                     "four: event log", "five: processor ROM",
                                     "six: EFI backup index", "seven: event records"}));
    ASSERT_EQ(document["logs"].size(), 2U);
    EXPECT_EQ(document["logs"][0]["name"], at + "/seven");
    EXPECT_EQ(document["logs"][1]["name"], at + "/four");
    EXPECT_EQ(document["logs"][1]["events"], 800);
    EXPECT_TRUE(document["logs"][1]["board"].is_null());
    EXPECT_TRUE(document["logs"][1]["status"].is_null());
    // The repository beside them names the sensors.
    std::set<std::string> names;
    for (const Json& sensor : document["events"]["sensors"]) {
        if (!sensor["name"].is_null()) {
            names.insert(sensor["name"]);
        }
    }
    EXPECT_EQ(names.count("SB1 DIMM 5"), 1U);
    EXPECT_EQ(document["inputs"].size(), 7U) << "each file once";
}

TEST(ReportInputs, AreReadOnceFromAPipe)
{
    for (const char* const path :
         {"/spd/sb0/dimm0.bin", "/fru/fan-tray.bin", "/tmp/sb1_bmc_sel0"}) {
        const Outcome outcome = run(
            Arguments{"sh", "-c", "exec 3<\"$1\"; shift; cat <&3 | \"$@\"", "sh", BOARD + path} +
            ourCommand({"report", "-", "--json"}));
        EXPECT_EQ(outcome.status, 0) << outcome.err;
        const Json document = Json::parse(outcome.out);
        EXPECT_EQ(document["memory"].size() + document["fru"].size() + document["logs"].size(), 1U)
            << path;
        EXPECT_EQ(document["inputs"][0]["name"], "standard input");
        EXPECT_FALSE(document["inputs"][0]["left_out"]);
    }
}

TEST(ReportInputs, SavedEventsAreNamedByTheGivenRepository)
{
    const ScratchRoot root;
    const std::string log = BOARD + "/var/tav/fmem/ipmi/sb1_bmc_sel1";
    EXPECT_TRUE(documentOf({log})["events"]["sensors"][0]["name"].is_null());
    const Json document = documentOf({log, "--sdr", BOARD + "/etc/default/config/sdr.bin"});
    EXPECT_FALSE(document["events"]["sensors"][0]["name"].is_null());
    EXPECT_EQ(document["sensors"].size(), 50U);
}

TEST(ReportInputs, HaveTheNamesThatTheUserGave)
{
    const ScratchRoot root;
    const std::string other = root.path() + "/a board";
    fs::copy(BOARD, other, fs::copy_options::recursive);
    fs::resize_file(other + "/tmp/sb0_bmc_sel0", 50000);
    const Outcome outcome =
        run(Arguments{"sh", "-c", "cd \"$1\"; shift; exec \"$@\"", "sh", root.path()} +
            ourCommand({"report", "a board/", "--json"}));
    EXPECT_EQ(outcome.status, 1);
    EXPECT_NE(outcome.err.find("recordkit: a board/tmp/sb0_bmc_sel0: "), std::string::npos);
    EXPECT_EQ(outcome.err.find(root.path()), std::string::npos) << outcome.err;
    EXPECT_EQ(outcome.out.find(root.path()), std::string::npos);
    const Json document = Json::parse(outcome.out);
    EXPECT_EQ(document["logs"][0]["files"][0]["path"], "a board/tmp/sb0_bmc_sel0");
    EXPECT_EQ(document["inputs"][0]["name"], "a board");
    EXPECT_EQ(document["title"], "Report on a board");
    EXPECT_EQ(document["fru"][0]["file"], "a board/fru/chassis.bin");
    EXPECT_EQ(document["sensors"].size(), 50U) << "the repository is read once";
    EXPECT_EQ(document["sensors"][0]["file"], "a board/etc/default/config/sdr.bin");
}

TEST(ReportInputs, SeveralRootsAreSeveralBoardsWithTheirOwnNames)
{
    const ScratchRoot root;
    const std::string other = root.path() + "/other";
    fs::copy(BOARD, other, fs::copy_options::recursive);
    fs::remove(other + "/etc/default/config/sdr.bin");
    const Json document = documentOf({BOARD, other});
    ASSERT_EQ(document["logs"].size(), 4U);
    EXPECT_EQ(document["logs"][2]["name"], "board 0");
    EXPECT_EQ(document["logs"][2]["root"], other);
    EXPECT_EQ(document["logs"][2]["files"][0]["path"], other + "/tmp/sb0_bmc_sel0");
    EXPECT_EQ(document["events"]["count"], 2 * 2416);
    EXPECT_EQ(document["asserted"].size(), 8U);
    for (const Json& sensor : document["events"]["sensors"]) {
        if (sensor["log"] >= 2) {
            EXPECT_TRUE(sensor["name"].is_null());
        }
    }
    EXPECT_EQ(document["logs"][1]["severities"], board()["logs"][1]["severities"]);
    EXPECT_EQ(document["logs"][3]["severities"], board()["logs"][1]["severities"]);
}

TEST(ReportInputs, AnIndexInTheWorkingFolderIsOfThatFolder)
{
    const Outcome outcome =
        run(Arguments{"sh", "-c", "cd \"$1\"; shift; exec \"$@\"", "sh", BOARD + "/eeprom"} +
            ourCommand({"report", "eeprom10.bin", "--json"}));
    EXPECT_EQ(Json::parse(outcome.out)["efi"][0]["folder"], ".") << outcome.err;
}

TEST(ReportInputs, ARootInAFolderIsARoot)
{
    const ScratchRoot root;
    const std::string fleet = root.path() + "/fleet";
    fs::create_directories(fleet + "/rack7");
    fs::copy(BOARD, fleet + "/rack7/one", fs::copy_options::recursive);
    fs::copy(BOARD + "/fru/fan-tray.bin", fleet + "/spare.bin");
    const Json document = documentOf({fleet, fleet + "/./spare.bin"});
    ASSERT_EQ(document["logs"].size(), 2U);
    EXPECT_EQ(document["logs"][0]["root"], fleet + "/rack7/one");
    EXPECT_EQ(document["logs"][0]["board"], 0);
    EXPECT_EQ(document["events"]["count"], 2416);
    EXPECT_EQ(document["fru"].size(), 8U) << "a file that has two names is one";
    EXPECT_EQ(document["settings"][0]["areas"], board()["settings"][0]["areas"]);
}

TEST(ReportInputs, ARootInARootIsARoot)
{
    const ScratchRoot root;
    const std::string outer = root.path() + "/outer";
    fs::copy(BOARD, outer, fs::copy_options::recursive);
    fs::copy(BOARD, outer + "/backup", fs::copy_options::recursive);
    const Json document = documentOf({outer});
    ASSERT_EQ(document["logs"].size(), 4U);
    EXPECT_EQ(document["logs"][2]["root"], outer + "/backup");
    EXPECT_EQ(document["events"]["count"], 2 * 2416);
}

TEST(ReportInputs, AFolderWithAConfigurationIsARoot)
{
    for (const char* const folder : {"/etc/tav", "/etc/default/config", "/var/tav"}) {
        const ScratchRoot root;
        const std::string at = root.path() + "/board";
        fs::create_directories(at + folder);
        const Outcome outcome = command({"report", at, "--json"});
        EXPECT_EQ(outcome.status, 1);
        EXPECT_EQ(outcome.err, "recordkit: " + at + ": no board has an event log\n") << folder;
        EXPECT_EQ(Json::parse(outcome.out)["inputs"][0]["kind"], "root");
    }
}

TEST(ReportInputs, ProcessorsAreNamedByTheirRoot)
{
    const ScratchRoot root;
    const std::string other = root.path() + "/other";
    fs::copy(BOARD, other, fs::copy_options::recursive);
    fs::remove_all(other + "/etc/tav/common");
    const Outcome outcome =
        command({"report", BOARD, other, BOARD + "/rom/sb0-cpu0.bin", "--json"});
    const Json document = Json::parse(outcome.out);
    ASSERT_EQ(document["processors"].size(), 8U);
    EXPECT_EQ(document["processors"][0]["part_number"], "CA0042-0001");
    EXPECT_EQ(document["processors"][4]["part_number"], "ROM-PN-0");
}

TEST(ReportInputs, SavedEventsHaveTheSeveritiesOfTheUsualRoot)
{
    const ScratchRoot root;
    const std::string redundant = root.path() + "/redundant";
    fs::create_directories(redundant + "/var/tav");
    fs::create_directories(redundant + "/tmp");
    writeFile(redundant + "/tmp/psumode", Bytes{3});
    const std::string event =
        "0100027856346720000409010b03ffff\n"; // redundancy lost, but sufficient
    writeFile(root.path() + "/one.hex", event);
    const auto severity = [&](const Arguments& words) {
        const Json events = Json::parse(command(words).out)["events"];
        return events["severities"][column(events, "severity")[0]].get<std::string>();
    };
    const std::string usual = severity({"report", root.path() + "/one.hex", "--json"});
    EXPECT_EQ(severity({"--root", redundant, "report", root.path() + "/one.hex", "--json"}),
              "warning");
    EXPECT_NE(usual, "warning");
    EXPECT_EQ(severity({"report", redundant, root.path() + "/one.hex", "--json"}), usual);
}

TEST(ReportInputs, ThatAreNoFilesAreReported)
{
    const ScratchRoot root;
    const std::string at = root.path() + "/saved";
    fs::create_directories(at + "/deeper");
    fs::create_symlink("..", at + "/deeper/loop");
    fs::create_symlink("/dev/null", at + "/null");
    fs::create_symlink("nowhere", at + "/broken");
    fs::create_symlink(BOARD + "/fru/fan-tray.bin", at + "/fan");
    const Outcome outcome = command({"report", at, "--json"});
    EXPECT_EQ(outcome.status, 3);
    EXPECT_EQ(kindsOf(Json::parse(outcome.out)),
              (std::set<std::string>{"loop: not readable, left out", "null: not readable, left out",
                                     "broken: not readable, left out", "fan: FRU image"}));
    EXPECT_NE(outcome.err.find(at + "/deeper/loop: not a regular file"), std::string::npos)
        << outcome.err;
}

TEST(ReportInputs, DamageOfEachKindIsReported)
{
    const ScratchRoot root;
    const std::string at = root.path();
    const auto damaged = [&](const std::string& path, std::size_t offset, const std::string& name) {
        Bytes bytes = readFile(BOARD + path);
        bytes.at(offset) ^= 1;
        writeFile(at + "/" + name, bytes);
        const Outcome outcome = command({"report", at + "/" + name, "--json"});
        EXPECT_EQ(outcome.status, 1) << name;
        EXPECT_EQ(outcome.err.find("recordkit: " + at + "/" + name + ": "), 0U) << outcome.err;
        const Json document = Json::parse(outcome.out);
        ASSERT_FALSE(document["verdict"]["reasons"].empty()) << name;
        const Json& reason = document["verdict"]["reasons"][0];
        EXPECT_EQ(reason["kind"], "damaged") << name;
        EXPECT_EQ(reason["where"], at + "/" + name);
        EXPECT_EQ(reason["text"], document["inputs"][0]["problems"][0]);
        EXPECT_FALSE(document["inputs"][0]["left_out"]) << name;
    };
    damaged("/spd/sb0/dimm0.bin", 10, "dimm.bin");
    damaged("/rom/sb0-cpu0.bin", 30, "cpu.bin");
    damaged("/eeprom/eeprom10.bin", 30, "eeprom10.bin");
    damaged("/eeprom/eeprom4.bin", 512 + 16 + 15, "eeprom4.bin");
    damaged("/etc/default/config/sdr.bin", 978, "sdr.bin"); // a version
}

TEST(ReportInputs, SavedEventsAreNotNamedByOthersRepositories)
{
    const ScratchRoot root;
    const std::string log = root.path() + "/saved.bin";
    const std::string sdr = BOARD + "/etc/default/config/sdr.bin";
    fs::copy(BOARD + "/var/tav/fmem/ipmi/sb1_bmc_sel1", log);
    const auto namesOf = [&](const Arguments& inputs, unsigned int number) {
        std::size_t names = 0;
        const Json document = documentOf(inputs);
        for (const Json& sensor : document["events"]["sensors"]) {
            names += sensor["log"] == number && !sensor["name"].is_null() ? 1U : 0U;
        }
        return names;
    };
    EXPECT_EQ(namesOf({log}, 0), 0U);
    EXPECT_GT(namesOf({log, sdr}, 0), 0U);
    EXPECT_EQ(namesOf({BOARD, log}, 2), 0U) << "the repository of the root";
    const Bytes record = compactSdr(1, "PS1");
    writeFile(root.path() + "/other.sdr", record);
    EXPECT_EQ(namesOf({log, sdr, "--sdr", root.path() + "/other.sdr"}, 0), 0U);
    // A file that was saved inside a root is of that root.
    const std::string other = root.path() + "/other";
    fs::copy(BOARD, other, fs::copy_options::recursive);
    fs::copy(log, other + "/saved.bin");
    EXPECT_GT(namesOf({other}, 2), 0U);
}

TEST(ReportInputs, OfTwoRepositoriesTheFirstNamesASensor)
{
    const ScratchRoot root;
    Bytes sdr = readFile(BOARD + "/etc/default/config/sdr.bin");
    const Bytes name = textBytes("Fan 3");
    const auto at = std::search(sdr.begin(), sdr.end(), name.begin(), name.end());
    ASSERT_NE(at, sdr.end());
    at[2] = 'x';
    writeFile(root.path() + "/other.bin", sdr);
    const Json document = documentOf({BOARD, "--sdr", BOARD + "/etc/default/config/sdr.bin",
                                      "--sdr", root.path() + "/other.bin"});
    std::map<std::string, std::size_t> readings;
    for (const Json& sensor : document["sensors"]) {
        readings[sensor["name"]] += sensor["readings"].size();
    }
    EXPECT_EQ(readings["Fan 3"], 1U);
    EXPECT_EQ(readings["Fax 3"], 0U);
}

TEST(ReportInputs, AGivenRepositoryIsOfNoRoot)
{
    const ScratchRoot root;
    const std::string sdr = root.path() + "/given.bin";
    fs::copy(BOARD + "/etc/default/config/sdr.bin", sdr);
    const Json document = documentOf({BOARD, "--sdr", sdr});
    for (const Json& sensor : document["sensors"]) {
        const bool isGiven = sensor["file"] == sdr;
        EXPECT_EQ(sensor["root"], isGiven ? Json() : Json(BOARD));
    }
    EXPECT_EQ(document["sensors"].size(), 100U);
}

TEST(ReportInputs, SavedEventsHaveTheTextsOfRules)
{
    const std::string log = BOARD + "/tmp/sb1_bmc_sel0";
    const auto has = [](const Json& document, const std::string& wanted) {
        const std::vector<std::string> texts = textsOf(document["events"]["texts"]);
        return std::find(texts.begin(), texts.end(), wanted) != texts.end();
    };
    const std::string text = "board 1 was reset by a memory error";
    EXPECT_TRUE(has(board(), text));
    EXPECT_FALSE(has(documentOf({log}), text));
    EXPECT_TRUE(
        has(documentOf({log, "--rules", BOARD + "/etc/default/config/events.rules"}), text));
}

TEST(ReportInputs, AnEepromNeedsItsIndexBesideIt)
{
    const ScratchRoot root;
    const std::string at = root.path() + "/eeproms";
    fs::create_directories(at);
    fs::copy(BOARD + "/eeprom/eeprom11.bin", at + "/eeprom11.bin");
    const Json alone = documentOf({at}, 1);
    EXPECT_EQ(kindsOf(alone), (std::set<std::string>{"eeprom11.bin: not recognised, left out"}));
    fs::copy(BOARD + "/eeprom/eeprom10.bin", at + "/eeprom10.bin");
    fs::copy(BOARD + "/eeprom/eeprom11.bin", at + "/other11.bin");
    EXPECT_EQ(kindsOf(documentOf({at}, 1)),
              (std::set<std::string>{"eeprom10.bin: EFI backup index", "eeprom11.bin: EEPROM",
                                     "other11.bin: not recognised, left out"}));
}

TEST(ReportInputs, AnIndexFileIsAnIndexAsWell)
{
    const Json document = documentOf({BOARD + "/etc/default/config/panelindex.dat"});
    ASSERT_EQ(document["settings"].size(), 1U);
    EXPECT_EQ(document["settings"][0]["areas"][1]["offset"], 1280);
    EXPECT_EQ(document["settings"][0]["areas"][1]["index_file"], "no file");
}

TEST(ReportInputs, AreAllBoardsOfARootWhateverTheMachineHas)
{
    const ScratchRoot root;
    const std::string other = root.path() + "/other";
    fs::copy(BOARD, other, fs::copy_options::recursive);
    for (const std::string folder : {"/tmp/", "/var/tav/fmem/ipmi/"}) {
        fs::copy(other + folder + "sb1_bmc_sel0", other + folder + "sb255_bmc_sel0");
    }
    const Outcome outcome = command({"--boards", "1", "report", other, "--json"});
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    const Json document = Json::parse(outcome.out);
    ASSERT_EQ(document["logs"].size(), 3U);
    EXPECT_EQ(document["logs"][2]["name"], "board 255");
    EXPECT_EQ(document["logs"][2]["events"], 99);
}

TEST(ReportInputs, ThatAreNotRecognisedAreListedAndReported)
{
    const ScratchRoot root;
    const std::string at = root.path() + "/saved";
    fs::create_directories(at + "/deeper");
    writeFile(at + "/deeper/odd", Bytes({1, 2, 3, 0xFF, 0, 0x80}));
    writeFile(at + "/notes.txt", "a list\n");
    writeFile(at + "/empty", Bytes());
    fs::copy(BOARD + "/fru/fan-tray.bin", at + "/fan");
    const Outcome outcome = command({"report", at, "--json"});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.err, "recordkit: " + at + "/deeper/odd: not recognised; left out\n");
    const Json document = Json::parse(outcome.out);
    EXPECT_EQ(kindsOf(document),
              (std::set<std::string>{"odd: not recognised, left out", "notes.txt: text",
                                     "empty: empty file", "fan: FRU image"}));
    EXPECT_EQ(document["verdict"]["level"], "warning");
    EXPECT_EQ(document["verdict"]["reasons"][0], (Json{{"kind", "left out"},
                                                       {"where", at + "/deeper/odd"},
                                                       {"text", "not recognised; left out"}}));
}

TEST(ReportInputs, ThatWereNamedMustBeImages)
{
    const ScratchRoot root;
    const std::string at = root.path();
    writeFile(at + "/notes.txt", "a list\n");
    writeFile(at + "/empty", Bytes());
    const Outcome outcome =
        command({"report", at + "/notes.txt", at + "/empty", at + "/missing", "--json"});
    EXPECT_EQ(outcome.status, 3);
    EXPECT_EQ(outcome.err, "recordkit: " + at + "/notes.txt: text, expected an image; left out\n" +
                               "recordkit: " + at +
                               "/empty: empty file, expected an image; left out\n" +
                               "recordkit: " + at +
                               "/missing cannot be opened: No such file or directory\n"
                               "recordkit: 3 of 3 files are unreadable or damaged\n");
    const Json document = Json::parse(outcome.out);
    EXPECT_EQ(kindsOf(document),
              (std::set<std::string>{"notes.txt: text, left out", "empty: empty file, left out",
                                     "missing: not readable, left out"}));
    EXPECT_EQ(document["verdict"]["reasons"].size(), 3U);
}

TEST(ReportInputs, ThatAreDamagedAreShownAndReported)
{
    const ScratchRoot root;
    const std::string at = root.path();
    Bytes image = readFile(BOARD + "/fru/fan-tray.bin");
    image[7] ^= 1;
    writeFile(at + "/fan.bin", image);
    const Outcome outcome = command({"report", at + "/fan.bin", "--json"});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_NE(outcome.err.find("fan.bin: common header: checksum E5h at offset 7, expected E4h"),
              std::string::npos)
        << outcome.err;
    const Json document = Json::parse(outcome.out);
    EXPECT_EQ(document["fru"].size(), 1U);
    EXPECT_EQ(document["verdict"]["level"], "warning");
    EXPECT_EQ(document["verdict"]["reasons"][0]["kind"], "damaged");
    EXPECT_EQ(document["inputs"][0]["problems"], document["fru"][0]["problems"]);
}

TEST(ReportInputs, ADamagedLogIsShownWithItsFindings)
{
    const ScratchRoot root;
    const std::string other = root.path() + "/other";
    fs::copy(BOARD, other, fs::copy_options::recursive);
    fs::resize_file(other + "/tmp/sb0_bmc_sel0", 50000);
    const Outcome outcome = command({"report", other, "--json"});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_NE(outcome.err.find(other + "/tmp/sb0_bmc_sel0: "), std::string::npos) << outcome.err;
    const Json document = Json::parse(outcome.out);
    EXPECT_FALSE(document["logs"][0]["sound"]);
    EXPECT_TRUE(document["logs"][1]["sound"]);
    bool isReason = false;
    for (const Json& reason : document["verdict"]["reasons"]) {
        isReason = isReason || (reason["kind"] == "damaged" && reason["where"] == "board 0");
    }
    EXPECT_TRUE(isReason) << document["verdict"];
}

TEST(ReportChoice, SaysHowManyEventsHaveNoDate)
{
    const Outcome outcome = command({"report", BOARD, "--json", "--since", "2026-11-20"});
    EXPECT_NE(outcome.err.find("30 events without a date are not shown"), std::string::npos)
        << outcome.err;
}

TEST(ReportChoice, LeavesEventsOutAndSaysSo)
{
    const Json document = documentOf({BOARD, "--since", "2026-11-20"});
    Json list = answer({"sel", "list", "--board", "all", "--since", "2026-11-20"});
    EXPECT_EQ(document["events"]["count"], list.size());
    EXPECT_EQ(document["left_out"], 2416 - list.size());
    EXPECT_EQ(document["chosen"], "since 2026-11-20");
    // What is still asserted does not depend on it; events that are left out have no row.
    EXPECT_EQ(document["asserted"].size(), 4U);
    std::size_t withoutRow = 0;
    for (const Json& state : document["asserted"]) {
        if (state["since_row"].is_null()) {
            ++withoutRow;
            EXPECT_LT(state["since"], "2026-11-20");
            continue;
        }
        const auto row = state["since_row"].get<std::size_t>();
        EXPECT_EQ(list[row]["time"], state["since"]);
        EXPECT_EQ(list[row]["sensor_name"], state["sensor_name"]);
    }
    EXPECT_EQ(withoutRow, 1U);
    EXPECT_EQ(document["asserted"][0]["row"], document["asserted"][0]["since_row"]);
    EXPECT_EQ(document["verdict"]["reasons"].back()["kind"], "left out");
}

TEST(ReportChoice, ReadsTimesInTheChosenZoneAndShowsUtc)
{
    const Outcome outcome = command({"--tz", "+05:00", "report", BOARD, "--json", "--since",
                                     "2026-11-20 19:02:31", "--until", "2026-11-20 19:02:31"});
    const Json document = Json::parse(outcome.out);
    EXPECT_EQ(document["summary"]["first"], "2026-11-20T14:02:31Z");
    EXPECT_EQ(document["asserted"][0]["since"], "2026-11-20T14:02:31Z");
    EXPECT_EQ(document["logs"][0]["status"], board()["logs"][0]["status"]);
    EXPECT_EQ(document["summary"]["hours"],
              Json::parse(R"([{"hour": "2026-11-20T14:00:00Z", "events": 1}])"));
}

TEST(ReportPage, AreAtMostSoLargeThatTheyCanBeShown)
{
    const Bytes bytes = readFile(RECORDKIT_SOURCE "/report/src/document.mjs");
    const std::string source(bytes.begin(), bytes.end());
    EXPECT_NE(source.find("const MOST_EVENTS = " +
                          std::to_string(recordkit::tool::MOST_EVENTS_OF_PAGE) + ";"),
              std::string::npos);
}

TEST(ReportPage, ContainsTheDocumentAndNoMarkupOfIt)
{
    const ScratchRoot root;
    const std::string page = root.path() + "/report.html";
    const std::string title = "</script><script>alert(1)</script><!--";
    const Outcome outcome = command({"report", BOARD, "-o", page, "--title", title});
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    const Bytes bytes = readFile(page);
    EXPECT_EQ(outcome.out, page + ": critical: 4 states still asserted\n");
    const std::string html(bytes.begin(), bytes.end());
    EXPECT_EQ(html.find(title), std::string::npos);
    const std::string begin = "<script type=\"application/json\" id=\"document\">";
    const std::size_t at = html.find(begin) + begin.size();
    const std::string json = html.substr(at, html.find("</script>", at) - at);
    EXPECT_EQ(json.find('<'), std::string::npos);
    Json document = Json::parse(json);
    EXPECT_EQ(document["title"], title);
    document["title"] = board()["title"];
    EXPECT_EQ(document, board());
    EXPECT_EQ(html.find("@DOCUMENT@"), std::string::npos);
    EXPECT_EQ(html.find("http-equiv=\"Content-Security-Policy\" content=\"default-src 'none'"),
              html.find("http-equiv"));
}

TEST(ReportPage, IsTheSameForTheSameTime)
{
    const ScratchRoot root;
    for (const char* const name : {"/one.html", "/two.html"}) {
        ASSERT_EQ(command({"report", BOARD, "-o", root.path() + name}).status, 0);
    }
    EXPECT_EQ(readFile(root.path() + "/one.html"), readFile(root.path() + "/two.html"));
}

TEST(ReportChoice, FindsTheRowsOfStatesInTheirLogAndFile)
{
    // The same slots in the files of two boards, and of two files of a board.
    const ScratchRoot root;
    const std::string at = root.path() + "/board";
    fs::create_directories(at + "/tmp");
    fs::create_directories(at + "/var/tav/fmem/ipmi");
    const auto slot = [](unsigned char id, unsigned char sensor) {
        Bytes bytes = {0xFF, 0xFF, id, 0, 2,      id, 0x10, 0x2A, 0x67,
                       0x20, 0,    4,  4, sensor, 1,  0x52, 4,    5};
        bytes.resize(138, 0);
        return bytes;
    };
    const auto file = [&](const std::string& path, const std::vector<Bytes>& slots) {
        Bytes content;
        for (const Bytes& each : slots) {
            content = content + each;
        }
        content.resize(110400, 0xFF);
        writeFile(at + path, content);
    };
    std::vector<Bytes> full;
    for (unsigned int i = 0; i < 800; ++i) {
        full.push_back(slot(static_cast<unsigned char>(1 + i % 200), 0x10));
    }
    file("/tmp/sb0_bmc_sel0", {slot(201, 0x20), slot(202, 0x21)});
    file("/var/tav/fmem/ipmi/sb0_bmc_sel0", {slot(201, 0x20), slot(202, 0x21)});
    file("/var/tav/fmem/ipmi/sb0_bmc_sel1", full);
    file("/tmp/sb1_bmc_sel0", {slot(203, 0x30), slot(204, 0x31)});
    file("/var/tav/fmem/ipmi/sb1_bmc_sel0", {slot(203, 0x30), slot(204, 0x31)});
    const Json document = documentOf({at, "--deasserted"});
    EXPECT_EQ(document["events"]["count"], 0);
    ASSERT_EQ(document["asserted"].size(), 5U);
    EXPECT_TRUE(document["asserted"][0]["row"].is_null());
    for (const char* const sensor : {"0x20", "0x21", "0x30", "0x31"}) {
        const Json one = documentOf({at, "--sensor", sensor});
        ASSERT_EQ(one["events"]["count"], 1) << sensor;
        const auto log = one["events"]["sensors"][0]["log"];
        for (const Json& state : one["asserted"]) {
            const bool isOne =
                state["log"] == log && state["sensor"] == std::stoi(sensor, nullptr, 16);
            EXPECT_EQ(state["row"], isOne ? Json(0) : Json()) << sensor << state;
        }
    }
}

TEST(ReportUsage, NeedsAPageOrJson)
{
    for (const Arguments& words :
         {Arguments{"report", BOARD}, Arguments{"report", BOARD, "--json", "-o", "x.html"}}) {
        const Outcome outcome = command(words);
        EXPECT_EQ(outcome.status, 2);
        EXPECT_EQ(outcome.err,
                  "recordkit: expected -o FILE for the page, or --json for its document\n");
    }
    for (const char* const time : {"yesterday", "12x", "", "-1", "4294967296"}) {
        const Outcome outcome = run(ourCommand({"report", BOARD, "--json"}), "",
                                    {std::string("SOURCE_DATE_EPOCH=") + time});
        EXPECT_EQ(outcome.status, 2) << time;
        EXPECT_EQ(outcome.err, "recordkit: SOURCE_DATE_EPOCH: expected seconds since 1970\n");
    }
}
