// SPDX-License-Identifier: Apache-2.0
#include <cerrno>
#include <filesystem>

#include <fmt/format.h>

#include <recordkit/eeprom/EFIBackupEEPROMIndex.h>
#include <recordkit/eeprom/PanelEEPROMIndex.h>
#include <recordkit/inspect/eeprom/SettingIndex.h>

#include "../Commands.h"
#include "../Errors.h"
#include "../Files.h"
#include "../OutputFile.h"
#include "../cli/Arguments.h"
#include "../print/Output.h"

namespace recordkit::tool {

namespace {

using Index = TAVLib::RecordKit::EFIBackupEEPROMIndex;

std::vector<int> allEeproms()
{
    const TAVLib::RecordKit::PanelEEPROMIndex setting;
    std::vector<int> eeproms = {setting.getIndexEEPROMID(), setting.getIndexEEPROMID() + 1,
                                Index::INDEX_EEPROM};
    for (unsigned int i = 0; i < Index::PARTITIONS * Index::BANKS; ++i) {
        eeproms.push_back(Index::FIRST_AREA_EEPROM + static_cast<int>(i));
    }
    return eeproms;
}

/// Never touches an existing image.
void run(const Arguments& arguments)
{
    const std::string folder = arguments.text("DIR");
    std::error_code error;
    std::filesystem::create_directories(folder, error);
    if (error) {
        throw systemError(folder, "created", error.value());
    }
    const auto pathOf = [&folder](int eeprom) {
        return fmt::format("{}/eeprom{}.bin", folder, eeprom);
    };
    const std::vector<int> eeproms = allEeproms();
    for (const int eeprom : eeproms) {
        if (std::filesystem::exists(pathOf(eeprom))) {
            throw systemError(pathOf(eeprom), "created", EEXIST);
        }
    }
    // The index EEPROMs start as zeroes, which are neither a valid entry nor an owner; the others
    // start erased.
    for (const int eeprom : eeproms) {
        const char blank = eeprom <= Index::INDEX_EEPROM ? '\0' : '\xFF';
        writeOutput(pathOf(eeprom), std::string(SETTING_EEPROM_SIZE, blank), Readers::OWNER);
    }
    print(fmt::format("{}: {} images of {} bytes\n", folder, eeproms.size(), SETTING_EEPROM_SIZE));
}

}

Command eepromCreateCommand()
{
    return {"eeprom create",
            "Create blank images to start with",
            "recordkit eeprom create board",
            {argument("DIR", "Folder for the images")},
            Answer::TEXT,
            run,
            "The images are eeprom4.bin, eeprom5.bin, eeprom10.bin and eeprom11.bin to "
            "eeprom26.bin. Existing images are never touched."};
}

}
