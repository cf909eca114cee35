// SPDX-License-Identifier: Apache-2.0
#include <recordkit/inspect/event/EventSummary.h>

#include <gtest/gtest.h>

#include <recordkit/inspect/event/AssertedEvents.h>

#include "support/SystemEvents.h"

using namespace recordkit::inspect;
using namespace testing_support;

namespace {

constexpr unsigned int MONDAY = 1730764800; // 2024-11-05 00:00:00 UTC
constexpr unsigned int HOUR = 3600;

const Bytes FAN_LOW = {4, 0x10, 0x01, 0x52, 4, 5}; // critical
const Bytes FAN_NORMAL = {4, 0x10, 0x81, 0x52, 6, 5};
const Bytes FAN_WARNING = {4, 0x10, 0x01, 0x50, 4, 5};
const Bytes OTHER_FAN_LOW = {4, 0x11, 0x01, 0x52, 4, 5};
const Bytes THERMAL_TRIP = {7, 0x60, 0x6F, 0x01, 0xFF, 0xFF};

const EventCount& countOf(const EventSummary& summary, Severity severity)
{
    for (const auto& each : summary.severities) {
        if (each.first == severity) {
            return each.second;
        }
    }
    throw std::logic_error("no such severity");
}

struct Summarised {
    explicit Summarised(std::vector<Event> list, Zone zone = nullptr) : events(std::move(list))
    {
        markAsserted(events);
        summary = summarise(events, events, zone);
    }
    std::size_t numberOf(const Event* event) const
    {
        return static_cast<std::size_t>(event - events.data());
    }

    std::vector<Event> events;
    EventSummary summary;
};

}

TEST(EventSummary, OfNothingIsEmpty)
{
    const EventSummary summary = summarise({}, {});
    EXPECT_EQ(summary.events, 0U);
    EXPECT_FALSE(summary.first || summary.last || summary.mostFrequent || summary.longest);
    EXPECT_EQ(summary.newest, nullptr);
    EXPECT_TRUE(summary.logs.empty() && summary.sensors.empty() && summary.hours.empty() &&
                summary.asserted.empty());
    ASSERT_EQ(summary.severities.size(), 6U);
    const Severity worstFirst[] = {SeverityMap::SEV_NONRECOVERABLE, SeverityMap::SEV_CRITICAL,
                                   SeverityMap::SEV_NONCRITICAL,    SeverityMap::SEV_MONITOR,
                                   SeverityMap::SEV_INFORMATIONAL,  SeverityMap::SEV_NONE};
    for (std::size_t i = 0; i < 6; ++i) {
        EXPECT_EQ(summary.severities[i].first, worstFirst[i]) << i;
        EXPECT_EQ(summary.severities[i].second.events, 0U);
    }
}

TEST(EventSummary, CountsEventsAndStates)
{
    Summarised s({systemEvent(MONDAY, FAN_LOW), systemEvent(MONDAY + 1, FAN_NORMAL),
                  systemEvent(MONDAY + 2, FAN_LOW), systemEvent(MONDAY + 3, FAN_LOW),
                  systemEvent(MONDAY + 4, FAN_WARNING), systemEvent(MONDAY + 5, OTHER_FAN_LOW),
                  eventOf({0xE0, 1, 2, 3})});
    s.events[5].log = 1;
    markAsserted(s.events);
    s.summary = summarise(s.events, s.events);
    EXPECT_EQ(s.summary.events, 7U);
    EXPECT_EQ(s.summary.otherRecords, 1U);
    EXPECT_EQ(countOf(s.summary, SeverityMap::SEV_CRITICAL).events, 5U);
    EXPECT_EQ(countOf(s.summary, SeverityMap::SEV_CRITICAL).stillAsserted, 2U);
    EXPECT_EQ(countOf(s.summary, SeverityMap::SEV_NONCRITICAL).events, 1U);
    EXPECT_EQ(countOf(s.summary, SeverityMap::SEV_NONCRITICAL).stillAsserted, 1U);
    EXPECT_EQ(countOf(s.summary, SeverityMap::SEV_NONE).events, 0U);

    ASSERT_EQ(s.summary.logs.size(), 2U);
    EXPECT_EQ(s.summary.logs[0].count.events, 6U);
    EXPECT_EQ(s.summary.logs[0].count.stillAsserted, 2U);
    EXPECT_EQ(s.numberOf(s.summary.logs[0].newest), 6U);
    EXPECT_EQ(s.summary.logs[1].count.events, 1U);
    EXPECT_EQ(s.summary.logs[1].count.stillAsserted, 1U);

    ASSERT_EQ(s.summary.sensors.size(), 2U) << "an OEM record has no sensor";
    EXPECT_EQ(s.summary.sensors[0].newest->sensorNumber, 0x10);
    EXPECT_EQ(s.summary.sensors[0].count.events, 5U);
    EXPECT_EQ(s.summary.sensors[0].count.stillAsserted, 2U);
    EXPECT_EQ(s.summary.sensors[1].newest->sensorNumber, 0x11);
    EXPECT_EQ(s.summary.sensors[1].count.events, 1U);

    ASSERT_TRUE(s.summary.mostFrequent);
    EXPECT_EQ(s.summary.mostFrequent->assertions, 3U);
    EXPECT_EQ(s.numberOf(s.summary.mostFrequent->newest), 3U);
    EXPECT_EQ(s.numberOf(s.summary.newest), 6U);
}

