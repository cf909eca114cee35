// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_HOST_HOSTROOT_H
#define RECORDKIT_HOST_HOSTROOT_H

#include <string>

#include <recordkit/platform/Export.h>

namespace TAVLib::host {

/// Puts every compiled-in path below `directory`; "" means the system's own root. Call it before
/// other threads use the root.
///
/// The library's copy commands go through a shell. If `directory` has other characters than
/// letters, digits and . _ / + -, it is opened, and systemRoot() returns the name that /proc gives
/// the open folder. Such a folder must exist: until it does, and setSystemRoot is called again,
/// every path below the root is missing.
///
/// Throws std::invalid_argument unless `directory` is empty, or an absolute path without a zero
/// byte.
RECORDKIT_API void setSystemRoot(const std::string& directory);

/// The directory of setSystemRoot as it was given, for messages.
RECORDKIT_API std::string givenSystemRoot();

}

#endif
