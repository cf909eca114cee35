// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_INSPECT_LOG_LOGREPAIR_H
#define RECORDKIT_INSPECT_LOG_LOGREPAIR_H

#include <string>
#include <vector>

namespace recordkit::inspect {

/// Repairs the log of a board, so that the store counts every event that its files contain:
/// SELStoreCheck::recover finishes a rotation that was cut off and closes gaps; then damaged files
/// are written again with those of their whole slots that no other file contains, and a missing
/// working file is restored.
///
/// Nothing is deleted. What a file contains besides whole events is copied to NAME.damaged-N in
/// persistent memory first; a file that cannot be read, and one that has no place in the chain of
/// seven files, is renamed to such a name.
///
/// The board's lock (SELStoreLock) is held meanwhile, and not waited for; a firmware that does not
/// take it must not store events nor rotate.
///
/// `actions` gets a line for each action that was done or was not possible; returns false when one
/// was not possible, or when another process holds the lock.
bool repairLog(unsigned char board, std::vector<std::string>& actions);

}

#endif
