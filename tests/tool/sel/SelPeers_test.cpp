// SPDX-License-Identifier: Apache-2.0
// Every record of the sample logs against ipmitool's output: id, time, sensor, direction and event.
// The names differ; PeerNames says which of them mean the same.
#include <cstdio>
#include <filesystem>
#include <gtest/gtest.h>
#include <map>
#include <sstream>

#include <recordkit/inspect/bytes/Hex.h>
#include <recordkit/inspect/event/Event.h>
#include <recordkit/inspect/words/SensorTypes.h>
#include <recordkit/selfile/SELChainReader.h>

#include "support/Answers.h"
#include "support/Bytes.h"
#include "support/PeerNames.h"
#include "support/ScratchRoot.h"
#include "tool/sel/EventInput.h"

using namespace recordkit::inspect;
using namespace recordkit::tool;
using namespace testing_support;

namespace {

/// A log with ipmitool's output: the verbose listing and the one line for each record.
struct Sample {
    std::string name;
    std::string log;
    std::string verbose;
    std::string lines;
    ImportFormat format;
    /// The answers were made from a file in wire order, which ipmitool mistakes for its own order.
    bool hasReversedManufacturers;
    std::size_t records;
};

/// What test listings show of a sample.
void PrintTo(const Sample& sample, std::ostream* out)
{
    *out << sample.name;
}

const std::string OWN = RECORDKIT_EXAMPLE_DATA "/sel/";
const std::string PUBLIC = RECORDKIT_PUBLIC_DATA "/sel/";
const std::string REF = PUBLIC + "ref/";
const std::string SIMULATOR = RECORDKIT_PUBLIC_DATA "/ipmi_sim/reference-output/";

const Sample SAMPLES[] = {
    {"own", OWN + "events.raw", OWN + "events.ipmitool-verbose.txt", OWN + "events.ipmitool.txt",
     ImportFormat::WRITERAW, false, 166},
    {"singles", PUBLIC + "public-singles.sel", REF + "public-singles.ipmitool-v-sel-readraw.txt",
     REF + "public-singles.ipmitool-sel-readraw.txt", ImportFormat::WIRE, true, 25},
    {"r630", PUBLIC + "sim-dell_r630.sel", REF + "sim-dell_r630.ipmitool-v-sel-list.txt",
     REF + "sim-dell_r630.ipmitool-sel-elist.txt", ImportFormat::WIRE, false, 6},
    {"r640", PUBLIC + "sim-dell_r640.sel", REF + "sim-dell_r640.ipmitool-v-sel-list.txt",
     REF + "sim-dell_r640.ipmitool-sel-elist.txt", ImportFormat::WIRE, false, 65},
    {"r740xd", PUBLIC + "sim-dell_r740xd.sel", REF + "sim-dell_r740xd.ipmitool-v-sel-list.txt",
     REF + "sim-dell_r740xd.ipmitool-sel-elist.txt", ImportFormat::WIRE, false, 58},
    {"d51", PUBLIC + "sim-quanta_d51.sel", REF + "sim-quanta_d51.ipmitool-v-sel-list.txt",
     REF + "sim-quanta_d51.ipmitool-sel-elist.txt", ImportFormat::WIRE, false, 15},
    {"interop", PUBLIC + "sim-interop.sel", SIMULATOR + "sel-list-v.txt.gz",
     SIMULATOR + "sel-elist.txt", ImportFormat::WIRE, false, 176},
};

std::string trimmed(const std::string& text)
{
    const std::size_t first = text.find_first_not_of(" \r");
    return first == std::string::npos
               ? ""
               : text.substr(first, text.find_last_not_of(" \r") - first + 1);
}

using Answer = std::map<std::string, std::string>;

/// The records of a verbose listing, each as its fields.
std::vector<Answer> verboseAnswers(const std::string& path)
{
    std::vector<Answer> answers;
    std::istringstream stream(contentOf(path));
    for (std::string line; std::getline(stream, line);) {
        const std::size_t colon = line.find(" : ");
        if (colon == std::string::npos) {
            continue;
        }
        const std::string name = trimmed(line.substr(0, colon));
        if (name == "SEL Record ID") {
            answers.emplace_back();
        }
        if (!answers.empty()) {
            answers.back()[name] = trimmed(line.substr(colon + 3));
        }
    }
    return answers;
}

/// The columns of each line of a short listing.
std::vector<std::vector<std::string>> lineAnswers(const std::string& path)
{
    std::vector<std::vector<std::string>> answers;
    std::istringstream stream(contentOf(path));
    for (std::string line; std::getline(stream, line);) {
        std::vector<std::string> columns;
        std::istringstream fields(line);
        for (std::string field; std::getline(fields, field, '|');) {
            columns.push_back(trimmed(field));
        }
        if (columns.size() > 1) {
            answers.push_back(columns);
        }
    }
    return answers;
}

std::vector<Event> eventsOf(const Sample& sample)
{
    const std::string content = contentOf(sample.log);
    std::vector<Event> events;
    for (const ImportedEvent& imported : readEvents(sample.log, content, sample.format, {})) {
        const Bytes image = imageOf(imported.message);
        events.push_back(decodeEvent(0, {1, 0, 0, image.data()}));
    }
    return events;
}

std::string hex(unsigned int number, const char* format)
{
    char text[16];
    std::snprintf(text, sizeof text, format, number);
    return text;
}

/// The time as ipmitool writes it: two columns of a date, or of seconds before one was known.
std::vector<std::string> timeColumns(const Event& event)
{
    if (!event.time.isDate()) {
        char seconds[16];
        std::snprintf(seconds, sizeof seconds, "%010u", event.time.raw());
        return {"Pre-Init", seconds};
    }
    const std::string text = event.time.toText(); // 2024-11-05 06:07:08
    return {text.substr(5, 2) + "/" + text.substr(8, 2) + "/" + text.substr(2, 2),
            text.substr(11) + " UTC"};
}

std::string reversedBytes(const std::string& digits)
{
    return digits.substr(4, 2) + digits.substr(2, 2) + digits.substr(0, 2);
}

void compareSystemEvent(const Event& event, Answer answer)
{
    EXPECT_EQ(answer["Generator ID"],
              hex(event.generatorId[0], "%02x").insert(0, hex(event.generatorId[1], "%02x")));
    EXPECT_EQ(answer["Sensor Number"], hex(event.sensorNumber, "%02x"));
    EXPECT_EQ(answer["Event Direction"],
              event.isDeassertion ? "Deassertion Event" : "Assertion Event");
    EXPECT_EQ(answer["Event Data"], toLowerHex(event.data));
    EXPECT_TRUE(isSameSensorType(answer["Sensor Type"], event.sensorType))
        << answer["Sensor Type"] << " is not " << sensorTypeName(event.sensorType);
    const std::string& description = answer["Description"];
    if (!description.empty()) {
        EXPECT_TRUE(
            isSameEvent(description, event.eventType, event.sensorType, textWithoutCause(event)))
            << "{\"" << description << "\", \"" << textWithoutCause(event) << "\"},";
    }
}

void compareOemRecord(const Event& event, Answer answer, bool hasReversedManufacturers)
{
    if (event.kind == EventKind::OEM_TIMESTAMPED) {
        const std::string id = hex(event.manufacturer, "%06x");
        EXPECT_EQ(answer["Manufactacturer ID"], hasReversedManufacturers ? reversedBytes(id) : id);
    }
    const std::string& data = answer["OEM Defined"];
    EXPECT_EQ(data.substr(0, data.find(' ')), toLowerHex(event.oemData));
}

class Peers : public testing::TestWithParam<Sample> {};

}

