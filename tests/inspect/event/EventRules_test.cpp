// SPDX-License-Identifier: Apache-2.0
#include <recordkit/inspect/event/EventRules.h>

#include <gtest/gtest.h>

#include "support/SystemEvents.h"

using namespace recordkit::inspect;
using namespace testing_support;

namespace {

/// Sensor type C7h, sensor 71h, generic type 6Fh, offset 3.
const Bytes OWN = {0xC7, 0x71, 0x6F, 0xA3, 0x5C, 0x80};
const Bytes TIMESTAMPED = {0xC1, 1, 2, 3, 4, 0x7C, 0x2A, 0x00, 10, 20, 30, 40, 50, 60};
const Bytes UNTIMESTAMPED = {0xE1, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13};

Event own()
{
    return systemEvent(1000000000, OWN);
}

/// The event's own text by the rules; empty if none applies. They must be right.
std::string textBy(const std::string& rules, const Event& event)
{
    std::vector<std::string> problems;
    const EventRules read(rules, problems);
    EXPECT_TRUE(problems.empty()) << problems.front();
    std::vector<Event> events = {event};
    read.apply(events);
    return events[0].siteText;
}

/// What is wrong with the only rule.
std::string problemOf(const std::string& rule)
{
    std::vector<std::string> problems;
    const EventRules read(rule, problems);
    EXPECT_TRUE(read.isEmpty()) << rule;
    return problems.size() == 1 ? problems[0] : std::to_string(problems.size()) + " problems";
}

}

TEST(EventRules, GiveTheTextOfTheFirstRuleWhoseConditionsAreMet)
{
    const std::string rules =
        "# ours\n"
        "\n"
        "sensor-type=C7h offset=2 \"two\"\n"
        "  sensor-type=C7h\toffset=3\t\"three # not a comment\" # a comment\r\n"
        "sensor-type=C7h \"any\"\n";
    EXPECT_EQ(textBy(rules, own()), "three # not a comment");
    Bytes bytes = OWN;
    bytes[3] = 0xA4;
    EXPECT_EQ(textBy(rules, systemEvent(1, bytes)), "any");
    bytes[0] = 0xC8;
    EXPECT_EQ(textBy(rules, systemEvent(1, bytes)), "");
    EXPECT_EQ(textBy("", own()), "");
}

TEST(EventRules, TextIsThatOfTheEvent)
{
    std::vector<std::string> problems;
    std::vector<Event> events = {own()};
    EXPECT_EQ(eventText(events[0]), "sensor-specific event 6Fh, offset 3");
    EventRules("sensor-type=C7h \"lost\"", problems).apply(events);
    EXPECT_EQ(eventText(events[0]), "lost");
}

TEST(EventRules, EveryConditionMustBeMet)
{
    const struct {
        const char* condition;
        bool isMet;
    } rows[] = {
        {"sensor=71h", true},        {"sensor=0x70", false},       {"event-type=6Fh", true},
        {"event-type=sensor", true}, {"event-type=1", false},      {"offset=3", true},
        {"offset=2", false},         {"direction=asserted", true}, {"direction=deasserted", false},
        {"data1=A3h", true},         {"data1=A2h", false},         {"data2=92", true},
        {"data2=91", false},         {"data3=80h", true},          {"data3=0", false},
        {"data2=50h/F0h", true},     {"data2=40h/F0h", false},     {"data2=0/3", true},
        {"data2=1/3", false},        {"data2=0/0", true},
    };
    for (const auto& row : rows) {
        const std::string rule = std::string("sensor-type=0xC7 ") + row.condition + " \"x\"";
        EXPECT_EQ(textBy(rule, own()), row.isMet ? "x" : "") << rule;
    }
    Bytes deasserted = OWN;
    deasserted[2] |= 0x80;
    EXPECT_EQ(textBy("sensor-type=C7h direction=deasserted \"x\"", systemEvent(1, deasserted)),
              "x");
    EXPECT_EQ(textBy("sensor-type=C7h direction=asserted \"x\"", systemEvent(1, deasserted)), "");
    EXPECT_EQ(textBy("sensor-type=fan \"x\"", systemEvent(1, {4, 1, 1, 0})), "x");
}

