// SPDX-License-Identifier: Apache-2.0
// The maintenance of the store: files emptied, copied, restored and moved into the chain.
#include <recordkit/selfile/BMCSELDataFile.h>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <recordkit/platform/BMCMessageFile.h>
#include <recordkit/platform/CommonUtil.h>
#include <recordkit/platform/LockedFile.h>
#include <recordkit/platform/PException.h>
#include <recordkit/posix/File.h>
#include <recordkit/selfile/SELFileLayout.h>
#include <recordkit/serial/Failure.h>

using TAVLib::BMCMessageFile;
using TAVLib::LEVEL_ERROR;
using TAVLib::LockedFile;
using TAVLib::MESSAGE_TEXT;
using TAVLib::PException;
using namespace TAVLib::RecordKit::SELFileLayout;

namespace {

/// Size of the answer in the shift request file.
constexpr std::size_t SHIFT_ANSWER_SIZE = 16;

/// The ends of a copy command. A rotation has always copied without the blank: the shell sees no
/// difference, but a log of the board's commands does.
constexpr const char* SILENTLY = " >/dev/null 2>&1";
constexpr const char* SILENTLY_WITHOUT_BLANK = ">/dev/null 2>&1";

bool exists(const std::string& name, struct stat& status)
{
    return ::stat(name.c_str(), &status) == 0;
}

bool isLink(const std::string& name)
{
    struct stat status = {};
    return ::lstat(name.c_str(), &status) == 0 && S_ISLNK(status.st_mode);
}

/// Keeps the default for the end of child processes, without which the C library cannot learn how a
/// command ended.
class ChildrenAreWaitedFor {
public:
    ChildrenAreWaitedFor()
    {
        ::sigaction(SIGCHLD, nullptr, &before);
        isIgnored = before.sa_handler == SIG_IGN || (before.sa_flags & SA_NOCLDWAIT) != 0;
        if (isIgnored) {
            struct sigaction usual = {};
            usual.sa_handler = SIG_DFL;
            ::sigaction(SIGCHLD, &usual, nullptr);
        }
    }
    ~ChildrenAreWaitedFor()
    {
        if (isIgnored) {
            ::sigaction(SIGCHLD, &before, nullptr);
        }
    }
    ChildrenAreWaitedFor(const ChildrenAreWaitedFor&) = delete;
    ChildrenAreWaitedFor& operator=(const ChildrenAreWaitedFor&) = delete;

private:
    struct sigaction before = {};
    bool isIgnored = false;
};

/// Why a copy is not made, as errno: a root whose name a shell would not take as it is, or a file
/// at either end that the library would not open. 0 for none; that a file is missing is cp's to
/// say.
int copyRefusal(const std::string& from, const std::string& to)
{
    constexpr const char* HARMLESS =
        "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789._/+-";
    if ((from + to).find_first_not_of(HARMLESS) != std::string::npos) {
        return EINVAL;
    }
    const int source = TAVLib::posix::refusalOf(from);
    return source != 0 ? source : TAVLib::posix::refusalOf(to);
}

/// The status of the command; -1, with errno, for one that is not run.
int runCopy(const std::string& from, const std::string& to, const char* redirection)
{
    const int refusal = copyRefusal(from, to);
    if (refusal != 0) {
        errno = refusal;
        return -1;
    }
    const std::string command = "/bin/cp " + from + " " + to + redirection;
    const ChildrenAreWaitedFor waited;
    return std::system(command.c_str());
}

/// Removes the request for a shift: SUCCESS, REWRITE_FAILED, or NOT_REQUESTED if there is none.
int takeShiftRequest(BMCSELDataFile& store)
{
    const std::string path = BMCSELDataFile::getShiftRequestFile();
    if (std::remove(path.c_str()) == 0) {
        return BMCSELDataFile::SUCCESS;
    }
    if (errno == ENOENT) {
        return BMCSELDataFile::NOT_REQUESTED;
    }
    // The text names another operation; it stays, because people search logs for it.
    store.writeTrace(LEVEL_ERROR, MESSAGE_TEXT, "BMCSELDataFile::clearAllRecord %s remove(%d)",
                     path.c_str(), errno);
    return BMCSELDataFile::REWRITE_FAILED;
}

/// Writes the shift's result to the request file: 16 bytes, zero-padded. A failure is not reported:
/// the requester finds no answer.
void answerShiftRequest(int result)
{
    char answer[SHIFT_ANSWER_SIZE] = {};
    std::snprintf(answer, sizeof answer, "%d", result);
    const TAVLib::posix::File file(BMCSELDataFile::getShiftRequestFile(),
                                   O_WRONLY | O_CREAT | O_TRUNC | O_NOFOLLOW);
    if (file.isOpen()) {
        TAVLib::posix::writeAll(file.get(), answer, sizeof answer);
    }
}

/// Renames each file of the chain to the next index, from the oldest down.
unsigned int shiftChain(BMCSELDataFile& store, unsigned char sb)
{
    for (int i = OLDEST_FILE - 1; i >= 0; --i) {
        const std::string from = store.getFileName(sb, i, PERSISTENT);
        struct stat status = {};
        if (!exists(from, status)) {
            if (errno == ENOENT) {
                continue;
            }
            store.writeTrace(LEVEL_ERROR, MESSAGE_TEXT,
                             "BMCSELDataFile::shiftSelFile sel%d stat(%d)", i, errno);
            return BMCSELDataFile::STAT_FAILED;
        }
        const std::string to = store.getFileName(sb, i + 1, PERSISTENT);
        if (std::rename(from.c_str(), to.c_str()) == -1) {
            // The error comes where the index is expected, and the index after it: readers of these
            // lines rely on that order.
            store.writeTrace(LEVEL_ERROR, MESSAGE_TEXT,
                             "BMCSELDataFile::shiftSelFile sel%d rename(%d)", errno, i);
            return BMCSELDataFile::MOVE_FAILED;
        }
        ::sync();
    }
    return BMCSELDataFile::SUCCESS;
}

}

