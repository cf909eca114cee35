// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_TOOL_CLI_GLOBALS_H
#define RECORDKIT_TOOL_CLI_GLOBALS_H

#include <string>

#include "Arguments.h"

namespace recordkit::tool {

/// The options of every sub-command: the root and the machine.
std::vector<Option> globalOptions();

/// Passes root and machine to the host platform. Throws CommandError (usage).
void applyGlobals(const Arguments& arguments);

/// Replaces the folder of --root; "" is the system's root.
void chooseRoot(const std::string& folder);

/// Makes the folder of --root where it is missing. Throws CommandError (file).
void createRoot();

}

#endif
