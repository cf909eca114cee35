// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_TESTS_MODEL_STORECALLS_H
#define RECORDKIT_TESTS_MODEL_STORECALLS_H

#include <string>

#include "support/Failures.h"

namespace testing_support {

/// What the event store does besides reading and writing its files: commands, renames, removals and
/// syncs, by the linker's wrapping, and its companion message files. One log, so that the order
/// counts.
struct StoreCalls {
    Lines log;
    /// The result of commands, without running them; 0 lets them copy.
    int commandStatus = 0;
    /// Whether commands run in a real shell, which is slow. Otherwise they are carried out here.
    bool realShell = false;
    /// A bit for each operation of the message files that returns false.
    unsigned int failingMessageFiles = 0;

    /// The root is left out of what is noted.
    std::string root;

    void note(const std::string& line);
};

/// Order of the bits in failingMessageFiles.
enum MessageFileOperation { CLEAR_MESSAGES, SHIFT_MESSAGES, BACKUP_MESSAGES, RESTORE_MESSAGES };

/// What errno is after a command.
constexpr int ERROR_AFTER_COMMAND = 71;

StoreCalls& storeCalls();

}

#endif
