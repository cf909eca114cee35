// SPDX-License-Identifier: Apache-2.0
#include "support/Bytes.h"
#include "support/SdrRecords.h"
#include "tool/sel/SelTest.h"

using namespace testing_support;

namespace {

const std::string REPOSITORY = RECORDKIT_EXAMPLE_DATA "/sdr/repository.sdr";

/// Fan 10h of the example repository falls below its threshold.
const std::string FAN_LOW = "04100152080a";

class EventNames : public SelTest {
protected:
    void SetUp() override
    {
        initialise();
        ASSERT_EQ(sel({"add", "-", "--board", "1"}, eventAt(1, TIME_1, FAN_LOW)).status, 0);
    }
    void placeUsualRepository(const std::string& path) const
    {
        std::filesystem::create_directories(root.at("/etc/default/config"));
        writeFile(root.at("/etc/default/config/sdr.bin"), readFile(path));
    }
};

constexpr const char* TEXT = "Lower Critical - going low, reading 480 < threshold 600 RPM";

}

TEST_F(EventNames, HaveNamesAndReadingsOnRequest)
{
    const Arguments words = {"list", "--board", "1", "--sdr", REPOSITORY};
    const Outcome table = sel(words);
    EXPECT_EQ(table.status, 0) << table.err;
    EXPECT_NE(table.out.find("  FAN1              asserted    52080a  -           " +
                             std::string(TEXT) + "\n"),
              std::string::npos)
        << table.out;
    const Json event = listed({"--board", "1", "--sdr", REPOSITORY}).at(0);
    EXPECT_EQ(event["sensor"], 0x10);
    EXPECT_EQ(event["sensor_name"], "FAN1");
    EXPECT_EQ(event["entity"], "29.1");
    EXPECT_EQ(event["entity_name"], "fan or cooling device");
    EXPECT_EQ(event["reading"], 480);
    EXPECT_EQ(event["threshold"], 600);
    EXPECT_EQ(event["units"], "RPM");
    EXPECT_EQ(event["event"], TEXT);
    const Outcome shown = sel({"show", "1", "--board", "1", "--sdr", REPOSITORY});
    EXPECT_NE(
        shown.out.find("sensor name       FAN1\nentity            29.1 fan or cooling device\n"),
        std::string::npos)
        << shown.out;
}

TEST_F(EventNames, AreNumbersWithoutARepository)
{
    const Json event = listed({"--board", "1"}).at(0);
    EXPECT_EQ(event.count("sensor_name"), 0U);
    EXPECT_EQ(event.count("reading"), 0U);
    EXPECT_EQ(event["event"], "Lower Critical - going low");
    EXPECT_NE(sel({"list", "--board", "1"}).out.find("  10h     asserted"), std::string::npos);
    EXPECT_EQ(sel({"show", "1", "--board", "1"}).out.find("sensor name"), std::string::npos);
    // Asked for by name they are null.
    EXPECT_TRUE(listed({"--board", "1", "--fields", "sensor_name"}).at(0)["sensor_name"].is_null());
}

TEST_F(EventNames, OfBoardsAreThoseOfTheRootsOwnRepository)
{
    placeUsualRepository(REPOSITORY);
    EXPECT_EQ(listed({"--board", "1"}).at(0)["sensor_name"], "FAN1");
    EXPECT_NE(sel({"show", "1", "--board", "1"}).out.find("FAN1"), std::string::npos);
    // A saved file may be of another machine.
    EXPECT_EQ(listed({working(1)}).at(0).count("sensor_name"), 0U);
    EXPECT_EQ(listed({working(1), "--sdr", REPOSITORY}).at(0)["sensor_name"], "FAN1");
}

TEST_F(EventNames, ComeFromTheEnvironmentToo)
{
    const Outcome outcome = run(ourCommand({"--root", root.path(), "sel", "list", "--board", "1"}),
                                "", {"RECORDKIT_SDR=" + REPOSITORY});
    EXPECT_NE(outcome.out.find(TEXT), std::string::npos) << outcome.out << outcome.err;
}

TEST_F(EventNames, OfSeveralRepositoriesAreFoundByTheirOwner)
{
    Bytes other = compactSdr(0x10, "Satellite");
    other[5] = 0x22;
    writeFile(root.at("/other.sdr"), other);
    ASSERT_EQ(
        sel({"add", "-", "--board", "1"}, hexRecord(2, "02" + TIME_2 + "220004" + FAN_LOW)).status,
        0);
    const std::vector<Json> events =
        listed({"--board", "1", "--sdr", root.at("/other.sdr"), "--sdr", REPOSITORY});
    EXPECT_EQ(events.at(0)["sensor_name"], "FAN1");
    EXPECT_EQ(events.at(1)["sensor_name"], "Satellite");
}

