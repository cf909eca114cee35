// SPDX-License-Identifier: Apache-2.0
#include "Files.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <fmt/format.h>

#include <recordkit/inspect/bytes/Hex.h>
#include <recordkit/inspect/bytes/Numbers.h>
#include <recordkit/inspect/bytes/Text.h>

#include "Errors.h"
#include "print/Json.h"
#include "print/Output.h"

namespace recordkit::tool {

namespace {

std::size_t largestInput = 0;

/// Appends at most `most` bytes; returns errno of a failure, otherwise 0.
int readUpTo(int fd, std::size_t most, std::string& content)
{
    std::array<char, 65536> piece = {};
    while (content.size() < most) {
        const ssize_t count = TEMP_FAILURE_RETRY(
            ::read(fd, piece.data(), std::min(piece.size(), most - content.size())));
        if (count <= 0) {
            return count == 0 ? 0 : errno;
        }
        content.append(piece.data(), static_cast<std::size_t>(count));
    }
    return 0;
}

}

void setLargestInput(std::size_t bytes)
{
    largestInput = bytes;
}

std::string readInput(const std::string& path, std::size_t limit, const char* hint)
{
    const std::size_t most = largestInput == 0 ? limit : largestInput;
    const bool isStandardInput = path == "-";
    const int fd = isStandardInput ? STDIN_FILENO
                                   : TEMP_FAILURE_RETRY(::open(path.c_str(), O_RDONLY | O_CLOEXEC));
    if (fd == -1) {
        throw systemError(inputName(path), "opened", errno);
    }
    struct stat status = {};
    const bool hasSize = ::fstat(fd, &status) == 0 && S_ISREG(status.st_mode);
    std::string content;
    const int error = readUpTo(fd, most + 1, content);
    if (!isStandardInput) {
        ::close(fd);
    }
    if (error != 0) {
        throw systemError(inputName(path), "read", error);
    }
    if (content.size() > most) {
        const std::string expected = counted(most, "byte");
        throw dataError(
            inputName(path) + ": " +
            (hasSize ? fmt::format("{} bytes, expected at most {}",
                                   std::max<std::uintmax_t>(
                                       static_cast<std::uintmax_t>(status.st_size), content.size()),
                                   expected)
                     : fmt::format("more than {}", expected)) +
            "; " + hint);
    }
    return content;
}

std::string inputName(const std::string& path)
{
    return path == "-" ? "standard input" : terminalText(path);
}

std::string inputNameBytes(const std::string& path)
{
    return isUtf8(path) ? "" : toHex(path);
}

}
