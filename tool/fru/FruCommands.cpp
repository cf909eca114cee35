// SPDX-License-Identifier: Apache-2.0
#include "../Commands.h"

namespace recordkit::tool {

void addFruCommands(CLI::App& app, Globals& globals)
{
    CLI::App* const fru =
        addCommand(app, "fru", "Show, check and edit FRU images in files and kernel nodes",
                   "recordkit fru show board.bin");
    fru->require_subcommand(1);
    addFruShow(*fru, globals);
    addFruGet(*fru);
    addFruVerify(*fru);
    addFruSet(*fru);
}

}
