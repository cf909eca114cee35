// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_SELFILE_SELSTORELOCK_H
#define RECORDKIT_SELFILE_SELSTORELOCK_H

#include <string>

#include <recordkit/platform/Export.h>

namespace TAVLib::RecordKit {

/// The lock of one board's log, held by a program while it moves, empties or rewrites the files.
///
/// The command takes it for every change, and SELStoreCheck::recover takes it. **The operations of
/// BMCSELDataFile do not**: a firmware that lets the command run beside it holds the lock while it
/// calls writeRecord, or any operation that rotates, copies or empties files.
///
/// It is a flock(2) lock on a file beside the rotated files, sbN_bmc_sel.lock, which only its owner
/// may open (0600): nobody else can keep the log from rotating. The empty file stays when
/// the lock is released.
///
/// The lock excludes all other objects for the board, those of the same process too: a thread that
/// holds it must not wait for it again. Only std::bad_alloc is thrown.
class RECORDKIT_API SELStoreLock {
public:
    static constexpr int FOREVER = -1;

    /// Waits for the lock at most so many milliseconds; 0 tries once.
    explicit SELStoreLock(unsigned char sb, int milliseconds = FOREVER);
    /// Releases the lock.
    ~SELStoreLock();
    SELStoreLock(const SELStoreLock&) = delete;
    SELStoreLock& operator=(const SELStoreLock&) = delete;

    bool isHeld() const { return fd != -1; }

    /// Why it is not held: the file, and the number of the process that holds it or the reason of
    /// the system. Empty if it is held.
    const std::string& getProblem() const { return problem; }

private:
    int fd = -1;
    std::string problem;
};

}

#endif
