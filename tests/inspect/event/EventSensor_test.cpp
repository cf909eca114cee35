// SPDX-License-Identifier: Apache-2.0
// Events with the sensors that a repository names.
#include <gtest/gtest.h>

#include <recordkit/inspect/event/Event.h>

#include "support/Bytes.h"

using namespace recordkit::inspect;
using namespace testing_support;

namespace {

/// Units of 120 RPM.
NamedSensor fan()
{
    Bytes record(48, 0);
    record[24] = 120;
    return {"Fan1", "29.1", "fan", "RPM", Conversion::of(record)};
}

/// An event of sensor 10h of the management controller, with event/reading type and event data.
Event eventOf(unsigned char type, const Bytes& data)
{
    const Bytes start = {0xFF, 0xFF, 1, 0, 2, 0x78, 0x56, 0x34, 0x12, 0x20, 0x00, 4, 4, 0x10, type};
    return decodeEvent(fromBytes<TAVLib::RecordKit::BMCSELEntryMessage>(
        start + data + Bytes(138 - start.size() - data.size(), 0)));
}

std::string textOf(unsigned char type, const Bytes& data, const NamedSensor& sensor = fan())
{
    SensorNames names;
    names.add(0x20, 0, 0x10, sensor);
    std::vector<Event> events = {eventOf(type, data)};
    nameSensors(events, names);
    return eventText(events[0]);
}

}

TEST(EventSensor, HasTheReadingAndTheThresholdInUnits)
{
    EXPECT_EQ(textOf(0x01, {0x52, 4, 5}),
              "Lower Critical - going low, reading 480 < threshold 600 RPM");
    EXPECT_EQ(textOf(0x01, {0x59, 6, 5}),
              "Upper Critical - going high, reading 720 > threshold 600 RPM");
    EXPECT_EQ(textOf(0x81, {0x52, 5, 5}),
              "Lower Critical - going low, reading 600 = threshold 600 RPM");
}

TEST(EventSensor, HasOnlyWhatTheEventSaysThatItHas)
{
    // Bits 7..6 of event data 1 tell what event data 2 is, bits 5..4 what event data 3 is.
    EXPECT_EQ(textOf(0x01, {0x42, 4, 5}), "Lower Critical - going low, reading 480 RPM");
    for (const unsigned char other : {0x02, 0x12, 0x82, 0x92, 0xC2, 0xD2}) {
        EXPECT_EQ(textOf(0x01, {other, 4, 5}), "Lower Critical - going low") << int{other};
    }
    for (const unsigned char other : {0x62, 0x72}) {
        EXPECT_EQ(textOf(0x01, {other, 4, 5}), "Lower Critical - going low, reading 480 RPM");
    }
    // Of a discrete sensor the same bits mean something else.
    EXPECT_EQ(textOf(0x03, {0x51, 4, 5}), eventText(eventOf(0x03, {0x51, 4, 5})));
}

TEST(EventSensor, WithoutAConversionHasCounts)
{
    const NamedSensor sensor = {"X", "", "", "", std::nullopt};
    EXPECT_EQ(textOf(0x01, {0x52, 4, 5}, sensor),
              "Lower Critical - going low, reading 4 < threshold 5");
}

TEST(EventSensor, WhoseFunctionHasNoValueThereIsNotCompared)
{
    NamedSensor sensor = fan();
    Bytes record(48, 0);
    record[23] = 7; // 1/x
    record[24] = 1;
    sensor.conversion = Conversion::of(record);
    EXPECT_EQ(textOf(0x01, {0x52, 0, 4}, sensor),
              "Lower Critical - going low, reading none, threshold 0.25 RPM");
    EXPECT_EQ(textOf(0x01, {0x52, 2, 4}, sensor),
              "Lower Critical - going low, reading 0.5 > threshold 0.25 RPM");
}

TEST(EventSensor, IsThatOfTheOwnerAndTheNumber)
{
    SensorNames names;
    names.add(0x20, 0x00, 0x10, {"first", "", "", "", {}});
    names.add(0x20, 0x00, 0x10, {"second", "", "", "", {}});
    names.add(0x20, 0x01, 0x10, {"LUN 1", "", "", "", {}});
    names.add(0x22, 0x00, 0x10, {"satellite", "", "", "", {}});
    const auto nameOf = [&names](unsigned char one, unsigned char two, unsigned char number) {
        const unsigned char generator[2] = {one, two};
        const NamedSensor* const found = names.find(generator, number);
        return found == nullptr ? "none" : found->name;
    };
    EXPECT_EQ(nameOf(0x20, 0x00, 0x10), "first");
    EXPECT_EQ(nameOf(0x20, 0x70, 0x10), "first") << "logged by way of channel 7";
    EXPECT_EQ(nameOf(0x20, 0x01, 0x10), "LUN 1");
    EXPECT_EQ(nameOf(0x22, 0x00, 0x10), "satellite");
    EXPECT_EQ(nameOf(0x20, 0x02, 0x10), "none");
    EXPECT_EQ(nameOf(0x21, 0x00, 0x10), "none");
    EXPECT_EQ(nameOf(0x20, 0x00, 0x11), "none");
}

TEST(EventSensor, OfOemRecordsIsNone)
{
    SensorNames names;
    names.add(0, 0, 0, fan());
    Bytes image(138, 0);
    image[4] = 0xC0;
    std::vector<Event> events = {
        decodeEvent(fromBytes<TAVLib::RecordKit::BMCSELEntryMessage>(image))};
    nameSensors(events, names);
    EXPECT_EQ(events[0].sensor, nullptr);
    EXPECT_FALSE(triggerReading(events[0]));
    EXPECT_FALSE(triggerThreshold(events[0]));
}
