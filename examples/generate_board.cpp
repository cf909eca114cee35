// SPDX-License-Identifier: Apache-2.0
// Writes the example board, the same bytes each time:  generate_board FOLDER
//
// The folder is a system root of a server with two system boards; examples/board/README.md says
// what is in it. Files that are there already are written again.
#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>

#include <recordkit/eeprom/EFIBackupEEPROMData.h>
#include <recordkit/eeprom/PanelEEPROMIndex.h>
#include <recordkit/eeprom/SettingEEPROMData.h>
#include <recordkit/host/FileEEPROMRWif.h>
#include <recordkit/host/HostRoot.h>
#include <recordkit/inspect/eeprom/SettingIndex.h>
#include <recordkit/platform/BoardFiles.h>
#include <recordkit/platform/PException.h>
#include <recordkit/selfile/BMCSELDataFile.h>
#include <recordkit/selfile/SELFileLayout.h>

#include "generator/Boards.h"
#include "generator/FruImages.h"
#include "generator/Modules.h"
#include "generator/Repository.h"
#include "generator/Story.h"
#include "generator/Units.h"

using namespace generator;
using namespace TAVLib::RecordKit;
using recordkit::inspect::SETTING_EEPROM_SIZE;
using recordkit::inspect::SettingEntry;

namespace {

void require(bool isDone, const std::string& what)
{
    if (!isDone) {
        throw std::runtime_error(what);
    }
}

void write(const std::string& path, const Bytes& bytes)
{
    std::filesystem::create_directories(std::filesystem::path(path).parent_path());
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    file.write(reinterpret_cast<const char*>(bytes.data()),
               static_cast<std::streamsize>(bytes.size()));
    file.close();
    require(file.good(), path + " could not be written");
}

void write(const std::string& folder, const Files& files)
{
    for (const File& file : files) {
        write(folder + "/" + file.path, file.bytes);
    }
}

/// The board's log as the firmware keeps it: events are stored one by one, a full file is rotated,
/// and at the end the working file is backed up.
void writeLog(unsigned int number)
{
    const auto board = static_cast<unsigned char>(number);
    const std::string name = "the log of board " + std::to_string(number);
    BMCSELDataFile store;
    require(store.truncate(board, 0, SELFileLayout::TEMPORARY) == BMCSELDataFile::SUCCESS, name);
    std::filesystem::remove(store.getFileName(board, 1, 0));
    for (BMCSELEntryMessage& event : eventsOf(number)) {
        if (store.fullEntryCheck(board) == BMCSELDataFile::FILE_FULL) {
            require(store.shiftSelFile(board, true) == 0, name + ", rotation");
        }
        require(store.writeRecord(board, event) == 1, name + ", event");
    }
    require(store.backupTmpSel(board) == 1, name + ", backup");
}

void writeLogs(const std::string& folder)
{
    std::filesystem::create_directories(folder + TAVLib::BoardFiles::WORKING_FOLDER);
    std::filesystem::create_directories(folder + TAVLib::BoardFiles::PERSISTENT_FOLDER);
    for (unsigned int board = 0; board < BOARDS; ++board) {
        writeLog(board);
    }
}

SettingEntry area(int number, int eeprom, unsigned int offset, unsigned int size)
{
    SettingEntry entry;
    entry.number = number;
    entry.eeprom = eeprom;
    entry.offset = offset;
    entry.size = size;
    return entry;
}

/// Setting areas, with the index's master copy.
void writeSettings(const std::string& folder, TAVLib::EEPROMRWif& device)
{
    const PanelEEPROMIndex index;
    const int first = index.getIndexEEPROMID();
    write(folder + index.getIndexDataFileName(),
          recordkit::inspect::makeSettingIndex(
              {area(0, first, 1024, 256), area(1, first, 1280, 512), area(2, first, 2048, 1024),
               area(3, first + 1, 0, 4096), area(7, first + 1, 4096, 512)}));
    SettingEEPROMData settings(device);
    constexpr int ALL = -1;
    settings.initializeIndexData(ALL);
    struct Setting {
        int area;
        const char* text;
    };
    constexpr Setting SETTINGS[] = {
        {0, "system-name=example-server-1\nrack=RACK-07-U12\n"},
        {1, "partition0=sb0,io-unit.0\npartition1=sb1,io-unit.1\n"},
        {3, "power-policy=restore\nfan-policy=normal\nboot-order=disk,network\n"},
    };
    for (const Setting& setting : SETTINGS) {
        std::string text = setting.text;
        settings.write(setting.area, text);
    }
}

/// The backup of the system firmware's data: bank 0 of partition 0 in use, with a block that has
/// yet to be erased.
void writeEfiBackup(TAVLib::EEPROMRWif& device)
{
    EFIBackupEEPROMData backup(device);
    backup.setIndexData(true, SERVER.serialNumber);
    std::string variables = "Boot0000=disk\nBoot0001=network\nTimeout=5\n";
    constexpr unsigned int USED = 0;
    constexpr unsigned int OUTDATED = 3 * EFIBackupEEPROMIndex::BLOCK_SIZE;
    for (const unsigned int offset : {USED, OUTDATED}) {
        backup.write(0, 0, offset, static_cast<unsigned int>(variables.size()),
                     reinterpret_cast<unsigned char*>(variables.data()));
    }
    backup.markBlock(0, 0, OUTDATED);
}

/// The EEPROMs as `recordkit eeprom create` makes them, of the backup's only the one in use.
void writeEeproms(const std::string& folder)
{
    const std::string images = folder + "/eeprom";
    const int setting = PanelEEPROMIndex().getIndexEEPROMID();
    const auto blank = [&images](int eeprom, unsigned char byte) {
        write(images + "/eeprom" + std::to_string(eeprom) + ".bin",
              Bytes(SETTING_EEPROM_SIZE, byte));
    };
    blank(setting, 0x00);
    blank(setting + 1, 0x00);
    blank(EFIBackupEEPROMIndex::INDEX_EEPROM, 0x00);
    blank(EFIBackupEEPROMIndex::FIRST_AREA_EEPROM, 0xFF);
    TAVLib::host::FileEEPROMRWif device(images);
    writeSettings(folder, device);
    writeEfiBackup(device);
}

void generate(const std::string& folder)
{
    TAVLib::host::setSystemRoot(folder);
    const std::string configuration = folder + "/etc/default/config/";
    write(configuration + "sdr.bin", sensorRepository());
    write(configuration + "events.rules", eventRules());
    writeLogs(folder);
    writeEeproms(folder);
    write(folder, fruImages());
    write(folder, memoryModules());
    write(folder, boardImages());
    write(folder, firmwareImages());
    write(folder, processorRoms());
}

}

int main(int argc, char** argv)
{
    if (argc != 2) {
        std::fputs("generate_board FOLDER\n", stderr);
        return 2;
    }
    try {
        generate(std::filesystem::absolute(argv[1]).lexically_normal().string());
    } catch (const TAVLib::PException& e) {
        std::fprintf(stderr, "generate_board: %s\n", e.getMessage().c_str());
        return 1;
    } catch (const std::exception& e) {
        std::fprintf(stderr, "generate_board: %s\n", e.what());
        return 1;
    }
    return 0;
}
