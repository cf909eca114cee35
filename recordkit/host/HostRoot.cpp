// SPDX-License-Identifier: Apache-2.0
#include <recordkit/host/HostRoot.h>

#include <fcntl.h>
#include <stdexcept>
#include <unistd.h>
#include <utility>

#include <recordkit/platform/SystemRoot.h>

namespace {

constexpr const char* HARMLESS_CHARACTERS =
    "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789._/+-";

std::string givenRoot;
std::string currentRoot;
int openRoot = -1;

/// A name of an open folder that other processes can use, such as those of a copy command.
std::string nameOf(int folder)
{
    return "/proc/" + std::to_string(::getpid()) + "/fd/" +
           (folder == -1 ? "missing" : std::to_string(folder));
}

}

void TAVLib::host::setSystemRoot(const std::string& directory)
{
    if (!directory.empty() && directory.front() != '/') {
        throw std::invalid_argument("root \"" + directory + "\": expected an absolute path");
    }
    if (directory.find('\0') != std::string::npos) {
        throw std::invalid_argument("a root's name cannot have a zero byte");
    }
    const bool isHarmless = directory.find_first_not_of(HARMLESS_CHARACTERS) == std::string::npos;
    const int folder =
        isHarmless ? -1 : ::open(directory.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC);
    currentRoot = isHarmless ? directory : nameOf(folder);
    givenRoot = directory;
    const int before = std::exchange(openRoot, folder);
    if (before != -1) {
        ::close(before);
    }
}

std::string TAVLib::host::givenSystemRoot()
{
    return givenRoot;
}

std::string TAVLib::systemRoot()
{
    return currentRoot;
}