INSTANTIATE_TEST_SUITE_P(Samples, Peers, testing::ValuesIn(SAMPLES),
                         [](const auto& sample) { return sample.param.name; });

TEST_P(Peers, AgreeOnEveryFieldOfEveryRecord)
{
    const Sample& sample = GetParam();
    if (!fileExists(sample.log)) {
        GTEST_SKIP() << sample.log << " is not here";
    }
    const std::vector<Event> events = eventsOf(sample);
    const std::vector<Answer> answers = verboseAnswers(sample.verbose);
    ASSERT_EQ(events.size(), sample.records);
    ASSERT_EQ(answers.size(), sample.records);
    for (std::size_t i = 0; i < events.size(); ++i) {
        const Event& event = events[i];
        Answer answer = answers[i];
        SCOPED_TRACE("record " + answer["SEL Record ID"]);
        EXPECT_EQ(answer["SEL Record ID"], hex(event.recordId, "%04x"));
        if (answer["Record Type"].rfind("Linux kernel panic", 0) == 0) {
            // ipmitool knows this OEM type by name and shows its data as text.
            EXPECT_EQ(event.recordType, 0xF0);
            continue;
        }
        EXPECT_EQ(answer["Record Type"].substr(0, 2), hex(event.recordType, "%02x"));
        if (event.kind == EventKind::SYSTEM_EVENT) {
            compareSystemEvent(event, answer);
        } else {
            compareOemRecord(event, answer, sample.hasReversedManufacturers);
        }
    }
}

TEST_P(Peers, AgreeOnTheTimeAndDirectionOfEveryRecord)
{
    const Sample& sample = GetParam();
    if (!fileExists(sample.log)) {
        GTEST_SKIP() << sample.log << " is not here";
    }
    const std::vector<Event> events = eventsOf(sample);
    const auto answers = lineAnswers(sample.lines);
    ASSERT_EQ(answers.size(), sample.records);
    for (std::size_t i = 0; i < events.size(); ++i) {
        const Event& event = events[i];
        const std::vector<std::string>& answer = answers[i];
        SCOPED_TRACE("record " + answer[0]);
        EXPECT_EQ(answer[0], hex(event.recordId, "%x"));
        if (event.hasTime) {
            EXPECT_EQ((std::vector<std::string>{answer[1], answer[2]}), timeColumns(event));
        }
        if (event.kind == EventKind::SYSTEM_EVENT) {
            ASSERT_GE(answer.size(), 6U);
            EXPECT_EQ(answer[5], event.isDeassertion ? "Deasserted" : "Asserted");
        }
    }
}
