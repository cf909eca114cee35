// SPDX-License-Identifier: Apache-2.0
#include <recordkit/platform/LockedFile.h>

#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/time.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

#include <recordkit/platform/PException.h>

#include "support/ScratchRoot.h"

using TAVLib::LockedFile;
using TAVLib::PException;
using namespace testing_support;

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
    const Bytes bytes = readFile(path);
    return bytes.at(0) + 256U * bytes.at(1);
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
    const ScratchRoot root;
    const LockedFile file(root.at("/tmp/new"));
    EXPECT_EQ(readFile(root.at("/tmp/new")), Bytes());
}

TEST(LockedFile, KeepsWhatAFileHolds)
{
    const ScratchRoot root;
    writeFile(root.at("/tmp/file"), Bytes({1, 2, 3}));
    {
        const LockedFile file(root.at("/tmp/file"));
    }
    EXPECT_EQ(readFile(root.at("/tmp/file")), Bytes({1, 2, 3}));
}

TEST(LockedFile, ReadsWritesAndPositions)
{
    const ScratchRoot root;
    LockedFile file(root.at("/tmp/file"));
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
    const ScratchRoot root;
    LockedFile file(root.at("/tmp/file"));
    file.write("abcdef", 6);
    file.truncFile(2);
    EXPECT_EQ(readFile(root.at("/tmp/file")), textBytes("ab"));
    file.truncFile(4);
    EXPECT_EQ(readFile(root.at("/tmp/file")), textBytes("ab") + Bytes(2, 0));
    file.truncFile(0);
    EXPECT_EQ(readFile(root.at("/tmp/file")), Bytes());
}

TEST(LockedFile, FailuresAreThrown)
{
    const ScratchRoot root;
    EXPECT_TRUE(throwsPException([&] { LockedFile(root.at("/none/file")); }));
    EXPECT_TRUE(throwsPException([&] { LockedFile(root.at("/tmp")); }));
    LockedFile file(root.at("/tmp/file"));
    EXPECT_TRUE(throwsPException([&] { file.lseek(-1, SEEK_SET); }));
    EXPECT_TRUE(throwsPException([&] { file.truncFile(-1); }));
}

TEST(LockedFile, ExcludesOtherThreads)
{
    const ScratchRoot root;
    const std::string path = root.at("/tmp/count");
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
    const ScratchRoot root;
    const std::string path = root.at("/tmp/count");
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
    const ScratchRoot root;
    const std::string path = root.at("/tmp/file");
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
    const ScratchRoot root;
    const std::size_t before = openDescriptors();
    {
        const LockedFile file(root.at("/tmp/file"));
    }
    const LockedFile again(root.at("/tmp/file"));
    EXPECT_EQ(openDescriptors(), before + 1);
}

TEST(LockedFile, IsClosedByExec)
{
    const ScratchRoot root;
    const std::size_t first = openDescriptors();
    const LockedFile file(root.at("/tmp/file"));
    bool found = false;
    for (int fd = 0; fd < static_cast<int>(first) + 8; ++fd) {
        struct stat held = {};
        struct stat wanted = {};
        if (::fstat(fd, &held) == 0 && ::stat(root.at("/tmp/file").c_str(), &wanted) == 0 &&
            held.st_ino == wanted.st_ino && held.st_dev == wanted.st_dev) {
            found = true;
            EXPECT_NE(::fcntl(fd, F_GETFD) & FD_CLOEXEC, 0);
        }
    }
    EXPECT_TRUE(found);
}
