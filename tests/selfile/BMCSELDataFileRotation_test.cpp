// SPDX-License-Identifier: Apache-2.0
// Rotation, backup, restore and clearing of the event file store.
#include <cerrno>
#include <filesystem>
#include <gtest/gtest.h>
#include <unistd.h>

#include <recordkit/host/Machine.h>

#include "StoreFixture.h"

using namespace testing_support;

namespace {

const Bytes EMPTY_FILE(FULL_FILE, 0xFF);

class StoreRotation : public StoreTest {
protected:
    void TearDown() override { TAVLib::host::setMachine({}); }

    std::string messages() const { return root.at("/tmp/sb1_bmc_msg0"); }
    std::string keptMessages(int index) const
    {
        return root.at("/var/tav/fmem/ipmi/sb1_bmc_msg" + std::to_string(index));
    }
    void loseFolder(const std::string& path)
    {
        std::filesystem::remove_all(root.at(path));
        writeFile(root.at(path), "a file where a folder should be");
    }
    /// The answer that a shift leaves: decimal text, zero bytes up to 16.
    static Bytes answer(const std::string& text)
    {
        return textBytes(text) + Bytes(16 - text.size(), 0);
    }
    /// A folder in the place of a message file makes every operation on it fail.
    void breakMessages() const { std::filesystem::create_directories(messages() + "/x"); }
};

using StoreClear = StoreRotation;
using StoreCopy = StoreRotation;
using StoreShift = StoreRotation;
using StoreBackup = StoreRotation;
using StoreRestore = StoreRotation;
using StoreInitial = StoreRotation;

}

TEST_F(StoreClear, LeavesEveryFileFullSizedAndEmpty)
{
    writeFile(working(), fileOf(5));
    writeFile(kept(2), "short");
    writeFile(messages(), "messages");
    EXPECT_EQ(store.clearAllRecord(SB), 0U);
    EXPECT_EQ(readFile(working()), EMPTY_FILE);
    for (int i = 0; i <= 7; ++i) {
        EXPECT_EQ(readFile(kept(i)), EMPTY_FILE) << i;
    }
    EXPECT_FALSE(fileExists(messages()));
    EXPECT_EQ(keptNames().size(), 8U);
    EXPECT_EQ(trace.lines(), Lines());
}

TEST_F(StoreClear, StopsAtTheFirstFailureWithCodeSix)
{
    writeFile(kept(1), fileOf(5));
    std::filesystem::remove_all(root.at("/tmp"));
    EXPECT_EQ(store.clearAllRecord(SB), 6U);
    EXPECT_EQ(readFile(kept(1)), fileOf(5));

    std::filesystem::create_directory(root.at("/tmp"));
    std::filesystem::create_directory(kept(3));
    trace.take();
    EXPECT_EQ(store.clearAllRecord(SB), 6U);
    EXPECT_EQ(readFile(kept(1)), EMPTY_FILE);
    EXPECT_FALSE(fileExists(kept(4)));
    EXPECT_EQ(trace.lines(), Lines({cut("BMCSELDataFile::truncate " + kept(3) + " ")}));
}

TEST_F(StoreClear, FailureOfTheMessageFilesIsCodeSix)
{
    breakMessages();
    EXPECT_EQ(store.clearAllRecord(SB), 6U);
    EXPECT_EQ(readFile(kept(7)), EMPTY_FILE);
}

TEST_F(StoreCopy, MovesTheWorkingFileToTheBackup)
{
    writeFile(working(), fileOf(5));
    writeFile(kept(0), "an older backup");
    EXPECT_EQ(store.makeCopySELFile(SB), 0U);
    EXPECT_EQ(readFile(kept(0)), fileOf(5));
    EXPECT_EQ(readFile(working()), EMPTY_FILE);
    EXPECT_EQ(trace.lines(), Lines());
}

TEST_F(StoreCopy, WorksWithoutAnOlderBackup)
{
    writeFile(working(), fileOf(5));
    EXPECT_EQ(store.makeCopySELFile(SB), 0U);
    EXPECT_EQ(readFile(kept(0)), fileOf(5));
}

TEST_F(StoreCopy, BoardThatDoesNotExistIsCodeEightAndTouchesNothing)
{
    TAVLib::host::setMachine({1, 4, 4, {}});
    writeFile(working(), fileOf(5));
    writeFile(kept(0), "backup");
    EXPECT_EQ(store.makeCopySELFile(SB), 8U);
    EXPECT_EQ(readFile(working()), fileOf(5));
    EXPECT_EQ(readFile(kept(0)), textBytes("backup"));
    EXPECT_EQ(trace.lines(), Lines());
    TAVLib::host::setMachine({2, 4, 4, {}});
    EXPECT_EQ(store.makeCopySELFile(SB), 0U);
}

