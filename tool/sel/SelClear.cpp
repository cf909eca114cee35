// SPDX-License-Identifier: Apache-2.0
#include <fmt/format.h>

#include <recordkit/inspect/bytes/Numbers.h>
#include <recordkit/inspect/log/BoardLog.h>

#include "../Commands.h"
#include "../cli/Arguments.h"
#include "../print/Output.h"
#include "Store.h"

namespace recordkit::tool {

namespace {

void run(const Arguments& arguments)
{
    const unsigned char sb = arguments.board();
    if (!arguments.has("--yes")) {
        throw usageError(
            fmt::format("this deletes all events of board {}; pass --yes to confirm", sb));
    }
    const LogLock lock(sb);
    const std::size_t events = BoardLog(sb).getTotal();
    if (BMCSELDataFile().clearAllRecord(sb) != BMCSELDataFile::SUCCESS) {
        throw storeError(BMCSELDataFile::REWRITE_FAILED, workingFile(sb));
    }
    print(fmt::format("board {}: {} deleted, all files are empty\n", sb, counted(events, "event")));
}

}

Command selClearCommand()
{
    return {"sel clear",
            "Delete all events of a board",
            "recordkit sel clear --board 1 --yes",
            {board(), flag("--yes", "Confirm the deletion")},
            Answer::TEXT,
            run};
}

}
