// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <filesystem>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <sstream>

#include <recordkit/inspect/sensor/Sensor.h>
#include <recordkit/inspect/words/Entities.h>
#include <recordkit/inspect/words/SensorUnits.h>

#include "support/Answers.h"
#include "support/Failures.h"
#include "support/Process.h"
#include "support/ScratchRoot.h"
#include "support/SdrRecords.h"
#include "support/Terminal.h"

using namespace recordkit::inspect;
using namespace testing_support;

namespace {

const std::string OWN = RECORDKIT_SOURCE "/examples/data/sdr/repository.sdr";

Outcome sdr(const Arguments& words, const std::string& input = "")
{
    Arguments all = {"sdr"};
    all.insert(all.end(), words.begin(), words.end());
    return run(ourCommand(all), input);
}

}

TEST(SdrCommand, ListsARepository)
{
    const Outcome outcome = sdr({"list", OWN});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(std::count(outcome.out.begin(), outcome.out.end(), '\n'), 38);
    for (const char* const line :
         {"0001h  full          01h     Ambient           Temperature               7.1      01h "
          "threshold         degrees C   +2 -2         246 0 5           85 90 95\n",
          "threshold         Volts       +0.034 -0.034  2.18 2.45 2.58    3.54 3.67 3.81\n",
          "000Dh  full          23h     12-34.5 ", "001Eh  compact       64h     FAN REDUNDANT ",
          "0021h  event-only    70h     POST              System Firmware Progress  7.1      6Fh "
          "sensor-specific   -           -             - ",
          "0022h  FRU locator   -       Main FRU0 ", "0023h  MC locator    -       BMC board ",
          "0025h  OEM           -       "}) {
        EXPECT_NE(outcome.out.find(line), std::string::npos) << line;
    }
    const auto json = nlohmann::json::parse(sdr({"list", OWN, "--json"}).out);
    EXPECT_EQ(json.size(), 37U);
    EXPECT_EQ(json[11]["name"], "5V AUX");
    EXPECT_EQ(json[30]["positive_hysteresis"], 3);
    EXPECT_EQ(json[30]["negative_hysteresis"], 4);
    EXPECT_EQ(json[0]["assertion_mask"], 0x7A95);
    EXPECT_EQ(json[3]["name"], "FAN1");
    EXPECT_EQ(json[3]["lower_non_recoverable"], 0);
    EXPECT_EQ(json[3]["lower_critical"], 480);
    EXPECT_EQ(json[3]["lower_non_critical"], 720);
    EXPECT_EQ(json[3]["upper_non_critical"], 15300);
    EXPECT_EQ(json[12]["upper_non_critical"], 0);
    EXPECT_TRUE(json[12]["upper_non_recoverable"].is_null()) << "its mask does not have it";
    EXPECT_TRUE(json[20]["lower_critical"].is_null()) << "a compact record";
    const auto raw = nlohmann::json::parse(sdr({"list", OWN, "--json", "--raw"}).out);
    EXPECT_EQ(raw[3]["lower_critical"], 8);
}

TEST(SdrCommand, ShowsOneRecordFieldByField)
{
    const Outcome outcome = sdr({"show", OWN, "0x1F"});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.out.rfind("FIELD                     BYTES          VALUE                 "
                                "MEANING\nrecord_id                 0 to 1         31           "
                                "         1Fh\n",
                                0),
              0U)
        << outcome.out;
    EXPECT_NE(outcome.out.find("\nid_string                 32 to 35 +     Slot"),
              std::string::npos);
    EXPECT_EQ(sdr({"show", OWN, "1Fh"}).out, outcome.out);
    EXPECT_EQ(sdr({"show", OWN, "31"}).out, outcome.out);
    const Outcome locator = sdr({"show", OWN, "0x22"});
    EXPECT_EQ(locator.status, 0);
    EXPECT_NE(locator.out.find("\nis_logical_fru            7 bit 7        1                     "
                               "logical FRU device\n"),
              std::string::npos)
        << locator.out;
}