TEST(EventSummary, StatesAreInTheOrderOfTheirSeverityThenOfTheirBeginning)
{
    const Summarised s({systemEvent(MONDAY, FAN_WARNING), systemEvent(MONDAY + 1, FAN_LOW),
                        systemEvent(MONDAY + 2, FAN_NORMAL), systemEvent(MONDAY + 3, OTHER_FAN_LOW),
                        systemEvent(MONDAY + 4, FAN_LOW), systemEvent(MONDAY + 5, FAN_LOW)});
    ASSERT_EQ(s.summary.asserted.size(), 3U);
    const std::size_t since[] = {3, 4, 0};
    const std::size_t newest[] = {3, 5, 0};
    const std::size_t assertions[] = {1, 3, 1};
    for (std::size_t i = 0; i < 3; ++i) {
        EXPECT_EQ(s.numberOf(s.summary.asserted[i].since), since[i]) << i;
        EXPECT_EQ(s.numberOf(s.summary.asserted[i].newest), newest[i]) << i;
        EXPECT_EQ(s.summary.asserted[i].assertions, assertions[i]) << i;
    }
    ASSERT_TRUE(s.summary.longest);
    EXPECT_EQ(s.numberOf(s.summary.longest->since), 0U) << "whatever its severity";
}

TEST(EventSummary, WhatIsOverIsNotStillAsserted)
{
    const Summarised s({systemEvent(MONDAY, FAN_LOW), systemEvent(MONDAY + 1, FAN_NORMAL)});
    EXPECT_TRUE(s.summary.asserted.empty());
    EXPECT_FALSE(s.summary.longest);
    ASSERT_TRUE(s.summary.mostFrequent);
    EXPECT_EQ(s.summary.mostFrequent->since, nullptr);
}

TEST(EventSummary, OfEquallyFrequentStatesTheFirstCounts)
{
    const Summarised s({systemEvent(MONDAY, THERMAL_TRIP), systemEvent(MONDAY, FAN_LOW),
                        systemEvent(MONDAY, FAN_LOW), systemEvent(MONDAY, THERMAL_TRIP)});
    EXPECT_EQ(s.summary.mostFrequent->newest->sensorType, 7);
}

TEST(EventSummary, HasTheDatesOfTheEarliestAndTheLatestEvent)
{
    const Summarised s({systemEvent(MONDAY + 5, FAN_LOW), systemEvent(MONDAY, FAN_LOW),
                        systemEvent(MONDAY + 2, FAN_LOW), systemEvent(0x20000000, FAN_LOW),
                        systemEvent(0xFFFFFFFF, FAN_LOW), eventOf({0xE0})});
    EXPECT_EQ(s.summary.first->raw(), MONDAY);
    EXPECT_EQ(s.summary.last->raw(), MONDAY + 5);
    EXPECT_EQ(s.summary.undated, 3U);
}

TEST(EventSummary, OfSomeTimeHasWhatIsStillAssertedFromAnyTime)
{
    std::vector<Event> all = {systemEvent(MONDAY, FAN_LOW), systemEvent(MONDAY + 1, OTHER_FAN_LOW),
                              systemEvent(MONDAY + 2, FAN_LOW)};
    markAsserted(all);
    const std::vector<Event> some = {all[2]};
    const EventSummary summary = summarise(some, all);
    EXPECT_EQ(summary.events, 1U);
    EXPECT_EQ(summary.first->raw(), MONDAY + 2);
    EXPECT_EQ(summary.newest, &some[0]);
    EXPECT_EQ(summary.mostFrequent->assertions, 1U) << "in this time";
    ASSERT_EQ(summary.asserted.size(), 2U);
    EXPECT_EQ(summary.asserted[0].since, &all[0]);
    EXPECT_EQ(summary.asserted[0].assertions, 2U);
    EXPECT_EQ(summary.asserted[1].since, &all[1]);
    EXPECT_EQ(summary.longest->since, &all[0]);
    EXPECT_EQ(countOf(summary, SeverityMap::SEV_CRITICAL).events, 1U);
    EXPECT_EQ(countOf(summary, SeverityMap::SEV_CRITICAL).stillAsserted, 2U);
    ASSERT_EQ(summary.sensors.size(), 2U);
    EXPECT_EQ(summary.sensors[1].newest, &all[1]) << "one without an event in this time";
    EXPECT_EQ(summary.sensors[1].count.events, 0U);
    EXPECT_EQ(summary.sensors[1].count.stillAsserted, 1U);
    EXPECT_EQ(summary.logs[0].newest, &some[0]);
}

TEST(EventSummary, CountsEachHour)
{
    const std::vector<Event> events = {
        systemEvent(MONDAY, FAN_LOW), systemEvent(MONDAY + HOUR - 1, FAN_LOW),
        systemEvent(MONDAY + HOUR, FAN_LOW), systemEvent(MONDAY + 5 * HOUR + 1, FAN_LOW)};
    using Hours = std::map<unsigned int, std::size_t>;
    EXPECT_EQ(summarise(events, events).hours,
              (Hours{{MONDAY, 2}, {MONDAY + HOUR, 1}, {MONDAY + 5 * HOUR, 1}}));
    const Zone india = [](unsigned int) { return 19800L; };
    EXPECT_EQ(summarise(events, events, india).hours,
              (Hours{{MONDAY - HOUR / 2, 1}, {MONDAY + HOUR / 2, 2}, {MONDAY + 9 * HOUR / 2, 1}}));
    const Zone newfoundland = [](unsigned int) { return -12600L; };
    EXPECT_EQ(summarise(events, events, newfoundland).hours,
              (Hours{{MONDAY - HOUR / 2, 1}, {MONDAY + HOUR / 2, 2}, {MONDAY + 9 * HOUR / 2, 1}}));
}
