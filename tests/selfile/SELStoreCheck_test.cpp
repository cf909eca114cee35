// SPDX-License-Identifier: Apache-2.0
#include <recordkit/selfile/SELStoreCheck.h>

#include <filesystem>
#include <stdexcept>

#include "StoreFixture.h"

using namespace testing_support;
using TAVLib::RecordKit::SELStoreCheck;
using TAVLib::RecordKit::SELStoreLock;

namespace {

class StoreCheckTest : public StoreTest {
protected:
    Lines findings() const
    {
        Lines lines;
        const SELStoreCheck check(SB);
        for (const auto& finding : check.getFindings()) {
            lines.push_back(std::string(finding.isDamage ? "damage: " : "note: ") + finding.text);
        }
        return lines;
    }
    Lines recover() const
    {
        Lines actions;
        EXPECT_TRUE(SELStoreCheck(SB).recover(actions));
        return actions;
    }
    std::string cutOff(unsigned int events) const
    {
        return "damage: " + kept(0) + " holds " + std::to_string(events) +
               " events that the working file does not: a rotation was cut off, and the next one "
               "would delete them";
    }
};

}

TEST_F(StoreCheckTest, SoundLogHasNoFindings)
{
    writeFile(working(), fileOf(5, 900));
    writeFile(kept(0), fileOf(3, 900));
    writeFile(kept(1), fileOf(800, 100));
    EXPECT_EQ(findings(), Lines());
    EXPECT_TRUE(SELStoreCheck(SB).isSound());
    EXPECT_EQ(recover(), Lines());
}

TEST_F(StoreCheckTest, DescribesEachFile)
{
    writeFile(working(), fileOf(5, 900));
    writeFile(kept(2), "short");
    const SELStoreCheck check(SB);
    ASSERT_EQ(check.getFiles().size(), 9U);
    const auto& first = check.workingFile();
    EXPECT_EQ(first.index, 0);
    EXPECT_EQ(first.kind, 0);
    EXPECT_EQ(first.path, working());
    EXPECT_FALSE(first.isMissing);
    EXPECT_EQ(first.size, 110400);
    EXPECT_EQ(first.count, 5U);
    EXPECT_EQ(first.firstId, 900);
    EXPECT_EQ(first.lastId, 904);
    // slotOf(900) counts up from 0x40 + 900, so its byte 5 is C9h.
    EXPECT_TRUE(first.hasTimes);
    EXPECT_EQ(first.firstTime, 0xCCCBCAC9U);
    EXPECT_EQ(first.lastTime, 0xD0CFCECDU);
    const auto& backup = check.backup();
    EXPECT_EQ(backup.path, kept(0));
    EXPECT_TRUE(backup.isMissing);
    EXPECT_EQ(backup.size, -1);
    const auto& second = check.rotated(2);
    EXPECT_EQ(second.index, 2);
    EXPECT_EQ(second.size, 5);
    EXPECT_EQ(second.damage, "5 bytes long, expected 110400");
}

TEST_F(StoreCheckTest, NamesTheFilesOfItsList)
{
    const SELStoreCheck check(SB);
    EXPECT_EQ(&check.workingFile(), &check.getFiles()[0]);
    EXPECT_EQ(&check.backup(), &check.getFiles()[1]);
    for (int index = 1; index <= 7; ++index) {
        EXPECT_EQ(&check.rotated(index), &check.getFiles()[static_cast<std::size_t>(index) + 1]);
        EXPECT_EQ(check.rotated(index).index, index);
    }
    for (const int index : {0, 8, -1}) {
        EXPECT_THROW(check.rotated(index), std::out_of_range);
    }
}

TEST_F(StoreCheckTest, RecordsWithoutATimestampAreNotTakenForTimes)
{
    Bytes file = fileOf(4, 900);
    for (const int slot : {0, 3}) {
        file[static_cast<std::size_t>(slot) * SLOT + 4] = 0xE0;
    }
    file[1 * SLOT + 4] = 0xDF;
    writeFile(working(), file);
    writeFile(kept(1), Bytes(SLOT, 0xE1) + Bytes(FULL_FILE - SLOT, 0xFF));
    const SELStoreCheck check(SB);
    EXPECT_TRUE(check.workingFile().hasTimes);
    EXPECT_EQ(check.workingFile().firstTime, 0xCDCCCBCAU);
    EXPECT_EQ(check.workingFile().lastTime, 0xCECDCCCBU);
    EXPECT_EQ(check.rotated(1).count, 1U);
    EXPECT_FALSE(check.rotated(1).hasTimes);
}

