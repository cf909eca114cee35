// SPDX-License-Identifier: Apache-2.0
#include <recordkit/platform/BMCMessageFile.h>

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

#include <recordkit/platform/BoardFiles.h>
#include <recordkit/platform/LockedFile.h>
#include <recordkit/platform/PException.h>
#include <recordkit/platform/SystemRoot.h>
#include <recordkit/platform/TavTrace.h>

namespace TAVLib {

namespace {

std::string messageFile(const char* folder, unsigned char sb, int index)
{
    return systemRoot() + folder + "sb" + std::to_string(sb) + "_bmc_msg" + std::to_string(index);
}

std::string workingFile(unsigned char sb)
{
    return messageFile(BoardFiles::WORKING_FOLDER, sb, 0);
}

std::string keptFile(unsigned char sb, int index)
{
    return messageFile(BoardFiles::PERSISTENT_FOLDER, sb, index);
}

/// False, after a trace line with the reason.
bool failed(const std::string& what, int error)
{
    const std::string line = "BMCMessageFile " + what + ": errno " + std::to_string(error);
    trace::TavTrace(1, 210, 2).putLog(0, line.c_str());
    return false;
}

bool exists(const std::string& path)
{
    struct stat status = {};
    return ::lstat(path.c_str(), &status) == 0 || errno != ENOENT;
}

bool removeFile(const std::string& path)
{
    return ::unlink(path.c_str()) == 0 || errno == ENOENT || failed("remove " + path, errno);
}

bool renameFile(const std::string& from, const std::string& to)
{
    return ::rename(from.c_str(), to.c_str()) == 0 || errno == ENOENT ||
           failed("rename " + from, errno);
}

/// An open file, closed at the end of the scope.
class OpenFile {
public:
    OpenFile(const std::string& path, int flags)
        : fd(::open(path.c_str(), flags | O_NOFOLLOW | O_CLOEXEC, 0644))
    {
    }
    ~OpenFile()
    {
        if (fd != -1) {
            ::close(fd);
        }
    }
    OpenFile(const OpenFile&) = delete;
    OpenFile& operator=(const OpenFile&) = delete;

    const int fd;
};

bool readAll(int fd, std::string& contents)
{
    char buffer[4096];
    for (;;) {
        const ssize_t count = ::read(fd, buffer, sizeof buffer);
        if (count > 0) {
            contents.append(buffer, static_cast<std::size_t>(count));
        } else if (count == 0 || errno != EINTR) {
            return count == 0;
        }
    }
}

bool writeAll(int fd, const std::string& contents)
{
    std::size_t done = 0;
    while (done < contents.size()) {
        const ssize_t count = ::write(fd, contents.data() + done, contents.size() - done);
        if (count >= 0) {
            done += static_cast<std::size_t>(count);
        } else if (errno != EINTR) {
            return false;
        }
    }
    return true;
}

/// Copies a file under another name in the target's folder, and renames it when it is complete: a
/// power cut leaves the old target or the new one. Without the file there is nothing to do.
bool copyFile(const std::string& from, const std::string& to)
{
    const OpenFile source(from, O_RDONLY);
    if (source.fd == -1 && errno == ENOENT) {
        return true;
    }
    std::string contents;
    if (source.fd == -1 || !readAll(source.fd, contents)) {
        return failed("read " + from, errno);
    }
    const std::string temporary = to + ".new";
    if (!removeFile(temporary)) {
        return false;
    }
    const OpenFile target(temporary, O_WRONLY | O_CREAT | O_EXCL);
    if (target.fd == -1 || !writeAll(target.fd, contents) || ::fsync(target.fd) == -1 ||
        ::rename(temporary.c_str(), to.c_str()) == -1) {
        const int error = errno;
        ::unlink(temporary.c_str());
        return failed("write " + to, error);
    }
    return true;
}

}

/// Nothing is kept between two operations.
class BMCMessageFile::State {};

BMCMessageFile::BMCMessageFile() : state(nullptr)
{
}

BMCMessageFile::~BMCMessageFile()
{
    delete state;
}

bool BMCMessageFile::clearMessageFile(unsigned char sb)
{
    bool isDone = removeFile(workingFile(sb));
    for (int i = 0; i <= BoardFiles::OLDEST_FILE; ++i) {
        isDone = removeFile(keptFile(sb, i)) && isDone;
    }
    return isDone;
}

bool BMCMessageFile::shiftSelMessageFile(unsigned char sb)
{
    const std::string working = workingFile(sb);
    if (exists(working)) {
        // Copied before it is emptied: a power cut in between loses nothing.
        if (!copyFile(working, keptFile(sb, 0))) {
            return false;
        }
        try {
            LockedFile(working).truncFile(0);
        } catch (const PException& e) {
            return failed("empty " + working, e.getExceptionDetail());
        }
    }
    for (int i = BoardFiles::OLDEST_FILE - 1; i >= 0; --i) {
        if (!renameFile(keptFile(sb, i), keptFile(sb, i + 1))) {
            return false;
        }
    }
    return true;
}

bool BMCMessageFile::backupTmpMessageFile(unsigned char sb)
{
    return copyFile(workingFile(sb), keptFile(sb, 0));
}

bool BMCMessageFile::restoreTmpMessageFile(unsigned char sb)
{
    return copyFile(keptFile(sb, 0), workingFile(sb));
}

}
