// SPDX-License-Identifier: Apache-2.0
#include <filesystem>

#include <fmt/format.h>

#include <recordkit/selfile/SELFileLayout.h>
#include <recordkit/selfile/SELStoreCheck.h>

#include "../Commands.h"
#include "../Files.h"
#include "../cli/Arguments.h"
#include "../print/Output.h"
#include "Store.h"

namespace recordkit::tool {

namespace SELFileLayout = TAVLib::RecordKit::SELFileLayout;

namespace {

/// Whether the backup contains every event of the working file.
bool isWorkingFileInBackup(unsigned char sb)
{
    const TAVLib::RecordKit::SELStoreCheck check(sb);
    const auto& working = check.workingFile();
    const auto& saved = check.backup();
    if (working.count == 0) {
        return true;
    }
    const std::size_t used = std::size_t{working.count} * SELFileLayout::SLOT_SIZE;
    return working.count <= saved.count &&
           readInput(working.path, LARGE_LIMIT)
                   .compare(0, used, readInput(saved.path, LARGE_LIMIT), 0, used) == 0;
}

void checkSize(const std::string& path)
{
    std::error_code error;
    const auto size = std::filesystem::file_size(path, error);
    if (error) {
        throw systemError(path, "read", error.value());
    }
    const std::size_t expected = SELFileLayout::FILE_SIZE;
    if (size != expected) {
        throw dataError(fmt::format("{}: {} bytes long, expected {}", path, size, expected));
    }
}

void run(const Arguments& arguments)
{
    const unsigned char sb = arguments.board();
    const std::string path = backupFile(sb);
    requireFile(path, "restore");
    checkSize(path);
    const LogLock lock(sb);
    if (!arguments.has("--yes") && isFile(workingFile(sb)) && !isWorkingFileInBackup(sb)) {
        throw usageError(workingFile(sb) + " contains events that are not in the backup; pass "
                                           "--yes to discard them");
    }
    createFolderOf(workingFile(sb));
    if (BMCSELDataFile().restoreTmpSel(sb) != 1) {
        throw storeError(BMCSELDataFile::MOVE_FAILED, path);
    }
    print(fmt::format("board {}: {} copied to {}\n", sb, path, workingFile(sb)));
}

}

Command selRestoreCommand()
{
    return {
        "sel restore",
        "Copy the backup back to the working file",
        "recordkit sel restore --board 1",
        {board(), flag("--yes", "Restore even if events missing from the backup would be lost")},
        Answer::TEXT,
        run};
}

}
