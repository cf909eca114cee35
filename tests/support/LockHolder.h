// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_TESTS_SUPPORT_LOCKHOLDER_H
#define RECORDKIT_TESTS_SUPPORT_LOCKHOLDER_H

#include <csignal>
#include <string>
#include <sys/wait.h>
#include <unistd.h>

#include <recordkit/selfile/SELStoreLock.h>

namespace testing_support {

/// A process that holds the lock of the board until the object ends.
class LockHolder {
public:
    explicit LockHolder(unsigned char board)
    {
        int ends[2];
        if (::pipe(ends) != 0) {
            return;
        }
        child = ::fork();
        if (child == 0) {
            const TAVLib::RecordKit::SELStoreLock lock(board);
            const char held = lock.isHeld() ? 'y' : 'n';
            ::_exit(::write(ends[1], &held, 1) == 1 ? ::pause() : 1);
        }
        char answer = 'n';
        isHolding = ::read(ends[0], &answer, 1) == 1 && answer == 'y';
        ::close(ends[0]);
        ::close(ends[1]);
    }
    ~LockHolder() { kill(); }
    void kill()
    {
        if (child > 0) {
            ::kill(child, SIGKILL);
            ::waitpid(child, nullptr, 0);
            child = -1;
        }
    }
    std::string number() const { return std::to_string(child); }

    bool isHolding = false;

private:
    pid_t child = -1;
};

}

#endif
