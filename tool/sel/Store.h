// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_TOOL_SEL_STORE_H
#define RECORDKIT_TOOL_SEL_STORE_H

#include <string>

#include <recordkit/selfile/BMCSELDataFile.h>
#include <recordkit/selfile/SELStoreLock.h>

#include "../Errors.h"

namespace recordkit::tool {

/// The working file and the backup of a board.
std::string workingFile(unsigned char board);
std::string backupFile(unsigned char board);

bool isFile(const std::string& path);

/// Throws CommandError (file) if the system root has no folder for event logs.
void requireLogs();

/// Throws CommandError (file) for a file that the library would refuse: one that others could have
/// made, in a folder that everybody may write to.
void requireTrusted(const std::string& path);

/// Throws CommandError (data) if the file is missing; `action` is what was to be done.
void requireFile(const std::string& path, const char* action);

/// Creates the folder of a file; throws CommandError (file).
void createFolderOf(const std::string& path);

/// The error for a code of the event file store on the file at `path`.
CommandError storeError(unsigned int code, const std::string& path);

/// Holds the lock of a board's log while its files change.
class LogLock {
public:
    /// Waits as long as for any lock; throws CommandError (file) if another process keeps it.
    explicit LogLock(unsigned char board);

private:
    TAVLib::RecordKit::SELStoreLock lock;
};

/// While it lives, a file that another program has locked is an error at once.
class NoWaiting {
public:
    NoWaiting();
    ~NoWaiting();
    NoWaiting(const NoWaiting&) = delete;
    NoWaiting& operator=(const NoWaiting&) = delete;

private:
    int before;
};

/// Makes sure that a board has a sound working file, creating or rewriting it as the store does.
/// The code is SUCCESS or FILE_FULL; throws CommandError for any other, and for a file of another
/// size that contains events, which the store would rewrite as empty.
unsigned int prepareWorkingFile(unsigned char board);

/// Throws CommandError (data) while the backup of a board contains events of an interrupted
/// rotation: deleting or overwriting the backup would delete them.
void refuseWhileCutOff(unsigned char board);

/// Rotates a board's working file into the chain; throws CommandError. Returns how many events were
/// dropped with the oldest file.
std::size_t rotate(unsigned char board);

}

#endif
