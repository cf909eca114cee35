// SPDX-License-Identifier: Apache-2.0
#include <recordkit/inspect/event/Failures.h>

#include <gtest/gtest.h>

#include <recordkit/inspect/event/AssertedEvents.h>

#include "support/SystemEvents.h"

using namespace recordkit::inspect;
using namespace testing_support;

namespace {

constexpr unsigned int MONDAY = 1730764800; // 2024-11-05 00:00:00 UTC

const Bytes FAN_WARNING = {4, 0x10, 0x01, 0x50, 4, 5};
const Bytes FAN_CRITICAL = {4, 0x10, 0x01, 0x52, 4, 5};
const Bytes FAN_NORMAL = {4, 0x10, 0x81, 0x50, 6, 5};
const Bytes OTHER_FAN = {4, 0x11, 0x01, 0x50, 4, 5};
const Bytes PRESENCE = {0x25, 0x20, 0x6F, 0x00, 0xFF, 0xFF};

Event ofUnit(const Bytes& bytes, const std::string& part, const std::string& serial)
{
    Event event = systemEvent(MONDAY, bytes);
    event.partNumber = part;
    event.serialNumber = serial;
    return event;
}

Failures failuresOf(std::vector<Event> events)
{
    markAsserted(events);
    return findFailures(events);
}

const NamedSensor FAN = {"Fan 3", "29.4", "fan or cooling device", "RPM", {}};

Event named(const Bytes& bytes, const std::string& part = "", const std::string& serial = "")
{
    Event event = ofUnit(bytes, part, serial);
    event.sensor = &FAN;
    return event;
}

}

TEST(Failures, AreAssertionsOfWarningsAndWorse)
{
    const Failures failures =
        failuresOf({systemEvent(MONDAY, FAN_WARNING), systemEvent(MONDAY, FAN_NORMAL),
                    systemEvent(MONDAY, PRESENCE), systemEvent(MONDAY, FAN_WARNING),
                    systemEvent(MONDAY, FAN_CRITICAL), eventOf({0xE0, 1})});
    ASSERT_EQ(failures.bySensor.size(), 1U);
    const FailureCount& count = failures.bySensor[0].count;
    EXPECT_EQ(count.total, 3U);
    EXPECT_EQ(count.assertions.size(), 2U);
    EXPECT_EQ(count.assertions.at(SeverityMap::SEV_NONCRITICAL), 2U);
    EXPECT_EQ(count.assertions.at(SeverityMap::SEV_CRITICAL), 1U);
    EXPECT_EQ(count.stillAsserted, 2U);
    EXPECT_EQ(count.first, 0U);
    EXPECT_EQ(count.last, 4U);
    EXPECT_FALSE(failures.bySensor[0].unit);
    EXPECT_TRUE(failures.units.empty() && failures.byUnit.empty());
}

TEST(Failures, OfAStateThatIsAssertedTwiceAreOneState)
{
    const Failures failures =
        failuresOf({systemEvent(MONDAY, FAN_WARNING), systemEvent(MONDAY, FAN_WARNING)});
    EXPECT_EQ(failures.bySensor[0].count.stillAsserted, 1U);
    EXPECT_EQ(failures.bySensor[0].count.total, 2U);
}

TEST(Failures, ComeMostFrequentFirst)
{
    const Failures failures =
        failuresOf({ofUnit(FAN_WARNING, "A", "1"), ofUnit(OTHER_FAN, "A", "2"),
                    ofUnit(OTHER_FAN, "A", "2"), ofUnit(OTHER_FAN, "A", "2")});
    ASSERT_EQ(failures.bySensor.size(), 2U);
    EXPECT_EQ(failures.bySensor[0].count.total, 3U);
    EXPECT_EQ(failures.bySensor[0].unit, 1U);
    ASSERT_EQ(failures.byUnit.size(), 2U);
    EXPECT_EQ(failures.units[failures.byUnit[0].unit].serialNumber, "2");
    EXPECT_EQ(failures.byUnit[0].count.first, 1U);
    EXPECT_EQ(failures.byUnit[0].count.last, 3U);
}

TEST(Failures, OfAUnitAreThoseOfItsSensorsInAllLogs)
{
    std::vector<Event> events = {ofUnit(FAN_WARNING, "A", "1"), ofUnit(OTHER_FAN, "A", "1"),
                                 ofUnit(FAN_WARNING, "A", "1"), ofUnit(FAN_WARNING, "A", "1")};
    events[3].log = 1;
    const Failures failures = failuresOf(events);
    ASSERT_EQ(failures.byUnit.size(), 1U);
    EXPECT_EQ(failures.byUnit[0].sensors, (std::vector<std::size_t>{0, 1, 3}));
    EXPECT_EQ(failures.byUnit[0].count.total, 4U);
    EXPECT_EQ(failures.bySensor.size(), 3U);
}

TEST(Failures, UnitsWithoutSerialNumberAreThoseOfALog)
{
    std::vector<Event> events = {ofUnit(FAN_WARNING, "A", ""), ofUnit(FAN_WARNING, "A", "")};
    events[1].log = 1;
    EXPECT_EQ(failuresOf(events).units.size(), 2U);
    events[1].log = 0;
    EXPECT_EQ(failuresOf(events).units.size(), 1U);
}

TEST(Failures, ALogWhoseUnitWasReplacedHasBoth)
{
    const Failures failures =
        failuresOf({ofUnit(FAN_WARNING, "A", "1"), ofUnit(FAN_WARNING, "A", "2"),
                    ofUnit(FAN_WARNING, "A", "2")});
    EXPECT_EQ(failures.byUnit.size(), 2U);
    ASSERT_EQ(failures.bySensor.size(), 1U);
    EXPECT_EQ(failures.units[*failures.bySensor[0].unit].serialNumber, "2");
}

TEST(FailedUnit, HasANameOfWhatIsKnown)
{
    EXPECT_EQ(unitOf(ofUnit(FAN_WARNING, "EX-1", "SN1"))->name(), "EX-1, serial SN1");
    EXPECT_EQ(unitOf(ofUnit(FAN_WARNING, "EX-1", ""))->name(), "EX-1");
    EXPECT_EQ(unitOf(ofUnit(FAN_WARNING, "", "SN1"))->name(), "serial SN1");
    EXPECT_EQ(unitOf(named(FAN_WARNING))->name(), "fan or cooling device 29.4");
    EXPECT_EQ(unitOf(named(FAN_WARNING, "EX-1"))->name(), "EX-1 (fan or cooling device 29.4)");
    EXPECT_FALSE(unitOf(systemEvent(MONDAY, FAN_WARNING)));
}

TEST(FailedUnit, HasNoEntityIfItsSerialNumberIsKnown)
{
    const auto unit = unitOf(named(FAN_WARNING, "EX-1", "SN1"));
    EXPECT_EQ(unit->name(), "EX-1, serial SN1");
    EXPECT_EQ(unit->entity, "");
}

TEST(FailedUnit, IsUtf8)
{
    EXPECT_EQ(unitOf(ofUnit(FAN_WARNING, "\xE4", "\xFC"))->name(), "\xC3\xA4, serial \xC3\xBC");
}
