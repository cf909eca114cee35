// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_TOOL_RUN_H
#define RECORDKIT_TOOL_RUN_H

#include <string>
#include <vector>

namespace recordkit::tool {

/// The whole command: executes the arguments and returns the exit status. Output goes to standard
/// output and standard error.
int run(const std::vector<std::string>& arguments);

}

#endif
