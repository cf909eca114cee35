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