TEST_F(StoreCopy, BackupThatCannotBeRemovedIsCodeSix)
{
    writeFile(working(), fileOf(5));
    std::filesystem::create_directories(kept(0) + "/x");
    EXPECT_EQ(store.makeCopySELFile(SB), 6U);
    EXPECT_EQ(readFile(working()), fileOf(5));
    EXPECT_EQ(trace.lines(),
              Lines({cut("BMCSELDataFile::makeCopySELFile " + kept(0) + " remove(39)")}));
}

TEST_F(StoreCopy, WorkingFileThatCannotBeEmptiedIsCodeSix)
{
    // A link is copied from and not written through.
    writeFile(root.at("/target"), fileOf(5));
    std::filesystem::create_symlink(root.at("/target"), working());
    EXPECT_EQ(store.makeCopySELFile(SB), 6U);
    EXPECT_EQ(readFile(kept(0)), fileOf(5));
    EXPECT_EQ(readFile(root.at("/target")), fileOf(5));
    EXPECT_EQ(trace.lines(), Lines({cut("BMCSELDataFile::truncate " + working() + " ")}));
}

TEST_F(StoreCopy, BackupThatCannotBeLookedAtIsCodeFourteen)
{
    writeFile(working(), fileOf(5));
    loseFolder("/var/tav");
    EXPECT_EQ(store.makeCopySELFile(SB), 14U);
    EXPECT_EQ(readFile(working()), fileOf(5));
    EXPECT_EQ(trace.lines(),
              Lines({cut("BMCSELDataFile::makeCopySELFile " + kept(0) + " stat(20)")}));
}

TEST_F(StoreCopy, FailedCopyIsCodeSevenUnderItsSettledText)
{
    EXPECT_EQ(store.makeCopySELFile(SB), 7U);
    EXPECT_FALSE(fileExists(working()));
    EXPECT_EQ(trace.lines(), Lines({line("BMCSELDataFile::makeCopySELFile mv(256)")}));
}

TEST_F(StoreShift, MovesTheChainAndDropsTheOldest)
{
    writeFile(working(), fileOf(800, 8000));
    for (int i = 1; i <= 7; ++i) {
        writeFile(kept(i), fileOf(800, static_cast<unsigned int>(i) * 1000));
    }
    EXPECT_EQ(store.shiftSelFile(SB, true), 0);
    EXPECT_EQ(readFile(working()), EMPTY_FILE);
    EXPECT_EQ(readFile(kept(1)), fileOf(800, 8000));
    for (int i = 2; i <= 7; ++i) {
        EXPECT_EQ(readFile(kept(i)), fileOf(800, static_cast<unsigned int>(i - 1) * 1000)) << i;
    }
    EXPECT_FALSE(fileExists(kept(0)));
    EXPECT_FALSE(fileExists(shiftRequest()));
    EXPECT_EQ(trace.lines(), Lines());
}

TEST_F(StoreShift, MovesOnlyTheFilesThereAre)
{
    writeFile(working(), fileOf(800, 8000));
    writeFile(kept(1), fileOf(800, 1000));
    writeFile(kept(5), fileOf(800, 5000));
    EXPECT_EQ(store.shiftSelFile(SB, true), 0);
    EXPECT_EQ(keptNames(), Lines({"sb1_bmc_sel1", "sb1_bmc_sel2", "sb1_bmc_sel6"}));
    EXPECT_EQ(readFile(kept(1)), fileOf(800, 8000));
    EXPECT_EQ(readFile(kept(2)), fileOf(800, 1000));
    EXPECT_EQ(readFile(kept(6)), fileOf(800, 5000));
}

TEST_F(StoreShift, TakesTheRequestAndLeavesTheAnswer)
{
    writeFile(working(), fileOf(800));
    writeFile(shiftRequest(), "a request of any content, longer than the answer");
    EXPECT_EQ(store.shiftSelFile(SB, false), 0);
    EXPECT_EQ(readFile(shiftRequest()), answer("0"));
    EXPECT_EQ(readFile(kept(1)), fileOf(800));
    EXPECT_EQ(trace.lines(), Lines());
}

