// SPDX-License-Identifier: Apache-2.0
#include <recordkit/inspect/log/LogStatus.h>

#include <algorithm>

#include <recordkit/selfile/SELFileLayout.h>
#include <recordkit/selfile/SELStoreCheck.h>

namespace recordkit::inspect {

using TAVLib::RecordKit::SELStoreCheck;

namespace {

/// Adds a file of the chain, the newest first.
void add(LogStatus& status, const SELStoreCheck::File& file)
{
    status.rotatedFiles += file.index != 0 ? 1 : 0;
    status.total += file.count;
    if (file.hasTimes) {
        status.newest = status.newest.value_or(Timestamp(file.lastTime));
        status.oldest = Timestamp(file.firstTime);
    }
}

}

LogStatus readLogStatus(unsigned char board)
{
    const SELStoreCheck check(board);
    LogStatus status;
    status.board = board;
    status.findings = static_cast<std::size_t>(
        std::count_if(check.getFindings().begin(), check.getFindings().end(),
                      [](const SELStoreCheck::Finding& finding) { return finding.isDamage; }));
    for (const SELStoreCheck::File& file : check.getFiles()) {
        const auto count = file.isMissing ? std::nullopt : std::optional(file.count);
        if (file.index == 0 && file.kind == TAVLib::RecordKit::SELFileLayout::PERSISTENT) {
            status.inBackup = count;
            continue;
        }
        if (file.index == 0) {
            status.inWorkingFile = count;
        } else if (file.isMissing) {
            break;
        }
        add(status, file);
    }
    return status;
}

}
