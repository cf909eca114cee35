// SPDX-License-Identifier: Apache-2.0
#include "support/Terminal.h"
#include "tool/sel/SelTest.h"

using namespace testing_support;

namespace {

const std::string FAN_LOW = "04100152080a"; // critical, reading 8, threshold 10
const std::string FAN_NORMAL = "041081520b0a";
const std::string FAN_2_LOW = "04110152080a";
const std::string TEMPERATURE_WARNING = "01300157504b";
const std::string TIME_0 = "4c282967"; // 2024-11-04 20:02:20
const std::string REPOSITORY = RECORDKIT_EXAMPLE_DATA "/sdr/repository.sdr";

/// A saved log: what failed at night. Fan 10h recovered and failed again.
class SelSummary : public SelTest {
protected:
    void SetUp() override
    {
        writeFile(log(), eventAt(1, TIME_0, TEMPERATURE_WARNING) + eventAt(2, TIME_1, FAN_LOW) +
                             eventAt(3, TIME_1, FAN_NORMAL) + eventAt(4, TIME_1, FAN_2_LOW) +
                             eventAt(5, TIME_2, FAN_LOW) +
                             hexRecord(6, "e00102030405060708090a0b0c0d"));
    }
    std::string log() const { return root.at("/night.log"); }
    Outcome summary(const Arguments& options) const
    {
        Arguments words = {"summary"};
        words.insert(words.end(), options.begin(), options.end());
        return sel(words);
    }
    Json json(Arguments options) const
    {
        options.emplace_back("--json");
        const Outcome outcome = summary(options);
        EXPECT_EQ(outcome.status, 0) << outcome.err;
        return Json::parse(outcome.out);
    }
};

}

TEST_F(SelSummary, AnswersWhatFailedAndWhetherItStillDoes)
{
    const Outcome outcome = summary({log()});
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_EQ(outcome.err, "");
    EXPECT_EQ(outcome.out,
              "events            6 (1 without a date)\n"
              "first             2024-11-04 20:02:20 UTC\n"
              "last              2024-11-05 06:07:08 UTC\n"
              "busiest hour      2024-11-05 06:00:00 UTC: 4 events\n"
              "most frequent     Fan 10h: Lower Critical - going low, 2 times\n"
              "longest asserted  Temperature 30h: Upper Non-critical - going high, since "
              "2024-11-04 20:02:20 UTC\n"
              "newest            OEM record E0h without a time, no time\n"
              "\n"
              "STILL ASSERTED after the last event: 3 states, the worst first\n"
              "SINCE (UTC)          SEVERITY         SENSOR                    TIMES  "
              "EVENT\n"
              "2024-11-05 06:06:04  critical         Fan 11h                   1      "
              "Lower Critical - going low\n"
              "2024-11-05 06:07:08  critical         Fan 10h                   2      "
              "Lower Critical - going low\n"
              "2024-11-04 20:02:20  warning          Temperature 30h           1      "
              "Upper Non-critical - going high\n"
              "\n"
              "BY SEVERITY\n"
              "SEVERITY         EVENTS  STILL ASSERTED\n"
              "critical         4       2\n"
              "warning          1       1\n"
              "\n"
              "BY SENSOR\n"
              "SENSOR                    EVENTS  STILL ASSERTED\n"
              "Fan 10h                   3       1\n"
              "Fan 11h                   1       1\n"
              "Temperature 30h           1       1\n");
}

