// SPDX-License-Identifier: Apache-2.0
// openipmi's simulated controller on loopback: one event for every sensor type and offset, listed
// by ipmitool and by this project. Ours has words wherever ipmitool has them.
#include <algorithm>
#include <gtest/gtest.h>
#include <map>
#include <sstream>

#include <recordkit/inspect/event/Event.h>
#include <recordkit/inspect/words/EventTypes.h>
#include <recordkit/inspect/words/EventWords.h>

#include "interop/Simulator.h"
#include "support/Bytes.h"
#include "support/ScratchRoot.h"
#include "support/PeerNames.h"
#include "tool/sel/EventInput.h"

using namespace recordkit::inspect;
using namespace recordkit::tool;
using namespace testing_support;

namespace {

struct Sent {
    unsigned char sensorType;
    unsigned char eventType;
    unsigned char offset;
    bool isDeassertion;
};

/// Every offset of every sensor type and generic event, and both directions of the thresholds.
std::vector<Sent> everyEvent()
{
    std::vector<Sent> events;
    for (unsigned char offset = 0; offset < 16; ++offset) {
        for (unsigned char sensorType = 0x01; sensorType <= 0x2C; ++sensorType) {
            events.push_back({sensorType, SENSOR_SPECIFIC_EVENT, offset, false});
        }
        for (unsigned char eventType = 0x01; eventType <= LAST_GENERIC_EVENT; ++eventType) {
            events.push_back({0x01, eventType, offset, false});
        }
        if (offset < 12) {
            events.push_back({0x01, THRESHOLD_EVENT, offset, true});
        }
    }
    return events;
}

/// The input file of `ipmitool sel add`.
std::string eventFile(const std::vector<Sent>& events)
{
    std::string text;
    for (const Sent& event : events) {
        char line[64];
        std::snprintf(line, sizeof line, "0x04 0x%02x 0x33 0x%02x 0x%02x 0xff 0xff\n",
                      event.sensorType, event.eventType | (event.isDeassertion ? 0x80 : 0),
                      event.offset);
        text += line;
    }
    return text;
}

/// The columns of ipmitool's listing by record id.
std::map<unsigned long, std::vector<std::string>> linesById(const std::string& listing)
{
    std::map<unsigned long, std::vector<std::string>> lines;
    std::istringstream stream(listing);
    for (std::string line; std::getline(stream, line);) {
        std::vector<std::string> columns;
        std::istringstream fields(line);
        for (std::string field; std::getline(fields, field, '|');) {
            const std::size_t first = field.find_first_not_of(' ');
            columns.push_back(first == std::string::npos
                                  ? ""
                                  : field.substr(first, field.find_last_not_of(' ') - first + 1));
        }
        if (columns.size() >= 6) {
            lines[std::stoul(columns[0], nullptr, 16)] = columns;
        }
    }
    return lines;
}

}

TEST(Simulator, HasNoWordsForAnEventThatWeHaveNone)
{
    if (!hasPrograms({"ipmi_sim", "ipmitool"})) {
        GTEST_SKIP() << "ipmi_sim and ipmitool are not here";
    }
    const ScratchRoot root;
    const Simulator simulator(root.path());
    const std::vector<Sent> sent = everyEvent();
    writeFile(root.at("/events.txt"), eventFile(sent));
    ASSERT_EQ(simulator.ipmitool({"sel", "clear"}).status, 0);
    const Outcome added = simulator.ipmitool({"sel", "add", root.at("/events.txt")});
    ASSERT_EQ(added.status, 0) << added.err;
    const Outcome saved = simulator.ipmitool({"sel", "writeraw", root.at("/events.raw")});
    ASSERT_EQ(saved.status, 0) << saved.err;
    const auto theirs = linesById(simulator.ipmitool({"sel", "elist"}).out);

    const Bytes raw = readFile(root.at("/events.raw"));
    const auto ours =
        readEvents("events.raw", std::string(raw.begin(), raw.end()), ImportFormat::AUTO, {});
    // The simulator may begin with an event of its own for the clearing.
    ASSERT_GE(ours.size(), sent.size());
    const std::size_t before = ours.size() - sent.size();
    std::size_t compared = 0;
    for (std::size_t i = 0; i < sent.size(); ++i) {
        const Bytes image = imageOf(ours[before + i].message);
        const Event event = decodeEvent(0, {1, 0, 0, image.data()});
        ASSERT_EQ(event.sensorType, sent[i].sensorType);
        ASSERT_EQ(event.eventType, sent[i].eventType);
        ASSERT_EQ(event.offset, sent[i].offset);
        ASSERT_EQ(event.isDeassertion, sent[i].isDeassertion);
        const auto line = theirs.find(event.recordId);
        ASSERT_NE(line, theirs.end()) << event.recordId;
        EXPECT_EQ(line->second[5], event.isDeassertion ? "Deasserted" : "Asserted");
        const std::string& words = line->second[4];
        if (words.empty()) {
            continue;
        }
        ++compared;
        EXPECT_NE(eventWords(event.eventType, event.sensorType, event.offset), nullptr)
            << words << " at type " << int(event.eventType) << ", sensor type "
            << int(event.sensorType) << ", offset " << int(event.offset);
        if (event.eventType == THRESHOLD_EVENT) {
            EXPECT_TRUE(isSameEvent(words, event.eventType, event.sensorType, eventText(event)))
                << words << " is not " << eventText(event);
        }
    }
    EXPECT_GT(compared, 200U);
}
