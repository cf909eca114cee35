// SPDX-License-Identifier: Apache-2.0
#include <recordkit/selfile/SELStoreLock.h>

#include <filesystem>
#include <future>
#include <sys/stat.h>

#include "StoreFixture.h"
#include "support/LockHolder.h"

using namespace testing_support;
using TAVLib::RecordKit::SELStoreLock;
namespace fs = std::filesystem;

namespace {

class StoreLock : public StoreTest {};

}

TEST_F(StoreLock, IsAFileThatOnlyItsOwnerMayOpen)
{
    const mode_t before = ::umask(0);
    {
        const SELStoreLock lock(SB);
        EXPECT_TRUE(lock.isHeld());
        EXPECT_EQ(lock.getProblem(), "");
        struct stat status = {};
        ASSERT_EQ(::stat(lockFile().c_str(), &status), 0);
        EXPECT_EQ(status.st_mode, S_IFREG | 0600U);
        EXPECT_EQ(status.st_size, 0);
    }
    ::umask(before);
    EXPECT_TRUE(fileExists(lockFile()));
}

TEST_F(StoreLock, ExcludesOthersOfTheSameBoardOnly)
{
    const SELStoreLock lock(SB);
    EXPECT_FALSE(SELStoreLock(SB, 0).isHeld());
    EXPECT_TRUE(SELStoreLock(SB + 1, 0).isHeld());
}

TEST_F(StoreLock, OfAnotherProcessIsNamedWithItsNumber)
{
    LockHolder holder(SB);
    ASSERT_TRUE(holder.isHolding);
    for (const int milliseconds : {0, 1, 20}) {
        const SELStoreLock lock(SB, milliseconds);
        EXPECT_FALSE(lock.isHeld());
        EXPECT_EQ(lock.getProblem(), lockFile() + " is locked by process " + holder.number());
    }
    // A process that is killed leaves nothing that others would wait for.
    holder.kill();
    EXPECT_TRUE(SELStoreLock(SB, 0).isHeld());
}

TEST_F(StoreLock, IsWaitedFor)
{
    for (const int milliseconds : {SELStoreLock::FOREVER, 60000}) {
        LockHolder holder(SB);
        ASSERT_TRUE(holder.isHolding);
        auto waiting = std::async(
            std::launch::async, [milliseconds] { return SELStoreLock(SB, milliseconds).isHeld(); });
        holder.kill();
        EXPECT_TRUE(waiting.get());
    }
}

TEST_F(StoreLock, NeedsTheFolderOfTheRotatedFiles)
{
    fs::remove_all(root.at("/var/tav"));
    const SELStoreLock lock(SB, 0);
    EXPECT_FALSE(lock.isHeld());
    EXPECT_EQ(lock.getProblem(), lockFile() + " cannot be opened: No such file or directory");
}

TEST_F(StoreLock, FollowsNoLinkInAFolderOfEverybody)
{
    fs::permissions(root.at("/var/tav/fmem/ipmi"), fs::perms(01777));
    writeFile(root.at("/elsewhere"), "x");
    fs::create_symlink(root.at("/elsewhere"), lockFile());
    const SELStoreLock lock(SB, 0);
    EXPECT_EQ(lock.getProblem(),
              lockFile() + " cannot be opened: Too many levels of symbolic links");
}
