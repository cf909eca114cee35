// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_TOOL_CLI_COMMANDLINE_H
#define RECORDKIT_TOOL_CLI_COMMANDLINE_H

#include <string>
#include <vector>

#include "Command.h"

namespace recordkit::tool {

/// Parses a command line, runs the sub-command that it names, and returns the exit status. Help and
/// errors of the command line go to standard output and standard error; whatever the sub-command
/// throws is passed on.
int runCommandLine(const std::vector<std::string>& words, const std::vector<Group>& groups,
                   const std::vector<Command>& commands);

}

#endif
