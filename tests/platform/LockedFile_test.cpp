// SPDX-License-Identifier: Apache-2.0
#include <recordkit/platform/LockedFile.h>

#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/time.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

#include <recordkit/platform/PException.h>

#include "Files.h"

using TAVLib::LockedFile;
using TAVLib::PException;
using namespace platform_tests;

namespace {

/// Adds one to the number in a file, under its lock.
void countUp(const std::string& path)
{
    LockedFile file(path);
    unsigned char number[2] = {};
    file.read(number, sizeof number);
    const unsigned int next = number[0] + 256U * number[1] + 1;
    number[0] = static_cast<unsigned char>(next % 256);
    number[1] = static_cast<unsigned char>(next / 256);
    file.lseek(0, SEEK_SET);
    file.write(number, sizeof number);
}

unsigned int countIn(const std::string& path)
{
    const std::string bytes = readFile(path);
    return static_cast<unsigned char>(bytes.at(0)) + 256U * static_cast<unsigned char>(bytes.at(1));
}

constexpr int COUNTERS = 4;
constexpr int TIMES = 250;

volatile sig_atomic_t alarms = 0;
int releasePipe[2];

/// At the third alarm, tells the holder of the lock to let go.
void onAlarm(int)
{
    alarms = alarms + 1;
    if (alarms == 3) {
        const ssize_t ignored = ::write(releasePipe[1], "x", 1);
        static_cast<void>(ignored);
    }
}

void waitForSuccess(pid_t child)
{
    int status = 0;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    ASSERT_TRUE(WIFEXITED(status));
    ASSERT_EQ(WEXITSTATUS(status), 0);
}

template <typename Action> bool throwsPException(Action action)
{
    try {
        action();
    } catch (const PException&) {
        return true;
    }
    return false;
}

}

TEST(LockedFile, CreatesAFileThatDoesNotExist)
{
    const ScratchFolder scratch;
    const LockedFile file(scratch.at("new"));
    EXPECT_EQ(readFile(scratch.at("new")), "");
}

TEST(LockedFile, KeepsWhatAFileHolds)
{
    const ScratchFolder scratch;
    writeFile(scratch.at("file"), "contents");
    {
        const LockedFile file(scratch.at("file"));
    }
    EXPECT_EQ(readFile(scratch.at("file")), "contents");
}

TEST(LockedFile, ReadsWritesAndPositions)
{
    const ScratchFolder scratch;
    LockedFile file(scratch.at("file"));
    EXPECT_EQ(file.write("abcdef", 6), 6);
    EXPECT_EQ(file.lseek(-4, SEEK_CUR), 2);
    char text[8] = {};
    EXPECT_EQ(file.read(text, 3), 3);
    EXPECT_STREQ(text, "cde");
    EXPECT_EQ(file.read(text, 3), 1);
    EXPECT_EQ(file.read(text, 3), 0);
    EXPECT_EQ(file.lseek(0, SEEK_END), 6);
    EXPECT_EQ(file.lseek(100, SEEK_SET), 100);
    EXPECT_EQ(file.read(text, 3), 0);
}

TEST(LockedFile, CutsAndExtends)
{
    const ScratchFolder scratch;
    LockedFile file(scratch.at("file"));
    file.write("abcdef", 6);
    file.truncFile(2);
    EXPECT_EQ(readFile(scratch.at("file")), "ab");
    file.truncFile(4);
    EXPECT_EQ(readFile(scratch.at("file")), std::string("ab\0\0", 4));
    file.truncFile(0);
    EXPECT_EQ(readFile(scratch.at("file")), "");
}

TEST(LockedFile, FailuresAreThrown)
{
    const ScratchFolder scratch;
    EXPECT_TRUE(throwsPException([&] { LockedFile(scratch.at("none/file")); }));
    EXPECT_TRUE(throwsPException([&] { LockedFile(scratch.path()); }));
    LockedFile file(scratch.at("file"));
    EXPECT_TRUE(throwsPException([&] { file.lseek(-1, SEEK_SET); }));
    EXPECT_TRUE(throwsPException([&] { file.truncFile(-1); }));
}

TEST(LockedFile, DoesNotFollowALink)
{
    const ScratchFolder scratch;
    writeFile(scratch.at("victim"), "unchanged");
    ASSERT_EQ(::symlink(scratch.at("victim").c_str(), scratch.at("link").c_str()), 0);
    EXPECT_TRUE(throwsPException([&] { LockedFile(scratch.at("link")); }));
    // Nor does it create what a link names.
    ASSERT_EQ(::symlink(scratch.at("new").c_str(), scratch.at("other").c_str()), 0);
    EXPECT_TRUE(throwsPException([&] { LockedFile(scratch.at("other")); }));
    EXPECT_FALSE(fileExists(scratch.at("new")));
}

TEST(LockedFile, FollowsALinkToItsFolder)
{
    const ScratchFolder scratch;
    std::filesystem::create_directory(scratch.at("folder"));
    ASSERT_EQ(::symlink(scratch.at("folder").c_str(), scratch.at("link").c_str()), 0);
    {
        const LockedFile file(scratch.at("link/file"));
    }
    EXPECT_TRUE(fileExists(scratch.at("folder/file")));
}

TEST(LockedFile, NewFileIsWrittenByItsOwnerOnly)
{
    const ScratchFolder scratch;
    for (const mode_t mask : {0000U, 0022U, 0077U}) {
        const mode_t before = ::umask(mask);
        const std::string path = scratch.at("file" + std::to_string(mask));
        {
            const LockedFile file(path);
        }
        ::umask(before);
        struct stat status = {};
        ASSERT_EQ(::stat(path.c_str(), &status), 0);
        EXPECT_EQ(status.st_mode & 07777U, 0644U & ~mask);
    }
}