TEST(SdrCommand, ShowsRecordsByNumberAndName)
{
    const auto recordsOf = [](const Outcome& outcome) {
        Lines titles;
        std::istringstream lines(outcome.out);
        for (std::string line; std::getline(lines, line);) {
            if (line.rfind("== ", 0) == 0) {
                titles.push_back(line);
            }
        }
        return titles;
    };
    // Every name that contains the text, in any case.
    const Outcome fans = sdr({"show", OWN, "fan"});
    EXPECT_EQ(fans.status, 0);
    EXPECT_EQ(recordsOf(fans), Lines({"== record 0004h at offset 169: full, FAN1",
                                      "== record 0005h at offset 221: full, FAN2",
                                      "== record 0006h at offset 273: full, FAN3",
                                      "== record 0007h at offset 325: full, FAN4",
                                      "== record 0008h at offset 377: full, FAN5",
                                      "== record 0009h at offset 429: full, FAN6",
                                      "== record 001Eh at offset 1381: compact, FAN REDUNDANT"}));
    EXPECT_EQ(fans.out.rfind("== ", 0), 0U);
    EXPECT_NE(fans.out.find("\n\n== record 0005h"), std::string::npos);
    // A whole name goes first.
    const Bytes two = compactSdr(1, "PS1") + compactSdr(2, "ps") + compactSdr(3, "PS");
    const std::string repository(two.begin(), two.end());
    EXPECT_EQ(recordsOf(sdr({"show", "-", "Ps"}, repository)),
              Lines({"== record 0002h at offset 35: compact, ps",
                     "== record 0003h at offset 69: compact, PS"}));
    EXPECT_EQ(recordsOf(sdr({"show", "-", "S"}, repository)).size(), 3U);
    // One record is as one by its id.
    EXPECT_EQ(sdr({"show", OWN, "post"}).out, sdr({"show", OWN, "0x21"}).out);
    EXPECT_EQ(sdr({"show", OWN, "number:70h"}).out, sdr({"show", OWN, "0x21"}).out);
    EXPECT_EQ(sdr({"show", OWN, "number:0x70"}).out, sdr({"show", OWN, "33"}).out);
    // A number is an id; a name that is a number needs its prefix.
    EXPECT_EQ(recordsOf(sdr({"show", OWN, "name:12"})).size(), 3U);
    EXPECT_EQ(sdr({"show", OWN, "name:post"}).out, sdr({"show", OWN, "0x21"}).out);
}

TEST(SdrCommand, ShowsTheRecordThatSensorsShare)
{
    Bytes shared = compactSdr(0x10, "Slot ");
    shared[23] = 0x03;
    shared[24] = 0x09;
    const std::string repository(shared.begin(), shared.end());
    const std::string out = sdr({"show", "-", "0x10"}, repository).out;
    EXPECT_NE(out.find("share_count"), std::string::npos);
    for (const char* const what :
         {"number:10h", "number:11h", "number:12h", "slot 9", "Slot 11", "Slot "}) {
        EXPECT_EQ(sdr({"show", "-", what}, repository).out, out) << what;
    }
    for (const char* const what : {"number:0Fh", "number:13h", "slot 12", "slot 8"}) {
        EXPECT_EQ(sdr({"show", "-", what}, repository).status, 1) << what;
    }
}

TEST(SdrCommand, SaysWhatThereIsInsteadOfAnAbsentRecord)
{
    const auto errorOf = [](const char* what, int status) {
        const Outcome outcome = sdr({"show", OWN, what});
        EXPECT_EQ(outcome.status, status) << what;
        EXPECT_EQ(outcome.out, "") << what;
        const std::size_t at = outcome.err.find(what[0] == 'W' ? "WHAT" : ".sdr: ");
        return at == std::string::npos ? outcome.err : outcome.err.substr(at);
    };
    EXPECT_EQ(errorOf("999", 1), ".sdr: there is no record 03E7h among its 37\n");
    EXPECT_EQ(errorOf("number:30h", 1),
              ".sdr: none of its 33 sensor records describes sensor 30h\n");
    EXPECT_EQ(errorOf("nix\x1b", 1),
              ".sdr: none of its 34 names contains \"nix\\x1B\"; recordkit sdr list shows them\n");
    EXPECT_EQ(errorOf("number:100h", 2),
              "recordkit: WHAT: \"100h\" is not a sensor number from 0 to FFh\n");
    EXPECT_EQ(errorOf("", 2), "recordkit: WHAT: expected a record id, number:N or a name\n");
    EXPECT_EQ(errorOf("name:", 2), "recordkit: WHAT: expected a record id, number:N or a name\n");
}

