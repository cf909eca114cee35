// SPDX-License-Identifier: Apache-2.0
#include <recordkit/inspect/event/SeenReadings.h>

#include <gtest/gtest.h>

#include "support/SystemEvents.h"

using namespace recordkit::inspect;
using namespace testing_support;

namespace {

/// Units of 120 RPM, or none.
NamedSensor fan(bool hasUnits = true)
{
    Bytes record(48, 0);
    record[24] = 120;
    return {"Fan1", "29.1", "fan", "RPM",
            hasUnits ? Conversion::of(record) : std::optional<Conversion>()};
}

Event eventOf(const NamedSensor* sensor, const Bytes& data, unsigned int log = 0)
{
    Event event = systemEvent(1730764800, Bytes{4, 0x10, 0x01} + data);
    event.sensor = sensor;
    event.log = log;
    return event;
}

}

TEST(SeenReadings, AreCountedForEachSensorOfEachLog)
{
    const NamedSensor one = fan();
    const NamedSensor other = fan();
    const auto seen = seenReadings({eventOf(&one, {0x52, 4, 5}), eventOf(&one, {0x52, 4, 5}),
                                    eventOf(&one, {0x50, 3, 5}), eventOf(&one, {0x52, 4, 5}, 1),
                                    eventOf(&other, {0x52, 0, 5})});
    ASSERT_EQ(seen.size(), 3U);
    EXPECT_EQ(seen.at({&one, 0}), (ReadingCounts{{360, 1}, {480, 2}}));
    EXPECT_EQ(seen.at({&one, 1}), (ReadingCounts{{480, 1}}));
    EXPECT_EQ(seen.at({&other, 0}), (ReadingCounts{{0, 1}}));
}

TEST(SeenReadings, NeedASensorItsUnitsAndAReading)
{
    const NamedSensor withoutUnits = fan(false);
    const NamedSensor known = fan();
    EXPECT_TRUE(seenReadings({eventOf(nullptr, {0x52, 4, 5}), eventOf(&withoutUnits, {0x52, 4, 5}),
                              eventOf(&known, {0x02, 4, 5})})
                    .empty());
}
