// SPDX-License-Identifier: Apache-2.0
#include <recordkit/host/FileFRURWif.h>

#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

#include "FileError.h"

namespace TAVLib::host {

namespace {

[[noreturn]] void fail(const char* operation, unsigned int offset, unsigned int length,
                       const std::string& path, int error)
{
    const std::string text = std::string(operation) + " of " + std::to_string(length) +
                             " bytes at offset " + std::to_string(offset) + " of";
    throw fileError(FILE_FRU_LOCATION, text.c_str(), path, error);
}

}

FileFRURWif::FileFRURWif(const std::string& name, bool writable)
    : path(name), isWritable(writable),
      fd(TEMP_FAILURE_RETRY(::open(name.c_str(), (writable ? O_RDWR : O_RDONLY) | O_CLOEXEC)))
{
    if (fd == -1) {
        throw fileError(FILE_FRU_LOCATION, "open", path, errno);
    }
}

FileFRURWif::~FileFRURWif()
{
    ::close(fd);
}

int FileFRURWif::read(unsigned int offset, unsigned int length, unsigned char* buffer)
{
    unsigned int done = 0;
    while (done < length) {
        const ssize_t count = TEMP_FAILURE_RETRY(
            ::pread(fd, buffer + done, length - done, static_cast<off_t>(offset) + done));
        if (count <= 0) {
            fail("read", offset, length, path, count == 0 ? ENODATA : errno);
        }
        done += static_cast<unsigned int>(count);
    }
    return static_cast<int>(done);
}

int FileFRURWif::write(unsigned int offset, unsigned int length, const unsigned char* buffer)
{
    if (!isWritable) {
        fail("write", offset, length, path, EACCES);
    }
    unsigned int done = 0;
    while (done < length) {
        const ssize_t count = TEMP_FAILURE_RETRY(
            ::pwrite(fd, buffer + done, length - done, static_cast<off_t>(offset) + done));
        if (count <= 0) {
            fail("write", offset, length, path, count == 0 ? ENOSPC : errno);
        }
        done += static_cast<unsigned int>(count);
    }
    return static_cast<int>(done);
}

}