TEST(SdrCommand, ShowsSeveralRecordsAsOneListOfFields)
{
    const auto one = nlohmann::json::parse(sdr({"show", OWN, "4", "--json"}).out);
    for (const auto& field : one) {
        EXPECT_EQ(field["record"], 4);
    }
    EXPECT_EQ(one[0]["name"], "record_id");
    EXPECT_EQ(one[0]["value"], 4);
    EXPECT_EQ(one[0]["width"], 2);
    const auto all = nlohmann::json::parse(sdr({"show", OWN, "fan", "--json"}).out);
    std::map<int, std::size_t> counts;
    for (const auto& field : all) {
        ++counts[field["record"].get<int>()];
    }
    EXPECT_EQ(counts.size(), 7U);
    EXPECT_EQ(counts[4], one.size());
    const std::string csv = sdr({"show", OWN, "fan", "--csv"}).out;
    EXPECT_EQ(csv.rfind("name,value,meaning,offset,width,bits,also,record\r\n", 0), 0U) << csv;
}

TEST(SdrCommand, ShowsADamagedRecordAndReportsIt)
{
    Bytes locator(11, 0);
    locator[10] = 0xC8;
    const Bytes cut = sdrRecord(1, SDR_FRU_LOCATOR, locator + textBytes("ab\x1b"));
    const Outcome outcome = sdr({"show", "-", "1"}, std::string(cut.begin(), cut.end()));
    EXPECT_EQ(outcome.status, 1);
    EXPECT_NE(outcome.out.find("ab\\x1B"), std::string::npos) << outcome.out;
    EXPECT_EQ(outcome.err, "recordkit: standard input: record 0001h at offset 0: 3 bytes of its id "
                           "string, expected 8\n");
    // One that a listing leaves out is reported once.
    Bytes sensor = compactSdr(1, "PS1");
    sensor[31] = 0xC8;
    const Outcome shown = sdr({"show", "-", "1"}, std::string(sensor.begin(), sensor.end()));
    EXPECT_EQ(shown.status, 1);
    EXPECT_NE(shown.out.find("PS1"), std::string::npos);
    EXPECT_EQ(shown.err, "recordkit: standard input: record at offset 0: 35 bytes, its id string "
                         "is cut off\n");
}

TEST(SdrCommand, TitlesOfRecordsAreEscaped)
{
    const Bytes two = compactSdr(1, "a\x1b[2J") + compactSdr(2, "a");
    const Outcome outcome = sdr({"show", "-", "number:1"}, std::string(two.begin(), two.end()));
    EXPECT_EQ(outcome.out.find('\x1b'), std::string::npos);
    const Bytes again = compactSdr(1, "a\x1b[2J") + compactSdr(1, "b");
    const Outcome both = sdr({"show", "-", "1"}, std::string(again.begin(), again.end()));
    EXPECT_EQ(both.out.rfind("== record 0001h at offset 0: compact, a\\x1B[2J\n", 0), 0U)
        << both.out;
    EXPECT_EQ(both.out.find('\x1b'), std::string::npos);
}

TEST(SdrCommand, ListsTheNamesOfDeviceLocators)
{
    Bytes body(11, 0);
    body[10] = 0xC3;
    const Bytes record = sdrRecord(1, SDR_DEVICE_LOCATOR, body + textBytes("DEV"));
    const Outcome outcome = sdr({"list", "-"}, std::string(record.begin(), record.end()));
    EXPECT_NE(outcome.out.find("0001h  device        -       DEV "), std::string::npos)
        << outcome.out;
}

