// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_PLATFORM_LOCKEDFILE_H
#define RECORDKIT_PLATFORM_LOCKEDFILE_H

#include <string>

#include <recordkit/platform/Export.h>

namespace TAVLib {

/// A file held under an exclusive lock for the lifetime of the object.
///
/// The lock excludes other processes and other threads alike. Every failure of a system call is
/// thrown as a PException.
///
/// The layout is one pointer; an implementation's own header must not differ (see Export.h).
class RECORDKIT_API LockedFile {
public:
    /// Opens for reading and writing, creates the file if it does not exist, waits for the lock.
    explicit LockedFile(const std::string& path);

    /// Unlocks and closes.
    ~LockedFile();

    LockedFile(const LockedFile&) = delete;
    LockedFile& operator=(const LockedFile&) = delete;

    /// Positions as lseek(2) does; returns the offset from the start of the file.
    long lseek(long offset, int whence);

    /// Bytes read, 0 at the end of the file.
    int read(void* buffer, unsigned int length);

    /// Bytes written.
    int write(const void* buffer, unsigned int length);

    /// Cuts or extends the file to `length` bytes; the position stays.
    void truncFile(long length);

private:
    class State;
    State* state;
};

}

#endif
