// SPDX-License-Identifier: Apache-2.0
// A library to preload, which makes one system call of a program fail.
//
//   RECORDKIT_FAULT=CALL:N:KIND   the N-th call (from 1) of open, read, write, lseek, stat, rename,
//                                 remove, ftruncate, flock, fsync, close or system
//   KIND                          an errno: the call is not made and fails with it, but close,
//                                 which closes all the same; "short": half of what was asked for is
//                                 read or written, half of what /bin/cp copied is there and it
//                                 fails; "always:ERRNO": this call and all later ones
//   RECORDKIT_FAULT_REPORT=FILE   gets "CALLS HIT DESCRIPTORS INHERITED" at the end: how many calls
//                                 there were, whether one went wrong, descriptors left open, and
//                                 how often librecordkit opened one that a started program inherits
//
// pread and pwrite count as read and write, fdatasync as fsync, unlink as remove, fstat as stat,
// and the calls that work in an open folder as those that do not.

// Fortified headers define some of these calls themselves.
#undef _FORTIFY_SOURCE

#include <atomic>
#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <dirent.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <string>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

template <typename Function> Function* next(const char* name)
{
    return reinterpret_cast<Function*>(::dlsym(RTLD_NEXT, name));
}

std::size_t openDescriptors()
{
    std::size_t count = 0;
    if (DIR* const folder = ::opendir("/proc/self/fd")) {
        while (::readdir(folder) != nullptr) {
            ++count;
        }
        ::closedir(folder);
    }
    return count;
}

/// What the environment asks for, and what came of it.
struct Fault {
    std::string call;
    long number = 0;
    int error = 0;
    bool isShort = false;
    bool isLasting = false;
    std::string reportPath;
    std::size_t descriptorsBefore = openDescriptors();
    std::atomic<long> calls{0};
    std::atomic<bool> wasHit{false};
    std::atomic<long> inherited{0};

    Fault()
    {
        if (const char* const fault = std::getenv("RECORDKIT_FAULT")) {
            const std::string text = fault;
            const std::size_t first = text.find(':');
            const std::size_t second = text.find(':', first + 1);
            std::string kind = text.substr(second + 1);
            call = text.substr(0, first);
            number = std::atol(text.substr(first + 1).c_str());
            isLasting = kind.compare(0, 7, "always:") == 0;
            kind = isLasting ? kind.substr(7) : kind;
            isShort = kind == "short";
            error = isShort ? EIO : std::atoi(kind.c_str());
        }
        if (const char* const report = std::getenv("RECORDKIT_FAULT_REPORT")) {
            reportPath = report;
        }
        // Programs that this one starts are not affected.
        ::unsetenv("LD_PRELOAD");
        ::unsetenv("RECORDKIT_FAULT");
        ::unsetenv("RECORDKIT_FAULT_REPORT");
    }
};

/// Made by whoever asks first, and never destroyed: calls come before and after everything.
Fault& fault()
{
    static Fault& only = *new Fault;
    return only;
}

__attribute__((constructor)) void begin()
{
    fault();
}

/// Whether this call is the one to go wrong; errno is set then.
bool isFaulty(const char* call)
{
    Fault& wanted = fault();
    if (wanted.call != call) {
        return false;
    }
    const long number = ++wanted.calls;
    if (number != wanted.number && !(wanted.isLasting && number > wanted.number)) {
        return false;
    }
    wanted.wasHit = true;
    errno = wanted.error;
    return true;
}

__attribute__((destructor)) void end()
{
    Fault& wanted = fault();
    if (wanted.reportPath.empty()) {
        return;
    }
    const std::size_t after = openDescriptors();
    wanted.call.clear();
    if (std::FILE* const report = std::fopen(wanted.reportPath.c_str(), "w")) {
        std::fprintf(report, "%ld %d %ld %ld\n", wanted.calls.load(), wanted.wasHit ? 1 : 0,
                     static_cast<long>(after) - static_cast<long>(wanted.descriptorsBefore),
                     wanted.inherited.load());
        std::fclose(report);
    }
}

/// Counts a file that programs started later inherit, when librecordkit or its host opened it.
void countInherited(const void* caller)
{
    Dl_info info = {};
    if (::dladdr(caller, &info) != 0 && std::strstr(info.dli_fname, "librecordkit") != nullptr) {
        ++fault().inherited;
    }
}

/// What /bin/cp leaves when it runs out of space.
void halve(const std::string& command)
{
    const std::size_t first = command.find(' ', command.find(' ') + 1) + 1;
    const std::string to = command.substr(first, command.find_first_of(" >", first) - first);
    struct stat status = {};
    if (::stat(to.c_str(), &status) == 0) {
        static_cast<void>(
            next<int(const char*, off_t)>("truncate")(to.c_str(), status.st_size / 2));
    }
}

}