TEST(EventRules, OemRecordsAreChosenByManufacturerOrType)
{
    const Event timestamped = eventOf(TIMESTAMPED);
    EXPECT_EQ(textBy("manufacturer=002A7Ch \"x\"", timestamped), "x");
    EXPECT_EQ(textBy("manufacturer=10876 record-type=C1h \"x\"", timestamped), "x");
    EXPECT_EQ(textBy("manufacturer=002A7Ch record-type=C2h \"x\"", timestamped), "");
    EXPECT_EQ(textBy("manufacturer=002A7Dh \"x\"", timestamped), "");
    EXPECT_EQ(textBy("manufacturer=0 \"x\"", eventOf(UNTIMESTAMPED)), "") << "it has none";
    EXPECT_EQ(textBy("manufacturer=0 \"x\"", own()), "");
    EXPECT_EQ(textBy("record-type=C1h data1=10 data6=60 \"{data1} {data6:h}\"", timestamped),
              "10 3Ch");
    EXPECT_EQ(textBy("record-type=E1h data1=1 \"{data1} {data13}\"", eventOf(UNTIMESTAMPED)),
              "1 13");
    EXPECT_EQ(textBy("record-type=E1h data13=12 \"x\"", eventOf(UNTIMESTAMPED)), "");
    EXPECT_EQ(textBy("sensor-type=2Ah \"x\"", timestamped), "");
}

TEST(EventRules, FieldsAreBytesAndBits)
{
    const auto textOf = [](const std::string& text) {
        return textBy("sensor-type=C7h \"" + text + "\"", own());
    };
    EXPECT_EQ(textOf("{data2}"), "92");
    EXPECT_EQ(textOf("{data2:h}"), "5Ch");
    EXPECT_EQ(textOf("{data2[7:4]} {data2[3:0]} {data2[7]}{data2[6]}"), "5 12 01");
    EXPECT_EQ(textOf("{data2[3:0]:h}"), "0Ch");
    EXPECT_EQ(textOf("{data2[7:0]} {data2[0:0]}"), "92 0");
    EXPECT_EQ(textOf("a{data1}b{data3}c"), "a163b128c");
    EXPECT_EQ(textOf("\xC3\xA9"), "\xC3\xA9");
    EXPECT_EQ(textOf("{sensor}"), "71h");
}

TEST(EventRules, SensorHasTheNameOfARepository)
{
    std::vector<std::string> problems;
    SensorNames names;
    names.add(0x20, 0, 0x71, {"TRAY\x1B", "", "", "", std::nullopt});
    std::vector<Event> events = {own()};
    nameSensors(events, names);
    EventRules("sensor-type=C7h \"{sensor} lost\"", problems).apply(events);
    EXPECT_EQ(events[0].siteText, "TRAY\\x1B lost");
}

TEST(EventRules, MayChangeTheSeverity)
{
    std::vector<std::string> problems;
    std::vector<Event> events = {own(), systemEvent(1, {4, 1, 1, 2})};
    EventRules("sensor-type=C7h severity=critical \"x\"\nsensor-type=4 \"y\"", problems)
        .apply(events);
    EXPECT_EQ(events[0].severity, SeverityMap::SEV_CRITICAL);
    EXPECT_EQ(events[1].severity, SeverityMap::SEV_CRITICAL) << "its own";
    EventRules("sensor-type=4 severity=informational \"y\"", problems).apply(events);
    EXPECT_EQ(events[1].severity, SeverityMap::SEV_INFORMATIONAL);
}

TEST(EventRules, DamagedLineIsReportedAndTheOthersApply)
{
    std::vector<std::string> problems;
    const EventRules rules("sensor-type=C7h\n# fine\nsensor-type=C7h \"x\"\nsensor-type= \"y\"\n",
                           problems);
    EXPECT_EQ(problems, (std::vector<std::string>{
                            "line 1: expected a text in quotation marks at the end",
                            "line 4: expected a sensor type, found \"\"",
                        }));
    std::vector<Event> events = {own()};
    rules.apply(events);
    EXPECT_EQ(events[0].siteText, "x");
}

