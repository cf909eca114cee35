// SPDX-License-Identifier: Apache-2.0
// The store where every user may write to /tmp and /var/tmp: what others put there.
#include <cerrno>
#include <csignal>
#include <filesystem>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <recordkit/selfile/SELFileLayout.h>
#include <recordkit/selfile/SELStoreCheck.h>
#include <recordkit/sensor/SeverityMap.h>

#include "StoreFixture.h"

using namespace testing_support;
using TAVLib::RecordKit::SELStoreCheck;
namespace fs = std::filesystem;

namespace {

class HostileFolder : public StoreTest {
protected:
    void SetUp() override
    {
        for (const char* const folder : {"/tmp", "/var/tmp"}) {
            fs::permissions(root.at(folder), fs::perms(01777));
        }
    }
    int writeOne()
    {
        Message message;
        message.setSerialized(slotOf(1).data(), SLOT);
        return store.writeRecord(SB, message);
    }
};

bool contains(const Lines& lines, const std::string& text)
{
    for (const std::string& line : lines) {
        if (line.find(text) != std::string::npos) {
            return true;
        }
    }
    return false;
}

}

TEST_F(HostileFolder, OwnFilesWorkAsInAnyOther)
{
    ASSERT_EQ(store.truncate(SB, 0, TAVLib::RecordKit::SELFileLayout::TEMPORARY),
              BMCSELDataFile::SUCCESS);
    EXPECT_EQ(writeOne(), 1);
    EXPECT_EQ(store.backupTmpSel(SB), 1);
    EXPECT_EQ(readFile(kept(0)), readFile(working()));
    EXPECT_EQ(store.shiftSelFile(SB, true), 0);
    EXPECT_EQ(trace.lines(), Lines());
}

TEST_F(HostileFolder, NoCopyIsMadeOfWhatALinkLeadsTo)
{
    writeFile(root.at("/secret"), fileOf(3));
    fs::create_symlink(root.at("/secret"), working());
    EXPECT_EQ(store.backupTmpSel(SB), 0);
    EXPECT_FALSE(fileExists(kept(0)));
    EXPECT_TRUE(contains(trace.lines(),
                         "backupTmpSel cp SB#1 ret(-1) errno(" + std::to_string(ELOOP) + ")"));
    EXPECT_EQ(store.makeCopySELFile(SB), BMCSELDataFile::MOVE_FAILED);
    EXPECT_FALSE(fileExists(kept(0)));
    EXPECT_EQ(readFile(root.at("/secret")), fileOf(3));
}

TEST_F(HostileFolder, NothingIsWrittenWhereAnotherUserOwnsTheFile)
{
    if (::geteuid() != 0) {
        GTEST_SKIP() << "only root can give files away";
    }
    constexpr uid_t NOBODY = 65534;
    writeFile(working(), fileOf(0));
    ASSERT_EQ(::chown(working().c_str(), NOBODY, NOBODY), 0);
    EXPECT_EQ(writeOne(), 0);
    EXPECT_EQ(store.backupTmpSel(SB), 0);
    EXPECT_EQ(store.truncate(SB, 0, TAVLib::RecordKit::SELFileLayout::TEMPORARY),
              BMCSELDataFile::REWRITE_FAILED);
    writeFile(kept(0), fileOf(5));
    EXPECT_EQ(store.restoreTmpSel(SB), 0);
    EXPECT_EQ(readFile(working()), fileOf(0));
    EXPECT_TRUE(contains(trace.lines(), "errno " + std::to_string(EPERM)));
}

TEST_F(HostileFolder, NoPipeIsWaitedFor)
{
    ASSERT_EQ(::mkfifo(working().c_str(), 0666), 0);
    ASSERT_EQ(::mkfifo(shiftRequest().c_str(), 0666), 0);
    ASSERT_EQ(::mkfifo(root.at("/tmp/psumode").c_str(), 0666), 0);
    Message message;
    EXPECT_EQ(writeOne(), 0);
    EXPECT_EQ(store.readRecord(SB, 1, message), BMCSELDataFile::OPEN_FAILED);
    EXPECT_EQ(store.backupTmpSel(SB), 0);
    EXPECT_EQ(store.shiftSelFile(SB, true), static_cast<int>(BMCSELDataFile::MOVE_FAILED));
    EXPECT_FALSE(SELStoreCheck(SB).isSound());
    EXPECT_NO_THROW(SeverityMap::getInstance()->updatePowerSupplyMode());
    // The request is removed before it is answered.
    EXPECT_EQ(store.shiftSelFile(SB, false), static_cast<int>(BMCSELDataFile::MOVE_FAILED));
    EXPECT_TRUE(fs::is_regular_file(shiftRequest()));
}

TEST_F(HostileFolder, ARotationSucceedsWhereSignalsOfChildrenAreIgnored)
{
    writeFile(working(), fileOf(5));
    struct sigaction before = {};
    struct sigaction ignored = {};
    ignored.sa_handler = SIG_IGN;
    ASSERT_EQ(::sigaction(SIGCHLD, &ignored, &before), 0);
    EXPECT_EQ(store.backupTmpSel(SB), 1);
    EXPECT_EQ(store.shiftSelFile(SB, true), 0);
    struct sigaction after = {};
    ASSERT_EQ(::sigaction(SIGCHLD, &before, &after), 0);
    EXPECT_EQ(after.sa_handler, SIG_IGN);
    EXPECT_EQ(trace.lines(), Lines());
    // Also with the flag that means the same.
    struct sigaction unwaited = {};
    unwaited.sa_handler = SIG_DFL;
    unwaited.sa_flags = SA_NOCLDWAIT;
    ASSERT_EQ(::sigaction(SIGCHLD, &unwaited, &before), 0);
    EXPECT_EQ(store.backupTmpSel(SB), 1);
    ASSERT_EQ(::sigaction(SIGCHLD, &before, &after), 0);
    EXPECT_NE(after.sa_flags & SA_NOCLDWAIT, 0);
}
