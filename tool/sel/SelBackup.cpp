// SPDX-License-Identifier: Apache-2.0
#include <fmt/format.h>

#include "../Commands.h"
#include "../cli/Arguments.h"
#include "../print/Output.h"
#include "Store.h"

namespace recordkit::tool {

namespace {

void run(const Arguments& arguments)
{
    const unsigned char sb = arguments.board();
    requireFile(workingFile(sb), "back up");
    const LogLock lock(sb);
    refuseWhileCutOff(sb);
    if (BMCSELDataFile().backupTmpSel(sb) != 1) {
        throw storeError(BMCSELDataFile::MOVE_FAILED, workingFile(sb));
    }
    print(fmt::format("board {}: {} copied to {}\n", sb, workingFile(sb), backupFile(sb)));
}

}

Command selBackupCommand()
{
    return {"sel backup",
            "Copy the working file to its backup",
            "recordkit sel backup --board 1",
            {board()},
            Answer::TEXT,
            run,
            "Refused while the existing backup contains events of an interrupted rotation."};
}

}
