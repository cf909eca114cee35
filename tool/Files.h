// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_TOOL_FILES_H
#define RECORDKIT_TOOL_FILES_H

#include <string>

namespace recordkit::tool {

/// The whole content of a file, of standard input for "-". Throws CommandError (file).
std::string readInput(const std::string& path);

/// Throws CommandError (file) for a link in a folder that everybody can write to: nothing is
/// written through it, as the kernel's own protection has it.
void checkLink(const std::string& path);

/// Writes a regular file, or the one that a symbolic link leads to: to a temporary beside it, which
/// is synchronised and renamed. Owner and permissions of one that is there stay; a new one is made
/// with permissions 0644. Throws CommandError (file), also as checkLink does.
void writeOutput(const std::string& path, const std::string& content);

/// Whether a path is a device: no regular file, or a node that the kernel serves, which cannot be
/// replaced.
bool isDeviceNode(const std::string& path);

/// How an input is called in messages.
std::string inputName(const std::string& path);

}

#endif
