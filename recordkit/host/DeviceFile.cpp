// SPDX-License-Identifier: Apache-2.0
#include "DeviceFile.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace TAVLib::host {

DeviceFile::DeviceFile(HostLocation who, const std::string& name, bool writable)
    : location(who), path(name), isWritable(writable),
      fd(TEMP_FAILURE_RETRY(::open(name.c_str(), (writable ? O_RDWR : O_RDONLY) | O_CLOEXEC)))
{
    if (fd == -1) {
        throw fileError(location, "open", path, errno);
    }
}

DeviceFile::~DeviceFile()
{
    ::close(fd);
}

int DeviceFile::read(unsigned long offset, unsigned int length, unsigned char* buffer) const
{
    unsigned int done = 0;
    while (done < length) {
        const ssize_t count = TEMP_FAILURE_RETRY(
            ::pread(fd, buffer + done, length - done, static_cast<off_t>(offset) + done));
        if (count <= 0) {
            fail("read", offset, length, count == 0 ? ENODATA : errno);
        }
        done += static_cast<unsigned int>(count);
    }
    return static_cast<int>(done);
}

int DeviceFile::write(unsigned long offset, unsigned int length, const unsigned char* buffer) const
{
    if (!isWritable) {
        fail("write", offset, length, EACCES);
    }
    unsigned int done = 0;
    while (done < length) {
        const ssize_t count = TEMP_FAILURE_RETRY(
            ::pwrite(fd, buffer + done, length - done, static_cast<off_t>(offset) + done));
        if (count <= 0) {
            fail("write", offset, length, count == 0 ? ENOSPC : errno);
        }
        done += static_cast<unsigned int>(count);
    }
    return static_cast<int>(done);
}

int DeviceFile::writeThrough(unsigned long offset, unsigned int length,
                             const unsigned char* buffer) const
{
    struct stat status = {};
    if (::fstat(fd, &status) == -1) {
        fail("write", offset, length, errno);
    }
    const auto size = static_cast<unsigned long>(status.st_size);
    if (S_ISREG(status.st_mode) && (offset > size || length > size - offset)) {
        fail("write", offset, length, ENOSPC);
    }
    const int count = write(offset, length, buffer);
    // A device that cannot be synced needs no waiting.
    if (TEMP_FAILURE_RETRY(::fdatasync(fd)) == -1 && errno != EINVAL && errno != EROFS) {
        fail("fdatasync", offset, length, errno);
    }
    return count;
}

void DeviceFile::fail(const char* operation, unsigned long offset, unsigned int length,
                      int error) const
{
    const std::string text = std::string(operation) + " of " + std::to_string(length) +
                             " bytes at offset " + std::to_string(offset) + " of";
    throw fileError(location, text.c_str(), path, error);
}

}
