// SPDX-License-Identifier: Apache-2.0
#include "OutputFile.h"

#include <array>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <fcntl.h>
#include <sys/vfs.h>
#include <unistd.h>

#include <recordkit/host/LockTimeout.h>
#include <recordkit/posix/File.h>

#include "Errors.h"
#include "Files.h"
#include "InPlace.h"
#include "TemporaryFile.h"

namespace recordkit::tool {

namespace {

int openIn(int at, const char* name, int flags)
{
    return TEMP_FAILURE_RETRY(::openat(at, name, flags | O_CLOEXEC));
}

CommandError refusal(const std::string& path, const std::string& reason)
{
    return fileError(inputName(path) + " cannot be written: " + reason);
}

struct stat statusOf(int fd, const std::string& path)
{
    struct stat status = {};
    if (::fstat(fd, &status) == -1) {
        throw systemError(path, "written", errno);
    }
    return status;
}

std::string targetOf(int link, const std::string& path)
{
    std::array<char, PATH_MAX> target = {};
    const ssize_t length = ::readlinkat(link, "", target.data(), target.size());
    if (length == -1) {
        throw systemError(path, "written", errno);
    }
    return {target.data(), static_cast<std::size_t>(length)};
}

/// The permissions of a new file.
mode_t newMode(Readers readers)
{
    const mode_t mask = ::umask(0);
    ::umask(mask);
    return readers == Readers::ALL ? 0666 & ~mask : 0600;
}

constexpr const char* CHANGED = "changed by another program";

/// An open file, written in place.
class FileInPlace : public InPlaceTarget {
public:
    FileInPlace(int descriptor, const std::string& name) : fd(descriptor), path(name) {}

    std::size_t write(std::size_t offset, const char* bytes, std::size_t size) override
    {
        const ssize_t count =
            TEMP_FAILURE_RETRY(::pwrite(fd, bytes, size, static_cast<off_t>(offset)));
        if (count <= 0) {
            throw systemError(path, "written", count == 0 ? ENOSPC : errno);
        }
        return static_cast<std::size_t>(count);
    }

    void synchronise() override
    {
        // A device that cannot be synchronised needs no waiting.
        if (TEMP_FAILURE_RETRY(::fdatasync(fd)) == -1 && errno != EINVAL && errno != EROFS) {
            throw systemError(path, "synchronised", errno);
        }
    }