TEST_F(StoreShift, AnswerThatNobodyTookIsTheNextRequest)
{
    writeFile(working(), fileOf(800));
    writeFile(shiftRequest(), "");
    EXPECT_EQ(store.shiftSelFile(SB, false), 0);
    writeFile(working(), fileOf(800, 900));
    EXPECT_EQ(store.shiftSelFile(SB, false), 0);
    EXPECT_EQ(readFile(shiftRequest()), answer("0"));
    EXPECT_EQ(readFile(kept(1)), fileOf(800, 900));
    EXPECT_EQ(readFile(kept(2)), fileOf(800));
    EXPECT_EQ(readFile(working()), EMPTY_FILE);
    // Removing the answer is not a request.
    std::filesystem::remove(shiftRequest());
    EXPECT_EQ(store.shiftSelFile(SB, false), -1);
    EXPECT_EQ(keptNames(), Lines({"sb1_bmc_sel1", "sb1_bmc_sel2"}));
}

TEST_F(StoreShift, WithoutARequestNothingMovesAndTheAnswerIsMinusOne)
{
    writeFile(working(), fileOf(800));
    EXPECT_EQ(store.shiftSelFile(SB, false), -1);
    EXPECT_EQ(readFile(shiftRequest()), answer("-1"));
    EXPECT_EQ(readFile(working()), fileOf(800));
    EXPECT_EQ(keptNames(), Lines());
    EXPECT_EQ(trace.lines(), Lines());
}

TEST_F(StoreShift, RequestThatCannotBeTakenIsCodeSixUnderAnotherName)
{
    writeFile(working(), fileOf(800));
    std::filesystem::create_directories(shiftRequest() + "/x");
    EXPECT_EQ(store.shiftSelFile(SB, false), 6);
    EXPECT_EQ(trace.lines(),
              Lines({cut("BMCSELDataFile::clearAllRecord " + shiftRequest() + " remove(39)")}));
    EXPECT_EQ(readFile(working()), fileOf(800));
}

TEST_F(StoreShift, RequestIsNotLookedAtWithoutSynchronisation)
{
    writeFile(working(), fileOf(800));
    writeFile(shiftRequest(), "request");
    EXPECT_EQ(store.shiftSelFile(SB, true), 0);
    EXPECT_EQ(readFile(shiftRequest()), textBytes("request"));
}

TEST_F(StoreShift, AnswerThatCannotBeWrittenChangesNothing)
{
    writeFile(working(), fileOf(800));
    loseFolder("/var/tmp");
    EXPECT_EQ(store.shiftSelFile(SB, false), 6);
    EXPECT_EQ(readFile(working()), fileOf(800));
}

TEST_F(StoreShift, FailureOfTheMessageFilesIsTracedAndTheShiftGoesOn)
{
    writeFile(working(), fileOf(800));
    breakMessages();
    EXPECT_EQ(store.shiftSelFile(SB, true), 0);
    const Lines lines = trace.take();
    ASSERT_EQ(lines.size(), 2U);
    EXPECT_EQ(lines[1], line("BMCSELDataFile::shiftSelFile shiftSelMessageFile"));
    EXPECT_EQ(readFile(kept(1)), fileOf(800));
}

TEST_F(StoreShift, DrivesTheMessageFilesAlong)
{
    writeFile(working(), fileOf(800));
    writeFile(messages(), "messages");
    EXPECT_EQ(store.shiftSelFile(SB, true), 0);
    EXPECT_EQ(readFile(keptMessages(1)), textBytes("messages"));
}

TEST_F(StoreShift, FailedCopyIsAnsweredWithItsCode)
{
    writeFile(shiftRequest(), "request");
    writeFile(kept(1), fileOf(800));
    EXPECT_EQ(store.shiftSelFile(SB, false), 7);
    EXPECT_EQ(readFile(shiftRequest()), answer("7"));
    EXPECT_EQ(keptNames(), Lines({"sb1_bmc_sel1"}));
    EXPECT_EQ(store.shiftSelFile(200, true), 8);
}

TEST_F(StoreShift, FailedRenameHasErrorAndIndexInTheSettledOrder)
{
    writeFile(working(), fileOf(800));
    writeFile(kept(6), fileOf(800, 6000));
    writeFile(kept(1), fileOf(800, 1000));
    std::filesystem::create_directories(kept(7) + "/x");
    EXPECT_EQ(store.shiftSelFile(SB, true), 7);
    EXPECT_EQ(trace.lines(), Lines({line("BMCSELDataFile::shiftSelFile sel21 rename(6)")}));
    // What was moved stays where it is.
    EXPECT_EQ(readFile(working()), EMPTY_FILE);
    EXPECT_EQ(readFile(kept(0)), fileOf(800));
    EXPECT_EQ(readFile(kept(1)), fileOf(800, 1000));
}