TEST_F(StoreCheckTest, MissingWorkingFileIsDamage)
{
    EXPECT_EQ(findings(), Lines({"damage: " + working() +
                                 " is missing: no event can be stored until the board is "
                                 "initialised"}));
    EXPECT_FALSE(SELStoreCheck(SB).isSound());
}

TEST_F(StoreCheckTest, EveryKindOfFileDamageIsNamed)
{
    Bytes damaged = fileOf(5);
    damaged[5 * 138] = 0;
    writeFile(working(), damaged);
    writeFile(kept(1), "short");
    std::filesystem::create_directory(kept(2));
    EXPECT_EQ(findings(), Lines({"damage: " + working() +
                                     ": slot 5 (offset 690) has record id FFFFh but is not empty",
                                 "damage: " + kept(1) + ": 5 bytes long, expected 110400",
                                 "damage: " + kept(2) + ": cannot be read: Is a directory"}));
}

TEST_F(StoreCheckTest, BackupThatBeginsTheWorkingFileIsNoLeftOver)
{
    writeFile(working(), fileOf(800));
    for (const std::size_t count : {0U, 1U, 799U, 800U}) {
        writeFile(kept(0), fileOf(count));
        EXPECT_EQ(findings(), Lines()) << count;
    }
}

TEST_F(StoreCheckTest, LeftOverOfOneEventIsFound)
{
    writeFile(kept(0), fileOf(1));
    writeFile(working(), fileOf(0));
    EXPECT_EQ(findings().size(), 1U);
    EXPECT_FALSE(SELStoreCheck(SB).isSound());
    writeFile(kept(0), fileOf(0));
    EXPECT_EQ(findings(), Lines());
}

TEST_F(StoreCheckTest, LeftOverIsToldByItsEventsAndNotByTheirNumber)
{
    // The rotation was interrupted, and as many or more events came after it.
    writeFile(kept(0), fileOf(5));
    for (const std::size_t count : {5U, 6U, 799U}) {
        writeFile(working(), fileOf(count, 900));
        EXPECT_EQ(findings(), Lines({cutOff(5)})) << count;
    }
    // One byte of one event is enough, the last one too.
    for (const std::size_t at : {std::size_t{0}, 4 * SLOT + 137}) {
        Bytes other = fileOf(5);
        other[at] ^= 1;
        writeFile(working(), other);
        EXPECT_EQ(findings(), Lines({cutOff(5)})) << at;
    }
}

TEST_F(StoreCheckTest, BackupWithOtherEventsIsALeftOver)
{
    writeFile(kept(0), fileOf(800));
    writeFile(working(), fileOf(0));
    EXPECT_EQ(findings(), Lines({cutOff(800)}));
    // Also when events came after the power cut.
    writeFile(working(), fileOf(3, 801));
    EXPECT_EQ(findings(), Lines({cutOff(800)}));
    writeFile(working(), fileOf(799));
    EXPECT_EQ(findings(), Lines({cutOff(800)}));
    // One event is as much as any.
    writeFile(kept(0), fileOf(1));
    writeFile(working(), fileOf(0));
    EXPECT_EQ(findings(), Lines({cutOff(1)}));
}

TEST_F(StoreCheckTest, BackupWithoutAWorkingFileWaitsToBeRestored)
{
    writeFile(kept(0), fileOf(800));
    EXPECT_EQ(findings().size(), 1U);
    EXPECT_EQ(recover(), Lines());
    EXPECT_EQ(readFile(kept(0)), fileOf(800));
}

TEST_F(StoreCheckTest, RecoverMovesTheLeftOverIntoTheChain)
{
    writeFile(working(), fileOf(0));
    writeFile(kept(0), fileOf(800, 2000));
    writeFile(kept(1), fileOf(800, 1000));
    EXPECT_EQ(recover(), Lines({"sel1 renamed to sel2", "sel0 renamed to sel1"}));
    EXPECT_EQ(keptNames(), Lines({"sb1_bmc_sel1", "sb1_bmc_sel2"}));
    EXPECT_EQ(readFile(kept(1)), fileOf(800, 2000));
    EXPECT_EQ(readFile(kept(2)), fileOf(800, 1000));
    EXPECT_EQ(findings(), Lines());
}

