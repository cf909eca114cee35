// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_TOOL_COMMANDLINE_H
#define RECORDKIT_TOOL_COMMANDLINE_H

#include <CLI/CLI.hpp>

#include "Globals.h"

namespace recordkit::tool {

/// The whole command line with every sub-command, for parsing and for generating the manual pages
/// and the completion.
class CommandLine {
public:
    CommandLine();
    CommandLine(const CommandLine&) = delete;
    CommandLine& operator=(const CommandLine&) = delete;

    CLI::App& getApp() { return app; }

private:
    CLI::App app;
    Globals globals;
};

}

#endif
