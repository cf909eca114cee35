// SPDX-License-Identifier: Apache-2.0
// Makes the event log of every board ready when a board or a daemon starts:  start_board ROOT
//
// A backup is older than the working file, so it replaces only a missing one: after a restart of
// the daemon alone the working file is still there.
#include <cstdio>

#include <recordkit/host/HostRoot.h>
#include <recordkit/host/Machine.h>
#include <recordkit/selfile/BMCSELDataFile.h>
#include <recordkit/selfile/SELFileLayout.h>
#include <recordkit/selfile/SELStoreCheck.h>

namespace {

constexpr int WORKING = TAVLib::RecordKit::SELFileLayout::TEMPORARY;

/// False if the log cannot be used.
bool start(unsigned char board)
{
    // A rotation that a power cut interrupted is finished before anything else.
    std::vector<std::string> actions;
    if (!TAVLib::RecordKit::SELStoreCheck(board).recover(actions)) {
        return false;
    }
    const TAVLib::RecordKit::SELStoreCheck check(board);
    BMCSELDataFile store;
    return !check.workingFile().isMissing || store.restoreTmpSel(board) == 1 ||
           store.truncate(board, 0, WORKING) == BMCSELDataFile::SUCCESS;
}

}

int main(int argc, char** argv)
{
    TAVLib::host::setSystemRoot(argc > 1 ? argv[1] : "");
    bool isReady = true;
    for (int board = 0; board < TAVLib::host::machine().systemBoards; ++board) {
        const bool hasStarted = start(static_cast<unsigned char>(board));
        std::printf("board %d: %s\n", board, hasStarted ? "ready" : "not ready");
        isReady = isReady && hasStarted;
    }
    return isReady ? 0 : 1;
}
