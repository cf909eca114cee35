// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_TOOL_GLOBALS_H
#define RECORDKIT_TOOL_GLOBALS_H

#include <string>

#include <CLI/CLI.hpp>

namespace recordkit::tool {

/// The context of every sub-command: the root, the machine, and where output goes.
class Globals {
public:
    /// Adds the options of every sub-command.
    void addTo(CLI::App& app);

    /// Passes root and machine to the host platform; call after the options are parsed. Throws
    /// CommandError (usage).
    void apply();

    int getBoards() const { return boards; }
    int getPartitions() const { return partitions; }

    /// Whether standard output is a terminal and colour is wanted.
    bool wantsColour() const;

    /// Whether standard error is a terminal that a progress bar may be drawn on.
    bool wantsProgress() const;

private:
    std::string root;
    int boards = 4;
    int partitions = 4;
    bool isVerbose = false;
};

}

#endif
