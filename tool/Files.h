// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_TOOL_FILES_H
#define RECORDKIT_TOOL_FILES_H

#include <string>

namespace recordkit::tool {

/// The whole content of a file, of standard input for "-". Throws CommandError (file).
std::string readInput(const std::string& path);

/// How an input is called in messages.
std::string inputName(const std::string& path);

}

#endif
