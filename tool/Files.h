// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_TOOL_FILES_H
#define RECORDKIT_TOOL_FILES_H

#include <string>

namespace recordkit::tool {

/// The whole content of a file, of standard input for "-". Throws CommandError (file).
std::string readInput(const std::string& path);

/// Throws CommandError (file) for a link in a world-writable directory: the command does not write
/// through it, as with the kernel's own protection.
void checkLink(const std::string& path);

/// Writes a regular file, or the one that a symbolic link points to: to a temporary file in the
/// same folder, which is synced and renamed. An existing file keeps its owner and permissions; a
/// new one gets permissions 0644. Throws CommandError (file), also as checkLink does.
void writeOutput(const std::string& path, const std::string& content);

/// Whether a path is a device: not a regular file, or a kernel node, which cannot be replaced.
bool isDeviceNode(const std::string& path);

/// The name of an input as used in messages.
std::string inputName(const std::string& path);

}

#endif
