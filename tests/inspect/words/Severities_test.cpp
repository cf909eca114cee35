// SPDX-License-Identifier: Apache-2.0
#include <recordkit/inspect/words/Severities.h>

#include <gtest/gtest.h>

using namespace recordkit::inspect;

TEST(Severities, ThresholdEventsHaveTheSeverityOfTheThreshold)
{
    const int expected[] = {1, 1, 2, 2, 3, 3, 1, 1, 2, 2, 3, 3, 0, 0, 0, 0};
    for (unsigned char offset = 0; offset < 16; ++offset) {
        EXPECT_EQ(severityOfEvent(0x01, 0x02, offset), expected[offset]) << int(offset);
    }
}

TEST(Severities, DiscreteEventsHaveThatOfTheMap)
{
    EXPECT_EQ(severityOfEvent(0x6F, 0x07, 1), SeverityMap::SEV_NONRECOVERABLE);
    EXPECT_EQ(severityOfEvent(0x6F, 0x05, 1), SeverityMap::SEV_NONE);
}

TEST(Severities, AreOrderedFromHarmlessToFatal)
{
    const char* const order[] = {"unrated", "informational", "monitor",
                                 "warning", "critical",      "non-recoverable"};
    for (int i = 0; i < 6; ++i) {
        for (int k = 0; k < 6; ++k) {
            const auto one = findSeverity(order[i]);
            const auto other = findSeverity(order[k]);
            ASSERT_TRUE(one && other);
            EXPECT_STREQ(severityName(*one), order[i]);
            EXPECT_EQ(isAtLeast(*one, *other), i >= k);
        }
    }
    EXPECT_FALSE(findSeverity("bad"));
}
