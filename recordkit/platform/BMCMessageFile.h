// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_PLATFORM_BMCMESSAGEFILE_H
#define RECORDKIT_PLATFORM_BMCMESSAGEFILE_H

#include <recordkit/platform/Export.h>

namespace TAVLib {

/// The message files that accompany each system board's event files.
///
/// The event store keeps them in step with its own files; every operation returns true on success.
///
/// The layout is one pointer; an implementation's own header must not differ (see Export.h).
class RECORDKIT_API BMCMessageFile {
public:
    BMCMessageFile();
    ~BMCMessageFile();

    BMCMessageFile(const BMCMessageFile&) = delete;
    BMCMessageFile& operator=(const BMCMessageFile&) = delete;

    /// Empties all message files of the board.
    bool clearMessageFile(unsigned char sb);

    /// Moves the working message file into the rotated chain.
    bool shiftSelMessageFile(unsigned char sb);

    /// Copies the working message file to persistent memory.
    bool backupTmpMessageFile(unsigned char sb);

    /// Copies the backup back to the working message file.
    bool restoreTmpMessageFile(unsigned char sb);

private:
    class State;
    State* state;
};

}

#endif
