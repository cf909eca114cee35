// SPDX-License-Identifier: Apache-2.0
#include "Commands.h"

namespace recordkit::tool {

std::vector<Group> groups()
{
    return {
        {"sel", "Event logs of boards and saved ones: what failed, and what still does",
         "recordkit --root board sel summary; recordkit sel summary events.raw"},
        {"fru", "Show, check and edit FRU images in files and kernel nodes",
         "recordkit fru show board.bin"},
        {"sdr", "List and show sensor data records", "recordkit sdr list repository.sdr"},
        {"spd", "Show, compare and check memory modules by their SPD data",
         "recordkit spd show dimm0.bin dimm1.bin"},
        {"eeprom", "Setting areas and EFI backup on EEPROM images",
         "recordkit eeprom setting list --images board"},
        {"eeprom setting", "The setting areas and their index",
         "recordkit eeprom setting list --images board"},
        {"eeprom efi", "The EFI backup and its index record",
         "recordkit eeprom efi status --images board"},
    };
}

std::vector<Command> commands()
{
    return {
        reportCommand(),      selInitCommand(),      selAddCommand(),
        selListCommand(),     selShowCommand(),      selStatusCommand(),
        selSummaryCommand(),  selDiffCommand(),      selCheckCommand(),
        selRescueCommand(),   selRotateCommand(),    selBackupCommand(),
        selRestoreCommand(),  selClearCommand(),     severityCommand(),
        fruShowCommand(),     fruListCommand(),      fruGetCommand(),
        fruVerifyCommand(),   fruDiffCommand(),      fruAuditCommand(),
        fruSetCommand(),      fruAddCommand(),       fruRemoveCommand(),
        fruRepairCommand(),   fruResizeCommand(),    fruCreateCommand(),
        fruExportCommand(),   cpuCommand(),          nodeCommand(),
        decodeCommand(),      sdrListCommand(),      sdrShowCommand(),
        sdrEventsCommand(),   sdrCheckCommand(),     spdShowCommand(),
        spdDiffCommand(),     spdAuditCommand(),     eepromCreateCommand(),
        settingListCommand(), settingReadCommand(),  settingWriteCommand(),
        settingInitCommand(), settingIndexCommand(), settingInvalidateCommand(),
        efiStatusCommand(),   efiInitCommand(),      efiReadCommand(),
        efiWriteCommand(),    efiMarkCommand(),      efiClearCommand(),
    };
}

}
