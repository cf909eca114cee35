// SPDX-License-Identifier: Apache-2.0
#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

#include "Run.h"

namespace {

/// The next file that is opened would get the descriptor of a closed standard stream, and its
/// content with it. Open the stream so that using it fails as before.
void openClosedStreams()
{
    constexpr int WRONG_MODES[] = {O_WRONLY, O_RDONLY, O_RDONLY};
    for (int stream = STDIN_FILENO; stream <= STDERR_FILENO; ++stream) {
        if (::fcntl(stream, F_GETFD) == -1 && errno == EBADF) {
            static_cast<void>(::open("/dev/null", WRONG_MODES[stream]));
        }
    }
}

}

int main(int argc, char** argv)
{
    openClosedStreams();
    return recordkit::tool::run({argv + (argc > 0 ? 1 : 0), argv + argc});
}
