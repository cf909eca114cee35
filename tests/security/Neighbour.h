// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_TESTS_SECURITY_NEIGHBOUR_H
#define RECORDKIT_TESTS_SECURITY_NEIGHBOUR_H

#include <functional>
#include <string>
#include <sys/types.h>

#include "tool/sel/SelTest.h"

namespace testing_support {

/// Another user of the machine, who owns nothing of this project.
constexpr uid_t NEIGHBOUR = 65534;

/// Does something as the neighbour, in a process of its own; returns 0, or what `work` returns:
/// errno of what failed.
int asNeighbour(const std::function<int()>& work);

/// A process that does something until the end of the scope.
class Process {
public:
    Process(uid_t user, const std::function<void()>& work);
    ~Process();
    Process(const Process&) = delete;
    Process& operator=(const Process&) = delete;

    /// The exit status of work that ends.
    int wait();

private:
    pid_t child;
};

/// Runs the whole command in this process, without output; for children.
int runQuietly(const Arguments& arguments);

/// A board beside a neighbour: every user may write to the folders of working files. Needs root, to
/// be two users; RECORDKIT_NEIGHBOUR_REQUIRED makes a test fail that cannot.
class HostileBoard : public SelTest {
protected:
    void SetUp() override;

    /// A file that the neighbour makes, with these permissions.
    void plant(const std::string& path, const std::string& content, mode_t mode = 0666) const;
    /// Nobody but root may read it.
    std::string secretFile() const { return root.at("/secret"); }
    bool isSecretUnchanged() const;
    /// `recordkit --root ROOT` and more words.
    Arguments ownWords(const Arguments& more) const;
    Outcome command(const Arguments& more) const { return run(ourCommand(ownWords(more))); }

    static constexpr const char* SECRET = "root-secret-content\n";
};

}

#endif
