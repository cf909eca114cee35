// SPDX-License-Identifier: Apache-2.0
#include <recordkit/platform/BMCMessageFile.h>

#include <filesystem>
#include <gtest/gtest.h>

#include "support/Failures.h"
#include "support/ScratchRoot.h"

using TAVLib::BMCMessageFile;
using namespace testing_support;

namespace {

class BMCMessageFileTest : public testing::Test {
protected:
    std::string working(int sb) const
    {
        return root.at("/tmp/sb" + std::to_string(sb) + "_bmc_msg0");
    }
    std::string kept(int sb, int index) const
    {
        return root.at("/var/tav/fmem/ipmi/sb" + std::to_string(sb) + "_bmc_msg" +
                       std::to_string(index));
    }
    Lines keptNames() const { return listFolder(root.at("/var/tav/fmem/ipmi")); }

    ScratchRoot root;
    BMCMessageFile messages;
};

}

TEST_F(BMCMessageFileTest, MissingFilesAreNoFailure)
{
    EXPECT_TRUE(messages.clearMessageFile(2));
    EXPECT_TRUE(messages.shiftSelMessageFile(2));
    EXPECT_TRUE(messages.backupTmpMessageFile(2));
    EXPECT_TRUE(messages.restoreTmpMessageFile(2));
    EXPECT_EQ(keptNames(), Lines());
    EXPECT_EQ(listFolder(root.at("/tmp")), Lines());
}

TEST_F(BMCMessageFileTest, BackupCopiesTheWorkingFile)
{
    writeFile(working(2), "messages");
    writeFile(working(3), "of another board");
    EXPECT_TRUE(messages.backupTmpMessageFile(2));
    EXPECT_EQ(keptNames(), Lines({"sb2_bmc_msg0"}));
    EXPECT_EQ(readFile(kept(2, 0)), textBytes("messages"));
    EXPECT_EQ(readFile(working(2)), textBytes("messages"));
}

TEST_F(BMCMessageFileTest, RestoreCopiesTheBackup)
{
    writeFile(kept(2, 0), "saved");
    writeFile(working(2), "other, and longer");
    EXPECT_TRUE(messages.restoreTmpMessageFile(2));
    EXPECT_EQ(readFile(working(2)), textBytes("saved"));
    EXPECT_EQ(readFile(kept(2, 0)), textBytes("saved"));
}

TEST_F(BMCMessageFileTest, ShiftMovesTheWorkingFileIntoTheChain)
{
    writeFile(working(2), "newest");
    for (int i = 1; i <= 7; ++i) {
        writeFile(kept(2, i), "file " + std::to_string(i));
    }
    EXPECT_TRUE(messages.shiftSelMessageFile(2));
    EXPECT_EQ(readFile(working(2)), Bytes());
    EXPECT_FALSE(fileExists(kept(2, 0)));
    EXPECT_EQ(readFile(kept(2, 1)), textBytes("newest"));
    for (int i = 2; i <= 7; ++i) {
        EXPECT_EQ(readFile(kept(2, i)), textBytes("file " + std::to_string(i - 1)));
    }
}

TEST_F(BMCMessageFileTest, ShiftWithoutAWorkingFileStillMovesTheChain)
{
    writeFile(kept(2, 1), "one");
    EXPECT_TRUE(messages.shiftSelMessageFile(2));
    EXPECT_EQ(keptNames(), Lines({"sb2_bmc_msg2"}));
}

TEST_F(BMCMessageFileTest, ClearRemovesEveryFileOfTheBoard)
{
    writeFile(working(2), "a");
    writeFile(kept(2, 0), "b");
    writeFile(kept(2, 7), "c");
    writeFile(kept(1, 7), "of another board");
    EXPECT_TRUE(messages.clearMessageFile(2));
    EXPECT_FALSE(fileExists(working(2)));
    EXPECT_EQ(keptNames(), Lines({"sb1_bmc_msg7"}));
}

TEST_F(BMCMessageFileTest, FailureIsFalseAndTracedWithThePath)
{
    writeFile(working(2), "a");
    std::filesystem::remove_all(root.at("/var/tav"));
    TraceCapture trace;
    EXPECT_FALSE(messages.backupTmpMessageFile(2));
    const Lines lines = trace.take();
    ASSERT_EQ(lines.size(), 1U);
    EXPECT_NE(lines[0].find("sb2_bmc_msg0"), std::string::npos);
    EXPECT_NE(lines[0].find("errno 2"), std::string::npos);
    EXPECT_FALSE(messages.shiftSelMessageFile(2));
    EXPECT_EQ(readFile(working(2)), textBytes("a"));
}
