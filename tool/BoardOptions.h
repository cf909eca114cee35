// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_TOOL_BOARDOPTIONS_H
#define RECORDKIT_TOOL_BOARDOPTIONS_H

#include <string>
#include <vector>

#include "Globals.h"

namespace recordkit::tool {

/// The option --board of a sub-command: one board.
class BoardOption {
public:
    void addTo(CLI::App& command);
    /// Returns the board; throws CommandError (usage) if the machine has no such board.
    unsigned char get(const Globals& globals) const;

private:
    std::string text = "0";
};

/// The option --board of a sub-command that can work on all of them.
class BoardsOption {
public:
    /// `byDefault`: a number or "all".
    void addTo(CLI::App& command, const std::string& byDefault);
    std::vector<unsigned char> get(const Globals& globals) const;

private:
    std::string text;
};

}

#endif
