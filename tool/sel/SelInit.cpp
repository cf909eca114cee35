// SPDX-License-Identifier: Apache-2.0
#include <fmt/format.h>

#include <recordkit/host/Machine.h>
#include <recordkit/selfile/SELFileLayout.h>

#include "../Commands.h"
#include "../cli/Globals.h"
#include "../cli/Arguments.h"
#include "../print/Output.h"
#include "Store.h"

namespace recordkit::tool {

namespace {

/// Creates a board's working file. Unlike the firmware at its start it never overwrites one: events
/// may have been stored since the last backup.
const char* initialise(unsigned char board)
{
    const std::string path = workingFile(board);
    // Who made a working file before the first start could read, forge and empty the log.
    requireTrusted(path);
    if (isFile(path)) {
        return "kept";
    }
    const LogLock lock(board);
    if (isFile(path)) { // made while another program held the lock
        return "kept";
    }
    if (BMCSELDataFile().restoreTmpSel(board) == 1) {
        return "taken from its backup";
    }
    const unsigned int code =
        BMCSELDataFile().truncate(board, 0, TAVLib::RecordKit::SELFileLayout::TEMPORARY);
    if (code != BMCSELDataFile::SUCCESS) {
        throw storeError(code, path);
    }
    return "created";
}

void run(const Arguments&)
{
    createRoot();
    createFolderOf(workingFile(0));
    createFolderOf(backupFile(0));
    createFolderOf(BMCSELDataFile::getShiftRequestFile());
    for (int board = 0; board < TAVLib::host::machine().systemBoards; ++board) {
        const auto sb = static_cast<unsigned char>(board);
        const char* const what = initialise(sb);
        print(fmt::format("board {}: {} {}\n", board, workingFile(sb), what));
    }
}

}

Command selInitCommand()
{
    return {"sel init",
            "Create the folders, and a working file for every board without one",
            "recordkit --root board sel init",
            {},
            Answer::TEXT,
            run,
            "A working file is copied from its backup if there is one. An existing working file is "
            "kept; in a folder that everybody may write to it is refused if it is a link or not a "
            "regular file, belongs to another user, has a second name, or others may write it."};
}

}
