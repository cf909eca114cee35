// SPDX-License-Identifier: Apache-2.0
#include <recordkit/posix/File.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/random.h>
#include <sys/stat.h>
#include <sys/types.h>
#include <thread>
#include <unistd.h>

namespace TAVLib::posix {

namespace {

/// Whether others may make and rename files beside this one.
bool isInFolderOfEverybody(const std::string& path)
{
    const std::string folder = path.substr(0, path.find_last_of('/') + 1);
    struct stat status = {};
    return ::stat(folder.empty() ? "." : folder.c_str(), &status) == 0 &&
           (status.st_mode & S_IWOTH) != 0;
}

/// Why an open file is refused in a folder of everybody, as errno; 0 if it is not.
int refusalOf(int fd)
{
    struct stat status = {};
    if (::fstat(fd, &status) == -1) {
        return errno;
    }
    if (!S_ISREG(status.st_mode)) {
        return S_ISDIR(status.st_mode) ? EISDIR : ENOTSUP;
    }
    if (status.st_uid != 0 && status.st_uid != ::geteuid()) {
        return EPERM;
    }
    if (status.st_nlink > 1) {
        return EMLINK;
    }
    return (status.st_mode & S_IWOTH) != 0 ? EACCES : 0;
}

/// Whether a write got on; one that succeeds without writing counts as a full file.
bool hasWritten(ssize_t count)
{
    if (count == 0) {
        errno = ENOSPC;
    }
    return count > 0;
}

}

int openFile(const std::string& path, int flags, unsigned int mode)
{
    // One call more than an open without checks: what the folder is matters only for an odd file.
    File file(openAny(path, (flags & ~O_TRUNC) | O_NOFOLLOW | O_NONBLOCK, mode));
    const bool isOdd = file.isOpen() || errno == ELOOP || errno == ENXIO;
    const int refusal = file.isOpen() ? refusalOf(file.get()) : errno;
    if (refusal == 0 &&
        ((flags & O_TRUNC) == 0 || TEMP_FAILURE_RETRY(::ftruncate(file.get(), 0)) == 0)) {
        return file.release();
    }
    const int error = refusal != 0 ? refusal : errno;
    if (refusal != 0 && isOdd && !isInFolderOfEverybody(path)) {
        return openAny(path, flags, mode);
    }
    errno = error;
    return -1;
}

int openAny(const std::string& path, int flags, unsigned int mode)
{
    return TEMP_FAILURE_RETRY(::open(path.c_str(), flags | O_CLOEXEC, mode));
}

int refusalOf(const std::string& path)
{
    if (!isInFolderOfEverybody(path)) {
        return 0;
    }
    const File file(path, O_RDONLY);
    return file.isOpen() || errno == ENOENT ? 0 : errno;
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

bool lockFile(int fd, int milliseconds, Lock kind)
{
    using Clock = std::chrono::steady_clock;
    const int operation = kind == Lock::SHARED ? LOCK_SH : LOCK_EX;
    if (milliseconds == FOREVER) {
        return TEMP_FAILURE_RETRY(::flock(fd, operation)) == 0;
    }
    const Clock::time_point end = Clock::now() + std::chrono::milliseconds(milliseconds);
    // flock has no time limit of its own. Most locks are held for a moment.
    std::chrono::microseconds pause(50);
    while (TEMP_FAILURE_RETRY(::flock(fd, operation | LOCK_NB)) != 0) {
        if (errno != EWOULDBLOCK || Clock::now() >= end) {
            return false;
        }
        std::this_thread::sleep_for(pause);
        pause = std::min(2 * pause, std::chrono::microseconds(10000));
    }
    return true;
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

namespace {

/// Makes a file beside another; `name` gets its name, which is unpredictable.
int openTemporary(const std::string& path, std::string& name)
{
    for (;;) {
        unsigned char random[6] = {};
        if (TEMP_FAILURE_RETRY(::getrandom(random, sizeof random, 0)) != sizeof random) {
            return -1;
        }
        name = path + ".";
        for (const unsigned char byte : random) {
            name += "abcdefghijklmnopqrstuvwxyz234567"[byte % 32];
        }
        const int fd = openAny(name, O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW);
        if (fd != -1 || errno != EEXIST) {
            return fd;
        }
    }
}

}

Failure replaceFile(const std::string& path, const std::vector<unsigned char>& bytes)
{
    std::string temporary;
    const File file(openTemporary(path, temporary));
    if (!file.isOpen()) {
        return {"open", path, errno};
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
    return {failed, path, error};
}

}