unsigned int BMCSELDataFile::truncate(unsigned char sb, int fileNo, int kind)
{
    const std::vector<unsigned char> emptySlots(FILE_SIZE, EMPTY_BYTE);
    const std::string name = getFileName(sb, fileNo, kind);
    try {
        LockedFile file(name);
        file.truncFile(0);
        if (file.write(emptySlots.data(), FILE_SIZE) == FILE_SIZE) {
            return SUCCESS;
        }
    } catch (const PException&) {
        // Reported like a short write.
    }
    writeTrace(LEVEL_ERROR, MESSAGE_TEXT, "BMCSELDataFile::truncate %s ", name.c_str());
    return REWRITE_FAILED;
}

unsigned int BMCSELDataFile::clearAllRecord(unsigned char sb)
{
    if (truncate(sb, 0, TEMPORARY) != SUCCESS) {
        return REWRITE_FAILED;
    }
    for (int i = 0; i <= OLDEST_FILE; ++i) {
        if (truncate(sb, i, PERSISTENT) != SUCCESS) {
            return REWRITE_FAILED;
        }
    }
    return BMCMessageFile().clearMessageFile(sb) ? SUCCESS : REWRITE_FAILED;
}

unsigned int BMCSELDataFile::makeCopySELFile(unsigned char sb)
{
    if (sb >= CommonUtil::getMaxUnitNum(CommonUtil::SYSTEM_BOARDS)) {
        return POSITION_FAILED;
    }
    const std::string to = getFileName(sb, 0, PERSISTENT);
    const std::string from = getFileName(sb, 0, TEMPORARY);
    struct stat status = {};
    if (exists(to, status)) {
        if (std::remove(to.c_str()) != 0) {
            writeTrace(LEVEL_ERROR, MESSAGE_TEXT, "BMCSELDataFile::makeCopySELFile %s remove(%d)",
                       to.c_str(), errno);
            return REWRITE_FAILED;
        }
    } else if (errno != ENOENT) {
        writeTrace(LEVEL_ERROR, MESSAGE_TEXT, "BMCSELDataFile::makeCopySELFile %s stat(%d)",
                   to.c_str(), errno);
        return STAT_FAILED;
    }
    const int copied = runCopy(from, to, SILENTLY_WITHOUT_BLANK);
    if (copied != 0) {
        // Reported as mv, the name by which this step is known.
        writeTrace(LEVEL_ERROR, MESSAGE_TEXT, "BMCSELDataFile::makeCopySELFile mv(%d)", copied);
        return MOVE_FAILED;
    }
    return truncate(sb, 0, TEMPORARY);
}

