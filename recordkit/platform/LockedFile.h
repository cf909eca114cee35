// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_PLATFORM_LOCKEDFILE_H
#define RECORDKIT_PLATFORM_LOCKEDFILE_H

#include <string>

#include <recordkit/platform/Export.h>

namespace TAVLib {

/// A file held under an exclusive lock for the lifetime of the object.
///
/// The lock excludes all other objects for the same file, those of other processes and those of
/// other threads. If it is one of flock(2), it also excludes readers of the setting index, which
/// take a shared one (SettingEEPROMData). Every failure of a system call is thrown as a PException;
/// a call that a signal interrupts is made again and is not a failure.
///
/// The layout is one pointer; an implementation's own header must not differ (see Export.h).
class RECORDKIT_API LockedFile {
public:
    /// Opens for reading and writing, creates the file if it does not exist, waits for the lock.
    ///
    /// A symbolic link in the last component is a failure, a file that cannot be written, and a
    /// folder that does not exist. In a folder that others may write to, **as the working folder
    /// is**, so is anything but a regular file with one name that this user or root owns: others
    /// must not make the firmware write elsewhere, nor wait.
    ///
    /// A new file has the permissions 0644, less the process's umask. Programs that the process
    /// starts do not inherit the file.
    explicit LockedFile(const std::string& path);

    /// Unlocks and closes; never throws.
    ~LockedFile();

    LockedFile(const LockedFile&) = delete;
    LockedFile& operator=(const LockedFile&) = delete;

    /// Positions as lseek(2) does; returns the offset from the start of the file.
    long lseek(long offset, int whence);

    /// Bytes read: fewer than `length` only where the file ends, 0 at its end.
    int read(void* buffer, unsigned int length);

    /// Bytes written: all of them. A medium that takes only some is a failure.
    int write(const void* buffer, unsigned int length);

    /// Cuts or extends the file to `length` bytes; the position stays.
    void truncFile(long length);

private:
    class State;
    State* state;
};

}

#endif
