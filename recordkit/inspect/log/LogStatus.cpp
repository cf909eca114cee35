// SPDX-License-Identifier: Apache-2.0
#include <recordkit/inspect/log/LogStatus.h>

#include <algorithm>

#include <recordkit/selfile/SELStoreCheck.h>

namespace recordkit::inspect {

using TAVLib::RecordKit::SELStoreCheck;

namespace {

std::optional<unsigned int> eventsOf(const LogFile& file)
{
    return file.error != 0 ? std::nullopt : std::optional(SlotView(file.bytes).getTail());
}

void addTimes(LogStatus& status, const BoardLog& log)
{
    for (const LogSlot& slot : log.getSlots()) {
        const Event event = log.decode(slot);
        if (event.hasTime && !slot.isCopy) {
            status.newest = event.time;
            status.oldest = status.oldest.value_or(event.time);
        }
    }
}

}

LogStatus readLogStatus(unsigned char board)
{
    const BoardLog log(board);
    const SELStoreCheck check(board);
    LogStatus status;
    status.board = board;
    status.findings = static_cast<std::size_t>(
        std::count_if(check.getFindings().begin(), check.getFindings().end(),
                      [](const SELStoreCheck::Finding& finding) { return finding.isDamage; }));
    const std::vector<LogFile>& files = log.getFiles();
    status.inWorkingFile = eventsOf(files[BoardLog::WORKING]);
    status.inBackup = eventsOf(files[BoardLog::BACKUP]);
    status.rotatedFiles = static_cast<unsigned int>(
        std::count_if(files.begin(), files.end(),
                      [](const LogFile& file) { return file.index != 0 && !file.isMissing(); }));
    status.total = log.getTotal();
    status.counted = log.getCounted();
    status.problems = log.getProblems();
    addTimes(status, log);
    return status;
}

}