int BMCSELDataFile::shiftSelFile(unsigned char sb, bool noSync)
{
    int result = noSync ? static_cast<int>(SUCCESS) : takeShiftRequest(*this);
    if (result == SUCCESS) {
        if (!BMCMessageFile().shiftSelMessageFile(sb)) {
            writeTrace(LEVEL_ERROR, MESSAGE_TEXT,
                       "BMCSELDataFile::shiftSelFile shiftSelMessageFile");
        }
        result = static_cast<int>(makeCopySELFile(sb));
    }
    if (result == SUCCESS) {
        result = static_cast<int>(shiftChain(*this, sb));
    }
    if (!noSync) {
        answerShiftRequest(result);
    }
    return result;
}

int BMCSELDataFile::backupTmpSel(unsigned char sb)
{
    if (!BMCMessageFile().backupTmpMessageFile(sb)) {
        return 0;
    }
    const int copied =
        runCopy(getFileName(sb, 0, TEMPORARY), getFileName(sb, 0, PERSISTENT), SILENTLY);
    if (copied != 0) {
        writeTrace(LEVEL_ERROR, MESSAGE_TEXT,
                   "BMCSELDataFile::backupTmpSel cp SB#%d ret(%d) errno(%d)", sb, copied, errno);
        return 0;
    }
    return 1;
}

int BMCSELDataFile::restoreTmpSel(unsigned char sb)
{
    if (!BMCMessageFile().restoreTmpMessageFile(sb)) {
        return 0;
    }
    const std::string backup = getFileName(sb, 0, PERSISTENT);
    struct stat status = {};
    if (!exists(backup, status)) {
        if (errno != ENOENT) {
            writeTrace(LEVEL_ERROR, MESSAGE_TEXT,
                       "BMCSELDataFile::restoreTmpSel stat SB#%d stat(%d)", sb, errno);
        }
        return 0;
    }
    if (status.st_size != FILE_SIZE) {
        writeTrace(LEVEL_ERROR, MESSAGE_TEXT,
                   "BMCSELDataFile::restoreTmpSel invalid size SB#%d size(%d)", sb,
                   static_cast<int>(status.st_size));
        return 0;
    }
    const std::string working = getFileName(sb, 0, TEMPORARY);
    int copied = -1;
    if (isLink(working)) {
        // cp would follow a symlink, so refuse one in any folder.
        errno = ELOOP;
    } else {
        copied = runCopy(backup, working, SILENTLY);
    }
    if (copied != 0) {
        writeTrace(LEVEL_ERROR, MESSAGE_TEXT,
                   "BMCSELDataFile::restoreTmpSel cp SB#%d ret(%d) errno(%d)", sb, copied, errno);
        return 0;
    }
    return 1;
}

int BMCSELDataFile::initialTruncate()
{
    int boards = CommonUtil::getMaxUnitNum(CommonUtil::SYSTEM_BOARDS);
    for (int board = 0; board < boards; ++board) {
        const auto sb = static_cast<unsigned char>(board);
        if (restoreTmpSel(sb) == 0 && ::access(getFileName(sb, 0, TEMPORARY).c_str(), F_OK) != 0) {
            truncate(sb, 0, TEMPORARY);
        }
        // Asked for each board: the number may change meanwhile, and the last answer is the result.
        boards = CommonUtil::getMaxUnitNum(CommonUtil::SYSTEM_BOARDS);
    }
    return boards;
}
