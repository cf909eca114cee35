// SPDX-License-Identifier: Apache-2.0
// Rotations that are really killed at each of their steps, and what recovery makes of them.
#include <algorithm>
#include <csignal>
#include <filesystem>
#include <map>
#include <sstream>

#include <recordkit/selfile/SELChainReader.h>
#include <recordkit/selfile/SELStoreCheck.h>

#include "StoreFixture.h"
#include "support/Process.h"

using namespace testing_support;
using TAVLib::RecordKit::SELChainReader;
using TAVLib::RecordKit::SELStoreCheck;

namespace {

/// Rotated files before the rotation.
class RotationKill : public StoreTest, public testing::WithParamInterface<int> {
protected:
    static constexpr unsigned int NEWEST = 9000;

    static unsigned int firstIdOf(int index) { return static_cast<unsigned int>(index) * 1000; }

    void fill()
    {
        std::filesystem::remove_all(root.at("/var/tav/fmem/ipmi"));
        std::filesystem::create_directories(root.at("/var/tav/fmem/ipmi"));
        writeFile(working(), fileOf(800, NEWEST));
        for (int i = 1; i <= GetParam(); ++i) {
            writeFile(kept(i), fileOf(800, firstIdOf(i)));
        }
        // A backup from before, as there is one in the field.
        writeFile(kept(0), fileOf(500, NEWEST));
        writeFile(root.at("/tmp/sb1_bmc_msg0"), "messages");
    }

    Outcome rotateAndDieAt(int step) const
    {
        Arguments words = programOfThisBuild(ROTATION_VICTIM);
        words.insert(words.end(), {root.path(), "1", std::to_string(step)});
        return run(words);
    }

    /// How often the chain contains each id.
    static std::map<unsigned int, int> idsInChain()
    {
        std::map<unsigned int, int> ids;
        SELChainReader reader(SB);
        SELChainReader::Record record = {};
        while (reader.next(record)) {
            EXPECT_NE(record.logNumber, 0U);
            ++ids[record.image[2] + 256U * record.image[3]];
        }
        return ids;
    }

    /// Every event is there once; only those of the oldest of seven files may be gone.
    void expectNothingLost()
    {
        std::map<unsigned int, int> ids = idsInChain();
        std::vector<unsigned int> firstIds = {NEWEST};
        for (int i = 1; i <= std::min(GetParam(), 6); ++i) {
            firstIds.push_back(firstIdOf(i));
        }
        for (const unsigned int first : firstIds) {
            for (unsigned int id = first; id < first + 800; ++id) {
                ASSERT_EQ(ids[id], 1) << id;
                ids.erase(id);
            }
        }
        for (const auto& [id, times] : ids) {
            ASSERT_EQ(times, 1) << id;
            ASSERT_EQ(GetParam(), 7) << id;
            ASSERT_GE(id, firstIdOf(7)) << id;
            ASSERT_LT(id, firstIdOf(7) + 800) << id;
        }
    }
};

}

INSTANTIATE_TEST_SUITE_P(RotatedFiles, RotationKill, testing::Values(0, 1, 3, 6, 7));

TEST_P(RotationKill, LosesNoEventAtAnyStep)
{
    fill();
    const Outcome whole = rotateAndDieAt(0);
    ASSERT_EQ(whole.status, 0) << whole.err;
    const long steps = std::count(whole.out.begin(), whole.out.end(), '\n');
    ASSERT_GT(steps, 8) << whole.out;
    expectNothingLost();

    int recovered = 0;
    for (int step = 1; step <= steps; ++step) {
        SCOPED_TRACE("killed before step " + std::to_string(step) + " of\n" + whole.out);
        fill();
        ASSERT_EQ(rotateAndDieAt(step).status, -SIGKILL);

        Lines actions;
        ASSERT_TRUE(SELStoreCheck(SB).recover(actions));
        recovered += actions.empty() ? 0 : 1;
        store.fullEntryCheck(SB);
        EXPECT_TRUE(SELStoreCheck(SB).isSound());
        expectNothingLost();

        // A log that is still full is rotated again after the interrupted rotation.
        if (store.fullEntryCheck(SB) == BMCSELDataFile::FILE_FULL) {
            ASSERT_EQ(store.shiftSelFile(SB, true), 0);
            expectNothingLost();
        }
        EXPECT_EQ(store.fullEntryCheck(SB), 0U);
    }
    EXPECT_GE(recovered, 3) << "the steps between emptying the working file and the last rename";
}

TEST_P(RotationKill, EveryRenameIsOnTheMediumBeforeTheNext)
{
    fill();
    std::string steps = rotateAndDieAt(0).out;
    steps = steps.substr(steps.find(" copy\n")); // after the message files
    std::string order;
    std::istringstream lines(steps);
    for (std::string name; lines >> name;) {
        order += name == "rename" ? "r" : name == "sync" ? "s" : "";
    }
    std::string expected;
    for (int i = 0; i < std::min(GetParam(), 6) + 1; ++i) {
        expected += "rs";
    }
    EXPECT_EQ(order, expected);
}

TEST_P(RotationKill, WithoutRecoveryTheNextRotationWouldDeleteEvents)
{
    fill();
    const Outcome whole = rotateAndDieAt(0);
    const std::string marker = " rename\n";
    // The first rename of the chain comes after those of the message files.
    const std::size_t copy = whole.out.find(" copy\n");
    ASSERT_NE(copy, std::string::npos);
    const std::size_t at = whole.out.find(marker, copy);
    const int step = static_cast<int>(std::count(whole.out.begin(),
                                                 whole.out.begin() + static_cast<long>(at), '\n')) +
                     1;
    fill();
    ASSERT_EQ(rotateAndDieAt(step).status, -SIGKILL);
    EXPECT_EQ(readFile(working()), Bytes(FULL_FILE, 0xFF));
    EXPECT_EQ(readFile(kept(0)), fileOf(800, NEWEST));
    const SELStoreCheck check(SB);
    ASSERT_EQ(check.getFindings().size(), 1U);
    EXPECT_EQ(check.getFindings()[0].kind, SELStoreCheck::ROTATION_CUT_OFF);
}

class RecoverSteps : public StoreTest {};

TEST_F(RecoverSteps, EveryRenameIsOnTheMediumBeforeTheNext)
{
    // A rotation that was interrupted before its last two renames, and a gap above.
    writeFile(working(), fileOf(0));
    writeFile(kept(0), fileOf(800, 3000));
    writeFile(kept(1), fileOf(800, 2000));
    writeFile(kept(4), fileOf(800, 1000));
    Arguments words = programOfThisBuild(ROTATION_VICTIM);
    words.insert(words.end(), {root.path(), "1", "recover"});
    const Outcome outcome = run(words);
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_EQ(outcome.out, "1 rename\n2 sync\n3 rename\n4 sync\n5 rename\n6 sync\n");
    EXPECT_EQ(keptNames(), Lines({"sb1_bmc_sel1", "sb1_bmc_sel2", "sb1_bmc_sel3"}));
    EXPECT_EQ(readFile(kept(1)), fileOf(800, 3000));
    EXPECT_EQ(readFile(kept(3)), fileOf(800, 1000));
}
