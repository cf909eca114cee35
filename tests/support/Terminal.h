// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_TESTS_SUPPORT_TERMINAL_H
#define RECORDKIT_TESTS_SUPPORT_TERMINAL_H

#include <cstdlib>
#include <pty.h>
#include <string>
#include <sys/wait.h>
#include <unistd.h>

#include "support/Process.h"

namespace testing_support {

/// Runs a program with a terminal for its streams; false if none is available. A terminal of 0
/// columns does not say how many it has.
inline bool runOnTerminal(const Arguments& words, const Arguments& environment, std::string& shown,
                          unsigned short columns = 0)
{
    int terminal = -1;
    const winsize size = {24, columns, 0, 0};
    const pid_t child = ::forkpty(&terminal, nullptr, nullptr, &size);
    if (child == -1) {
        return false;
    }
    if (child == 0) {
        ::unsetenv("NO_COLOR");
        execute(words, environment);
    }
    shown.clear();
    char piece[4096];
    // The terminal reports an error when its last user is gone.
    for (ssize_t count = 0; (count = ::read(terminal, piece, sizeof piece)) > 0;) {
        shown.append(piece, static_cast<std::size_t>(count));
    }
    ::close(terminal);
    ::waitpid(child, nullptr, 0);
    return true;
}

}

#endif
