// SPDX-License-Identifier: Apache-2.0
#include "Files.h"

#include <array>
#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

#include "Errors.h"

namespace recordkit::tool {

std::string readInput(const std::string& path)
{
    const bool isStandardInput = path == "-";
    const int fd = isStandardInput ? STDIN_FILENO
                                   : TEMP_FAILURE_RETRY(::open(path.c_str(), O_RDONLY | O_CLOEXEC));
    if (fd == -1) {
        throw systemError(path, "opened", errno);
    }
    std::string content;
    std::array<char, 65536> piece = {};
    ssize_t count = 0;
    while ((count = TEMP_FAILURE_RETRY(::read(fd, piece.data(), piece.size()))) > 0) {
        content.append(piece.data(), static_cast<std::size_t>(count));
    }
    const int error = errno;
    if (!isStandardInput) {
        ::close(fd);
    }
    if (count == -1) {
        throw systemError(inputName(path), "read", error);
    }
    return content;
}

std::string inputName(const std::string& path)
{
    return path == "-" ? "standard input" : path;
}

}