TEST_F(SelSummary, HasEverythingInJson)
{
    const Json json = this->json({log()});
    EXPECT_EQ(json["events"], 6);
    EXPECT_EQ(json["undated"], 1);
    EXPECT_EQ(json["other_records"], 1);
    EXPECT_EQ(json["first"], "2024-11-04T20:02:20Z");
    EXPECT_EQ(json["last"], "2024-11-05T06:07:08Z");
    EXPECT_EQ(json["severities"][1],
              Json::parse(R"({"severity": "critical", "events": 4, "still_asserted": 2})"));
    EXPECT_EQ(json["severities"].size(), 6U);
    EXPECT_EQ(json["logs"],
              Json::array(
                  {{{"board", nullptr}, {"source", log()}, {"events", 6}, {"still_asserted", 3}}}));
    ASSERT_EQ(json["sensors"].size(), 3U);
    EXPECT_EQ(json["sensors"][0], (Json{{"board", nullptr},
                                        {"source", log()},
                                        {"sensor_type_name", "Fan"},
                                        {"sensor", 0x10},
                                        {"sensor_name", nullptr},
                                        {"events", 3},
                                        {"still_asserted", 1}}));
    EXPECT_EQ(json["hours"], Json::parse(R"([{"hour": "2024-11-04T20:00:00Z", "events": 1},
                              {"hour": "2024-11-05T06:00:00Z", "events": 4}])"));
    ASSERT_EQ(json["still_asserted"].size(), 3U);
    EXPECT_EQ(json["still_asserted"][1], (Json{{"since", "2024-11-05T06:07:08Z"},
                                               {"severity", "critical"},
                                               {"board", nullptr},
                                               {"source", log()},
                                               {"sensor_type_name", "Fan"},
                                               {"sensor", 0x10},
                                               {"sensor_name", nullptr},
                                               {"newest", "2024-11-05T06:07:08Z"},
                                               {"assertions", 2},
                                               {"event", "Lower Critical - going low"}}));
    EXPECT_EQ(json["longest"]["sensor"], 0x30);
    EXPECT_EQ(json["most_frequent"]["sensor"], 0x10);
    EXPECT_EQ(json["newest"]["event"], "OEM record E0h without a time");
}

TEST_F(SelSummary, NamesSensorsAndHasReadings)
{
    const std::string text = summary({log(), "--sdr", REPOSITORY}).out;
    EXPECT_NE(text.find("FAN1                      2      Lower Critical - going low, reading 480 "
                        "< threshold 600 RPM\n"),
              std::string::npos)
        << text;
    EXPECT_EQ(json({log(), "--sdr", REPOSITORY})["sensors"][0]["sensor_name"], "FAN1");
}

TEST_F(SelSummary, OfNothingSaysSo)
{
    initialise();
    EXPECT_EQ(summary({}).out,
              "events            0\n\nNothing is still asserted after the last event.\n");
    const Json json = this->json({});
    EXPECT_EQ(json["first"], nullptr);
    EXPECT_EQ(json["longest"], nullptr);
    EXPECT_EQ(json["most_frequent"], nullptr);
    EXPECT_EQ(json["newest"], nullptr);
    EXPECT_EQ(json["still_asserted"], Json::array());
    const std::string over = summary({log(), "--sensor", "0x31"}).out;
    EXPECT_EQ(over, "events            0\n\nNothing is still asserted after the last event.\n");
}

TEST_F(SelSummary, SaysThatNothingIsStillAsserted)
{
    writeFile(log(), eventAt(1, TIME_1, FAN_LOW) + eventAt(2, TIME_1, FAN_NORMAL));
    const Outcome outcome = summary({log(), "--fail-on", "informational"});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_NE(outcome.out.find("\nNothing is still asserted after the last event.\n"),
              std::string::npos);
    EXPECT_NE(
        outcome.out.find("newest            Fan 10h: Lower Critical - going low (deasserted), "
                         "2024-11-05 06:06:04 UTC\n"),
        std::string::npos)
        << outcome.out;
}

TEST_F(SelSummary, FailsOnRequestWhereSomethingIsStillAsserted)
{
    const Outcome critical = summary({log(), "--fail-on", "critical"});
    EXPECT_EQ(critical.status, 1);
    EXPECT_EQ(critical.err,
              "recordkit: 2 states of severity critical or worse are still asserted\n");
    EXPECT_EQ(critical.out, summary({log()}).out) << "it is shown nevertheless";
    EXPECT_EQ(summary({log(), "--fail-on", "non-recoverable"}).status, 0);
    EXPECT_EQ(summary({log(), "--fail-on", "warning", "--sensor", "0x30"}).err,
              "recordkit: 1 state of severity warning or worse is still asserted\n");
    EXPECT_EQ(summary({log(), "--fail-on", "critical", "--sensor", "0x30"}).status, 0);
    EXPECT_EQ(summary({log(), "--fail-on", "bad"}).status, 2);
    const Outcome unreadable = summary({log(), root.at("/none"), "--fail-on", "critical"});
    EXPECT_EQ(unreadable.status, 3) << "the worse of two";
    EXPECT_NE(unreadable.err.find("still asserted"), std::string::npos);
}