TEST(SdrCommand, SaysHowSevereEventsAre)
{
    const Bytes bytes = compactSdr(1, "PS1");
    const Outcome outcome = sdr({"events", "-"}, std::string(bytes.begin(), bytes.end()));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(
        outcome.out,
        "NUMBER  NAME              SENSOR TYPE               OFFSET  WHEN        SEVERITY         "
        "EVENT\n"
        "01h     PS1               Power Supply              0       asserted    informational    "
        "Presence detected\n"
        "01h     PS1               Power Supply              1       asserted    critical         "
        "Power Supply Failure detected\n"
        "01h     PS1               Power Supply              3       asserted    critical         "
        "Power Supply input lost (AC/DC)\n");
    const auto json = nlohmann::json::parse(
        sdr({"events", "-", "--json"}, std::string(bytes.begin(), bytes.end())).out);
    EXPECT_EQ(json[1]["offset"], 1);
    EXPECT_EQ(json[1]["severity"], "critical");
    EXPECT_EQ(json[1]["assertion"], true);
    EXPECT_EQ(json[1]["deassertion"], false);
}

TEST(SdrCommand, ShowsEventsOfBothDirections)
{
    Bytes bytes = compactSdr(1, "PS1");
    bytes[16] = 0x06; // 1 and 2
    bytes[17] = 0x80; // reserved
    const auto json = nlohmann::json::parse(
        sdr({"events", "-", "--json"}, std::string(bytes.begin(), bytes.end())).out);
    const bool expected[][2] = {{true, false}, {true, true}, {false, true}, {true, false}};
    ASSERT_EQ(json.size(), 4U);
    for (std::size_t i = 0; i < 4; ++i) {
        EXPECT_EQ(json[i]["offset"], i);
        EXPECT_EQ(json[i]["assertion"], expected[i][0]) << i;
        EXPECT_EQ(json[i]["deassertion"], expected[i][1]) << i;
    }
    const std::string text = sdr({"events", "-"}, std::string(bytes.begin(), bytes.end())).out;
    EXPECT_NE(text.find(" 1       both "), std::string::npos) << text;
    EXPECT_NE(text.find(" 2       deasserted "), std::string::npos) << text;
    // Of a threshold sensor the twelve crossings, and not what its readings compare with.
    Bytes full(43, 0);
    full[8] = 0x01;
    full[9] = 0x01;
    full[10] = 0x78;
    full[42] = 0xC0;
    const Bytes threshold = sdrRecord(1, SDR_FULL, full);
    const auto crossings = nlohmann::json::parse(
        sdr({"events", "-", "--json"}, std::string(threshold.begin(), threshold.end())).out);
    ASSERT_EQ(crossings.size(), 2U);
    EXPECT_EQ(crossings[0]["offset"], 0);
    EXPECT_EQ(crossings[1]["offset"], 11);
    EXPECT_EQ(crossings[1]["severity"], "non-recoverable");
}

