// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_PLATFORM_BOARDFILES_H
#define RECORDKIT_PLATFORM_BOARDFILES_H

namespace TAVLib {

/// Where the event files of a system board are, and the message files that accompany them: both
/// kinds have a working file, its backup and a chain of rotated files.
namespace BoardFiles {

/// Folders below the system root: of the working files, and of backups and rotated files.
constexpr const char* WORKING_FOLDER = "/tmp/";
constexpr const char* PERSISTENT_FOLDER = "/var/tav/fmem/ipmi/";

/// Index 0 is the working file and its backup; 1 to 7 are the rotated files, 7 the oldest.
constexpr int OLDEST_FILE = 7;

}

}

#endif