TEST_F(StoreCheckTest, ChainWithoutItsNewestFileHasAGap)
{
    writeFile(working(), fileOf(1));
    writeFile(kept(2), fileOf(800, 1000));
    EXPECT_EQ(findings(), Lines({"damage: " + kept(1) +
                                 " is missing: the files behind it, up to sel2, cannot be "
                                 "reached"}));
    EXPECT_EQ(recover(), Lines({"sel2 renamed to sel1"}));
    EXPECT_EQ(findings(), Lines());
}

TEST_F(StoreCheckTest, RecoverFillsTheGapOfACutOffRotation)
{
    writeFile(working(), fileOf(0));
    for (const int i : {0, 1, 2, 4, 5, 6, 7}) {
        writeFile(kept(i), fileOf(800, 1000 + static_cast<unsigned int>(i)));
    }
    EXPECT_EQ(findings(), Lines({cutOff(800), "damage: " + kept(3) +
                                                  " is missing: the files behind it, up to sel7, "
                                                  "cannot be reached"}));
    EXPECT_EQ(recover(),
              Lines({"sel2 renamed to sel3", "sel1 renamed to sel2", "sel0 renamed to sel1"}));
    for (const int i : {4, 5, 6, 7}) {
        EXPECT_EQ(readFile(kept(i)), fileOf(800, 1000 + static_cast<unsigned int>(i)));
    }
    EXPECT_EQ(readFile(kept(1)), fileOf(800, 1000));
    EXPECT_EQ(findings(), Lines());
}

TEST_F(StoreCheckTest, RecoverDropsTheOldestFileOnlyWhereTheRotationWouldHave)
{
    writeFile(working(), fileOf(0));
    for (int i = 0; i <= 7; ++i) {
        writeFile(kept(i), fileOf(800, 1000 + static_cast<unsigned int>(i)));
    }
    const Lines actions = recover();
    ASSERT_EQ(actions.size(), 8U);
    EXPECT_EQ(actions[0], "sel7 dropped, as the rotation does");
    EXPECT_EQ(actions[7], "sel0 renamed to sel1");
    for (int i = 1; i <= 7; ++i) {
        EXPECT_EQ(readFile(kept(i)), fileOf(800, 1000 + static_cast<unsigned int>(i - 1)));
    }
    EXPECT_FALSE(fileExists(kept(0)));
}

TEST_F(StoreCheckTest, RecoverClosesOtherGapsFromBehind)
{
    writeFile(working(), fileOf(5, 900));
    for (const int i : {2, 3, 6}) {
        writeFile(kept(i), fileOf(800, 1000 + static_cast<unsigned int>(i)));
    }
    EXPECT_EQ(recover(),
              Lines({"sel2 renamed to sel1", "sel3 renamed to sel2", "sel6 renamed to sel3"}));
    EXPECT_EQ(readFile(kept(1)), fileOf(800, 1002));
    EXPECT_EQ(readFile(kept(3)), fileOf(800, 1006));
    EXPECT_EQ(findings(), Lines());
}

TEST_F(StoreCheckTest, RecoverFillsOneGapAndClosesTheOthers)
{
    writeFile(working(), fileOf(0));
    for (const int i : {0, 1, 3, 6}) {
        writeFile(kept(i), fileOf(800, 1000 + static_cast<unsigned int>(i)));
    }
    EXPECT_EQ(recover(),
              Lines({"sel1 renamed to sel2", "sel0 renamed to sel1", "sel6 renamed to sel4"}));
    EXPECT_EQ(readFile(kept(1)), fileOf(800, 1000));
    EXPECT_EQ(readFile(kept(2)), fileOf(800, 1001));
    EXPECT_EQ(readFile(kept(3)), fileOf(800, 1003));
    EXPECT_EQ(readFile(kept(4)), fileOf(800, 1006));
}

TEST_F(StoreCheckTest, BackupOfAnotherSizeStaysOutOfTheChain)
{
    writeFile(working(), fileOf(0));
    writeFile(kept(0), part(fileOf(800), 0, FULL_FILE - 1));
    EXPECT_EQ(findings(), Lines({"damage: " + kept(0) + ": 110399 bytes long, expected 110400"}));
    EXPECT_EQ(recover(), Lines());
    EXPECT_TRUE(fileExists(kept(0)));
}

