// SPDX-License-Identifier: Apache-2.0
#include "Files.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/vfs.h>
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

/// A temporary file; removed on destruction unless renamed.
class Temporary {
public:
    explicit Temporary(const std::string& pattern) : name(pattern)
    {
        fd = ::mkostemp(name.data(), O_CLOEXEC);
        if (fd == -1) {
            const std::string folder = pattern.substr(0, pattern.find_last_of('/') + 1);
            throw systemError("a temporary file in " + (folder.empty() ? "./" : folder), "created",
                              errno);
        }
    }
    ~Temporary()
    {
        if (fd != -1) {
            ::close(fd);
        }
        if (!isRenamed) {
            ::unlink(name.c_str());
        }
    }
    Temporary(const Temporary&) = delete;
    Temporary& operator=(const Temporary&) = delete;

    void write(const std::string& content) const
    {
        for (std::size_t done = 0; done < content.size();) {
            const ssize_t count =
                TEMP_FAILURE_RETRY(::write(fd, content.data() + done, content.size() - done));
            if (count == -1) {
                throw systemError(name, "written", errno);
            }
            done += static_cast<std::size_t>(count);
        }
    }
    void copyOwner(const struct stat& of) const
    {
        // Only root can give a file to another owner; the owner may set the permissions.
        if (::fchown(fd, of.st_uid, of.st_gid) == -1 && errno != EPERM) {
            throw systemError(name, "given the owner of the file that it replaces", errno);
        }
        setMode(of.st_mode & 07777);
    }
    void setMode(mode_t mode) const
    {
        if (::fchmod(fd, mode) == -1) {
            throw systemError(name, "given its permissions", errno);
        }
    }
    void renameTo(const std::string& path)
    {
        if (TEMP_FAILURE_RETRY(::fsync(fd)) == -1) {
            throw systemError(name, "synchronised", errno);
        }
        const int error = ::close(std::exchange(fd, -1)) == -1 ? errno : 0;
        if (error != 0) {
            throw systemError(name, "closed", error);
        }
        if (::rename(name.c_str(), path.c_str()) == -1) {
            throw systemError(path, "replaced", errno);
        }
        isRenamed = true;
    }

private:
    std::string name;
    int fd = -1;
    bool isRenamed = false;
};

struct stat statusOf(const std::string& path)
{
    struct stat status = {};
    if (::stat(path.c_str(), &status) == -1) {
        throw systemError(path, "read", errno);
    }
    return status;
}

/// Replaces a regular file, or the one that a symbolic link points to; keeps owner and permissions.
void replaceFile(const std::string& path, const std::string& content)
{
    char* const resolved = ::realpath(path.c_str(), nullptr);
    if (resolved == nullptr) {
        throw systemError(path, "read", errno);
    }
    const std::string target = resolved;
    std::free(resolved);
    Temporary temporary(target + ".XXXXXX");
    temporary.copyOwner(statusOf(target));
    temporary.write(content);
    temporary.renameTo(target);
}

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

void checkLink(const std::string& path)
{
    struct stat link = {};
    const std::size_t slash = path.find_last_of('/');
    const std::string folder = slash == std::string::npos ? "." : path.substr(0, slash + 1);
    if (::lstat(path.c_str(), &link) == 0 && S_ISLNK(link.st_mode) &&
        (statusOf(folder).st_mode & S_IWOTH) != 0) {
        throw systemError(path, "written", ELOOP);
    }
}

void writeOutput(const std::string& path, const std::string& content)
{
    checkLink(path);
    struct stat status = {};
    if (::stat(path.c_str(), &status) == 0) {
        if (!S_ISREG(status.st_mode)) {
            throw systemError(path, "written", S_ISDIR(status.st_mode) ? EISDIR : EINVAL);
        }
        replaceFile(path, content);
        return;
    }
    if (errno != ENOENT) {
        throw systemError(path, "written", errno);
    }
    constexpr mode_t NEW_FILE = 0644;
    Temporary temporary(path + ".XXXXXX");
    temporary.setMode(NEW_FILE);
    temporary.write(content);
    temporary.renameTo(path);
}

bool isDeviceNode(const std::string& path)
{
    constexpr long SYSFS = 0x62656572;
    struct statfs system = {};
    if (!S_ISREG(statusOf(path).st_mode)) {
        return true;
    }
    return ::statfs(path.c_str(), &system) == 0 && system.f_type == SYSFS;
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
