// SPDX-License-Identifier: Apache-2.0
#include <recordkit/platform/LockedFile.h>

#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include "FileError.h"

namespace TAVLib {

namespace {

constexpr mode_t FILE_MODE = 0644;

[[noreturn]] void fail(const char* operation, const std::string& path, int error)
{
    throw host::fileError(host::LOCKED_FILE_LOCATION, operation, path, error);
}

}

// flock(2) locks belong to the open file description, and each object opens its own, so they
// exclude the threads of one process as well as other processes.
LockedFile::LockedFile(const std::string& name)
    : path(name), fd(TEMP_FAILURE_RETRY(
                      ::open(name.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, FILE_MODE)))
{
    if (fd == -1) {
        fail("open", path, errno);
    }
    if (TEMP_FAILURE_RETRY(::flock(fd, LOCK_EX)) == -1) {
        const int error = errno;
        ::close(fd);
        fail("lock", path, error);
    }
}

LockedFile::~LockedFile()
{
    // Closing the only descriptor of the description releases the lock.
    ::close(fd);
}

long LockedFile::lseek(long offset, int whence)
{
    const off_t at = ::lseek(fd, offset, whence);
    if (at == -1) {
        fail("seek", path, errno);
    }
    return static_cast<long>(at);
}

int LockedFile::read(void* buffer, unsigned int length)
{
    const ssize_t count = TEMP_FAILURE_RETRY(::read(fd, buffer, length));
    if (count == -1) {
        fail("read", path, errno);
    }
    return static_cast<int>(count);
}

int LockedFile::write(const void* buffer, unsigned int length)
{
    const auto* const bytes = static_cast<const unsigned char*>(buffer);
    unsigned int written = 0;
    while (written < length) {
        const ssize_t count = TEMP_FAILURE_RETRY(::write(fd, bytes + written, length - written));
        if (count == -1) {
            fail("write", path, errno);
        }
        written += static_cast<unsigned int>(count);
    }
    return static_cast<int>(written);
}

void LockedFile::truncFile(long length)
{
    if (TEMP_FAILURE_RETRY(::ftruncate(fd, length)) == -1) {
        fail("truncate", path, errno);
    }
}

}
