// SPDX-License-Identifier: Apache-2.0
#include <recordkit/posix/File.h>

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <sys/types.h>
#include <unistd.h>

namespace TAVLib::posix {

namespace {

constexpr mode_t NEW_FILE_MODE = 0644;

/// Whether a write got on; one that succeeds without writing counts as a full file.
bool hasWritten(ssize_t count)
{
    if (count == 0) {
        errno = ENOSPC;
    }
    return count > 0;
}

}

int openFile(const std::string& path, int flags)
{
    return TEMP_FAILURE_RETRY(::open(path.c_str(), flags | O_CLOEXEC, NEW_FILE_MODE));
}

File::~File()
{
    if (isOpen()) {
        ::close(fd);
    }
}

int File::release()
{
    const int released = fd;
    fd = -1;
    return released;
}

bool readAt(int fd, unsigned long offset, void* buffer, std::size_t size, std::size_t& done)
{
    auto* const bytes = static_cast<unsigned char*>(buffer);
    done = 0;
    while (done < size) {
        const ssize_t count = TEMP_FAILURE_RETRY(
            ::pread(fd, bytes + done, size - done, static_cast<off_t>(offset + done)));
        if (count <= 0) {
            return count == 0;
        }
        done += static_cast<std::size_t>(count);
    }
    return true;
}

bool writeAll(int fd, const void* buffer, std::size_t size)
{
    const auto* const bytes = static_cast<const unsigned char*>(buffer);
    std::size_t done = 0;
    while (done < size) {
        const ssize_t count = TEMP_FAILURE_RETRY(::write(fd, bytes + done, size - done));
        if (!hasWritten(count)) {
            return false;
        }
        done += static_cast<std::size_t>(count);
    }
    return true;
}

bool writeAllAt(int fd, unsigned long offset, const void* buffer, std::size_t size)
{
    const auto* const bytes = static_cast<const unsigned char*>(buffer);
    std::size_t done = 0;
    while (done < size) {
        const ssize_t count = TEMP_FAILURE_RETRY(
            ::pwrite(fd, bytes + done, size - done, static_cast<off_t>(offset + done)));
        if (!hasWritten(count)) {
            return false;
        }
        done += static_cast<std::size_t>(count);
    }
    return true;
}

Failure readFile(const std::string& path, std::vector<unsigned char>& bytes)
{
    const File file(path, O_RDONLY | O_NOFOLLOW);
    if (!file.isOpen()) {
        return {"open", path, errno};
    }
    for (;;) {
        unsigned char piece[4096];
        const ssize_t count = TEMP_FAILURE_RETRY(::read(file.get(), piece, sizeof piece));
        if (count < 0) {
            return {"read", path, errno};
        }
        if (count == 0) {
            return {};
        }
        bytes.insert(bytes.end(), piece, piece + count);
    }
}

Failure replaceFile(const std::string& path, const std::vector<unsigned char>& bytes)
{
    const std::string temporary = path + ".new";
    const File file(temporary, O_WRONLY | O_CREAT | O_TRUNC | O_NOFOLLOW);
    if (!file.isOpen()) {
        return {"open", temporary, errno};
    }
    const char* failed = nullptr;
    if (!writeAll(file.get(), bytes.data(), bytes.size())) {
        failed = "write";
    } else if (TEMP_FAILURE_RETRY(::fsync(file.get())) != 0) {
        failed = "sync";
    } else if (std::rename(temporary.c_str(), path.c_str()) != 0) {
        failed = "rename";
    }
    if (failed == nullptr) {
        return {};
    }
    const int error = errno;
    ::unlink(temporary.c_str());
    return {failed, temporary, error};
}

}