TEST(SdrCommand, ShowsWhatTheStandardNamesForAnEventOnlyRecord)
{
    Bytes body(12, 0);
    body[2] = 0x30;
    body[5] = 0x23; // watchdog
    body[6] = 0x6F;
    body[7] = 0x02; // two sensors
    body[11] = 0xC2;
    const Bytes record = sdrRecord(1, SDR_EVENT_ONLY, body + textBytes("WD"));
    const std::string input(record.begin(), record.end());
    const auto json = nlohmann::json::parse(sdr({"events", "-", "--json"}, input).out);
    ASSERT_EQ(json.size(), 10U) << json;
    EXPECT_EQ(json[0]["event"], "Timer expired, status only");
    EXPECT_EQ(json[3]["offset"], 3);
    EXPECT_EQ(json[4]["offset"], 8);
    EXPECT_TRUE(json[0]["assertion"].is_null());
    EXPECT_TRUE(json[0]["deassertion"].is_null());
    EXPECT_EQ(json[0]["name"], "WD0");
    EXPECT_EQ(json[9]["name"], "WD1");
    EXPECT_EQ(json[9]["number"], 0x31);
    EXPECT_EQ(json[9]["record_type_name"], "event-only");
    EXPECT_NE(sdr({"events", "-"}, input).out.find(" no mask "), std::string::npos);
    // Where the standard names none, the sensor is shown all the same.
    Bytes oem = record;
    oem[11] = 0x70;
    const auto none = nlohmann::json::parse(
        sdr({"events", "-", "--json"}, std::string(oem.begin(), oem.end())).out);
    ASSERT_EQ(none.size(), 2U);
    EXPECT_TRUE(none[0]["offset"].is_null());
    EXPECT_TRUE(none[0]["severity"].is_null());
    EXPECT_TRUE(none[0]["event"].is_null());
}

TEST(SdrCommand, ChecksWhatRecordsSayTogether)
{
    Bytes one = compactSdr(1, "PS1");
    one[8] = 10;
    Bytes other = one;
    other[0] = 2;
    const std::string twice =
        std::string(one.begin(), one.end()) + std::string(other.begin(), other.end());
    const Outcome outcome = sdr({"check", "-"}, twice);
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.out,
              "ID     OFFSET  NAME              PROBLEM\n"
              "0002h  35      PS1               the record at offset 0 describes sensor 01h too\n");
    EXPECT_EQ(outcome.err, "recordkit: standard input: 1 problem in 2 records\n");
    const auto json = nlohmann::json::parse(sdr({"check", "-", "--json"}, twice).out);
    EXPECT_EQ(json[0]["id"], 2);
    EXPECT_EQ(json[0]["offset"], 35);
    EXPECT_EQ(json[0]["problem"], "the record at offset 0 describes sensor 01h too");
    const Outcome sound = sdr({"check", "-"}, std::string(one.begin(), one.end()));
    EXPECT_EQ(sound.status, 0);
    EXPECT_EQ(sound.err, "");
}

TEST(SdrCommand, NamesDamage)
{
    Bytes bytes = compactSdr(1, "PS1") + compactSdr(2, "PS2");
    bytes[37] = 0;
    const Outcome outcome = sdr({"list", "-"}, std::string(bytes.begin(), bytes.end()));
    EXPECT_EQ(outcome.status, 1);
    EXPECT_NE(outcome.out.find("PS1"), std::string::npos);
    EXPECT_EQ(outcome.err, "recordkit: standard input: record at offset 35: SDR version 00h at "
                           "offset 37, expected 51h\n");
    EXPECT_EQ(sdr({"list", "/nowhere"}).status, 3);
    EXPECT_EQ(sdr({"list"}).status, 2);
}

namespace {

struct Repository {
    std::string name;
    std::string file;
    std::string listing; ///< ipmitool sdr elist all
};

void PrintTo(const Repository& repository, std::ostream* out)
{
    *out << repository.name;
}

std::vector<Repository> allRepositories()
{
    namespace fs = std::filesystem;
    std::vector<Repository> all = {
        {"own", OWN, RECORDKIT_SOURCE "/examples/data/sdr/repository.ipmitool.txt"}};
    const std::string shared = RECORDKIT_PUBLIC_DATA "/sdr";
    if (!fs::exists(shared)) {
        return all;
    }
    for (const auto& folder : {shared, shared + "/ipmitool-dump"}) {
        for (const auto& entry : fs::directory_iterator(folder)) {
            if (entry.path().extension() == ".sdr") {
                const std::string stem = entry.path().stem().string();
                const std::string server = stem.substr(0, stem.find('.'));
                all.push_back({stem, entry.path().string(),
                               shared + "/ref/" + server + ".ipmitool-sdr-elist-all.txt"});
            }
        }
    }
    std::sort(all.begin() + 1, all.end(),
              [](const Repository& a, const Repository& b) { return a.name < b.name; });
    return all;
}

std::vector<std::string> columnsOf(const std::string& line)
{
    std::vector<std::string> columns;
    std::istringstream stream(line);
    for (std::string column; std::getline(stream, column, '|');) {
        columns.push_back(column);
    }
    return columns;
}

std::string trimmed(std::string text)
{
    text.erase(text.find_last_not_of(' ') + 1);
    const std::size_t first = text.find_first_not_of(' ');
    return first == std::string::npos ? "" : text.substr(first);
}

class SdrPeers : public testing::TestWithParam<Repository> {};

}

