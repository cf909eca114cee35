// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_INSPECT_LOG_LOGSTATUS_H
#define RECORDKIT_INSPECT_LOG_LOGSTATUS_H

#include <cstddef>
#include <optional>

#include <recordkit/inspect/bytes/Time.h>
#include <recordkit/inspect/log/BoardLog.h>

namespace recordkit::inspect {

/// One board's log at a glance.
struct LogStatus {
    unsigned int board = 0;
    std::optional<unsigned int> inWorkingFile; ///< events; nothing if the file is missing
    unsigned int rotatedFiles = 0;
    std::size_t total = 0;   ///< events in all files, each once
    std::size_t counted = 0; ///< events that the store counts
    std::optional<unsigned int> inBackup;
    std::optional<Timestamp> oldest; ///< nothing if no event has a timestamp
    std::optional<Timestamp> newest;
    std::size_t findings = 0; ///< what is wrong with the files
    std::vector<LogProblem> problems;
};

LogStatus readLogStatus(unsigned char board);

}

#endif
