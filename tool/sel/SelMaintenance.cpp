// SPDX-License-Identifier: Apache-2.0
// The sub-commands that change a log as a whole: init, rotate, backup, restore and clear.
#include <filesystem>
#include <memory>

#include <fmt/format.h>

#include <recordkit/selfile/SELChainReader.h>
#include <recordkit/selfile/SELFileLayout.h>
#include <recordkit/selfile/SELStoreCheck.h>

#include "../Commands.h"
#include "../Files.h"
#include "Store.h"

namespace recordkit::tool {

namespace {

namespace fs = std::filesystem;
namespace Layout = TAVLib::RecordKit::SELFileLayout;

bool isFile(const std::string& path)
{
    std::error_code ignored;
    return fs::exists(path, ignored);
}

/// Creates the folder of a file; throws CommandError (file).
void createFolderOf(const std::string& path)
{
    const fs::path folder = fs::path(path).parent_path();
    std::error_code error;
    fs::create_directories(folder, error);
    if (error) {
        throw fileError(folder.string() + " cannot be created: " + error.message());
    }
}

void requireFile(const std::string& path, const char* action)
{
    if (!isFile(path)) {
        throw dataError(fmt::format("{} is missing, there is nothing to {}", path, action));
    }
}

/// Creates a board's working file. Unlike the firmware at its start it never overwrites one: events
/// may have been stored since the last backup.
const char* initialise(unsigned char board)
{
    const std::string path = workingFile(board);
    if (isFile(path)) {
        return "kept";
    }
    if (BMCSELDataFile().restoreTmpSel(board) == 1) {
        return "taken from its backup";
    }
    const unsigned int code = BMCSELDataFile().truncate(board, 0, Layout::TEMPORARY);
    if (code != BMCSELDataFile::SUCCESS) {
        throw storeError(code, path);
    }
    return "created";
}

void initialiseAll(const Globals& globals)
{
    createFolderOf(workingFile(0));
    createFolderOf(backupFile(0));
    createFolderOf(BMCSELDataFile::getShiftRequestFile());
    for (int board = 0; board < globals.getBoards(); ++board) {
        const auto sb = static_cast<unsigned char>(board);
        const char* const what = initialise(sb);
        fmt::print("board {}: {} {}\n", board, workingFile(sb), what);
    }
}

void rotateBoard(unsigned char board)
{
    requireFile(workingFile(board), "rotate");
    unsigned long tail = 0;
    if (BMCSELDataFile().getTailAddr(board, tail) == BMCSELDataFile::SUCCESS && tail == 0) {
        // It would become a file of the chain anyway, and could push the oldest one out.
        throw dataError(workingFile(board) + " holds no event, there is nothing to rotate");
    }
    rotate(board);
    fmt::print("board {}: the working file is sel1 now, and empty\n", board);
}

void backup(unsigned char board)
{
    requireFile(workingFile(board), "back up");
    refuseWhileCutOff(board);
    if (BMCSELDataFile().backupTmpSel(board) != 1) {
        throw storeError(BMCSELDataFile::MOVE_FAILED, workingFile(board));
    }
    fmt::print("board {}: {} copied to {}\n", board, workingFile(board), backupFile(board));
}

/// Whether the backup contains every event of the working file.
bool isWorkingFileInBackup(unsigned char board)
{
    const TAVLib::RecordKit::SELStoreCheck check(board);
    const auto& working = check.getFiles()[0];
    const auto& saved = check.getFiles()[1];
    if (working.count == 0) {
        return true;
    }
    const std::size_t used = std::size_t{working.count} * Layout::SLOT_SIZE;
    return working.count <= saved.count &&
           readInput(working.path).compare(0, used, readInput(saved.path), 0, used) == 0;
}

void restore(unsigned char board, bool isSure)
{
    const std::string path = backupFile(board);
    requireFile(path, "restore");
    std::error_code error;
    const auto size = fs::file_size(path, error);
    if (error) {
        throw fileError(path + " cannot be read: " + error.message());
    }
    if (size != Layout::FILE_SIZE) {
        throw dataError(
            fmt::format("{}: {} bytes long, expected {}", path, size, +Layout::FILE_SIZE));
    }
    if (!isSure && isFile(workingFile(board)) && !isWorkingFileInBackup(board)) {
        throw usageError(workingFile(board) +
                         " holds events that the backup does not; to lose them, say --yes");
    }
    createFolderOf(workingFile(board));
    if (BMCSELDataFile().restoreTmpSel(board) != 1) {
        throw storeError(BMCSELDataFile::MOVE_FAILED, path);
    }
    fmt::print("board {}: {} copied to {}\n", board, path, workingFile(board));
}

void clear(unsigned char board)
{
    const unsigned int events = TAVLib::RecordKit::SELChainReader(board).getTotal();
    if (BMCSELDataFile().clearAllRecord(board) != BMCSELDataFile::SUCCESS) {
        throw storeError(BMCSELDataFile::REWRITE_FAILED, workingFile(board));
    }
    fmt::print("board {}: {} events deleted, all files are empty\n", board, events);
}

/// A sub-command that does one thing to one board.
void addBoardCommand(CLI::App& sel, Globals& globals, const char* name, const char* description,
                     void (*action)(unsigned char))
{
    const auto board = std::make_shared<BoardOption>();
    CLI::App* const command =
        addCommand(sel, name, description, fmt::format("recordkit sel {} --board 1", name).c_str());
    board->addTo(*command);
    command->callback([board, action, &globals] { action(board->get(globals)); });
}

}

void addSelInit(CLI::App& sel, Globals& globals)
{
    CLI::App* const command =
        addCommand(sel, "init",
                   "Prepare every board: folders, and working files, from their backups if need be",
                   "recordkit --root board sel init");
    command->callback([&globals] { initialiseAll(globals); });
}

void addSelRotate(CLI::App& sel, Globals& globals)
{
    addBoardCommand(sel, globals, "rotate",
                    "Move the working file into the chain; the oldest of seven files is dropped",
                    rotateBoard);
}

void addSelBackup(CLI::App& sel, Globals& globals)
{
    addBoardCommand(sel, globals, "backup", "Copy the working file to its backup", backup);
}

void addSelRestore(CLI::App& sel, Globals& globals)
{
    const auto board = std::make_shared<BoardOption>();
    const auto isSure = std::make_shared<bool>(false);
    CLI::App* const command = addCommand(sel, "restore", "Copy the backup back to the working file",
                                         "recordkit sel restore --board 1");
    board->addTo(*command);
    command->add_flag("--yes", *isSure, "Also when events are lost that the backup does not hold");
    command->callback([board, isSure, &globals] { restore(board->get(globals), *isSure); });
}

void addSelClear(CLI::App& sel, Globals& globals)
{
    const auto board = std::make_shared<BoardOption>();
    const auto isSure = std::make_shared<bool>(false);
    CLI::App* const command = addCommand(sel, "clear", "Delete all events of a board",
                                         "recordkit sel clear --board 1 --yes");
    board->addTo(*command);
    command->add_flag("--yes", *isSure, "Really delete them");
    command->callback([board, isSure, &globals] {
        const unsigned char sb = board->get(globals);
        if (!*isSure) {
            throw usageError(fmt::format("this deletes all events of board {}; say --yes", sb));
        }
        clear(sb);
    });
}

void addSelCommands(CLI::App& app, Globals& globals)
{
    CLI::App* const sel = addCommand(app, "sel", "Event logs of the system boards",
                                     "recordkit --root board sel list --board all");
    sel->require_subcommand(1);
    addSelInit(*sel, globals);
    addSelAdd(*sel, globals);
    addSelList(*sel, globals);
    addSelShow(*sel, globals);
    addSelStatus(*sel, globals);
    addSelCheck(*sel, globals);
    addSelRotate(*sel, globals);
    addSelBackup(*sel, globals);
    addSelRestore(*sel, globals);
    addSelClear(*sel, globals);
}

}
