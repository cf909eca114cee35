// SPDX-License-Identifier: Apache-2.0
#include <recordkit/inspect/event/AssertedEvents.h>

#include <gtest/gtest.h>

#include "support/SystemEvents.h"

using namespace recordkit::inspect;
using namespace testing_support;

namespace {

/// Sensor type, number, event/reading type (with the direction in bit 7) and event data 1.
struct Step {
    unsigned char sensorType;
    unsigned char number;
    unsigned char eventType;
    unsigned char data1;
};

std::vector<Event> eventsOf(const std::vector<Step>& steps)
{
    std::vector<Event> events;
    for (const Step& step : steps) {
        events.push_back(systemEvent(
            1000000000, {step.sensorType, step.number, step.eventType, step.data1, 0xFF, 0xFF}));
    }
    return events;
}

/// Which of the events are still asserted: "10" for the first of two.
std::string markedEvents(std::vector<Event> events)
{
    markAsserted(events);
    std::string text;
    for (const Event& event : events) {
        text += event.isStillAsserted ? '1' : '0';
    }
    return text;
}

std::string marked(const std::vector<Step>& steps)
{
    return markedEvents(eventsOf(steps));
}

constexpr Step FAN_LOW = {4, 0x10, 0x01, 0x52};
constexpr Step FAN_NORMAL = {4, 0x10, 0x81, 0x52};
constexpr Step LOG_CLEARED = {0x10, 0x72, 0x6F, 0x02};

}

TEST(AssertedEvents, LastUntilTheDeassertion)
{
    EXPECT_EQ(marked({}), "");
    EXPECT_EQ(marked({FAN_LOW}), "1");
    EXPECT_EQ(marked({FAN_NORMAL}), "0");
    EXPECT_EQ(marked({FAN_LOW, FAN_NORMAL}), "00");
    EXPECT_EQ(marked({FAN_NORMAL, FAN_LOW}), "01");
    EXPECT_EQ(marked({FAN_LOW, FAN_LOW, FAN_NORMAL, FAN_LOW, FAN_LOW}), "00011");
}

TEST(AssertedEvents, LastWhateverElseIsDeasserted)
{
    EXPECT_EQ(marked({FAN_LOW, {4, 0x11, 0x81, 0x52}}), "10") << "another sensor number";
    EXPECT_EQ(marked({FAN_LOW, {3, 0x10, 0x81, 0x52}}), "10") << "another sensor type";
    EXPECT_EQ(marked({FAN_LOW, {4, 0x10, 0x83, 0x52}}), "10") << "another event type";
    EXPECT_EQ(marked({FAN_LOW, {4, 0x10, 0x81, 0x50}}), "10") << "another offset";
    EXPECT_EQ(marked({FAN_LOW, {4, 0x10, 0x81, 0x02}}), "00") << "the same without a reading";
    for (const std::size_t byte : {0U, 1U}) {
        std::vector<Event> events = eventsOf({FAN_LOW, FAN_NORMAL});
        events[1].generatorId[byte] ^= 0x10;
        EXPECT_EQ(markedEvents(events), "10") << "another generator, byte " << byte;
    }
    std::vector<Event> events = eventsOf({FAN_LOW, FAN_NORMAL});
    events[1].log = 1;
    EXPECT_EQ(markedEvents(events), "10") << "another log";
}

TEST(AssertedEvents, StatesThatExcludeEachOtherEndEachOther)
{
    // Device present (1) or absent (0); severities; redundancy.
    EXPECT_EQ(marked({{4, 1, 0x08, 1}, {4, 1, 0x08, 0}}), "01");
    EXPECT_EQ(marked({{4, 1, 0x07, 2}, {4, 1, 0x07, 3}, {4, 1, 0x07, 0}}), "001");
    EXPECT_EQ(marked({{4, 1, 0x02, 0}, {4, 1, 0x02, 1}}), "01");
    EXPECT_EQ(marked({{4, 1, 0x0C, 0}, {4, 1, 0x0C, 3}}), "01");
    EXPECT_EQ(marked({{4, 1, 0x08, 1}, {4, 2, 0x08, 0}}), "11") << "another sensor";
    EXPECT_EQ(marked({{4, 1, 0x08, 1}, {4, 1, 0x88, 0}}), "10") << "not asserted";
    // Thresholds and the states of one sensor type may hold at the same time.
    EXPECT_EQ(marked({{4, 1, 0x01, 0}, {4, 1, 0x01, 2}}), "11");
    EXPECT_EQ(marked({{8, 1, 0x6F, 0}, {8, 1, 0x6F, 1}}), "11");
    EXPECT_EQ(marked({{8, 1, 0x0D, 0}, {8, 1, 0x0D, 1}}), "11") << "a reserved type";
    EXPECT_EQ(marked({{8, 1, 0x00, 0}, {8, 1, 0x00, 1}}), "11") << "unspecified";
}

TEST(AssertedEvents, OnlyFullRedundancyEndsTheLossOfRedundancy)
{
    EXPECT_EQ(marked({{8, 1, 0x0B, 1}, {8, 1, 0x0B, 3}}), "11");
    EXPECT_EQ(marked({{8, 1, 0x0B, 1}, {8, 1, 0x0B, 3}, {8, 1, 0x0B, 0}}), "001");
    EXPECT_EQ(marked({{8, 1, 0x0B, 0}, {8, 1, 0x0B, 1}}), "01");
}

TEST(AssertedEvents, ClearingTheLogEndsAllOfIt)
{
    EXPECT_EQ(marked({FAN_LOW, LOG_CLEARED, FAN_LOW}), "001");
    EXPECT_EQ(marked({FAN_LOW, {0x10, 0x72, 0xEF, 0x02}}), "10") << "a deassertion";
    EXPECT_EQ(marked({FAN_LOW, {0x10, 0x72, 0x6F, 0x03}}), "11") << "another offset";
    EXPECT_EQ(marked({FAN_LOW, {0x11, 0x72, 0x6F, 0x02}}), "11") << "another sensor type";
    EXPECT_EQ(marked({FAN_LOW, {0x10, 0x72, 0x03, 0x02}}), "11") << "another event type";
    std::vector<Event> events = eventsOf({FAN_LOW, LOG_CLEARED});
    events[0].log = 1;
    EXPECT_EQ(markedEvents(events), "10") << "of another log";
}

TEST(AssertedEvents, OemRecordsAreNeither)
{
    EXPECT_EQ(markedEvents({eventOf({0xC0, 0, 0, 0, 0, 1, 2, 3, 4, 5, 6, 7, 8})}), "0");
    EXPECT_EQ(markedEvents({eventOf({0xE0, 0x10, 0x72, 0x6F, 0x02})}), "0");
}

TEST(AssertedEvents, MarksAnew)
{
    std::vector<Event> events = eventsOf({FAN_NORMAL});
    events[0].isStillAsserted = true;
    EXPECT_EQ(markedEvents(events), "0");
}
