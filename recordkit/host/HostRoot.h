// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_HOST_HOSTROOT_H
#define RECORDKIT_HOST_HOSTROOT_H

#include <string>

#include <recordkit/platform/Export.h>

namespace TAVLib::host {

/// Puts every compiled-in path below `directory`; "" stands for the system's own root.
///
/// Throws std::invalid_argument unless `directory` is empty or an absolute path of letters,
/// digits and . _ / + - alone: it becomes part of shell commands. To be done before other
/// threads ask for it.
RECORDKIT_API void setSystemRoot(const std::string& directory);

}

#endif
