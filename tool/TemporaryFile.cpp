// SPDX-License-Identifier: Apache-2.0
#include "TemporaryFile.h"

#include <cerrno>
#include <climits>
#include <csignal>
#include <fcntl.h>
#include <sys/random.h>
#include <unistd.h>
#include <utility>

#include "Descriptor.h"
#include "Errors.h"
#include "Files.h"

namespace recordkit::tool {

namespace {

constexpr int ENDING_SIGNALS[] = {SIGHUP, SIGINT, SIGTERM};

// What a signal handler removes.
volatile std::sig_atomic_t hasTemporary = 0;
int temporaryFolder = -1;
char temporaryName[NAME_MAX + 1];

extern "C" void removeTemporary(int signal)
{
    if (hasTemporary != 0) {
        ::unlinkat(temporaryFolder, temporaryName, 0);
    }
    std::signal(signal, SIG_DFL);
    std::raise(signal);
}

/// Handles the signals that would end the command.
void handleSignals()
{
    struct sigaction handler = {};
    handler.sa_handler = removeTemporary;
    for (const int signal : ENDING_SIGNALS) {
        struct sigaction before = {};
        if (::sigaction(signal, nullptr, &before) == 0 && before.sa_handler == SIG_DFL) {
            ::sigaction(signal, &handler, nullptr);
        }
    }
}

constexpr std::size_t SUFFIX_SIZE = 7;

/// A dot and six random characters.
std::string randomSuffix()
{
    constexpr const char* CHARACTERS = "abcdefghijklmnopqrstuvwxyz234567";
    unsigned char random[SUFFIX_SIZE - 1] = {};
    if (TEMP_FAILURE_RETRY(::getrandom(random, sizeof random, 0)) != sizeof random) {
        throw fileError("the system gives no random bytes");
    }
    std::string suffix = ".";
    for (const unsigned char byte : random) {
        suffix += CHARACTERS[byte % 32];
    }
    return suffix;
}

sigset_t endingSignals()
{
    sigset_t signals;
    sigemptyset(&signals);
    for (const int signal : ENDING_SIGNALS) {
        sigaddset(&signals, signal);
    }
    return signals;
}

}

SignalsBlocked::SignalsBlocked()
{
    const sigset_t signals = endingSignals();
    ::sigprocmask(SIG_BLOCK, &signals, nullptr);
}

SignalsBlocked::~SignalsBlocked()
{
    const sigset_t signals = endingSignals();
    ::sigprocmask(SIG_UNBLOCK, &signals, nullptr);
}

TemporaryFile::TemporaryFile(int inFolder, const std::string& like, const std::string& replaced)
    : folder(inFolder), path(replaced)
{
    handleSignals();
    const SignalsBlocked blocked;
    std::string made;
    do {
        made = like.substr(0, NAME_MAX - SUFFIX_SIZE) + randomSuffix();
        fd = ::openat(folder, made.c_str(), O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC,
                      S_IRUSR | S_IWUSR);
    } while (fd == -1 && (errno == EINTR || errno == EEXIST));
    if (fd == -1) {
        const int error = errno;
        const std::string place = path.substr(0, path.find_last_of('/') + 1);
        throw systemError("a temporary file in " + (place.empty() ? "./" : place), "created",
                          error);
    }
    name = made;
    temporaryFolder = folder;
    temporaryName[name.copy(temporaryName, NAME_MAX)] = '\0';
    hasTemporary = 1;
}

TemporaryFile::~TemporaryFile()
{
    const SignalsBlocked blocked;
    if (fd != -1) {
        ::close(fd);
    }
    if (!name.empty()) {
        ::unlinkat(folder, name.c_str(), 0);
        release();
    }
}

void TemporaryFile::write(const std::string& content) const
{
    for (std::size_t done = 0; done < content.size();) {
        const ssize_t count =
            TEMP_FAILURE_RETRY(::write(fd, content.data() + done, content.size() - done));
        if (count == -1) {
            fail("written", errno);
        }
        done += static_cast<std::size_t>(count);
    }
}

void TemporaryFile::copyOwner(const struct stat& of) const
{
    // Only root can give a file to another owner; the owner may set the permissions.
    if (::fchown(fd, of.st_uid, of.st_gid) == -1 && errno != EPERM) {
        fail("given the owner of the file that it replaces", errno);
    }
    setMode(of.st_mode & 07777);
}

void TemporaryFile::setMode(mode_t mode) const
{
    if (::fchmod(fd, mode) == -1) {
        fail("given its permissions", errno);
    }
}

void TemporaryFile::finish(const std::string& content)
{
    if (TEMP_FAILURE_RETRY(::fsync(fd)) == -1) {
        fail("synchronised", errno);
    }
    if (!hasContent(fd, content)) {
        throw fileError(inputName(path) + ": its temporary file does not read back as written");
    }
    if (::close(std::exchange(fd, -1)) == -1) {
        fail("closed", errno);
    }
}

void TemporaryFile::release()
{
    hasTemporary = 0;
    name.clear();
}

void TemporaryFile::fail(const char* what, int error) const
{
    throw systemError(path + ": its temporary file", what, error);
}

}
