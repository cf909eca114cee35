// SPDX-License-Identifier: Apache-2.0
#include "recordkit/posix/File.h"

#include <cerrno>
#include <fcntl.h>
#include <filesystem>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include "support/Failures.h"
#include "support/ScratchRoot.h"

using namespace testing_support;
namespace posix = TAVLib::posix;
namespace fs = std::filesystem;

namespace {

bool writesNothing = false;
bool syncFails = false;

}

// The linker gives the calls of File.cpp to these, and the system's as the others.
extern "C" ssize_t __wrap_write(int fd, const void* buffer, std::size_t size);
extern "C" ssize_t __real_write(int fd, const void* buffer, std::size_t size);
extern "C" ssize_t __wrap_pwrite(int fd, const void* buffer, std::size_t size, off_t offset);
extern "C" ssize_t __real_pwrite(int fd, const void* buffer, std::size_t size, off_t offset);
extern "C" int __wrap_fsync(int fd);
extern "C" int __real_fsync(int fd);

ssize_t __wrap_write(int fd, const void* buffer, std::size_t size)
{
    return writesNothing ? 0 : __real_write(fd, buffer, size);
}

ssize_t __wrap_pwrite(int fd, const void* buffer, std::size_t size, off_t offset)
{
    return writesNothing ? 0 : __real_pwrite(fd, buffer, size, offset);
}

int __wrap_fsync(int fd)
{
    if (syncFails) {
        errno = EIO;
        return -1;
    }
    return __real_fsync(fd);
}

namespace {

class PosixFile : public testing::Test {
protected:
    std::string path() const { return root.at("/tmp/file"); }
    Lines names() const { return listFolder(root.at("/tmp")); }

    ScratchRoot root;
};

std::string describe(const posix::Failure& failure)
{
    return failure.isFailure() ? std::string(failure.operation) + " " + failure.path + " " +
                                     std::to_string(failure.error)
                               : "none";
}

}

TEST_F(PosixFile, IsClosedAtTheEndOfTheScopeUnlessReleased)
{
    writeFile(path(), "text");
    const std::size_t before = openDescriptors();
    int kept = -1;
    {
        const posix::File closed(path(), O_RDONLY);
        posix::File released(path(), O_RDONLY);
        EXPECT_TRUE(closed.isOpen());
        EXPECT_EQ(openDescriptors(), before + 2);
        EXPECT_NE(::fcntl(closed.get(), F_GETFD) & FD_CLOEXEC, 0);
        kept = released.release();
        EXPECT_FALSE(released.isOpen());
    }
    EXPECT_EQ(openDescriptors(), before + 1);
    EXPECT_EQ(::close(kept), 0);
}

TEST_F(PosixFile, MissingFileIsNotOpenAndLeavesErrno)
{
    errno = 0;
    const posix::File file(path(), O_RDONLY);
    EXPECT_EQ(errno, ENOENT);
    EXPECT_FALSE(file.isOpen());
    EXPECT_EQ(file.get(), -1);
}

