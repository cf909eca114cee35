// SPDX-License-Identifier: Apache-2.0
#include <recordkit/platform/BMCMessageFile.h>

#include <gtest/gtest.h>

#include <recordkit/platform/BoardFiles.h>
#include <recordkit/platform/SystemRoot.h>

#include "Files.h"

using TAVLib::BMCMessageFile;
using namespace platform_tests;
namespace fs = std::filesystem;

namespace {

class BMCMessageFileTest : public testing::Test {
protected:
    BMCMessageFileTest() { removeFiles(); }
    ~BMCMessageFileTest() override { removeFiles(); }

    void SetUp() override
    {
        for (const char* folder :
             {TAVLib::BoardFiles::WORKING_FOLDER, TAVLib::BoardFiles::PERSISTENT_FOLDER}) {
            ASSERT_TRUE(fs::is_directory(root + folder)) << "make this folder first";
        }
    }

    std::string working(int sb = BOARD) const
    {
        return root + TAVLib::BoardFiles::WORKING_FOLDER + "sb" + std::to_string(sb) + "_bmc_msg0";
    }
    std::string kept(int index, int sb = BOARD) const
    {
        return root + TAVLib::BoardFiles::PERSISTENT_FOLDER + "sb" + std::to_string(sb) +
               "_bmc_msg" + std::to_string(index);
    }
    /// Which of the board's files exist: w for the working file, 0 to 8.
    std::string files() const
    {
        std::string names = fileExists(working()) ? "w" : "";
        for (int i = 0; i <= 8; ++i) {
            names += fileExists(kept(i)) ? std::to_string(i) : "";
        }
        return names;
    }

    BMCMessageFile messages;

private:
    void removeFiles() const
    {
        for (const int sb : {BOARD + 0, BOARD + 1}) {
            fs::remove_all(working(sb));
            for (int i = 0; i <= 8; ++i) {
                fs::remove_all(kept(i, sb));
            }
        }
    }

    const std::string root = TAVLib::systemRoot();
};

}

TEST_F(BMCMessageFileTest, MissingFilesAreNoFailure)
{
    EXPECT_TRUE(messages.clearMessageFile(BOARD));
    EXPECT_TRUE(messages.shiftSelMessageFile(BOARD));
    EXPECT_TRUE(messages.backupTmpMessageFile(BOARD));
    EXPECT_TRUE(messages.restoreTmpMessageFile(BOARD));
    EXPECT_EQ(files(), "");
}

TEST_F(BMCMessageFileTest, BackupCopiesTheWorkingFile)
{
    writeFile(working(), "messages");
    writeFile(working(BOARD + 1), "of another board");
    writeFile(kept(0), "an older and longer backup");
    EXPECT_TRUE(messages.backupTmpMessageFile(BOARD));
    EXPECT_EQ(files(), "w0");
    EXPECT_EQ(readFile(kept(0)), "messages");
    EXPECT_EQ(readFile(working()), "messages");
    EXPECT_FALSE(fileExists(kept(0, BOARD + 1)));
}

TEST_F(BMCMessageFileTest, RestoreCopiesTheBackup)
{
    writeFile(kept(0), "saved");
    writeFile(working(), "other, and longer");
    EXPECT_TRUE(messages.restoreTmpMessageFile(BOARD));
    EXPECT_EQ(files(), "w0");
    EXPECT_EQ(readFile(working()), "saved");
    EXPECT_EQ(readFile(kept(0)), "saved");
}

TEST_F(BMCMessageFileTest, RestoreCreatesTheWorkingFile)
{
    writeFile(kept(0), "saved");
    EXPECT_TRUE(messages.restoreTmpMessageFile(BOARD));
    EXPECT_EQ(readFile(working()), "saved");
}

TEST_F(BMCMessageFileTest, ShiftMovesTheWorkingFileIntoTheChain)
{
    writeFile(working(), "newest");
    writeFile(kept(0), "backup");
    for (int i = 1; i <= 7; ++i) {
        writeFile(kept(i), "file " + std::to_string(i));
    }
    EXPECT_TRUE(messages.shiftSelMessageFile(BOARD));
    EXPECT_EQ(files(), "w1234567");
    EXPECT_EQ(readFile(working()), "");
    EXPECT_EQ(readFile(kept(1)), "newest");
    for (int i = 2; i <= 7; ++i) {
        EXPECT_EQ(readFile(kept(i)), "file " + std::to_string(i - 1));
    }
}

TEST_F(BMCMessageFileTest, ShiftWithoutAWorkingFileStillMovesTheChain)
{
    writeFile(kept(0), "backup");
    writeFile(kept(1), "one");
    EXPECT_TRUE(messages.shiftSelMessageFile(BOARD));
    EXPECT_EQ(files(), "12");
    EXPECT_EQ(readFile(kept(1)), "backup");
    EXPECT_EQ(readFile(kept(2)), "one");
}

TEST_F(BMCMessageFileTest, ClearRemovesEveryFileOfTheBoard)
{
    writeFile(working(), "a");
    for (int i = 0; i <= 7; ++i) {
        writeFile(kept(i), "b");
    }
    writeFile(working(BOARD + 1), "of another board");
    writeFile(kept(7, BOARD + 1), "of another board");
    EXPECT_TRUE(messages.clearMessageFile(BOARD));
    EXPECT_EQ(files(), "");
    EXPECT_TRUE(fileExists(working(BOARD + 1)));
    EXPECT_TRUE(fileExists(kept(7, BOARD + 1)));
}

TEST_F(BMCMessageFileTest, WhatCannotBeReplacedIsAFailure)
{
    // A folder with a file in it, where a message file should be.
    fs::create_directory(kept(0));
    writeFile(kept(0) + "/file", "");
    writeFile(working(), "messages");
    EXPECT_FALSE(messages.backupTmpMessageFile(BOARD));
    EXPECT_FALSE(messages.shiftSelMessageFile(BOARD));
    EXPECT_EQ(readFile(working()), "messages");
    EXPECT_FALSE(messages.restoreTmpMessageFile(BOARD));
    EXPECT_EQ(readFile(working()), "messages");
    EXPECT_FALSE(messages.clearMessageFile(BOARD));
}

TEST_F(BMCMessageFileTest, LinksAreNotFollowed)
{
    const ScratchFolder scratch;
    writeFile(scratch.at("victim"), "unchanged");
    fs::create_symlink(scratch.at("victim"), working());
    writeFile(kept(0), "saved");
    messages.restoreTmpMessageFile(BOARD);
    EXPECT_EQ(readFile(scratch.at("victim")), "unchanged");
    fs::remove(working());
    fs::create_symlink(scratch.at("victim"), working());
    fs::remove(kept(0));
    messages.backupTmpMessageFile(BOARD);
    EXPECT_FALSE(fileExists(kept(0)) && readFile(kept(0)) == "unchanged");
    messages.shiftSelMessageFile(BOARD);
    EXPECT_FALSE(fileExists(kept(1)) && readFile(kept(1)) == "unchanged");
    messages.clearMessageFile(BOARD);
    EXPECT_EQ(readFile(scratch.at("victim")), "unchanged");
}
