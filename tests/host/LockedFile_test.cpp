// SPDX-License-Identifier: Apache-2.0
#include <recordkit/platform/LockedFile.h>

#include <future>
#include <gtest/gtest.h>
#include <unistd.h>

#include <recordkit/host/LockTimeout.h>

#include "support/Failures.h"
#include "support/ScratchRoot.h"

using TAVLib::LockedFile;
using namespace testing_support;

namespace {

std::string fileError(const std::string& operation, const std::string& path,
                      const std::string& reason, int error)
{
    char detail[8];
    std::snprintf(detail, sizeof detail, "0x%04X", static_cast<unsigned int>(error));
    return "1:200:0x0100 act 2 det " + std::string(detail) + " msg 30001 (" + operation + ", " +
           path + ", " + reason + ", " + std::to_string(error) + ")";
}

}

TEST(LockedFileErrors, NameTheOperationThePathAndTheReason)
{
    const ScratchRoot root;
    const std::string missing = root.at("/none/file");
    EXPECT_EQ(thrownBy([&] { LockedFile file(missing); }),
              fileError("open", missing, "No such file or directory", ENOENT));
    const std::string folder = root.at("/tmp");
    EXPECT_EQ(thrownBy([&] { LockedFile file(folder); }),
              fileError("open", folder, "Is a directory", EISDIR));
    const std::string path = root.at("/tmp/file");
    LockedFile file(path);
    EXPECT_EQ(thrownBy([&] { file.lseek(-1, SEEK_SET); }),
              fileError("seek", path, "Invalid argument", EINVAL));
    EXPECT_EQ(thrownBy([&] { file.truncFile(-1); }),
              fileError("truncate", path, "Invalid argument", EINVAL));
}

TEST(LockedFileErrors, MessageIsReadable)
{
    const ScratchRoot root;
    const std::string missing = root.at("/none/file");
    try {
        const LockedFile file(missing);
        FAIL();
    } catch (const TAVLib::PException& e) {
        EXPECT_EQ(e.getMessage(), "open " + missing + ": No such file or directory (errno 2)");
    }
}

TEST(LockedFileErrors, DoNotFollowASymbolicLink)
{
    const ScratchRoot root;
    ASSERT_EQ(::symlink("/etc/passwd", root.at("/tmp/link").c_str()), 0);
    EXPECT_EQ(thrownBy([&] { LockedFile file(root.at("/tmp/link")); }),
              fileError("open", root.at("/tmp/link"), "Too many levels of symbolic links", ELOOP));
}

TEST(LockedFileErrors, LeaveNoDescriptorOpen)
{
    const ScratchRoot root;
    const std::size_t before = openDescriptors();
    for (int i = 0; i < 10; ++i) {
        EXPECT_NE(thrownBy([&] { LockedFile file(root.at("/none/file")); }), "nothing");
    }
    EXPECT_EQ(openDescriptors(), before);
}

TEST(LockedFileErrors, WritesToAFullDeviceAreThrown)
{
    if (!fileExists("/dev/full")) {
        GTEST_SKIP() << "there is no /dev/full here";
    }
    LockedFile file("/dev/full");
    EXPECT_EQ(thrownBy([&] { file.write("x", 1); }),
              fileError("write", "/dev/full", "No space left on device", ENOSPC));
}

namespace {

/// Restores waiting without end.
class LockTimeout : public testing::Test {
protected:
    ~LockTimeout() override { TAVLib::host::setLockTimeout(TAVLib::host::FOREVER); }
    const ScratchRoot root;
    const std::string path = root.at("/tmp/file");
};

}

TEST_F(LockTimeout, IsNoneUnlessItIsSet)
{
    EXPECT_EQ(TAVLib::host::lockTimeout(), TAVLib::host::FOREVER);
}

TEST_F(LockTimeout, EndsTheWaitingWithAClearError)
{
    const LockedFile held(path);
    for (const int milliseconds : {0, 1, 20}) {
        TAVLib::host::setLockTimeout(milliseconds);
        const std::size_t before = openDescriptors();
        EXPECT_EQ(thrownBy([&] { LockedFile file(path); }),
                  fileError("lock", path, "another program keeps it locked", EWOULDBLOCK));
        EXPECT_EQ(openDescriptors(), before);
    }
}

TEST_F(LockTimeout, IsNotAwaitedWhenTheLockIsFree)
{
    TAVLib::host::setLockTimeout(0);
    EXPECT_EQ(thrownBy([&] { LockedFile file(path); }), "nothing");
}

TEST_F(LockTimeout, LongerThanTheLockIsHeldLetsTheWaitingSucceed)
{
    TAVLib::host::setLockTimeout(60000);
    auto held = std::make_unique<LockedFile>(path);
    auto waiting = std::async(std::launch::async,
                              [this] { return thrownBy([this] { LockedFile file(path); }); });
    held.reset();
    EXPECT_EQ(waiting.get(), "nothing");
}