TEST_F(StoreShift, FileThatCannotBeLookedAtStopsTheShift)
{
    writeFile(working(), fileOf(800));
    writeFile(kept(5), fileOf(800, 5000));
    writeFile(kept(1), fileOf(800, 1000));
    ASSERT_EQ(::symlink(kept(3).c_str(), kept(3).c_str()), 0);
    EXPECT_EQ(store.shiftSelFile(SB, true), 14);
    EXPECT_EQ(trace.lines(), Lines({line("BMCSELDataFile::shiftSelFile sel3 stat(40)")}));
    EXPECT_EQ(readFile(kept(6)), fileOf(800, 5000));
    EXPECT_EQ(readFile(kept(1)), fileOf(800, 1000));
    EXPECT_EQ(readFile(kept(0)), fileOf(800));
}

TEST_F(StoreBackup, CopiesTheWorkingFile)
{
    writeFile(working(), fileOf(5));
    writeFile(kept(0), "an older backup");
    writeFile(messages(), "messages");
    EXPECT_EQ(store.backupTmpSel(SB), 1);
    EXPECT_EQ(readFile(kept(0)), fileOf(5));
    EXPECT_EQ(readFile(working()), fileOf(5));
    EXPECT_EQ(readFile(keptMessages(0)), textBytes("messages"));
    EXPECT_EQ(trace.lines(), Lines());
}

TEST_F(StoreBackup, FailedCopyIsTraced)
{
    errno = 0;
    EXPECT_EQ(store.backupTmpSel(SB), 0);
    const Lines lines = trace.take();
    ASSERT_EQ(lines.size(), 1U);
    EXPECT_EQ(lines[0].find(line("BMCSELDataFile::backupTmpSel cp SB#1 ret(256) errno(")), 0U);
}

TEST_F(StoreBackup, FailureOfTheMessageFilesComesFirst)
{
    writeFile(working(), fileOf(5));
    breakMessages();
    EXPECT_EQ(store.backupTmpSel(SB), 0);
    EXPECT_FALSE(fileExists(kept(0)));
}

TEST_F(StoreRestore, CopiesTheBackup)
{
    writeFile(kept(0), fileOf(5));
    writeFile(keptMessages(0), "messages");
    writeFile(working(), "anything");
    EXPECT_EQ(store.restoreTmpSel(SB), 1);
    EXPECT_EQ(readFile(working()), fileOf(5));
    EXPECT_EQ(readFile(kept(0)), fileOf(5));
    EXPECT_EQ(readFile(messages()), textBytes("messages"));
    EXPECT_EQ(trace.lines(), Lines());
}

TEST_F(StoreRestore, MissingBackupIsZeroWithoutATraceLine)
{
    EXPECT_EQ(store.restoreTmpSel(SB), 0);
    EXPECT_EQ(trace.lines(), Lines());
    EXPECT_FALSE(fileExists(working()));
}

TEST_F(StoreRestore, BackupOfAnotherSizeIsRefused)
{
    writeFile(working(), fileOf(2));
    for (const std::size_t size : {FULL_FILE - 1, FULL_FILE + 1, std::size_t{0}}) {
        Bytes other = fileOf(5);
        other.resize(size);
        writeFile(kept(0), other);
        EXPECT_EQ(store.restoreTmpSel(SB), 0);
        EXPECT_EQ(trace.take(),
                  Lines({line("BMCSELDataFile::restoreTmpSel invalid size SB#1 size(" +
                              std::to_string(size) + ")")}));
        EXPECT_EQ(readFile(working()), fileOf(2));
    }
}

TEST_F(StoreRestore, BackupThatCannotBeLookedAtIsTraced)
{
    ASSERT_EQ(::symlink(kept(0).c_str(), kept(0).c_str()), 0);
    EXPECT_EQ(store.restoreTmpSel(SB), 0);
    EXPECT_EQ(trace.lines(), Lines({line("BMCSELDataFile::restoreTmpSel stat SB#1 stat(40)")}));
}

TEST_F(StoreRestore, LinkAtTheWorkingFileIsNotFollowed)
{
    writeFile(kept(0), fileOf(5));
    writeFile(root.at("/tmp/target"), "precious");
    ASSERT_EQ(::symlink(root.at("/tmp/target").c_str(), working().c_str()), 0);
    EXPECT_EQ(store.restoreTmpSel(SB), 0);
    EXPECT_EQ(trace.lines(),
              Lines({line("BMCSELDataFile::restoreTmpSel cp SB#1 ret(-1) errno(40)")}));
    EXPECT_EQ(readFile(root.at("/tmp/target")), textBytes("precious"));
}

