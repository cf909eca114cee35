// SPDX-License-Identifier: Apache-2.0
#include <recordkit/host/HostRoot.h>

#include <stdexcept>

#include <recordkit/platform/SystemRoot.h>

namespace {

constexpr const char* ROOT_CHARACTERS =
    "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789._/+-";

std::string currentRoot;

}

void TAVLib::host::setSystemRoot(const std::string& directory)
{
    if (!directory.empty() && (directory.front() != '/' ||
                               directory.find_first_not_of(ROOT_CHARACTERS) != std::string::npos)) {
        throw std::invalid_argument("root \"" + directory +
                                    "\": expected an absolute path of letters, digits and . _ / "
                                    "+ - alone");
    }
    currentRoot = directory;
}

std::string TAVLib::systemRoot()
{
    return currentRoot;
}