TEST_F(PosixFile, NewFileIsReadableByAllAndWritableByItsOwner)
{
    const mode_t mask = ::umask(0);
    const posix::File file(path(), O_WRONLY | O_CREAT);
    ::umask(mask);
    struct stat status = {};
    ASSERT_EQ(::stat(path().c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777, 0644U);
}

TEST_F(PosixFile, ReadAtStopsAtTheEndOfTheFile)
{
    writeFile(path(), sequence(10));
    const posix::File file(path(), O_RDONLY);
    Bytes bytes(8, 0xEE);
    std::size_t done = 99;
    EXPECT_TRUE(posix::readAt(file.get(), 1, bytes.data(), bytes.size(), done));
    EXPECT_EQ(done, 8U);
    EXPECT_EQ(bytes, sequence(8, 1));
    EXPECT_TRUE(posix::readAt(file.get(), 7, bytes.data(), bytes.size(), done));
    EXPECT_EQ(done, 3U);
    EXPECT_EQ(bytes, Bytes({7, 8, 9, 4, 5, 6, 7, 8}));
    EXPECT_TRUE(posix::readAt(file.get(), 9, bytes.data(), 1, done));
    EXPECT_EQ(done, 1U);
    EXPECT_EQ(bytes[0], 9);
    EXPECT_TRUE(posix::readAt(file.get(), 7, bytes.data(), 0, done));
    EXPECT_EQ(done, 0U);
    EXPECT_FALSE(posix::readAt(-1, 0, bytes.data(), bytes.size(), done));
    EXPECT_EQ(errno, EBADF);
    EXPECT_EQ(done, 0U);
}

TEST_F(PosixFile, WritesTheWholeBufferInPlaceOrAtAnOffset)
{
    {
        const posix::File file(path(), O_WRONLY | O_CREAT);
        EXPECT_TRUE(posix::writeAll(file.get(), sequence(4).data(), 4));
        EXPECT_TRUE(posix::writeAll(file.get(), sequence(2, 0x70).data(), 2));
        EXPECT_TRUE(posix::writeAllAt(file.get(), 1, sequence(2, 0xA0).data(), 2));
        EXPECT_TRUE(posix::writeAll(file.get(), nullptr, 0));
        EXPECT_TRUE(posix::writeAll(file.get(), "z", 1));
    }
    EXPECT_EQ(readFile(path()), Bytes({0, 0xA0, 0xA1, 3, 0x70, 0x71, 'z'}));
}

TEST_F(PosixFile, FailedWriteLeavesErrno)
{
    const posix::File full("/dev/full", O_WRONLY);
    errno = 0;
    EXPECT_FALSE(posix::writeAll(full.get(), "x", 1));
    EXPECT_EQ(errno, ENOSPC);
    errno = 0;
    EXPECT_FALSE(posix::writeAllAt(full.get(), 5, "x", 1));
    EXPECT_EQ(errno, ENOSPC);
    EXPECT_FALSE(posix::writeAll(-1, "x", 1));
    EXPECT_EQ(errno, EBADF);
    EXPECT_FALSE(posix::writeAllAt(-1, 0, "x", 1));
    EXPECT_EQ(errno, EBADF);
}

TEST_F(PosixFile, WriteThatGetsNowhereCountsAsAFullFile)
{
    const posix::File file(path(), O_WRONLY | O_CREAT);
    writesNothing = true;
    errno = 0;
    const bool isWritten = posix::writeAll(file.get(), "x", 1);
    const int error = errno;
    errno = 0;
    const bool isWrittenAt = posix::writeAllAt(file.get(), 0, "x", 1);
    const int errorAt = errno;
    writesNothing = false;
    EXPECT_FALSE(isWritten);
    EXPECT_EQ(error, ENOSPC);
    EXPECT_FALSE(isWrittenAt);
    EXPECT_EQ(errorAt, ENOSPC);
}

TEST_F(PosixFile, ReadsAWholeFileOfAnySize)
{
    for (const std::size_t size : {0U, 1U, 4095U, 4096U, 4097U, 10000U}) {
        writeFile(path(), sequence(size));
        Bytes bytes;
        EXPECT_EQ(describe(posix::readFile(path(), bytes)), "none");
        EXPECT_EQ(bytes, sequence(size));
    }
}

TEST_F(PosixFile, NamesTheOperationThatFailed)
{
    Bytes bytes;
    EXPECT_EQ(describe(posix::readFile(path(), bytes)), "open " + path() + " 2");
    fs::create_directory(path());
    EXPECT_EQ(describe(posix::readFile(path(), bytes)), "read " + path() + " 21");
    EXPECT_EQ(describe(posix::replaceFile(path(), sequence(3))), "rename " + path() + " 21");
    const std::string elsewhere = root.at("/nowhere/file");
    EXPECT_EQ(describe(posix::replaceFile(elsewhere, sequence(3))), "open " + elsewhere + " 2");
    EXPECT_EQ(names(), Lines({"file"}));
}

TEST_F(PosixFile, ReplacesAFileByAnotherOne)
{
    writeFile(path(), "an old and longer text");
    const posix::File old(path(), O_RDONLY);
    EXPECT_EQ(describe(posix::replaceFile(path(), sequence(5))), "none");
    EXPECT_EQ(readFile(path()), sequence(5));
    EXPECT_EQ(names(), Lines({"file"}));
    // Who has the old one open still reads it.
    Bytes bytes(6);
    std::size_t done = 0;
    EXPECT_TRUE(posix::readAt(old.get(), 0, bytes.data(), bytes.size(), done));
    EXPECT_EQ(bytes, textBytes("an old"));
}

TEST_F(PosixFile, FailedReplacementLeavesTheFileAndNothingElse)
{
    writeFile(path(), "old");
    writesNothing = true;
    const posix::Failure unwritten = posix::replaceFile(path(), sequence(5));
    writesNothing = false;
    syncFails = true;
    const posix::Failure unsynced = posix::replaceFile(path(), sequence(5));
    syncFails = false;
    EXPECT_EQ(describe(unwritten), "write " + path() + " 28");
    EXPECT_EQ(describe(unsynced), "sync " + path() + " 5");
    EXPECT_EQ(readFile(path()), textBytes("old"));
    EXPECT_EQ(names(), Lines({"file"}));
}

TEST_F(PosixFile, SharedLocksExcludeOnlyExclusiveOnes)
{
    writeFile(path(), "content");
    const posix::File first(path(), O_RDONLY);
    const posix::File writer(path(), O_RDWR);
    for (const int patience : {0, posix::FOREVER}) {
        const posix::File second(path(), O_RDONLY);
        EXPECT_TRUE(posix::lockFile(first.get(), patience, posix::Lock::SHARED));
        EXPECT_TRUE(posix::lockFile(second.get(), patience, posix::Lock::SHARED));
        EXPECT_FALSE(posix::lockFile(writer.get(), 0));
        EXPECT_EQ(errno, EWOULDBLOCK);
    }
    ASSERT_EQ(::flock(first.get(), LOCK_UN), 0);
    EXPECT_TRUE(posix::lockFile(writer.get(), 0));
    EXPECT_FALSE(posix::lockFile(first.get(), 0, posix::Lock::SHARED));
    EXPECT_EQ(errno, EWOULDBLOCK);
}

TEST_F(PosixFile, LinksAreNotFollowed)
{
    const std::string target = root.at("/tmp/target");
    writeFile(target, "kept");
    fs::create_symlink(target, path());
    Bytes bytes;
    EXPECT_EQ(describe(posix::readFile(path(), bytes)), "open " + path() + " 40");
    EXPECT_EQ(describe(posix::replaceFile(path(), sequence(3))), "none");
    EXPECT_EQ(readFile(path()), sequence(3));
    EXPECT_FALSE(fs::is_symlink(path()));
    EXPECT_EQ(readFile(target), textBytes("kept"));
}

namespace {

constexpr uid_t NOBODY = 65534;

class FolderOfEverybody : public PosixFile {
protected:
    void SetUp() override
    {
        writeFile(path(), "content");
        fs::permissions(root.at("/tmp"), fs::perms(01777));
    }
    /// errno of opening for reading and for writing; what refusalOf says is the same.
    int openError() const
    {
        const posix::File reading(path(), O_RDONLY);
        const int error = reading.isOpen() ? 0 : errno;
        const posix::File writing(path(), O_RDWR | O_CREAT | O_TRUNC);
        EXPECT_EQ(writing.isOpen() ? 0 : errno, error);
        EXPECT_EQ(posix::refusalOf(path()), error);
        return error;
    }
};

}

TEST_F(FolderOfEverybody, OwnFilesAreOpened)
{
    EXPECT_EQ(openError(), 0);
    fs::remove(path());
    EXPECT_EQ(posix::File(path(), O_RDONLY).get(), -1);
    EXPECT_EQ(errno, ENOENT);
    EXPECT_EQ(posix::refusalOf(path()), 0);
    EXPECT_TRUE(posix::File(path(), O_RDWR | O_CREAT).isOpen());
    EXPECT_EQ(fs::file_size(path()), 0U);
}

TEST_F(FolderOfEverybody, FilesThatOthersHaveInHandAreRefusedAsTheyAre)
{
    fs::permissions(path(), fs::perms(0646));
    EXPECT_EQ(openError(), EACCES);
    fs::permissions(path(), fs::perms(0644));
    fs::create_hard_link(path(), root.at("/second"));
    EXPECT_EQ(openError(), EMLINK);
    fs::remove(root.at("/second"));
    if (::geteuid() == 0) {
        ASSERT_EQ(::chown(path().c_str(), NOBODY, NOBODY), 0);
        EXPECT_EQ(openError(), EPERM);
        ASSERT_EQ(::chown(path().c_str(), 0, 0), 0);
    }
    EXPECT_EQ(readFile(path()), textBytes("content"));
}

TEST_F(FolderOfEverybody, OnlyRegularFilesAreOpened)
{
    fs::rename(path(), root.at("/target"));
    fs::create_symlink(root.at("/target"), path());
    EXPECT_EQ(openError(), ELOOP);
    fs::remove(path());
    fs::create_directory(path());
    EXPECT_EQ(posix::refusalOf(path()), EISDIR);
    fs::remove(path());
    // Neither end of a pipe is waited for.
    ASSERT_EQ(::mkfifo(path().c_str(), 0600), 0);
    EXPECT_EQ(openError(), ENOTSUP);
    EXPECT_EQ(readFile(root.at("/target")), textBytes("content"));
}

TEST_F(FolderOfEverybody, ElsewhereFilesAreOpenedAsTheyAre)
{
    fs::permissions(root.at("/tmp"), fs::perms(0775));
    fs::permissions(path(), fs::perms(0646));
    fs::create_hard_link(path(), root.at("/second"));
    EXPECT_TRUE(posix::File(path(), O_RDONLY).isOpen());
    EXPECT_EQ(posix::refusalOf(path()), 0);
    EXPECT_TRUE(posix::File(posix::openAny("/dev/null", O_RDONLY)).isOpen());
}