TEST(EventRules, SayWhatIsWrong)
{
    const struct {
        const char* rule;
        const char* problem;
    } rows[] = {
        {"sensor-type",
         "expected CONDITION=VALUE without blanks, or a text in quotation marks, found "
         "\"sensor-type\""},
        {"colour=1 \"x\"", "expected sensor-type, manufacturer, record-type, sensor, event-type, "
                           "offset, direction, severity or data1 to data13, found \"colour\""},
        {"data0=1 \"x\"", "expected sensor-type, manufacturer, record-type, sensor, event-type, "
                          "offset, direction, severity or data1 to data13, found \"data0\""},
        {"data14=1 \"x\"", "expected sensor-type, manufacturer, record-type, sensor, event-type, "
                           "offset, direction, severity or data1 to data13, found \"data14\""},
        {"sensor-type=100h \"x\"", "expected a sensor type, found \"100h\""},
        {"manufacturer=1000000h \"x\"", "expected a number from 0 to 16777215, found \"1000000h\""},
        {"record-type=BFh \"x\"", "expected a record type from C0h to FFh, found \"BFh\""},
        {"record-type=2 \"x\"", "expected a record type from C0h to FFh, found \"2\""},
        {"sensor-type=1 sensor=256 \"x\"", "expected a number from 0 to 255, found \"256\""},
        {"sensor-type=1 offset=16 \"x\"", "expected a number from 0 to 15, found \"16\""},
        {"sensor-type=1 event-type=none \"x\"", "expected an event type, found \"none\""},
        {"sensor-type=1 direction=up \"x\"", "expected asserted or deasserted, found \"up\""},
        {"sensor-type=1 severity=bad \"x\"", "expected a severity, found \"bad\""},
        {"sensor-type=1 data1=1/ \"x\"", "expected a number from 0 to 255, found \"\""},
        {"sensor-type=1 data1=/1 \"x\"", "expected a number from 0 to 255, found \"\""},
        {"sensor-type=1 data1=3/1 \"x\"", "expected a value within its mask, found \"3/1\""},
        {"sensor-type=1 \"x", "the text has no quotation mark at its end"},
        {"sensor-type=1 \"\"", "the text is empty"},
        {"sensor-type=1 \"x\" y", "expected nothing after the text, found \"y\""},
        {"sensor-type=1 \"{data1\"", "expected { and } around a field, found \"{data1\""},
        {"sensor-type=1 \"data1}\"", "expected { and } around a field, found \"}\""},
        {"sensor-type=1 \"{}\"",
         "expected a field such as data2, data2[7:4], data2:h or sensor, found \"\""},
        {"\"x\"", "expected either sensor-type, or manufacturer or record-type"},
        {"sensor-type=1 manufacturer=1 \"x\"",
         "expected either sensor-type, or manufacturer or record-type"},
        {"manufacturer=1 record-type=E0h \"x\"",
         "records of types E0h to FFh have no manufacturer"},
        {"sensor-type=1 data4=1 \"x\"", "data4 does not exist: such records have data1 to data3"},
        {"sensor-type=1 \"{data4}\"", "data4 does not exist: such records have data1 to data3"},
        {"manufacturer=1 \"{data7}\"", "data7 does not exist: such records have data1 to data6"},
        {"record-type=DFh data7=1 \"x\"", "data7 does not exist: such records have data1 to data6"},
        {"manufacturer=1 \"{sensor}\"", "{sensor} is for events of a sensor type"},
        {"sensor-type=1 \"\x1B[2J\"", "expected UTF-8 without control characters"},
        {"sensor-type=1 \"\xFF\"", "expected UTF-8 without control characters"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(problemOf(row.rule), std::string("line 1: ") + row.problem) << row.rule;
    }
    for (const char* const field :
         {"data", "data2[", "data2]", "data2[]", "data2[8]", "data2[7:8]", "data2[3:4]",
          "data2[7:", "data2[7:]", "data2[:4]", "data2:", "data2:x", ":h", "data2:h:h", "data2[7]x",
          "sensor:h", "data2 ", "data14"}) {
        EXPECT_EQ(
            problemOf("sensor-type=1 \"{" + std::string(field) + "}\""),
            "line 1: expected a field such as data2, data2[7:4], data2:h or sensor, found \"" +
                std::string(field) + "\"");
    }
    for (const char* const condition :
         {"sensor=1", "event-type=1", "offset=1", "direction=asserted", "severity=critical"}) {
        EXPECT_EQ(problemOf("record-type=C0h " + std::string(condition) + " \"x\""),
                  "line 1: sensor, event-type, offset, direction and severity are for events of a "
                  "sensor type");
    }
}
