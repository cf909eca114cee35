// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <filesystem>
#include <gtest/gtest.h>
#include <sstream>

#include <recordkit/inspect/bytes/Error.h>
#include <recordkit/inspect/sensor/Sensor.h>
#include <recordkit/inspect/sensor/SensorText.h>
#include <recordkit/inspect/words/Entities.h>
#include <recordkit/inspect/words/SensorUnits.h>

#include "support/Answers.h"
#include "support/Bytes.h"
#include "support/Failures.h"
#include "support/Process.h"
#include "support/ScratchRoot.h"
#include "tool/print/Json.h"

using namespace recordkit::inspect;
using namespace recordkit::tool;
using namespace testing_support;

namespace {

/// A record with this body; the header's length follows.
Bytes record(unsigned char id, unsigned char type, const Bytes& body)
{
    return Bytes({id, 0, 0x51, type, static_cast<unsigned char>(body.size())}) + body;
}

Bytes compact(unsigned char id, const std::string& name)
{
    Bytes body(27, 0);
    body[2] = id;   // sensor number
    body[7] = 0x08; // power supply
    body[8] = 0x6F;
    body[9] = 0x0B;                                            // offsets 0, 1 and 3
    body[26] = static_cast<unsigned char>(0xC0 | name.size()); // id string
    return record(id, SDR_COMPACT, body + textBytes(name));
}

SdrFile parse(const Bytes& bytes, SdrFormat format = SdrFormat::AUTO)
{
    return parseSdrFile(std::string(bytes.begin(), bytes.end()), format);
}

Lines idsOf(const SdrFile& file)
{
    Lines ids;
    for (const SdrRecord& each : file.records) {
        ids.push_back(std::to_string(each.id()) + "@" + std::to_string(each.offset));
    }
    return ids;
}

}

TEST(SdrFile, WalksRecordsByTheirLengths)
{
    const SdrFile file = parse(compact(1, "PS1") + record(2, 0xC0, sequence(7)) + compact(3, ""));
    EXPECT_EQ(idsOf(file), Lines({"1@0", "2@35", "3@47"}));
    EXPECT_EQ(file.problems, Lines());
}

TEST(SdrFile, KnowsAnswersToGetSdr)
{
    const Bytes answers = Bytes({2, 0}) + compact(1, "PS1") + Bytes({3, 0}) + compact(2, "PS2") +
                          Bytes({0xFF, 0xFF}) + compact(3, "PS3");
    EXPECT_EQ(idsOf(parse(answers)), Lines({"1@2", "2@39", "3@76"}));
    EXPECT_EQ(parse(answers).problems, Lines());
    EXPECT_EQ(idsOf(parse(answers, SdrFormat::RESPONSES)), idsOf(parse(answers)));
    EXPECT_FALSE(parse(answers, SdrFormat::DUMP).problems.empty());
}

TEST(SdrFile, DamagedRecordIsNamedAndTheWalkGoesOn)
{
    Bytes version = compact(2, "PS2");
    version[2] = 0x42;
    const SdrFile file = parse(compact(1, "PS1") + version + compact(3, "PS3"));
    EXPECT_EQ(idsOf(file), Lines({"1@0", "3@70"}));
    EXPECT_EQ(file.problems,
              Lines({"record at offset 35: SDR version 42h at offset 37, expected 51h"}));
    const SdrFile tooShort =
        parse(compact(1, "PS1") + record(2, SDR_FULL, Bytes(42, 1)) + compact(3, "PS3"));
    EXPECT_EQ(idsOf(tooShort), Lines({"1@0", "3@82"}));
    EXPECT_EQ(tooShort.problems, Lines({"record at offset 35: 42 bytes, expected at least 43 for "
                                        "type 01h"}));
}

TEST(SdrFile, WalksEnd)
{
    // Lengths of 0 and 255.
    const SdrFile zero = parse(record(1, 0xC0, {}) + record(2, 0xC0, {}) + record(3, 0xC0, {}));
    EXPECT_EQ(idsOf(zero), Lines({"1@0", "2@5", "3@10"}));
    const SdrFile longest = parse(record(1, 0xC0, Bytes(255, 7)) + compact(2, "x1"));
    EXPECT_EQ(idsOf(longest), Lines({"1@0", "2@260"}));
    // A length that runs past the file.
    Bytes cut = compact(1, "PS1") + compact(2, "PS2");
    cut.pop_back();
    EXPECT_EQ(parse(cut).problems,
              Lines({"record at offset 35: length byte 30 at offset 39 runs past the 69 bytes"}));
    EXPECT_EQ(idsOf(parse(cut)), Lines({"1@0"}));
    EXPECT_EQ(parse({1, 0, 0x51, 1}).problems,
              Lines({"record at offset 0: no room for its header in 4 bytes"}));
    // Nothing but zeroes, and nothing at all.
    EXPECT_EQ(parse(Bytes(65536, 0)).problems,
              Lines({"65536 bytes at offset 0 contain no record"}));
    EXPECT_EQ(parse(Bytes(65536, 0)).records.size(), 0U);
    EXPECT_EQ(parse(compact(1, "PS1") + Bytes(100, 0xFF)).problems,
              Lines({"100 bytes at offset 35 contain no record"}));
    EXPECT_EQ(parse({}).problems, Lines());
    // Zeroes in front of a byte are records without a type, none of them any good.
    EXPECT_EQ(parse(Bytes(100000, 0) + Bytes({1})).problems.size(), 20001U);
    // Noise.
    for (unsigned int first = 0; first < 256; ++first) {
        Bytes noise;
        for (unsigned int i = 0; i < 2000; ++i) {
            noise.push_back(static_cast<unsigned char>((first + i) * (first + 7 * i) >> 3));
        }
        const SdrFile file = parse(noise);
        EXPECT_LE(file.records.size() + file.problems.size(), 401U);
    }
}

