// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_PLATFORM_BMCMESSAGEFILE_H
#define RECORDKIT_PLATFORM_BMCMESSAGEFILE_H

#include <recordkit/platform/Export.h>

namespace TAVLib {

/// The message files that accompany each system board's event files.
///
/// They are regular files below the system root:
///
/// | file                                  | contents                           |
/// |---------------------------------------|------------------------------------|
/// | /tmp/sb\<N\>_bmc_msg0                 | working file                       |
/// | /var/tav/fmem/ipmi/sb\<N\>_bmc_msg0   | backup of the working file         |
/// | /var/tav/fmem/ipmi/sb\<N\>_bmc_msg1-7 | rotated files, 7 the oldest        |
///
/// The event store keeps them in step with its own files. Every operation returns true on success,
/// and false for a failure, which it traces; none throws. **A file that does not exist is not a
/// failure**, but has nothing to be emptied, moved or copied: most boards have no message files,
/// and the store copies no events, to their backup or back, after a false. A file that is copied
/// replaces its target completely, whatever its length, and never in part. Links are not followed.
///
/// The layout is one pointer; an implementation's own header must not differ (see Export.h).
class RECORDKIT_API BMCMessageFile {
public:
    BMCMessageFile();
    ~BMCMessageFile();

    BMCMessageFile(const BMCMessageFile&) = delete;
    BMCMessageFile& operator=(const BMCMessageFile&) = delete;

    /// Removes all message files of the board.
    bool clearMessageFile(unsigned char sb);

    /// Moves the working message file into the rotated chain: 7 is dropped, each of 6 to 1 gets the
    /// next number, the working file's contents become 1, and it is empty then. Without a working
    /// file, the backup becomes 1, if there is one. No backup is left.
    bool shiftSelMessageFile(unsigned char sb);

    /// Copies the working message file to its backup.
    bool backupTmpMessageFile(unsigned char sb);

    /// Copies the backup back to the working message file.
    bool restoreTmpMessageFile(unsigned char sb);

private:
    class State;
    State* state;
};

}

#endif
