// SPDX-License-Identifier: Apache-2.0
#include <recordkit/platform/BMCMessageFile.h>

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <string>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

#include <recordkit/platform/LockedFile.h>
#include <recordkit/platform/SystemRoot.h>
#include <recordkit/platform/TavTrace.h>

#include "FileError.h"

namespace TAVLib {

namespace {

constexpr const char* WORKING_FOLDER = "/tmp/";
constexpr const char* PERSISTENT_FOLDER = "/var/tav/fmem/ipmi/";
constexpr int OLDEST_FILE = 7;
constexpr mode_t FILE_MODE = 0644;

std::string fileName(const char* folder, unsigned char sb, int index)
{
    return systemRoot() + folder + "sb" + std::to_string(sb) + "_bmc_msg" + std::to_string(index);
}

std::string workingFile(unsigned char sb)
{
    return fileName(WORKING_FOLDER, sb, 0);
}

std::string persistentFile(unsigned char sb, int index)
{
    return fileName(PERSISTENT_FOLDER, sb, index);
}

[[noreturn]] void fail(const char* operation, const std::string& path, int error)
{
    throw host::fileError(host::BMC_MESSAGE_FILE_LOCATION, operation, path, error);
}

/// A descriptor that is closed at the end of its scope.
class Descriptor {
public:
    Descriptor(const std::string& path, int flags)
        : fd(TEMP_FAILURE_RETRY(::open(path.c_str(), flags | O_CLOEXEC | O_NOFOLLOW, FILE_MODE)))
    {
    }
    ~Descriptor()
    {
        if (fd != -1) {
            ::close(fd);
        }
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    int get() const { return fd; }

private:
    int fd;
};

/// The whole file; false when it does not exist.
bool readFile(const std::string& path, std::vector<unsigned char>& bytes)
{
    const Descriptor file(path, O_RDONLY);
    if (file.get() == -1) {
        if (errno == ENOENT) {
            return false;
        }
        fail("open", path, errno);
    }
    unsigned char piece[4096];
    ssize_t count = 0;
    while ((count = TEMP_FAILURE_RETRY(::read(file.get(), piece, sizeof piece))) > 0) {
        bytes.insert(bytes.end(), piece, piece + count);
    }
    if (count == -1) {
        fail("read", path, errno);
    }
    return true;
}

/// Replaces a file by renaming a temporary file in its folder, so that it is complete at every
/// moment.
void replaceFile(const std::string& path, const std::vector<unsigned char>& bytes)
{
    const std::string temporary = path + ".new";
    const Descriptor file(temporary, O_WRONLY | O_CREAT | O_TRUNC);
    if (file.get() == -1) {
        fail("open", temporary, errno);
    }
    const auto giveUp = [&temporary](const char* operation) {
        const int error = errno;
        ::unlink(temporary.c_str());
        fail(operation, temporary, error);
    };
    std::size_t written = 0;
    while (written < bytes.size()) {
        const ssize_t count =
            TEMP_FAILURE_RETRY(::write(file.get(), bytes.data() + written, bytes.size() - written));
        if (count == -1) {
            giveUp("write");
        }
        written += static_cast<std::size_t>(count);
    }
    if (TEMP_FAILURE_RETRY(::fsync(file.get())) == -1) {
        giveUp("sync");
    }
    if (::rename(temporary.c_str(), path.c_str()) == -1) {
        giveUp("rename");
    }
}

/// Copies a file; returns false if it does not exist.
bool copyFile(const std::string& from, const std::string& to)
{
    std::vector<unsigned char> bytes;
    if (!readFile(from, bytes)) {
        return false;
    }
    replaceFile(to, bytes);
    return true;
}

void renameIfPresent(const std::string& from, const std::string& to)
{
    if (::rename(from.c_str(), to.c_str()) == -1 && errno != ENOENT) {
        fail("rename", from, errno);
    }
}

void removeIfPresent(const std::string& path)
{
    if (::unlink(path.c_str()) == -1 && errno != ENOENT) {
        fail("remove", path, errno);
    }
}

void clear(unsigned char sb)
{
    removeIfPresent(workingFile(sb));
    for (int i = 0; i <= OLDEST_FILE; ++i) {
        removeIfPresent(persistentFile(sb, i));
    }
}

void shift(unsigned char sb)
{
    const bool hasMessages = copyFile(workingFile(sb), persistentFile(sb, 0));
    if (hasMessages) {
        LockedFile(workingFile(sb)).truncFile(0);
    }
    for (int i = OLDEST_FILE - 1; i >= 0; --i) {
        renameIfPresent(persistentFile(sb, i), persistentFile(sb, i + 1));
    }
}

void backup(unsigned char sb)
{
    copyFile(workingFile(sb), persistentFile(sb, 0));
}

void restore(unsigned char sb)
{
    copyFile(persistentFile(sb, 0), workingFile(sb));
}

/// Turns the failure of an operation into false and a trace line with the reason.
bool succeeds(void (*operation)(unsigned char), unsigned char sb)
{
    try {
        operation(sb);
        return true;
    } catch (const PException& e) {
        trace::TavTrace(e.getProducer(), e.getModuleCode(), e.getLocationCode())
            .putLog(0, e.getMessage().c_str());
        return false;
    }
}

}

bool BMCMessageFile::clearMessageFile(unsigned char sb)
{
    return succeeds(clear, sb);
}

bool BMCMessageFile::shiftSelMessageFile(unsigned char sb)
{
    return succeeds(shift, sb);
}

bool BMCMessageFile::backupTmpMessageFile(unsigned char sb)
{
    return succeeds(backup, sb);
}

bool BMCMessageFile::restoreTmpMessageFile(unsigned char sb)
{
    return succeeds(restore, sb);
}

}
