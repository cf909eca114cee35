// SPDX-License-Identifier: Apache-2.0
#include <recordkit/platform/LockedFile.h>

#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <recordkit/platform/PException.h>

#include "Catalogue.h"

namespace TAVLib {

namespace {

// Codes of this firmware's own; the library reports the action and the detail.
constexpr unsigned char PRODUCER = 1;
constexpr unsigned char MODULE = 210;
constexpr unsigned short LOCATION = 1;
constexpr unsigned char ACTION = 2;

[[noreturn]] void fail(const char* operation, const std::string& path, int error)
{
    throw PException(PRODUCER, MODULE, LOCATION, ACTION, static_cast<unsigned short>(error),
                     board::MESSAGE_FILE, reinterpret_cast<long>(operation),
                     reinterpret_cast<long>(path.c_str()), error, 0, 0, 0, 0, 0);
}

/// Makes a system call again until no signal interrupts it.
template <typename Call> auto withoutInterruption(Call call)
{
    auto result = call();
    while (result == -1 && errno == EINTR) {
        result = call();
    }
    return result;
}

}

class LockedFile::State {
public:
    explicit State(const std::string& name)
        : path(name), fd(withoutInterruption([&] {
              // Not through a link: others may make one in the working folder.
              return ::open(name.c_str(), O_RDWR | O_CREAT | O_NOFOLLOW | O_CLOEXEC, 0644);
          }))
    {
    }
    ~State()
    {
        if (fd != -1) {
            ::close(fd); // and gives the lock back
        }
    }
    State(const State&) = delete;
    State& operator=(const State&) = delete;

    const std::string path;
    const int fd;
};

LockedFile::LockedFile(const std::string& path) : state(new State(path))
{
    // flock locks belong to the open file, so they exclude other threads, too; those of fcntl
    // belong to the process and do not.
    const char* const operation = state->fd == -1 ? "open" : "lock";
    if (state->fd == -1 || withoutInterruption([&] { return ::flock(state->fd, LOCK_EX); }) == -1) {
        const int error = errno;
        delete state; // a constructor that throws has no destructor call
        fail(operation, path, error);
    }
}

LockedFile::~LockedFile()
{
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
    unsigned int done = 0;
    while (done < length) {
        const ssize_t count = withoutInterruption(
            [&] { return ::read(state->fd, static_cast<char*>(buffer) + done, length - done); });
        if (count == -1) {
            fail("read", state->path, errno);
        }
        if (count == 0) {
            break; // the end of the file
        }
        done += static_cast<unsigned int>(count);
    }
    return static_cast<int>(done);
}

int LockedFile::write(const void* buffer, unsigned int length)
{
    unsigned int done = 0;
    while (done < length) {
        const ssize_t count = withoutInterruption([&] {
            return ::write(state->fd, static_cast<const char*>(buffer) + done, length - done);
        });
        if (count <= 0) {
            fail("write", state->path, count == 0 ? ENOSPC : errno);
        }
        done += static_cast<unsigned int>(count);
    }
    return static_cast<int>(done);
}

void LockedFile::truncFile(long length)
{
    if (withoutInterruption([&] { return ::ftruncate(state->fd, length); }) == -1) {
        fail("truncate", state->path, errno);
    }
}

}