TEST_F(StoreShift, LinkAtTheRequestFileIsReplacedAndNotFollowed)
{
    writeFile(working(), fileOf(1));
    writeFile(root.at("/tmp/target"), "precious");
    const std::string request = BMCSELDataFile::getShiftRequestFile();
    ASSERT_EQ(::symlink(root.at("/tmp/target").c_str(), request.c_str()), 0);
    EXPECT_EQ(store.shiftSelFile(SB, false), 0);
    EXPECT_EQ(readFile(request), textBytes(std::string("0") + std::string(15, '\0')));
    EXPECT_EQ(readFile(root.at("/tmp/target")), textBytes("precious"));
}

TEST_F(StoreRestore, FailedCopyIsTraced)
{
    writeFile(kept(0), fileOf(5));
    std::filesystem::remove_all(root.at("/tmp"));
    EXPECT_EQ(store.restoreTmpSel(SB), 0);
    const Lines lines = trace.take();
    ASSERT_EQ(lines.size(), 1U);
    EXPECT_EQ(lines[0].find(line("BMCSELDataFile::restoreTmpSel cp SB#1 ret(256) errno(")), 0U);
}

TEST_F(StoreRestore, FailureOfTheMessageFilesComesFirst)
{
    writeFile(kept(0), fileOf(5));
    std::filesystem::create_directories(keptMessages(0));
    EXPECT_EQ(store.restoreTmpSel(SB), 0);
    EXPECT_FALSE(fileExists(working()));
}

TEST_F(StoreInitial, RestoresOrCreatesTheWorkingFileOfEveryBoard)
{
    TAVLib::host::setMachine({3, 4, 4, {}});
    writeFile(kept(0), fileOf(5));
    EXPECT_EQ(store.initialTruncate(), 3);
    EXPECT_EQ(readFile(root.at("/tmp/sb0_bmc_sel0")), EMPTY_FILE);
    EXPECT_EQ(readFile(working()), fileOf(5));
    EXPECT_EQ(readFile(root.at("/tmp/sb2_bmc_sel0")), EMPTY_FILE);
    EXPECT_FALSE(fileExists(root.at("/tmp/sb3_bmc_sel0")));
}

TEST_F(StoreInitial, LeavesAnExistingWorkingFileWhenTheRestoreFailed)
{
    writeFile(working(), "anything");
    Bytes other = fileOf(5);
    other.resize(FULL_FILE - 1);
    writeFile(kept(0), other);
    EXPECT_EQ(store.initialTruncate(), 4);
    EXPECT_EQ(readFile(working()), textBytes("anything"));
    EXPECT_EQ(trace.lines(), Lines({line("BMCSELDataFile::restoreTmpSel invalid size SB#1 "
                                         "size(110399)")}));
}

TEST_F(StoreInitial, CountOfBoardsIsAskedForAgainWithEachBoard)
{
    // Board 1 has a backup that is traced, and the machine changes with that line.
    TAVLib::host::setMachine({4, 4, 4, {}});
    writeFile(kept(0), "short");
    const TAVLib::host::TraceSink before =
        TAVLib::host::setTraceSink([](const TAVLib::host::TraceLine&) {
            TAVLib::host::setMachine({2, 4, 4, {}});
        });
    EXPECT_EQ(store.initialTruncate(), 2);
    TAVLib::host::setTraceSink(before);
    EXPECT_EQ(listFolder(root.at("/tmp")), Lines({"sb0_bmc_sel0", "sb1_bmc_sel0"}));
    std::filesystem::remove(working());
    TAVLib::host::setTraceSink([](const TAVLib::host::TraceLine&) {
        TAVLib::host::setMachine({3, 4, 4, {}});
    });
    EXPECT_EQ(store.initialTruncate(), 3);
    TAVLib::host::setTraceSink(before);
    EXPECT_TRUE(fileExists(root.at("/tmp/sb2_bmc_sel0")));
}

TEST_F(StoreInitial, MachineWithoutBoardsHasNothingToDo)
{
    TAVLib::host::setMachine({0, 4, 4, {}});
    EXPECT_EQ(store.initialTruncate(), 0);
    EXPECT_EQ(listFolder(root.at("/tmp")), Lines());
}

TEST_F(StoreRotation, LeavesNoDescriptorOpen)
{
    writeFile(working(), fileOf(800));
    const std::size_t before = openDescriptors();
    store.shiftSelFile(SB, false);
    store.shiftSelFile(SB, true);
    store.backupTmpSel(SB);
    store.restoreTmpSel(SB);
    store.clearAllRecord(SB);
    EXPECT_EQ(openDescriptors(), before);
}
