// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_HOST_HOSTROOT_H
#define RECORDKIT_HOST_HOSTROOT_H

#include <string>

#include <recordkit/platform/Export.h>

namespace TAVLib::host {

/// Puts every compiled-in path below `directory`; "" means the system's own root.
///
/// Throws std::invalid_argument unless `directory` is empty or an absolute path that contains only
/// letters, digits and . _ / + -: it becomes part of shell commands. Call it before other threads
/// use the root.
RECORDKIT_API void setSystemRoot(const std::string& directory);

}

#endif
