// SPDX-License-Identifier: Apache-2.0
#include <recordkit/inspect/event/EventJudge.h>

#include <filesystem>
#include <gtest/gtest.h>

#include "support/Answers.h"

using namespace recordkit::inspect;
using testing_support::contentOf;

namespace {

std::optional<std::string> oddity(const std::string& hex, bool hasOwnIds = true)
{
    return findOddity(importEvents("FILE", hex, EventForm::HEX), hasOwnIds);
}

/// A hex line of a record.
std::string record(const std::string& id, const std::string& typeAndSensor)
{
    return id + "02ccb529672000" + typeAndSensor + "\n";
}

const std::string FAN = "040410"
                        "01500102";

}

TEST(EventJudge, TakesRecordsOfSampleLogs)
{
    const std::string own = contentOf(RECORDKIT_EXAMPLE_DATA "/sel/events.raw");
    EXPECT_EQ(findOddity(importEvents("FILE", own, EventForm::WRITERAW), true), std::nullopt);
    for (const char* name : {"r630", "r640", "r740xd"}) {
        const std::string path =
            std::string(RECORDKIT_PUBLIC_DATA "/sel/sim-dell_") + name + ".sel";
        if (std::filesystem::exists(path)) { // not part of this tree
            EXPECT_EQ(findOddity(importEvents("FILE", contentOf(path), EventForm::WIRE), true),
                      std::nullopt)
                << name;
        }
    }
}

TEST(EventJudge, NamesTheFirstRecordThatIsNoEvent)
{
    EXPECT_EQ(oddity(record("0100", FAN) + record("0200", "050410"
                                                          "01500102")),
              "line 2: event message revision 05h is unknown");
    EXPECT_EQ(oddity(record("0100", "03bf10"
                                    "01500102")),
              "line 1: sensor type BFh is reserved");
    EXPECT_EQ(oddity(record("0100", "042d10"
                                    "01500102")),
              "line 1: sensor type 2Dh is reserved");
    EXPECT_EQ(oddity(record("0100", "042c10"
                                    "6f500102")),
              std::nullopt);
    EXPECT_EQ(oddity(record("0100", "04c010"
                                    "6f5f0102")),
              std::nullopt);
    EXPECT_EQ(oddity(record("0100", "040410"
                                    "0d500102")),
              "line 1: event type 0Dh is reserved");
    EXPECT_EQ(oddity(record("0100", "040410"
                                    "ee500102")),
              "line 1: event type 6Eh is reserved");
    EXPECT_EQ(oddity(record("0100", "040410"
                                    "705f0102")),
              std::nullopt);
    EXPECT_EQ(oddity(record("0100", "040410"
                                    "005f0102")),
              std::nullopt);
    EXPECT_EQ(oddity(record("0100", "040410"
                                    "815b0102")),
              std::nullopt);
    EXPECT_EQ(oddity(record("0100", "040410"
                                    "815c0102")),
              "line 1: event type 01h has no offset 12");
    EXPECT_EQ(oddity("0100bf00000000000000000000000000"), "line 1: record type BFh is unknown");
    EXPECT_EQ(oddity("0100c000000000000000000000000000"), std::nullopt);
    EXPECT_EQ(oddity("0100ff00000000000000000000000000"), std::nullopt);
}

TEST(EventJudge, OwnIdsMustRise)
{
    EXPECT_EQ(oddity(record("0500", FAN) + record("0900", FAN)), std::nullopt);
    EXPECT_EQ(oddity(record("0500", FAN) + record("0500", FAN)), std::nullopt); // the same record
    EXPECT_EQ(oddity(record("0500", FAN) + record("0500", "040411"
                                                          "01500102")),
              "line 2: record id 0005h comes after 0005h");
    EXPECT_EQ(oddity(record("0500", FAN) + record("0400", FAN)),
              "line 2: record id 0004h comes after 0005h");
    EXPECT_EQ(oddity(record("0500", FAN) + record("0400", FAN), false), std::nullopt);
    EXPECT_EQ(oddity(record("00ff", FAN) + record("ff00", FAN)), std::nullopt);
    EXPECT_EQ(oddity(record("fffe", FAN) + record("0100", FAN)),
              "line 2: record id 0001h comes after FEFFh");
    EXPECT_EQ(oddity(record("00ff", FAN) + record("0001", FAN)),
              "line 2: record id 0100h comes after FF00h");
}