TEST_P(SdrPeers, RecordsAreThoseOfIpmitool)
{
    const std::string content = [] {
        const Bytes bytes = readFile(GetParam().file);
        return std::string(bytes.begin(), bytes.end());
    }();
    const SdrFile file = parseSdrFile(content);
    EXPECT_EQ(file.problems, Lines());
    // ipmitool lists sensors and locators; it leaves OEM records and associations out.
    std::vector<Sensor> ours;
    for (const SdrRecord& each : file.records) {
        const Sensor sensor = readSensor(each);
        const unsigned char type = sensor.recordType;
        if (sensor.isSensor || type == SDR_EVENT_ONLY || type == SDR_FRU_LOCATOR ||
            type == SDR_CONTROLLER_LOCATOR) {
            ours.push_back(sensor);
        }
    }
    std::istringstream lines(contentOf(GetParam().listing));
    std::size_t at = 0;
    std::size_t compared = 0;
    for (std::string line; std::getline(lines, line);) {
        const std::vector<std::string> columns = columnsOf(line);
        if (columns.size() < 4) {
            continue;
        }
        ASSERT_LT(at, ours.size()) << line;
        const Sensor& sensor = ours[at++];
        // It prints the raw bytes of 6-bit and BCD plus names.
        const bool isText = std::all_of(columns[0].begin(), columns[0].end(), [](char each) {
            return static_cast<unsigned char>(each) >= 0x20 &&
                   static_cast<unsigned char>(each) < 0x7F;
        });
        if (isText) {
            EXPECT_EQ(trimmed(columns[0]), trimmed(sensor.name)) << line;
        }
        if (!sensor.isSensor) {
            continue;
        }
        ++compared;
        EXPECT_EQ(trimmed(columns[1]), [&sensor] {
            char number[8];
            std::snprintf(number, sizeof number, "%02Xh", sensor.number);
            return std::string(number);
        }()) << line;
        EXPECT_EQ(trimmed(columns[3]),
                  std::to_string(sensor.entityId) + "." + std::to_string(sensor.entityInstance))
            << line;
    }
    EXPECT_EQ(at, ours.size());
    EXPECT_GT(compared, 1U);
}

INSTANTIATE_TEST_SUITE_P(
    Samples, SdrPeers, testing::ValuesIn(allRepositories()), [](const auto& each) {
        std::string name = each.param.name;
        std::replace_if(
            name.begin(), name.end(),
            [](char character) { return std::isalnum(static_cast<unsigned char>(character)) == 0; },
            '_');
        return name;
    });

TEST(SdrCommand, ShowsTheMostWantedColumnsOnANarrowTerminal)
{
    const Arguments words = ourCommand({"sdr", "list", OWN, "--color", "never"});
    std::string shown;
    if (!runOnTerminal(words, {}, shown, 60)) {
        GTEST_SKIP() << "no terminal can be made here";
    }
    EXPECT_EQ(shown.substr(0, shown.find('\r')),
              "RECORD   NUMBER  NAME       SENSOR TYPE   ENTITY   UNITS");
    EXPECT_NE(shown.find("full     01h     Ambient    Temperature   7.1      degrees C\r\n"),
              std::string::npos)
        << shown;
    ASSERT_TRUE(runOnTerminal(words, {}, shown, 300));
    EXPECT_NE(shown.find("HYSTERESIS    LOWER NR CR NC    UPPER NC CR NR\r\n"), std::string::npos)
        << shown;
}
