// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <recordkit/inspect/words/EventTypes.h>
#include <recordkit/inspect/words/Match.h>
#include <recordkit/inspect/words/SensorTypes.h>
#include <recordkit/inspect/words/Severities.h>

using namespace recordkit::inspect;

TEST(Match, FindsWholeWordsAndUnambiguousBeginnings)
{
    const std::vector<std::string> words = {"Fan", "Fantasy", "Power Unit", "Power Supply"};
    EXPECT_EQ(matchWord("fan", words), 0U);
    EXPECT_EQ(matchWord("FANT", words), 1U);
    EXPECT_EQ(matchWord("power u", words), 2U);
    EXPECT_EQ(matchWord("fa", words), std::nullopt);
    EXPECT_EQ(matchWord("power", words), std::nullopt);
    EXPECT_EQ(matchWord("", words), std::nullopt);
    EXPECT_EQ(matchWord("Fantasyland", words), std::nullopt);
}

TEST(Match, SeveritiesAreFoundByTheirBeginnings)
{
    EXPECT_EQ(findSeverity("Critical"), SeverityMap::SEV_CRITICAL);
    EXPECT_EQ(findSeverity("warn"), SeverityMap::SEV_NONCRITICAL);
    EXPECT_EQ(findSeverity("non"), SeverityMap::SEV_NONRECOVERABLE);
    EXPECT_EQ(findSeverity("unrated"), SeverityMap::SEV_NONE);
    EXPECT_EQ(findSeverity("none"), std::nullopt);
    EXPECT_STREQ(severityName(SeverityMap::SEV_NONE), "unrated");
}

TEST(Match, SensorAndEventTypesAreFoundByNameAndNumber)
{
    EXPECT_EQ(findSensorType("power s"), 0x08);
    EXPECT_EQ(findSensorType("0x08"), 0x08);
    EXPECT_EQ(findSensorType("power"), std::nullopt);
    EXPECT_EQ(findEventType("sensor-spec"), 0x6F);
    EXPECT_EQ(findEventType("Threshold"), 0x01);
    EXPECT_EQ(findEventType("6Fh"), 0x6F);
    EXPECT_EQ(findEventType("256"), std::nullopt);
}

TEST(Match, ContainsATextInAnyCase)
{
    EXPECT_TRUE(containsText("Lower Critical", "CRIT"));
    EXPECT_TRUE(containsText("Lower Critical", "lower critical"));
    EXPECT_TRUE(containsText("Lower", ""));
    EXPECT_TRUE(containsText("", ""));
    EXPECT_FALSE(containsText("Lower", "lower "));
    EXPECT_FALSE(containsText("", "x"));
}
