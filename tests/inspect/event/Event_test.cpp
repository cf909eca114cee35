// SPDX-License-Identifier: Apache-2.0
#include <recordkit/inspect/event/Event.h>

#include <gtest/gtest.h>

#include <recordkit/inspect/event/EventImport.h>

using namespace recordkit::inspect;

TEST(Event, RecordThatIsInNoLogHasNoPlace)
{
    const auto imported =
        importEvents("events", "0100020cb6296720000407606f01ffff # a processor", EventForm::HEX);
    ASSERT_EQ(imported.size(), 1U);
    const Event event = decodeEvent(imported[0].message);
    EXPECT_EQ(event.recordId, 1U);
    EXPECT_EQ(event.sensorType, 0x07);
    EXPECT_EQ(event.sensorNumber, 0x60);
    EXPECT_EQ(event.board, 0U);
    EXPECT_EQ(event.logNumber, 0U);

    const Event stored = decodeEvent(3, {7, 2, 5, event.image.data()});
    EXPECT_EQ(stored.image, event.image);
    EXPECT_EQ(eventText(stored), eventText(event));
    EXPECT_EQ(stored.board, 3U);
    EXPECT_EQ(stored.logNumber, 7U);
    EXPECT_EQ(stored.fileIndex, 2);
    EXPECT_EQ(stored.slot, 5U);
}

TEST(Event, TextNamesTheCauseThatEventDataGives)
{
    struct Case {
        const char* record; ///< from the sensor type to event data 3
        const char* text;
        const char* cause;
    };
    const Case cases[] = {
        // Memory
        {"0c406f31ff03", "Uncorrectable ECC / other uncorrectable memory error: memory module 3",
         "memory module 3"},
        {"0c40ef31ff03", "Uncorrectable ECC / other uncorrectable memory error: memory module 3",
         "memory module 3"},
        {"0c406fa1ff03", "Uncorrectable ECC / other uncorrectable memory error", ""},
        // Slot: a type and a number
        {"21406ff00105", "Fault Status asserted: Drive Array, slot 5", "Drive Array, slot 5"},
        {"21406ff01005", "Fault Status asserted: slot type 10h, slot 5", "slot type 10h, slot 5"},
        {"21406ff0ff05", "Fault Status asserted: slot 5", "slot 5"},
        {"21406fc00105", "Fault Status asserted: Drive Array", "Drive Array"},
        // System firmware
        {"0f406fc101ff", "System Firmware Hang: Memory initialization", "Memory initialization"},
        {"0f406fc100ff", "System Firmware Hang", ""},
        // Session
        {"2a406ff10221", "Session Deactivated: user 2, deactivated by timeout, channel 1",
         "user 2, deactivated by timeout, channel 1"},
        // The state before
        {"08400b41f0ff", "Redundancy Lost: previous state Fully Redundant",
         "previous state Fully Redundant"},
        // An offset without words
        {"08400a4ff0ff", "availability event 0Ah, offset 15: previous state Transition to Running",
         "previous state Transition to Running"},
        // A threshold sensor, without a repository
        {"01400152040a", "Lower Critical - going low", ""},
    };
    for (const Case& each : cases) {
        const auto imported = importEvents(
            "events", std::string("0100020cb62967200004") + each.record, EventForm::HEX);
        ASSERT_EQ(imported.size(), 1U);
        const Event event = decodeEvent(imported[0].message);
        EXPECT_EQ(eventText(event), each.text);
        EXPECT_EQ(eventCause(event), each.cause);
    }
}

TEST(Event, RecordsOfOtherKindsHaveNoCause)
{
    // The bytes of an event about a memory module, in records of an OEM.
    for (const std::string type : {"c0", "e0", "05"}) {
        const auto imported =
            importEvents("events", "0100" + type + "0cb629672000040c406f31ff03", EventForm::HEX);
        ASSERT_EQ(imported.size(), 1U);
        EXPECT_EQ(eventCause(decodeEvent(imported[0].message)), "");
    }
}
