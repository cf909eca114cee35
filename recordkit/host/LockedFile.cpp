// SPDX-License-Identifier: Apache-2.0
#include <recordkit/platform/LockedFile.h>

#include <atomic>
#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

#include <recordkit/host/LockTimeout.h>
#include <recordkit/posix/File.h>

#include "FileError.h"

namespace TAVLib {

namespace {

std::atomic<int> timeout = host::FOREVER;

[[noreturn]] void fail(const char* operation, const std::string& path, int error)
{
    throw host::fileError(host::LOCKED_FILE_LOCATION, operation, path, error);
}

}

void host::setLockTimeout(int milliseconds)
{
    timeout = milliseconds;
}

int host::lockTimeout()
{
    return timeout;
}

class LockedFile::State {
public:
    const std::string path;
    const int fd;
};

// flock(2) locks belong to the open file description, and each object opens its own, so they
// exclude the threads of one process as well as other processes.
LockedFile::LockedFile(const std::string& path) : state(nullptr)
{
    posix::File file(path, O_RDWR | O_CREAT | O_NOFOLLOW);
    if (!file.isOpen()) {
        fail("open", path, errno);
    }
    if (!posix::lockFile(file.get(), host::lockTimeout())) {
        if (errno == EWOULDBLOCK) {
            throw host::fileError(host::LOCKED_FILE_LOCATION, "lock", path, EWOULDBLOCK,
                                  "another program keeps it locked");
        }
        fail("lock", path, errno);
    }
    state = new State{path, file.get()};
    file.release();
}

LockedFile::~LockedFile()
{
    // Closing the only descriptor of the description releases the lock.
    ::close(state->fd);
    delete state;
}

long LockedFile::lseek(long offset, int whence)
{
    const off_t at = ::lseek(state->fd, offset, whence);
    if (at == -1) {
        fail("seek", state->path, errno);
    }
    return static_cast<long>(at);
}

int LockedFile::read(void* buffer, unsigned int length)
{
    const ssize_t count = TEMP_FAILURE_RETRY(::read(state->fd, buffer, length));
    if (count == -1) {
        fail("read", state->path, errno);
    }
    return static_cast<int>(count);
}

int LockedFile::write(const void* buffer, unsigned int length)
{
    if (!posix::writeAll(state->fd, buffer, length)) {
        fail("write", state->path, errno);
    }
    return static_cast<int>(length);
}

void LockedFile::truncFile(long length)
{
    if (TEMP_FAILURE_RETRY(::ftruncate(state->fd, length)) == -1) {
        fail("truncate", state->path, errno);
    }
}

}
