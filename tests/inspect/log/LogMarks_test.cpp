// SPDX-License-Identifier: Apache-2.0
#include <recordkit/inspect/log/LogMarks.h>

#include <gtest/gtest.h>

#include "support/SystemEvents.h"

using namespace recordkit::inspect;
using namespace testing_support;

namespace {

constexpr unsigned int MONDAY = 1730764800; // 2024-11-05 00:00:00 UTC
constexpr unsigned int UNSET = 100;         // seconds since the controller was initialised

Event at(unsigned int id, unsigned int seconds, int file = 0, unsigned int log = 0)
{
    Event event = systemEvent(seconds, {4, 0x10, 0x01, 0x52, 4, 5});
    event.recordId = id;
    event.fileIndex = file;
    event.log = log;
    return event;
}

/// "gap of 3 in log 0 from +10 to +20".
std::string textOf(const LogMark& mark)
{
    return std::string(logMarkName(mark.kind)) +
           (mark.missing == 0 ? "" : " of " + std::to_string(mark.missing)) + " in log " +
           std::to_string(mark.log) + " from +" + std::to_string(mark.from - MONDAY) + " to +" +
           std::to_string(mark.to - MONDAY);
}

std::vector<std::string> marksOf(const std::vector<Event>& events)
{
    std::vector<std::string> texts;
    for (const LogMark& mark : findLogMarks(events)) {
        texts.push_back(textOf(mark));
    }
    return texts;
}

using Texts = std::vector<std::string>;

}

TEST(LogMarks, OfAnEvenLogAreNone)
{
    EXPECT_EQ(marksOf({}), Texts());
    EXPECT_EQ(marksOf({at(1, MONDAY), at(2, MONDAY), at(3, MONDAY + 5)}), Texts());
}

TEST(LogMarks, ARotationIsBetweenEventsOfDifferentFiles)
{
    EXPECT_EQ(marksOf({at(1, MONDAY, 1), at(2, MONDAY + 5, 0)}),
              Texts({"rotation in log 0 from +0 to +5"}));
}

TEST(LogMarks, AGapSaysHowManyIdsAreMissing)
{
    EXPECT_EQ(marksOf({at(1, MONDAY), at(5, MONDAY + 5)}),
              Texts({"gap of 3 in log 0 from +0 to +5"}));
    EXPECT_EQ(marksOf({at(1, MONDAY), at(3, MONDAY + 5)}),
              Texts({"gap of 1 in log 0 from +0 to +5"}));
}

TEST(LogMarks, IdsBeginAgainAfterTheLast)
{
    EXPECT_EQ(marksOf({at(0xFFFE, MONDAY), at(1, MONDAY + 5)}), Texts());
    EXPECT_EQ(marksOf({at(0xFFFD, MONDAY), at(1, MONDAY + 5)}),
              Texts({"gap of 1 in log 0 from +0 to +5"}));
}

TEST(LogMarks, LowerIdsMeanThatTheLogWasCleared)
{
    EXPECT_EQ(marksOf({at(700, MONDAY), at(1, MONDAY + 5)}),
              Texts({"cleared in log 0 from +0 to +5"}));
    EXPECT_EQ(marksOf({at(0x7FFF, MONDAY), at(1, MONDAY + 5)}),
              Texts({"cleared in log 0 from +0 to +5"}));
    EXPECT_EQ(marksOf({at(0xFFFE, MONDAY), at(0x7FFF, MONDAY + 5)}),
              Texts({"cleared in log 0 from +0 to +5"}));
}

TEST(LogMarks, AnEventSaysThatTheLogWasCleared)
{
    Event cleared = systemEvent(MONDAY + 5, {0x10, 0x20, 0x6F, 0x02, 0xFF, 0xFF});
    cleared.recordId = 3;
    EXPECT_EQ(marksOf({at(2, MONDAY), cleared}), Texts({"cleared in log 0 from +0 to +5"}));
}

TEST(LogMarks, TheClockWasSetWhereDatesGoBackOrBegin)
{
    EXPECT_EQ(marksOf({at(1, MONDAY + 60), at(2, MONDAY + 5)}),
              Texts({"clock in log 0 from +60 to +5"}));
    EXPECT_EQ(marksOf({at(1, MONDAY), at(2, UNSET), at(3, UNSET + 1), at(4, MONDAY + 90)}),
              Texts({"clock in log 0 from +0 to +90"}));
    EXPECT_EQ(marksOf({at(1, UNSET), at(2, MONDAY)}), Texts({"clock in log 0 from +0 to +0"}));
    EXPECT_EQ(marksOf({at(1, MONDAY), at(2, 0xFFFFFFFF), at(3, MONDAY + 5)}), Texts());
}

TEST(LogMarks, RecordsWithoutATimeSayNothingOfTheClock)
{
    Event untimed = eventOf({0xE0, 1, 2, 3});
    untimed.recordId = 2;
    EXPECT_EQ(marksOf({at(1, UNSET), untimed, at(3, MONDAY)}),
              Texts({"clock in log 0 from +0 to +0"}));
    EXPECT_EQ(marksOf({at(1, MONDAY), untimed, at(3, MONDAY)}), Texts());
}

TEST(LogMarks, WaitForTheNextDate)
{
    EXPECT_EQ(marksOf({at(1, MONDAY, 1), at(2, UNSET, 0), at(3, MONDAY + 9, 0)}),
              Texts({"rotation in log 0 from +0 to +9", "clock in log 0 from +0 to +9"}));
    EXPECT_EQ(marksOf({at(1, MONDAY, 1), at(2, UNSET, 0)}),
              Texts({"rotation in log 0 from +0 to +0"}));
    EXPECT_EQ(marksOf({at(1, UNSET, 1), at(2, UNSET, 0)}), Texts());
}

TEST(LogMarks, AreThoseOfEachLog)
{
    EXPECT_EQ(marksOf({at(1, MONDAY, 0, 0), at(100, MONDAY + 1, 3, 7), at(2, MONDAY + 2, 0, 0),
                       at(102, MONDAY + 4, 3, 7)}),
              Texts({"gap of 1 in log 7 from +1 to +4"}));
}
