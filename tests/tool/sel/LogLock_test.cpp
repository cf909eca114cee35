// SPDX-License-Identifier: Apache-2.0
// What changes a log waits for another program that changes it, and then leaves it as it is.
#include <recordkit/platform/LockedFile.h>

#include "support/LockHolder.h"
#include "tool/sel/SelTest.h"

using namespace testing_support;

namespace {

class LogLock : public SelTest {
protected:
    void SetUp() override
    {
        initialise();
        fill(5);
        ASSERT_EQ(sel({"backup", "--board", "1"}).status, 0);
    }
    std::string lockFile() const { return root.at("/var/tav/fmem/ipmi/sb1_bmc_sel.lock"); }
    static Arguments withoutWaiting(Arguments words)
    {
        words.insert(words.end(), {"--board", "1", "--lock-timeout", "0"});
        return words;
    }
};

}

TEST_F(LogLock, HeldByAnotherProcessStopsEveryChange)
{
    const LockHolder holder(1);
    ASSERT_TRUE(holder.isHolding);
    const std::string problem =
        "recordkit: " + lockFile() + " is locked by process " + holder.number() + "\n";
    const std::string event = eventAt(9, TIME_2, THERMAL_TRIP);
    expectRefused(3, withoutWaiting({"add", "-"}), problem, event);
    expectRefused(3, withoutWaiting({"rotate"}), problem);
    expectRefused(3, withoutWaiting({"backup"}), problem);
    expectRefused(3, withoutWaiting({"restore"}), problem);
    expectRefused(3, withoutWaiting({"clear", "--yes"}), problem);
    for (const char* const reader : {"list", "status", "check"}) {
        EXPECT_EQ(sel({reader, "--board", "1"}).status, 0);
    }
}

TEST_F(LogLock, HeldByAnotherProcessStopsARepairAtOnce)
{
    std::filesystem::rename(kept(1, 0), kept(1, 3));
    {
        const LockHolder holder(1);
        ASSERT_TRUE(holder.isHolding);
        const auto before = snapshot();
        const Outcome outcome = sel({"check", "--board", "1", "--recover"});
        EXPECT_EQ(outcome.status, 3);
        EXPECT_NE(outcome.out.find("board 1: nothing was repaired: " + lockFile() +
                                   " is locked by process " + holder.number() + "\n"),
                  std::string::npos)
            << outcome.out;
        EXPECT_EQ(snapshot(), before);
    }
    EXPECT_EQ(sel({"check", "--board", "1", "--recover"}).status, 0);
    EXPECT_TRUE(fileExists(kept(1, 1)));
}

TEST_F(LogLock, IsNotNeededByACheckThatFindsNothing)
{
    const LockHolder holder(1);
    ASSERT_TRUE(holder.isHolding);
    EXPECT_EQ(sel({"check", "--board", "1", "--recover"}).status, 0);
}

TEST_F(LogLock, OfTheWorkingFileIsNotWaitedForWithoutEnd)
{
    // Everybody may read the file, and what can be read can be locked.
    const TAVLib::LockedFile held(working(1));
    const std::string problem =
        "lock " + working(1) + ": another program keeps it locked (errno 11)";
    expectRefused(3, withoutWaiting({"add", "-"}), problem, eventAt(9, TIME_2, THERMAL_TRIP));
    expectRefused(3, withoutWaiting({"clear", "--yes"}), problem);
    EXPECT_EQ(sel({"list", "--board", "1"}).status, 0);
}

TEST_F(LogLock, WithANumberOfSecondsOutOfRangeIsAWrongCommandLine)
{
    for (const char* const seconds : {"-1", "3601", "x"}) {
        expectRefused(2, {"add", "-", "--board", "1", "--lock-timeout", seconds}, "--lock-timeout",
                      eventAt(9, TIME_2, THERMAL_TRIP));
    }
    EXPECT_EQ(sel({"list", "--board", "1", "--lock-timeout", "3600"}).status, 0);
}