TEST_F(SelSummary, HasWhatIsStillAssertedFromAnyTime)
{
    const Outcome outcome = summary({log(), "--since", "2024-11-05 06:07:00 UTC"});
    EXPECT_EQ(outcome.out.find("events            1\n"), 0U) << outcome.out;
    EXPECT_NE(outcome.out.find("STILL ASSERTED after the last event: 3 states"), std::string::npos);
    EXPECT_NE(outcome.out.find("2024-11-04 20:02:20  warning          Temperature 30h"),
              std::string::npos);
    EXPECT_NE(outcome.err.find("1 event without a date is not shown"), std::string::npos);
    EXPECT_EQ(summary({log(), "--since", "2024-11-05T06:07Z", "--fail-on", "warning"}).status, 1);
    const Json json = this->json({log(), "--until", "2024-11-05T06:06:04Z"});
    EXPECT_EQ(json["events"], 4);
    EXPECT_EQ(json["still_asserted"].size(), 3U);
    EXPECT_EQ(json["still_asserted"][1]["assertions"], 2) << "fan 10h failed again later";
    EXPECT_EQ(
        this->json({log(), "--since", "2024-11-05", "--severity", "critical"})["still_asserted"]
            .size(),
        2U)
        << "other filters apply";
}

TEST_F(SelSummary, WarnsOfATimeInTheFuture)
{
    const Outcome outcome = summary({log(), "--since", "2105-01-02"});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.out.find("events            0\n"), 0U) << outcome.out;
    EXPECT_EQ(outcome.err.find("recordkit: --since is in the future: 2105-01-02T00:00:00Z\n"), 0U)
        << outcome.err;
    EXPECT_EQ(summary({log(), "--since", "2025-01-02"}).err.find("future"), std::string::npos);
    EXPECT_NE(sel({"list", log(), "--since", "2105-01-02"}).err.find("in the future"),
              std::string::npos);
}

TEST_F(SelSummary, FiltersDoNotChangeWhatEndsAState)
{
    EXPECT_EQ(json({log(), "--asserted"})["still_asserted"].size(), 3U);
}

TEST_F(SelSummary, KeepsLogsApart)
{
    initialise();
    ASSERT_EQ(sel({"add", "-", "--board", "1"}, eventAt(1, TIME_1, FAN_LOW)).status, 0);
    ASSERT_EQ(sel({"add", "-", "--board", "2"}, eventAt(1, TIME_2, FAN_NORMAL)).status, 0);
    const Outcome outcome = summary({});
    EXPECT_NE(outcome.out.find("SINCE (UTC)          SEVERITY         LOG           SENSOR"),
              std::string::npos)
        << outcome.out;
    EXPECT_NE(outcome.out.find("BY LOG\n"
                               "LOG           EVENTS  STILL ASSERTED\n"
                               "board 1       1       1\n"
                               "board 2       1       0\n"),
              std::string::npos)
        << outcome.out;
    EXPECT_EQ(json({})["sensors"].size(), 2U);
    EXPECT_EQ(json({"--board", "2"})["events"], 1);

    writeFile(root.at("/one"), eventAt(1, TIME_1, FAN_LOW));
    writeFile(root.at("/two"), eventAt(1, TIME_2, FAN_NORMAL));
    EXPECT_EQ(json({root.at("/one"), root.at("/two")})["still_asserted"].size(), 1U);
}

TEST_F(SelSummary, FilesOfTheStoreAreOneLog)
{
    initialise();
    ASSERT_EQ(sel({"add", "-", "--board", "1"}, eventAt(1, TIME_2, FAN_LOW)).status, 0);
    ASSERT_EQ(sel({"rotate", "--board", "1"}).status, 0);
    // The clock was set back meanwhile.
    ASSERT_EQ(sel({"add", "-", "--board", "1"}, eventAt(2, TIME_1, FAN_NORMAL)).status, 0);
    const std::string older = root.at("/saved/sb1_bmc_sel1");
    const std::string newer = root.at("/saved/sb1_bmc_sel0");
    std::filesystem::create_directories(root.at("/saved"));
    std::filesystem::copy_file(root.at("/var/tav/fmem/ipmi/sb1_bmc_sel1"), older);
    std::filesystem::copy_file(working(1), newer);
    for (const Arguments& files : {Arguments{older, newer}, Arguments{newer, older}}) {
        const Json json = this->json(files);
        EXPECT_EQ(json["logs"].size(), 1U);
        EXPECT_EQ(json["still_asserted"].size(), 0U);
        EXPECT_EQ(listedIds(files), (Ids{1, 2}));
    }
    for (const char* const other : {"/saved/sb2_bmc_sel0", "/saved/sb1_bmc_sel8",
                                    "/saved/sb1_bmc_sel", "/saved/sb1_bmc_sel00", "/saved/1"}) {
        std::filesystem::rename(newer, root.at(other));
        EXPECT_EQ(json({older, root.at(other)})["logs"].size(), 2U) << other;
        std::filesystem::rename(root.at(other), newer);
    }
}

