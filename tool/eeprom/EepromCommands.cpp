// SPDX-License-Identifier: Apache-2.0
#include <cerrno>
#include <filesystem>
#include <fmt/format.h>
#include <memory>

#include <recordkit/eeprom/EFIBackupEEPROMIndex.h>
#include <recordkit/eeprom/PanelEEPROMIndex.h>
#include <recordkit/inspect/eeprom/SettingIndex.h>

#include "../Commands.h"
#include "../Errors.h"
#include "../Files.h"

namespace recordkit::tool {

namespace {

using Index = TAVLib::RecordKit::EFIBackupEEPROMIndex;

/// Creates blank images of all EEPROMs; never touches an existing one.
void create(const std::string& folder)
{
    std::error_code error;
    std::filesystem::create_directories(folder, error);
    if (error) {
        throw systemError(folder, "created", error.value());
    }
    const TAVLib::RecordKit::PanelEEPROMIndex setting;
    std::vector<int> eeproms = {setting.getIndexEEPROMID(), setting.getIndexEEPROMID() + 1,
                                Index::INDEX_EEPROM};
    for (unsigned int i = 0; i < Index::PARTITIONS * Index::BANKS; ++i) {
        eeproms.push_back(Index::FIRST_AREA_EEPROM + static_cast<int>(i));
    }
    for (const int eeprom : eeproms) {
        const std::string path = fmt::format("{}/eeprom{}.bin", folder, eeprom);
        if (std::filesystem::exists(path)) {
            throw systemError(path, "created", EEXIST);
        }
    }
    // The index EEPROMs start as zeroes, which are neither a valid entry nor an owner; the others
    // start erased.
    for (const int eeprom : eeproms) {
        const char blank = eeprom <= Index::INDEX_EEPROM ? '\0' : '\xFF';
        writeOutput(fmt::format("{}/eeprom{}.bin", folder, eeprom),
                    std::string(SETTING_EEPROM_SIZE, blank));
    }
    fmt::print("{}: {} images of {} bytes\n", folder, eeproms.size(), SETTING_EEPROM_SIZE);
}

}

void addEepromCommands(CLI::App& app, Globals& globals)
{
    CLI::App* const eeprom =
        addCommand(app, "eeprom", "Setting areas and EFI backup on EEPROM images",
                   "recordkit eeprom setting list --images board");
    eeprom->require_subcommand(1);
    addSettingCommands(*eeprom, globals);
    addEfiCommands(*eeprom);
    const auto folder = std::make_shared<std::string>();
    CLI::App* const command = addCommand(*eeprom, "create", "Make blank images to start with",
                                         "recordkit eeprom create board");
    command->add_option("DIR", *folder, "Folder for them")->required();
    command->callback([folder] { create(*folder); });
}

}
