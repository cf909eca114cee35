// SPDX-License-Identifier: Apache-2.0
#include "Neighbour.h"

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <grp.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "tool/Run.h"

namespace testing_support {

namespace {

bool becomeUser(uid_t user)
{
    return user == ::geteuid() ||
           (::setgroups(0, nullptr) == 0 && ::setgid(user) == 0 && ::setuid(user) == 0);
}

}

Process::Process(uid_t user, const std::function<void()>& work) : child(::fork())
{
    if (child == 0) {
        if (becomeUser(user)) {
            work();
        }
        ::_exit(255);
    }
}

Process::~Process()
{
    if (child > 0) {
        ::kill(child, SIGKILL);
        ::waitpid(child, nullptr, 0);
    }
}

int Process::wait()
{
    int status = 0;
    ::waitpid(child, &status, 0);
    child = -1;
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

int asNeighbour(const std::function<int()>& work)
{
    return Process(NEIGHBOUR, [&work] { ::_exit(work()); }).wait();
}

int runQuietly(const Arguments& arguments)
{
    static const bool isQuiet = std::freopen("/dev/null", "w", stdout) != nullptr &&
                                std::freopen("/dev/null", "w", stderr) != nullptr;
    return isQuiet ? recordkit::tool::run(arguments) : -1;
}

void HostileBoard::SetUp()
{
    std::filesystem::permissions(root.path(), std::filesystem::perms(0755));
    const char* const problem =
        ::geteuid() != 0 ? "only root can be two users"
        : asNeighbour([this] { return ::access(root.path().c_str(), X_OK) == 0 ? 0 : errno; }) != 0
            ? "TMPDIR is in a folder that other users cannot enter"
            : nullptr;
    if (problem != nullptr) {
        if (std::getenv("RECORDKIT_NEIGHBOUR_REQUIRED") != nullptr) {
            FAIL() << problem;
        }
        GTEST_SKIP() << problem;
    }
    ::umask(022);
    for (const char* const folder : {"/tmp", "/var/tmp"}) {
        std::filesystem::permissions(root.at(folder), std::filesystem::perms(01777));
    }
    writeFile(secretFile(), SECRET);
    std::filesystem::permissions(secretFile(), std::filesystem::perms(0600));
}

void HostileBoard::plant(const std::string& path, const std::string& content, mode_t mode) const
{
    ASSERT_EQ(asNeighbour([&] {
                  writeFile(path, content);
                  return ::chmod(path.c_str(), mode) == 0 ? 0 : errno;
              }),
              0);
}

bool HostileBoard::isSecretUnchanged() const
{
    struct stat status = {};
    return readFile(secretFile()) == textBytes(SECRET) &&
           ::stat(secretFile().c_str(), &status) == 0 && status.st_mode == (S_IFREG | 0600) &&
           status.st_uid == 0;
}

Arguments HostileBoard::ownWords(const Arguments& more) const
{
    Arguments words = {"--root", root.path()};
    words.insert(words.end(), more.begin(), more.end());
    return words;
}

}
