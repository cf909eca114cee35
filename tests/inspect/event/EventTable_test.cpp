// SPDX-License-Identifier: Apache-2.0
#include <recordkit/inspect/event/EventTable.h>

#include <gtest/gtest.h>

#include <recordkit/inspect/event/AssertedEvents.h>

#include "support/SystemEvents.h"

using namespace recordkit::inspect;
using namespace testing_support;

namespace {

using Numbers = std::vector<unsigned int>;

constexpr unsigned int MONDAY = 1730764800; // 2024-11-05 00:00:00 UTC

const Bytes FAN_LOW = {4, 0x10, 0x01, 0x52, 4, 5}; // critical
const Bytes FAN_NORMAL = {4, 0x10, 0x81, 0x52, 6, 5};

/// An event whose block begins with these bytes.
Event withBlock(const Bytes& block)
{
    Event event = systemEvent(MONDAY, FAN_LOW);
    std::copy(block.begin(), block.end(), event.image.begin() + 18);
    return event;
}

EventTable tableOf(std::vector<Event>& events)
{
    markAsserted(events);
    return tabulate(events);
}

}

TEST(EventTable, OfNothingIsEmpty)
{
    const EventTable table = tabulate({});
    EXPECT_TRUE(table.records.empty() && table.times.empty() && table.sensors.empty());
    EXPECT_TRUE(table.texts.empty() && table.causes.empty() && table.blocks.empty());
}

TEST(EventTable, HasANumberOfEachKindForEachEvent)
{
    std::vector<Event> events = {systemEvent(MONDAY, FAN_NORMAL),
                                 systemEvent(5, FAN_LOW),
                                 systemEvent(0xFFFFFFFF, FAN_NORMAL),
                                 systemEvent(MONDAY, FAN_LOW),
                                 eventOf({0xE0, 1, 2, 3}),
                                 eventOf({0xC0, 0, 0, 0x2A, 0x67})};
    events[3].state = EventState::BACKUP;
    events[3].fileIndex = 7;
    events[3].slot = 4095;
    events[3].logNumber = 70000;
    const EventTable table = tableOf(events);
    EXPECT_EQ(table.times,
              (Numbers{MONDAY, 0xFFFFFFFF, 0xFFFFFFFF, MONDAY, 0xFFFFFFFF, 0x672A0000}));
    // Critical is the second of six; the last two are not system events.
    EXPECT_EQ(table.severities, (Numbers{1, 1, 1, 1, 6, 6}));
    EXPECT_EQ(table.directions, (Numbers{2, 1, 2, 1, 0, 0}));
    EXPECT_EQ(table.flags, (Numbers{0, 2, 0, 1, 0, 0}));
    EXPECT_EQ(table.states, (Numbers{0, 0, 0, 3, 0, 0}));
    EXPECT_EQ(table.files, (Numbers{0, 0, 0, 7, 0, 0}));
    EXPECT_EQ(table.slots, (Numbers{0, 0, 0, 4095, 0, 0}));
    EXPECT_EQ(table.numbers, (Numbers{0, 0, 0, 70000, 0, 0}));
    ASSERT_EQ(table.records.size(), 96U);
    EXPECT_EQ(Bytes(table.records.begin() + 64, table.records.begin() + 70),
              (Bytes{1, 0, 0xE0, 1, 2, 3}));
}

TEST(EventTable, HasEachTextOnceSorted)
{
    std::vector<Event> events = {systemEvent(MONDAY, FAN_NORMAL),
                                 systemEvent(MONDAY, {7, 1, 0x6F, 1}),
                                 systemEvent(MONDAY, FAN_LOW)};
    const EventTable table = tableOf(events);
    ASSERT_EQ(table.texts.size(), 2U);
    EXPECT_LT(table.texts[0], table.texts[1]);
    EXPECT_EQ(table.texts[0], "Lower Critical - going low");
    EXPECT_EQ(table.textOf, (Numbers{0, 1, 0}));
    EXPECT_EQ(table.causes, std::vector<std::string>({""}));
    EXPECT_EQ(table.causeOf, (Numbers{0, 0, 0}));
}

TEST(EventTable, ASensorIsOneOfALogAndTheOtherRecordsOfALogAreTogether)
{
    std::vector<Event> events = {
        systemEvent(MONDAY, FAN_LOW),
        systemEvent(MONDAY, {4, 0x10, 0x6F, 1, 0, 0}), // the same with another event type
        systemEvent(MONDAY, {4, 0x11, 0x01, 0x52, 4, 5}),
        systemEvent(MONDAY, {5, 0x10, 0x01, 0x52}),
        systemEvent(MONDAY, FAN_LOW),
        eventOf({0xE0}),
        eventOf({0xC0}),
        systemEvent(MONDAY, {0, 0, 0, 0})};
    events[4].log = 1;
    events[7].generatorId[0] = 0;
    const EventTable table = tableOf(events);
    EXPECT_EQ(table.sensorOf, (Numbers{0, 0, 1, 2, 3, 4, 4, 5}));
    ASSERT_EQ(table.sensors.size(), 6U);
    EXPECT_EQ(table.sensors[3], &events[4]);
}

TEST(EventTable, HasEachBlockOnce)
{
    std::vector<Event> events = {withBlock({1}), withBlock({2}), withBlock({1})};
    const EventTable table = tableOf(events);
    EXPECT_EQ(table.blockOf, (Numbers{0, 1, 0}));
    ASSERT_EQ(table.blocks.size(), 2U);
    EXPECT_EQ(table.blocks[1].event, &events[1]);
    EXPECT_TRUE(table.blocks[1].hasImage);
}

TEST(EventTable, LeavesBytesOfManyBlocksOutAndSaysSo)
{
    std::vector<Event> events;
    for (unsigned int i = 0; i < 8194; ++i) {
        events.push_back(
            withBlock({static_cast<unsigned char>(i), static_cast<unsigned char>(i >> 8)}));
    }
    const EventTable table = tableOf(events);
    ASSERT_EQ(table.blocks.size(), 8193U);
    EXPECT_TRUE(table.blocks[4095].hasImage);
    EXPECT_FALSE(table.blocks[4096].hasImage);
    EXPECT_EQ(table.blocks[8191].event, &events[8191]);
    EXPECT_EQ(table.blocks[8192].event, nullptr);
    EXPECT_EQ(table.blockOf[8191], 8191U);
    EXPECT_EQ(table.blockOf[8192], 8192U);
    EXPECT_EQ(table.blockOf[8193], 8192U);
}
