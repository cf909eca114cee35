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
          "0021h  event-only    -       POST              -",
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
    EXPECT_NE(outcome.out.find("id_string                 32 to 35 +    Slot"), std::string::npos);
    EXPECT_EQ(sdr({"show", OWN, "999"}).status, 1);
    EXPECT_EQ(sdr({"show", OWN, "x"}).status, 2);
    const Outcome locator = sdr({"show", OWN, "0x22"});
    EXPECT_EQ(locator.status, 1);
    EXPECT_NE(locator.err.find("is not a sensor but FRU locator: 2200511"), std::string::npos)
        << locator.err;
}

TEST(SdrCommand, SaysHowSevereEventsAre)
{
    const Bytes bytes = compactSdr(1, "PS1");
    const Outcome outcome = sdr({"events", "-"}, std::string(bytes.begin(), bytes.end()));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(
        outcome.out,
        "NUMBER  NAME              SENSOR TYPE               OFFSET  SEVERITY         EVENT\n"
        "01h     PS1               Power Supply              0       informational    Presence "
        "detected\n"
        "01h     PS1               Power Supply              1       critical         Power "
        "Supply Failure detected\n"
        "01h     PS1               Power Supply              3       critical         Power "
        "Supply input lost (AC/DC)\n");
    const auto json = nlohmann::json::parse(
        sdr({"events", "-", "--json"}, std::string(bytes.begin(), bytes.end())).out);
    EXPECT_EQ(json[1]["offset"], 1);
    EXPECT_EQ(json[1]["severity"], "critical");
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
