// SPDX-License-Identifier: Apache-2.0
#include "DeviceFile.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace TAVLib::host {

DeviceFile::DeviceFile(HostLocation who, const std::string& name, bool writable)
    : location(who), path(name), isWritable(writable),
      file(posix::openAny(name, writable ? O_RDWR : O_RDONLY))
{
    if (!file.isOpen()) {
        throw fileError(location, "open", path, errno);
    }
}

int DeviceFile::read(unsigned long offset, unsigned int length, unsigned char* buffer) const
{
    std::size_t done = 0;
    if (!posix::readAt(file.get(), offset, buffer, length, done)) {
        fail("read", offset, length, errno);
    }
    if (done != length) {
        fail("read", offset, length, ENODATA);
    }
    return static_cast<int>(done);
}

int DeviceFile::write(unsigned long offset, unsigned int length, const unsigned char* buffer) const
{
    if (!isWritable) {
        fail("write", offset, length, EACCES);
    }
    if (!posix::writeAllAt(file.get(), offset, buffer, length)) {
        fail("write", offset, length, errno);
    }
    return static_cast<int>(length);
}

int DeviceFile::writeThrough(unsigned long offset, unsigned int length,
                             const unsigned char* buffer) const
{
    struct stat status = {};
    if (::fstat(file.get(), &status) == -1) {
        fail("write", offset, length, errno);
    }
    const auto size = static_cast<unsigned long>(status.st_size);
    if (S_ISREG(status.st_mode) && (offset > size || length > size - offset)) {
        fail("write", offset, length, ENOSPC);
    }
    const int count = write(offset, length, buffer);
    // A device that cannot be synced needs no waiting.
    if (TEMP_FAILURE_RETRY(::fdatasync(file.get())) == -1 && errno != EINVAL && errno != EROFS) {
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
