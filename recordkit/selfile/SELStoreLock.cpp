// SPDX-License-Identifier: Apache-2.0
#include <recordkit/selfile/SELStoreLock.h>

#include <cerrno>
#include <fcntl.h>
#include <system_error>
#include <unistd.h>

#include <recordkit/posix/File.h>
#include <recordkit/selfile/BMCSELDataFile.h>
#include <recordkit/selfile/SELFileLayout.h>

namespace TAVLib::RecordKit {

namespace {

constexpr unsigned int OWNER_ONLY = 0600;

std::string lockFileOf(unsigned char sb)
{
    // The name of an event file without its index.
    std::string name = BMCSELDataFile().getFileName(sb, 0, SELFileLayout::PERSISTENT);
    name.pop_back();
    return name + ".lock";
}

struct flock recordLock()
{
    struct flock lock = {};
    lock.l_type = F_WRLCK;
    lock.l_whence = SEEK_SET;
    return lock;
}

/// Who holds the lock, as the holder made known by a record lock.
std::string holderOf(int fd)
{
    struct flock lock = recordLock();
    const bool isKnown =
        ::fcntl(fd, F_GETLK, &lock) == 0 && lock.l_type != F_UNLCK && lock.l_pid > 0;
    return isKnown ? "process " + std::to_string(lock.l_pid) : "another program";
}

}

SELStoreLock::SELStoreLock(unsigned char sb, int milliseconds)
{
    const std::string path = lockFileOf(sb);
    posix::File file(posix::openFile(path, O_RDWR | O_CREAT | O_NOFOLLOW, OWNER_ONLY));
    if (!file.isOpen()) {
        problem = path + " cannot be opened: " + std::generic_category().message(errno);
        return;
    }
    if (!posix::lockFile(file.get(), milliseconds)) {
        problem = errno == EWOULDBLOCK
                      ? path + " is locked by " + holderOf(file.get())
                      : path + " cannot be locked: " + std::generic_category().message(errno);
        return;
    }
    // Only for holderOf: flock(2) does not tell its holder, and a record lock does not exclude the
    // threads of a process.
    struct flock lock = recordLock();
    ::fcntl(file.get(), F_SETLK, &lock);
    fd = file.release();
}

SELStoreLock::~SELStoreLock()
{
    if (isHeld()) {
        ::close(fd);
    }
}

}