TEST_F(EventNames, OfADamagedRepositoryAreSaidToBe)
{
    Bytes bytes = compactSdr(1, "PS1") + compactSdr(2, "PS2");
    bytes[37] = 0;
    const std::string path = root.at("/damaged.sdr");
    writeFile(path, bytes);
    const Outcome outcome = sel({"list", "--board", "1", "--sdr", path});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_NE(outcome.out.find("Lower Critical - going low\n"), std::string::npos);
    EXPECT_EQ(outcome.err, "recordkit: " + path +
                               ": record at offset 35: SDR version 00h at offset 37, expected "
                               "51h\n");
    EXPECT_EQ(sel({"list", "--board", "1", "--sdr", root.at("/none")}).status, 3);
}

TEST_F(EventNames, OptionTakesOneFileAtATime)
{
    const Outcome outcome = sel({"list", "--sdr", REPOSITORY, working(1), "--ndjson"});
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_EQ(Json::parse(outcome.out)["source"], working(1));
    EXPECT_EQ(sel({"list", "--sdr"}).status, 2);
}

TEST_F(EventNames, NamesReachTheTerminalEscaped)
{
    Bytes record = compactSdr(0x10, "a\033[2Jb");
    record[5] = 0x20;
    writeFile(root.at("/nasty.sdr"), record);
    for (const char* const how : {"list", "show"}) {
        Arguments words = {how, "--board", "1", "--sdr", root.at("/nasty.sdr")};
        if (how == std::string("show")) {
            words.emplace_back("1");
        }
        const std::string out = sel(words).out;
        EXPECT_EQ(out.find('\033'), std::string::npos);
        EXPECT_NE(out.find("a\\x1B[2Jb"), std::string::npos) << out;
    }
}

TEST_F(EventNames, RulesGiveEventsTexts)
{
    const std::string rules = root.at("/own.rules");
    writeFile(
        rules,
        textBytes("sensor-type=4 data2=8 severity=informational \"{sensor} is slow: {data2}\"\n"));
    const Json event = listed({"--board", "1", "--rules", rules}).at(0);
    EXPECT_EQ(event["event"], "10h is slow: 8");
    EXPECT_EQ(event["severity"], "informational");
    EXPECT_EQ(listed({"--board", "1", "--rules", rules, "--sdr", REPOSITORY}).at(0)["event"],
              "FAN1 is slow: 8");
    const Outcome shown = sel({"show", "1", "--board", "1", "--rules", rules});
    EXPECT_NE(shown.out.find("event             10h is slow: 8\n"), std::string::npos) << shown.out;
    EXPECT_EQ(listedIds({"--board", "1", "--rules", rules, "--event", "slow"}), Ids{1})
        << "filters see the text";
    EXPECT_EQ(listedIds({"--board", "1", "--rules", rules, "--severity", "critical"}), Ids{});
}

TEST_F(EventNames, RulesOfTheRootAreForItsBoards)
{
    std::filesystem::create_directories(root.at("/etc/default/config"));
    writeFile(root.at("/etc/default/config/events.rules"), textBytes("sensor-type=4 \"ours\"\n"));
    EXPECT_EQ(listed({"--board", "1"}).at(0)["event"], "ours");
    EXPECT_NE(listed({working(1)}).at(0)["event"], "ours");
    writeFile(root.at("/other.rules"), textBytes("sensor-type=4 \"other\"\n"));
    EXPECT_EQ(listed({"--board", "1", "--rules", root.at("/other.rules")}).at(0)["event"], "other");
}

TEST_F(EventNames, DamagedRuleIsReportedWithItsLine)
{
    const std::string rules = root.at("/own.rules");
    writeFile(rules, textBytes("sensor-type=4 \"ours\"\n\nsensor-type=4 offset=16 \"x\"\n"));
    const Outcome outcome = sel({"list", "--board", "1", "--ndjson", "--rules", rules});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.err,
              "recordkit: " + rules + ": line 3: expected a number from 0 to 15, found \"16\"\n");
    EXPECT_EQ(Json::parse(outcome.out)["event"], "ours");
    EXPECT_EQ(sel({"list", "--board", "1", "--rules", root.at("/none")}).status, 3);
    writeFile(rules, Bytes((1 << 20) + 1, '\n'));
    EXPECT_EQ(sel({"list", "--board", "1", "--rules", rules}).status, 1) << "it is too long";
}

TEST_F(EventNames, ExampleOfRulesIsSound)
{
    const std::string rules = RECORDKIT_EXAMPLE_DATA "/../events.rules";
    writeFile(root.at("/events"),
              eventAt(1, TIME_1, "c7716f021312") + eventAt(2, TIME_1, "c7716f011213"));
    const std::vector<Json> events = listed({root.at("/events"), "--rules", rules});
    EXPECT_EQ(events.at(0)["event"], "fan tray 3 is missing (71h)");
    EXPECT_EQ(events.at(0)["severity"], "critical");
    EXPECT_EQ(events.at(1)["event"], "fan tray 2 runs on one fan");
}
