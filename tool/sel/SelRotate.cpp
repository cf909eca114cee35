// SPDX-License-Identifier: Apache-2.0
#include <fmt/format.h>

#include <recordkit/inspect/bytes/Numbers.h>

#include "../Commands.h"
#include "../cli/Arguments.h"
#include "../print/Output.h"
#include "Store.h"

namespace recordkit::tool {

namespace {

void run(const Arguments& arguments)
{
    const unsigned char sb = arguments.board();
    requireFile(workingFile(sb), "rotate");
    const LogLock lock(sb);
    unsigned long tail = 0;
    if (BMCSELDataFile().getTailAddr(sb, tail) == BMCSELDataFile::SUCCESS && tail == 0) {
        // It would become a file of the chain anyway, and could push the oldest one out.
        throw dataError(workingFile(sb) + " contains no event, there is nothing to rotate");
    }
    const std::size_t dropped = rotate(sb);
    print(fmt::format("board {}: working file rotated to sel1; a new, empty working file is in "
                      "place{}\n",
                      sb,
                      dropped == 0 ? "" : "; " + counted(dropped, "oldest event") + " dropped"));
}

}

Command selRotateCommand()
{
    return {"sel rotate",
            "Move the working file into the chain; the oldest of seven files is dropped",
            "recordkit sel rotate --board 1",
            {board()},
            Answer::TEXT,
            run,
            "Refused while the backup contains events that the working file does not."};
}

}
