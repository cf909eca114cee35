// SPDX-License-Identifier: Apache-2.0
#include "CommandLine.h"

#include "Commands.h"

namespace recordkit::tool {

CommandLine::CommandLine()
    : app("Event records, FRU images and stores of a management board", "recordkit")
{
    app.set_version_flag("--version", "recordkit " RECORDKIT_VERSION);
    app.require_subcommand(1);
    app.footer("Exit status: 0 done, 1 data damaged, absent or refused, 2 wrong usage, 3 a file "
               "could not be read or written.\n"
               "Example:\n  recordkit --root board sel list --severity warning");
    globals.addTo(app);
    app.parse_complete_callback([this] { globals.apply(); });
    addSelCommands(app, globals);
    addSeverityCommand(app, globals);
    addFruCommands(app, globals);
    addCpuCommand(app, globals);
    addNodeCommand(app, globals);
    addDecodeCommand(app, globals);
    addSdrCommands(app, globals);
    addSpdCommands(app, globals);
    addEepromCommands(app, globals);
}

}
