// SPDX-License-Identifier: Apache-2.0
#include "Commands.h"

namespace recordkit::tool {

CLI::App* addCommand(CLI::App& parent, const char* name, const char* description,
                     const char* example)
{
    CLI::App* const command = parent.add_subcommand(name, description);
    command->footer(std::string("Example:\n  ") + example);
    command->fallthrough();
    return command;
}

}