TEST_F(StoreCheckTest, RecoverLooksAgainUnderTheLock)
{
    // What looked cut off was a rotation in progress, which ended meanwhile.
    writeFile(working(), fileOf(0));
    writeFile(kept(0), fileOf(800));
    writeFile(kept(2), fileOf(800, 900));
    const SELStoreCheck check(SB);
    std::filesystem::rename(kept(0), kept(1));
    Lines actions;
    EXPECT_TRUE(check.recover(actions));
    EXPECT_EQ(actions, Lines());
    EXPECT_EQ(readFile(kept(1)), fileOf(800));
    EXPECT_EQ(readFile(kept(2)), fileOf(800, 900));
}

TEST_F(StoreCheckTest, RecoverLeavesTheFilesToWhoHoldsTheLock)
{
    writeFile(working(), fileOf(0));
    writeFile(kept(2), fileOf(800));
    const SELStoreCheck check(SB);
    Lines actions;
    {
        const SELStoreLock rotation(SB);
        ASSERT_TRUE(rotation.isHeld());
        EXPECT_FALSE(check.recover(actions));
        EXPECT_EQ(actions,
                  Lines({"nothing was repaired: " + lockFile() + " is locked by another program"}));
        EXPECT_EQ(keptNames(), Lines({"sb1_bmc_sel2"}));
        actions.clear();
        // Its holder may repair.
        EXPECT_TRUE(check.recover(rotation, actions));
        EXPECT_EQ(actions, Lines({"sel2 renamed to sel1"}));
    }
    actions.clear();
    EXPECT_TRUE(check.recover(actions));
    EXPECT_EQ(actions, Lines());
    EXPECT_EQ(keptNames(), Lines({"sb1_bmc_sel1"}));
}

TEST_F(StoreCheckTest, RecoverNeedsNoLockWhenThereIsNothingToDo)
{
    writeFile(working(), fileOf(1));
    writeFile(kept(1), fileOf(800));
    writeFile(kept(2), fileOf(800));
    Lines actions;
    EXPECT_TRUE(SELStoreCheck(SB).recover(actions));
    EXPECT_FALSE(fileExists(lockFile()));
}

TEST_F(StoreCheckTest, ShiftRequestIsANoteOnly)
{
    writeFile(working(), fileOf(0));
    writeFile(shiftRequest(), Bytes({'-', '1'}) + Bytes(14, 0));
    EXPECT_EQ(findings(),
              Lines({"note: " + shiftRequest() +
                     " holds the result -1 of an earlier rotation that nobody took: the "
                     "next rotation takes it for a request"}));
    EXPECT_TRUE(SELStoreCheck(SB).isSound());
    for (const char* const result : {"0", "9", "12", "1234567890123456"}) {
        writeFile(shiftRequest(), textBytes(result) + Bytes(16 - std::string(result).size(), 0));
        ASSERT_EQ(findings().size(), 1U);
        EXPECT_NE(findings()[0].find(std::string(" holds the result ") + result + " of"),
                  std::string::npos);
    }
    // Empty, one byte more or less than an answer, or as long and not a number.
    for (const std::string& content :
         {std::string(), std::string(17, '0'), std::string(15, '0'), std::string(16, '/'),
          std::string(16, ':'), std::string(16, '\0'), std::string("x") + std::string(15, '0'),
          std::string("1x") + std::string(14, '\0'), std::string("-") + std::string(15, '\0'),
          std::string("0\033]0;OWNED\a\033[2J"), std::string("0\377\376AAAAAAAAAAAAA")}) {
        writeFile(shiftRequest(), content);
        EXPECT_EQ(findings(), Lines({"note: " + shiftRequest() +
                                     " is there: a rotation was requested and has not run"}));
    }
}

TEST_F(StoreCheckTest, ChangesNothingByLooking)
{
    writeFile(working(), fileOf(0));
    writeFile(kept(0), fileOf(800));
    writeFile(kept(4), "short");
    const std::size_t before = openDescriptors();
    SELStoreCheck(SB).getFindings();
    EXPECT_EQ(openDescriptors(), before);
    EXPECT_EQ(readFile(working()), fileOf(0));
    EXPECT_EQ(keptNames(), Lines({"sb1_bmc_sel0", "sb1_bmc_sel4"}));
    EXPECT_EQ(trace.lines(), Lines());
}