extern "C" {

/// For programs that report when the operation under test has ended: their later calls do not fail.
void recordkit_faults_end()
{
    fault().call.clear();
}

int open(const char* path, int flags, ...)
{
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = (flags & O_CREAT) != 0 ? va_arg(arguments, mode_t) : 0;
    va_end(arguments);
    static const auto real = next<int(const char*, int, ...)>("open");
    if ((flags & O_CLOEXEC) == 0) {
        countInherited(__builtin_return_address(0));
    }
    return isFaulty("open") ? -1 : real(path, flags, mode);
}

// What a fortified open without permissions becomes.
int __open_2(const char* path, int flags)
{
    return open(path, flags);
}

int openat(int folder, const char* path, int flags, ...)
{
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = (flags & O_CREAT) != 0 ? va_arg(arguments, mode_t) : 0;
    va_end(arguments);
    static const auto real = next<int(int, const char*, int, ...)>("openat");
    return isFaulty("open") ? -1 : real(folder, path, flags, mode);
}

int __openat_2(int folder, const char* path, int flags)
{
    return openat(folder, path, flags);
}

int mkostemp(char* pattern, int flags)
{
    static const auto real = next<int(char*, int)>("mkostemp");
    return isFaulty("open") ? -1 : real(pattern, flags);
}

std::FILE* fopen(const char* path, const char* mode)
{
    static const auto real = next<std::FILE*(const char*, const char*)>("fopen");
    if (std::strchr(mode, 'e') == nullptr) {
        countInherited(__builtin_return_address(0));
    }
    return real(path, mode);
}

ssize_t read(int fd, void* buffer, size_t length)
{
    static const auto real = next<ssize_t(int, void*, size_t)>("read");
    if (!isFaulty("read")) {
        return real(fd, buffer, length);
    }
    return fault().isShort ? real(fd, buffer, (length + 1) / 2) : -1;
}

ssize_t pread(int fd, void* buffer, size_t length, off_t offset)
{
    static const auto real = next<ssize_t(int, void*, size_t, off_t)>("pread");
    if (!isFaulty("read")) {
        return real(fd, buffer, length, offset);
    }
    return fault().isShort ? real(fd, buffer, (length + 1) / 2, offset) : -1;
}

ssize_t write(int fd, const void* buffer, size_t length)
{
    static const auto real = next<ssize_t(int, const void*, size_t)>("write");
    if (!isFaulty("write")) {
        return real(fd, buffer, length);
    }
    return fault().isShort ? real(fd, buffer, (length + 1) / 2) : -1;
}

ssize_t pwrite(int fd, const void* buffer, size_t length, off_t offset)
{
    static const auto real = next<ssize_t(int, const void*, size_t, off_t)>("pwrite");
    if (!isFaulty("write")) {
        return real(fd, buffer, length, offset);
    }
    return fault().isShort ? real(fd, buffer, (length + 1) / 2, offset) : -1;
}

off_t lseek(int fd, off_t offset, int whence)
{
    static const auto real = next<off_t(int, off_t, int)>("lseek");
    return isFaulty("lseek") ? -1 : real(fd, offset, whence);
}

int stat(const char* path, struct stat* status)
{
    static const auto real = next<int(const char*, struct stat*)>("stat");
    return isFaulty("stat") ? -1 : real(path, status);
}

int fstat(int fd, struct stat* status)
{
    static const auto real = next<int(int, struct stat*)>("fstat");
    return isFaulty("stat") ? -1 : real(fd, status);
}

int rename(const char* from, const char* to)
{
    static const auto real = next<int(const char*, const char*)>("rename");
    return isFaulty("rename") ? -1 : real(from, to);
}

int renameat(int fromFolder, const char* from, int toFolder, const char* to)
{
    static const auto real = next<int(int, const char*, int, const char*)>("renameat");
    return isFaulty("rename") ? -1 : real(fromFolder, from, toFolder, to);
}

int renameat2(int fromFolder, const char* from, int toFolder, const char* to, unsigned int flags)
{
    static const auto real =
        next<int(int, const char*, int, const char*, unsigned int)>("renameat2");
    return isFaulty("rename") ? -1 : real(fromFolder, from, toFolder, to, flags);
}

int remove(const char* path)
{
    static const auto real = next<int(const char*)>("remove");
    return isFaulty("remove") ? -1 : real(path);
}

int unlink(const char* path)
{
    static const auto real = next<int(const char*)>("unlink");
    return isFaulty("remove") ? -1 : real(path);
}

int unlinkat(int folder, const char* path, int flags)
{
    static const auto real = next<int(int, const char*, int)>("unlinkat");
    return isFaulty("remove") ? -1 : real(folder, path, flags);
}

int ftruncate(int fd, off_t length)
{
    static const auto real = next<int(int, off_t)>("ftruncate");
    return isFaulty("ftruncate") ? -1 : real(fd, length);
}

int flock(int fd, int operation)
{
    static const auto real = next<int(int, int)>("flock");
    return isFaulty("flock") ? -1 : real(fd, operation);
}

int fsync(int fd)
{
    static const auto real = next<int(int)>("fsync");
    return isFaulty("fsync") ? -1 : real(fd);
}

int fdatasync(int fd)
{
    static const auto real = next<int(int)>("fdatasync");
    return isFaulty("fsync") ? -1 : real(fd);
}

int close(int fd)
{
    static const auto real = next<int(int)>("close");
    if (!isFaulty("close")) {
        return real(fd);
    }
    const int error = errno;
    real(fd);
    errno = error;
    return -1;
}

int system(const char* command)
{
    static const auto real = next<int(const char*)>("system");
    if (command == nullptr || !isFaulty("system")) {
        return real(command);
    }
    if (!fault().isShort) {
        return -1;
    }
    real(command);
    halve(command);
    constexpr int EXIT_1 = 1 << 8;
    return EXIT_1;
}

// Waiting for the medium changes no outcome, and thousands of runs would wait for it.
void sync()
{
}
}