TEST(LockedFile, KeepsTheModeOfAFile)
{
    const ScratchFolder scratch;
    writeFile(scratch.at("file"), "");
    ASSERT_EQ(::chmod(scratch.at("file").c_str(), 0600), 0);
    {
        const LockedFile file(scratch.at("file"));
    }
    struct stat status = {};
    ASSERT_EQ(::stat(scratch.at("file").c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777U, 0600U);
}

TEST(LockedFile, FileThatCannotBeWrittenIsAFailure)
{
    if (::geteuid() == 0) {
        GTEST_SKIP() << "root may write any file";
    }
    const ScratchFolder scratch;
    writeFile(scratch.at("file"), "contents");
    ASSERT_EQ(::chmod(scratch.at("file").c_str(), 0444), 0);
    EXPECT_TRUE(throwsPException([&] { LockedFile(scratch.at("file")); }));
}

TEST(LockedFile, WriteThatTheMediumTakesInPartIsAFailure)
{
    const ScratchFolder scratch;
    const std::string block(6000, 'x');
    struct rlimit before = {};
    ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &before), 0);
    const auto defaultAction = std::signal(SIGXFSZ, SIG_IGN);
    struct rlimit small = before;
    small.rlim_cur = 10000;
    LockedFile file(scratch.at("file"));
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &small), 0);
    const int first = file.write(block.data(), 6000);
    const bool isThrown = throwsPException([&] { file.write(block.data(), 6000); });
    ::setrlimit(RLIMIT_FSIZE, &before);
    std::signal(SIGXFSZ, defaultAction);
    EXPECT_EQ(first, 6000);
    EXPECT_TRUE(isThrown);
}

TEST(LockedFile, ExcludesOtherThreads)
{
    const ScratchFolder scratch;
    const std::string path = scratch.at("count");
    std::vector<std::thread> threads;
    for (int i = 0; i < COUNTERS; ++i) {
        threads.emplace_back([&path] {
            for (int time = 0; time < TIMES; ++time) {
                countUp(path);
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(countIn(path), static_cast<unsigned int>(COUNTERS * TIMES));
}

TEST(LockedFile, ExcludesOtherProcesses)
{
    const ScratchFolder scratch;
    const std::string path = scratch.at("count");
    std::vector<pid_t> children;
    for (int i = 0; i < COUNTERS; ++i) {
        const pid_t child = ::fork();
        if (child == 0) {
            for (int time = 0; time < TIMES; ++time) {
                countUp(path);
            }
            ::_exit(0);
        }
        children.push_back(child);
    }
    for (const pid_t child : children) {
        waitForSuccess(child);
    }
    EXPECT_EQ(countIn(path), static_cast<unsigned int>(COUNTERS * TIMES));
}

TEST(LockedFile, WaitsForTheLockThroughSignals)
{
#ifdef __SANITIZE_THREAD__
    GTEST_SKIP() << "ThreadSanitizer holds signals back from a waiting flock";
#endif
    const ScratchFolder scratch;
    const std::string path = scratch.at("file");
    int heldPipe[2];
    ASSERT_EQ(::pipe(heldPipe), 0);
    ASSERT_EQ(::pipe(releasePipe), 0);
    const pid_t holder = ::fork();
    if (holder == 0) {
        const LockedFile file(path);
        char byte = 0;
        const bool told =
            ::write(heldPipe[1], "x", 1) == 1 && ::read(releasePipe[0], &byte, 1) == 1;
        ::_exit(told ? 0 : 1);
    }
    char byte = 0;
    ASSERT_EQ(::read(heldPipe[0], &byte, 1), 1);

    alarms = 0;
    struct sigaction action = {};
    action.sa_handler = onAlarm; // without SA_RESTART: every alarm interrupts the waiting call
    ::sigaction(SIGALRM, &action, nullptr);
    const itimerval often = {{0, 1000}, {0, 1000}};
    ::setitimer(ITIMER_REAL, &often, nullptr);
    EXPECT_FALSE(throwsPException([&] { LockedFile file(path); }));
    const itimerval never = {};
    ::setitimer(ITIMER_REAL, &never, nullptr);
    EXPECT_GE(alarms, 3);
    waitForSuccess(holder);
}

TEST(LockedFile, GivesTheLockBackWhenItsLifeEnds)
{
    const ScratchFolder scratch;
    const std::size_t before = openDescriptors();
    {
        const LockedFile file(scratch.at("file"));
    }
    const LockedFile again(scratch.at("file"));
    EXPECT_EQ(openDescriptors(), before + 1);
}

TEST(LockedFile, IsClosedByExec)
{
    const ScratchFolder scratch;
    const std::size_t first = openDescriptors();
    const LockedFile file(scratch.at("file"));
    bool found = false;
    for (int fd = 0; fd < static_cast<int>(first) + 8; ++fd) {
        struct stat held = {};
        struct stat wanted = {};
        if (::fstat(fd, &held) == 0 && ::stat(scratch.at("file").c_str(), &wanted) == 0 &&
            held.st_ino == wanted.st_ino && held.st_dev == wanted.st_dev) {
            found = true;
            EXPECT_NE(::fcntl(fd, F_GETFD) & FD_CLOEXEC, 0);
        }
    }
    EXPECT_TRUE(found);
}
