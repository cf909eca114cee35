// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_TOOL_COMMANDS_H
#define RECORDKIT_TOOL_COMMANDS_H

#include <CLI/CLI.hpp>

#include "BoardOptions.h"

namespace recordkit::tool {

// Each function adds one sub-command to its parent. The sub-command runs when the command line is
// parsed; errors are thrown as CommandError.

void addSelCommands(CLI::App& app, Globals& globals);
void addSeverityCommand(CLI::App& app, Globals& globals);
void addFruCommands(CLI::App& app, Globals& globals);
void addCpuCommand(CLI::App& app, Globals& globals);
void addNodeCommand(CLI::App& app, Globals& globals);
void addDecodeCommand(CLI::App& app, Globals& globals);
void addSdrCommands(CLI::App& app, Globals& globals);
void addSpdCommands(CLI::App& app, Globals& globals);
void addEepromCommands(CLI::App& app, Globals& globals);

void addSettingCommands(CLI::App& eeprom, Globals& globals);
void addEfiCommands(CLI::App& eeprom);

void addSelAdd(CLI::App& sel, Globals& globals);
void addSelList(CLI::App& sel, Globals& globals);
void addSelShow(CLI::App& sel, Globals& globals);
void addSelStatus(CLI::App& sel, Globals& globals);
void addSelCheck(CLI::App& sel, Globals& globals);
void addSelInit(CLI::App& sel, Globals& globals);
void addSelRotate(CLI::App& sel, Globals& globals);
void addSelBackup(CLI::App& sel, Globals& globals);
void addSelRestore(CLI::App& sel, Globals& globals);
void addSelClear(CLI::App& sel, Globals& globals);

void addFruShow(CLI::App& fru, Globals& globals);
void addFruGet(CLI::App& fru);
void addFruVerify(CLI::App& fru);
void addFruSet(CLI::App& fru);

/// A sub-command with an example at the end of its help.
CLI::App* addCommand(CLI::App& parent, const char* name, const char* description,
                     const char* example);

}

#endif