TEST(Sensor, NamesOfEveryCodingAreDecoded)
{
    EXPECT_EQ(idStringText(0xC3, std::string("abc")), "abc");
    EXPECT_EQ(idStringText(0xC4, std::string("ab\0c", 4)), "ab");
    EXPECT_EQ(idStringText(0xC2, std::string("\xE9z")), "\xC3\xA9z");
    EXPECT_EQ(idStringText(0x83, std::string("\x29\xDC\xA6")), "IPMI");
    EXPECT_EQ(idStringText(0x42, std::string("\x12\xAB")), "12 -");
    EXPECT_EQ(idStringText(0x04, std::string("a\0\xE5\x65", 4)), "a\xE6\x97\xA5");
}

TEST(Sensor, TypeLengthByteOfFFIsBounded)
{
    Bytes body(27, 0);
    body[26] = 0xFF; // 31 bytes of text
    const SdrFile file = parse(record(1, SDR_COMPACT, body + Bytes(16, 'x')));
    EXPECT_EQ(readSensor(file.records.at(0)).name, std::string(16, 'x'));
    const SdrFile cut = parse(record(1, SDR_COMPACT, body + Bytes(15, 'x')));
    try {
        readSensor(cut.records.at(0));
        ADD_FAILURE() << "read";
    } catch (const DataError& e) {
        EXPECT_STREQ(e.what(), "record at offset 0: 47 bytes, its id string is cut off");
    }
    // And in records that are not sensors.
    Bytes locator(11, 0);
    locator[10] = 0xFF;
    const SdrFile other = parse(record(1, SDR_FRU_LOCATOR, locator + textBytes("abc")));
    EXPECT_EQ(readSensor(other.records.at(0)).name, "abc");
}

TEST(Tables, EntitiesAndUnitsHaveNames)
{
    EXPECT_EQ(entityName(0x07), "system board");
    EXPECT_EQ(entityName(0x0A), "power supply");
    EXPECT_EQ(entityName(0x1D), "fan or cooling device");
    EXPECT_EQ(entityName(0x20), "memory device");
    EXPECT_EQ(entityName(0x28), "battery");
    EXPECT_EQ(entityName(0x37), "air inlet");
    EXPECT_EQ(entityName(0x42), "baseboard");
    EXPECT_EQ(entityName(0x43), "entity 67");
    EXPECT_EQ(sensorUnitName(1), "degrees C");
    EXPECT_EQ(sensorUnitName(6), "Watts");
    EXPECT_EQ(sensorUnitName(18), "RPM");
    EXPECT_EQ(sensorUnitName(65), "color temp deg K");
    EXPECT_EQ(sensorUnitName(92), "grams");
    EXPECT_EQ(sensorUnitName(93), "unit 93");
}

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
          "threshold         degrees C   7A95h   7A95h     3F3Fh    +2 -2\n",
          "000Dh  full          23h     12-34.5 ", "001Eh  compact       64h     FAN REDUNDANT ",
          "0021h  event-only    -       POST\n", "0022h  FRU locator   -       Main FRU0\n",
          "0023h  MC locator    -       BMC board\n", "0025h  OEM           -       \n"}) {
        EXPECT_NE(outcome.out.find(line), std::string::npos) << line;
    }
    const auto json = nlohmann::json::parse(sdr({"list", OWN, "--json"}).out);
    EXPECT_EQ(json["records"].size(), 37U);
    EXPECT_EQ(json["records"][11]["name"], "5V AUX");
    EXPECT_EQ(json["records"][30]["positive_hysteresis"], 3);
    EXPECT_EQ(json["records"][30]["negative_hysteresis"], 4);
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
    EXPECT_NE(locator.err.find("is no sensor but FRU locator: 2200511"), std::string::npos)
        << locator.err;
}

TEST(SdrCommand, SaysHowSevereEventsAre)
{
    const Bytes bytes = compact(1, "PS1");
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
    EXPECT_EQ(json[0]["events"][1]["offset"], 1);
    EXPECT_EQ(json[0]["events"][1]["severity"], "critical");
}

TEST(SdrCommand, NamesDamage)
{
    Bytes bytes = compact(1, "PS1") + compact(2, "PS2");
    bytes[37] = 0;
    const Outcome outcome = sdr({"list", "-"}, std::string(bytes.begin(), bytes.end()));
    EXPECT_EQ(outcome.status, 1);
    EXPECT_NE(outcome.out.find("PS1"), std::string::npos);
    EXPECT_EQ(outcome.err, "recordkit: standard input: record at offset 35: SDR version 00h at "
                           "offset 37, expected 51h\n"
                           "recordkit: standard input: 1 problems\n");
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