    bool has(std::size_t offset, const std::string& bytes) override
    {
        std::string content(bytes.size(), '\0');
        std::size_t done = 0;
        return TAVLib::posix::readAt(fd, offset, content.data(), content.size(), done) &&
               content == bytes;
    }

private:
    int fd;
    const std::string& path;
};

}

OutputFile::OutputFile(const std::string& given) : path(given)
{
    find();
}

/// Opens the folder of the file, or of what a link leads to.
void OutputFile::find()
{
    constexpr int MOST_LINKS = 40;
    std::string rest = path;
    for (int links = 0; links <= MOST_LINKS; ++links) {
        const std::size_t slash = rest.find_last_of('/');
        const std::string place = slash == std::string::npos ? "." : rest.substr(0, slash + 1);
        name = slash == std::string::npos ? rest : rest.substr(slash + 1);
        folder.reset(
            openIn(folder.isOpen() ? folder.get() : AT_FDCWD, place.c_str(), O_PATH | O_DIRECTORY));
        if (!folder.isOpen()) {
            throw systemError(path, "written", errno);
        }
        const Descriptor file(
            openIn(folder.get(), name.empty() ? "." : name.c_str(), O_PATH | O_NOFOLLOW));
        if (file.get() == -1) {
            if (errno != ENOENT) {
                throw systemError(path, "written", errno);
            }
            return;
        }
        status = statusOf(file.get(), path);
        if (!S_ISLNK(status->st_mode)) {
            return;
        }
        if ((statusOf(folder.get(), path).st_mode & S_IWOTH) != 0) {
            break;
        }
        status.reset();
        rest = targetOf(file.get(), path);
    }
    throw systemError(path, "written", ELOOP);
}

bool OutputFile::isDevice() const
{
    constexpr long SYSFS = 0x62656572;
    struct statfs system = {};
    return status && (!S_ISREG(status->st_mode) ||
                      (::fstatfs(folder.get(), &system) == 0 && system.f_type == SYSFS));
}

void OutputFile::requireOwn() const
{
    if (!status || (statusOf(folder.get(), path).st_mode & S_IWOTH) == 0) {
        return;
    }
    if (status->st_uid != ::geteuid() && status->st_uid != 0) {
        throw refusal(path, "it belongs to another user, in a folder that everybody may write to");
    }
    if (status->st_nlink != 1 || (status->st_mode & S_IWOTH) != 0) {
        throw refusal(path, "others have it in hand, in a folder that everybody may write to");
    }
}

void OutputFile::replace(const std::string& content, const std::string* expected, Readers readers)
{
    if (status && !S_ISREG(status->st_mode)) {
        throw systemError(path, "written", S_ISDIR(status->st_mode) ? EISDIR : EINVAL);
    }
    requireOwn();
    const Descriptor old(
        status ? openIn(folder.get(), name.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK) : -1);
    lock(old);
    if (status && !isUnchanged(name.c_str(), expected)) {
        throw refusal(path, CHANGED);
    }
    TemporaryFile temporary(folder.get(), name, path);
    if (status) {
        temporary.copyOwner(*status);
    } else {
        temporary.setMode(newMode(readers));
    }
    temporary.write(content);
    temporary.finish(content);
    put(temporary, expected);
}

/// Makes other runs of the command wait that write the same file: who waited then finds that the
/// name leads to another file, or the file to other content.
void OutputFile::lock(const Descriptor& file) const
{
    // A file that cannot be opened for reading, or has no locks, is compared without.
    if (file.isOpen() && !TAVLib::posix::lockFile(file.get(), TAVLib::host::lockTimeout()) &&
        errno == EWOULDBLOCK) {
        throw refusal(path, "another program keeps it locked");
    }
}

/// Whether the file of this name is the one that was found, with the content that was read.
bool OutputFile::isUnchanged(const char* its, const std::string* expected) const
{
    const Descriptor file(openIn(folder.get(), its, O_RDONLY | O_NOFOLLOW | O_NONBLOCK));
    struct stat now = {};
    if (file.get() == -1 || ::fstat(file.get(), &now) == -1) {
        // A file that its owner may write and not read.
        return expected == nullptr && errno == EACCES;
    }
    return now.st_dev == status->st_dev && now.st_ino == status->st_ino &&
           (expected == nullptr || hasContent(file.get(), *expected));
}

/// Gives the temporary file the name. Old and new file change places, so that what the name had is
/// looked at when nobody can change it by that name any more.
void OutputFile::put(TemporaryFile& temporary, const std::string* expected)
{
    const SignalsBlocked blocked;
    const unsigned int how = status ? RENAME_EXCHANGE : RENAME_NOREPLACE;
    const char* const fresh = temporary.getName();
    if (::renameat2(folder.get(), fresh, folder.get(), name.c_str(), how) == 0) {
        if (!status) {
            temporary.release();
        } else if (!isUnchanged(fresh, expected)) {
            ::renameat2(folder.get(), fresh, folder.get(), name.c_str(), how);
            throw refusal(path, CHANGED);
        }
        return;
    }
    const bool isUnknown = errno == EINVAL || errno == ENOSYS;
    if (!isUnknown) {
        throw errno == EEXIST || errno == ENOENT ? refusal(path, CHANGED)
                                                 : systemError(path, "replaced", errno);
    }
    if (status && !isUnchanged(name.c_str(), expected)) {
        throw refusal(path, CHANGED);
    }
    if (::renameat(folder.get(), fresh, folder.get(), name.c_str()) == -1) {
        throw systemError(path, "replaced", errno);
    }
    temporary.release();
}

void OutputFile::patch(const std::string& before, const std::string& after, std::size_t page)
{
    requireOwn();
    const Descriptor file(openIn(folder.get(), name.c_str(), O_RDWR | O_NOFOLLOW | O_NONBLOCK));
    if (file.get() == -1) {
        throw systemError(path, "written", errno);
    }
    lock(file);
    const struct stat now = statusOf(file.get(), path);
    if (!status || now.st_dev != status->st_dev || now.st_ino != status->st_ino ||
        (S_ISREG(now.st_mode) && !hasContent(file.get(), before))) {
        throw refusal(path, CHANGED);
    }
    FileInPlace target(file.get(), path);
    writeInPlace(target, before, after, page);
    // Also what was not written.
    if (!beginsWith(file.get(), after)) {
        throw fileError(inputName(path) + " does not read back as written");
    }
}

void writeOutput(const std::string& path, const std::string& content, Readers readers)
{
    OutputFile(path).replace(content, nullptr, readers);
}

}
