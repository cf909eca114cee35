// SPDX-License-Identifier: Apache-2.0
#include <recordkit/inspect/event/EventDifference.h>

#include <gtest/gtest.h>

#include "support/SystemEvents.h"

using namespace recordkit::inspect;
using namespace testing_support;

namespace {

using Numbers = std::vector<std::size_t>;

Event fan(unsigned char number)
{
    return systemEvent(1000000000, {4, number, 0x01, 0x52, 4, 5});
}

/// The event with another byte of its image.
Event with(Event event, std::size_t offset, unsigned char value)
{
    event.image[offset] = value;
    return event;
}

void expectOnly(const std::vector<Event>& first, const std::vector<Event>& second,
                const Numbers& inFirst, const Numbers& inSecond, bool isByBoard = false)
{
    const EventDifference there = compareEvents(first, second, isByBoard);
    EXPECT_EQ(there.onlyInFirst, inFirst);
    EXPECT_EQ(there.onlyInSecond, inSecond);
    const EventDifference back = compareEvents(second, first, isByBoard);
    EXPECT_EQ(back.onlyInFirst, inSecond);
    EXPECT_EQ(back.onlyInSecond, inFirst);
}

}

TEST(EventDifference, FindsWhatOnlyOneListHas)
{
    expectOnly({}, {}, {}, {});
    expectOnly({fan(1), fan(2)}, {fan(2), fan(3)}, {0}, {1});
    expectOnly({fan(1), fan(2)}, {}, {0, 1}, {});
    expectOnly({fan(3), fan(1), fan(2)}, {fan(2), fan(1), fan(3)}, {}, {});
}

TEST(EventDifference, CountsEventsThatAreTheSame)
{
    expectOnly({fan(1), fan(1), fan(1)}, {fan(1)}, {1, 2}, {});
}

TEST(EventDifference, IdsDoNotMatterEveryOtherByteOfTheRecordDoes)
{
    for (std::size_t offset = 0; offset < 138; ++offset) {
        // Bytes after the record matter where both events have any.
        const Event first = with(fan(1), 137, 1);
        const Event second = with(first, offset, first.image[offset] ^ 0x40);
        // The ids of the next record and of this one, and the number of OEM bytes.
        const Numbers only = offset < 4 || offset == 18 ? Numbers() : Numbers{0};
        expectOnly({first}, {second}, only, only);
    }
}

TEST(EventDifference, EventWithoutMoreThanTheRecordIsTheSameAsOneWithMore)
{
    const Event more = with(fan(1), 19, 1);
    expectOnly({fan(1)}, {more}, {}, {});
    expectOnly({fan(1)}, {with(fan(1), 137, 9)}, {}, {});
    // The ones that agree in every byte are found first, wherever they are.
    expectOnly({fan(1), more}, {more, fan(1)}, {}, {});
    expectOnly({fan(1), more}, {more}, {0}, {});
}

TEST(EventDifference, BoardsMatterOnRequest)
{
    Event other = fan(1);
    other.board = 1;
    expectOnly({fan(1)}, {other}, {}, {});
    expectOnly({fan(1)}, {other}, {0}, {0}, true);
    expectOnly({other}, {other}, {}, {}, true);
}