TEST_F(SelSummary, ShowsTenSensorsUnlessAllAreWanted)
{
    std::string lines;
    for (unsigned int i = 0; i < 12; ++i) {
        char event[16];
        std::snprintf(event, sizeof event, "04%02x0152080a", 0x10 + i);
        lines += eventAt(i + 1, TIME_1, event);
    }
    writeFile(log(), lines);
    const std::string ten = summary({log()}).out;
    const std::string all = summary({log(), "--all"}).out;
    const std::size_t sensors = ten.find("BY SENSOR");
    EXPECT_NE(ten.find("Fan 19h                   1       1\n"
                       "and 2 sensors with fewer or as many events; --all shows them\n",
                       sensors),
              std::string::npos)
        << ten;
    EXPECT_EQ(ten.find("most frequent"), std::string::npos) << "each only once";
    EXPECT_EQ(ten.find("Fan 1Ah", sensors), std::string::npos);
    EXPECT_NE(all.find("Fan 1Bh", sensors), std::string::npos);
    EXPECT_EQ(json({log()})["sensors"].size(), 12U);
    lines.erase(0, 2 * (lines.size() / 12));
    writeFile(log(), lines);
    EXPECT_EQ(summary({log()}).out, summary({log(), "--all"}).out) << "there are ten";
}

TEST_F(SelSummary, DrawsTheHoursOnATerminal)
{
    std::string shown;
    if (!runOnTerminal(ourCommand({"sel", "summary", log()}), {}, shown, 100)) {
        GTEST_SKIP() << "there is no terminal here";
    }
    EXPECT_NE(shown.find("by hour           ▂         █\r\n"), std::string::npos) << shown;
    ASSERT_TRUE(runOnTerminal(ourCommand({"sel", "summary", log()}), {}, shown, 23));
    EXPECT_NE(shown.find("by 3 hours        ▂  █\r\n"), std::string::npos) << shown;
    ASSERT_TRUE(runOnTerminal(ourCommand({"sel", "summary", log()}), {}, shown, 10));
    EXPECT_NE(shown.find("by 11 hours       █\r\n"), std::string::npos) << shown;
    EXPECT_EQ(summary({log()}).out.find("by hour"), std::string::npos);
}

TEST_F(SelSummary, HasTimesInTheChosenZone)
{
    const Outcome outcome = run(ourCommand({"--tz", "+05:30", "sel", "summary", log()}));
    EXPECT_NE(outcome.out.find("busiest hour      2024-11-05 11:00:00+05:30: 4 events\n"),
              std::string::npos)
        << outcome.out;
    EXPECT_NE(outcome.out.find("SINCE                      SEVERITY"), std::string::npos)
        << outcome.out;
}

TEST_F(SelSummary, ReportsDamage)
{
    initialise();
    std::filesystem::resize_file(working(1), 200);
    const Outcome outcome = summary({"--json"});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_NE(outcome.err.find(working(1)), std::string::npos) << outcome.err;
    EXPECT_EQ(Json::parse(outcome.out)["events"], 0);
    EXPECT_EQ(summary({log(), "--strict"}).status, 2);
}

TEST_F(SelSummary, StillAssertedIsAFilterOfListings)
{
    EXPECT_EQ(listedIds({log(), "--still-asserted"}), (Ids{1, 4, 5}));
    EXPECT_EQ(listedIds({log(), "--still-asserted", "--severity", "critical", "--sensor", "0x10"}),
              Ids{5});
    EXPECT_EQ(listedIds({log(), "--still-asserted", "--deasserted"}), Ids{});
}
