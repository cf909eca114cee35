// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_HOST_DEVICEFILE_H
#define RECORDKIT_HOST_DEVICEFILE_H

#include <string>

#include <recordkit/posix/File.h>

#include "FileError.h"

namespace TAVLib::host {

/// An open file that represents a device: bytes are read and written at their offset, all of them
/// or none. Failures are thrown with the operation, its offset and length, the path and the reason.
class DeviceFile {
public:
    /// Opens a file that exists.
    DeviceFile(HostLocation who, const std::string& name, bool writable);

    int read(unsigned long offset, unsigned int length, unsigned char* buffer) const;
    int write(unsigned long offset, unsigned int length, const unsigned char* buffer) const;
    /// As write, but refuses to make a regular file longer, and waits until the bytes reach the
    /// medium.
    int writeThrough(unsigned long offset, unsigned int length, const unsigned char* buffer) const;

private:
    [[noreturn]] void fail(const char* operation, unsigned long offset, unsigned int length,
                           int error) const;

    HostLocation location;
    std::string path;
    bool isWritable;
    posix::File file;
};

}

#endif
