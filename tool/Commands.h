// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_TOOL_COMMANDS_H
#define RECORDKIT_TOOL_COMMANDS_H

#include <vector>

#include "cli/Command.h"

namespace recordkit::tool {

/// Every group of sub-commands, parents first.
std::vector<Group> groups();

/// Every sub-command, in the order of help and manual.
std::vector<Command> commands();

// One function per sub-command, in the file named after it.
Command reportCommand();
Command selInitCommand();
Command selAddCommand();
Command selListCommand();
Command selShowCommand();
Command selStatusCommand();
Command selSummaryCommand();
Command selDiffCommand();
Command selCheckCommand();
Command selRescueCommand();
Command selRotateCommand();
Command selBackupCommand();
Command selRestoreCommand();
Command selClearCommand();
Command severityCommand();
Command fruShowCommand();
Command fruListCommand();
Command fruGetCommand();
Command fruVerifyCommand();
Command fruDiffCommand();
Command fruAuditCommand();
Command fruSetCommand();
Command fruAddCommand();
Command fruRemoveCommand();
Command fruRepairCommand();
Command fruResizeCommand();
Command fruCreateCommand();
Command fruExportCommand();
Command cpuCommand();
Command nodeCommand();
Command decodeCommand();
Command sdrListCommand();
Command sdrShowCommand();
Command sdrEventsCommand();
Command sdrCheckCommand();
Command spdShowCommand();
Command spdDiffCommand();
Command spdAuditCommand();
Command eepromCreateCommand();
Command settingListCommand();
Command settingReadCommand();
Command settingWriteCommand();
Command settingInitCommand();
Command settingInvalidateCommand();
Command settingIndexCommand();
Command efiStatusCommand();
Command efiInitCommand();
Command efiReadCommand();
Command efiWriteCommand();
Command efiMarkCommand();
Command efiClearCommand();

}

#endif
