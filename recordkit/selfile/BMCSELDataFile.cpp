// SPDX-License-Identifier: Apache-2.0
#include <recordkit/selfile/BMCSELDataFile.h>

#include <algorithm>
#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <numeric>
#include <sys/stat.h>
#include <unistd.h>

#include <recordkit/platform/BMCMessageFile.h>
#include <recordkit/platform/CommonUtil.h>
#include <recordkit/platform/LockedFile.h>
#include <recordkit/platform/PException.h>
#include <recordkit/platform/SystemRoot.h>
#include <recordkit/selfile/SELFileLayout.h>
#include <recordkit/serial/Failure.h>

#include "SELSlotSearch.h"

using TAVLib::BMC_SEL_DATA_FILE_LOCATION;
using TAVLib::BMCMessageFile;
using TAVLib::LEVEL_ERROR;
using TAVLib::LockedFile;
using TAVLib::MESSAGE_TEXT;
using TAVLib::PException;
using TAVLib::RecordKit::BMCSELEntryMessage;
using TAVLib::RecordKit::judgeTail;
using TAVLib::RecordKit::searchSlots;
using TAVLib::RecordKit::SELSlotSource;
using namespace TAVLib::RecordKit::SELFileLayout;

namespace {

constexpr const char* WORKING_FOLDER = "/tmp/";
constexpr const char* PERSISTENT_FOLDER = "/var/tav/fmem/ipmi/";
constexpr const char* SHIFT_REQUEST_FILE = "/var/tmp/shift_sel_sync";

/// Size of the answer in the shift request file.
constexpr std::size_t SHIFT_ANSWER_SIZE = 16;

/// A file of the store, open for reading until the end of the scope.
class OpenFile : public SELSlotSource {
public:
    OpenFile(BMCSELDataFile& owner, const std::string& name)
        : store(owner), fd(store.openFile(name))
    {
    }
    ~OpenFile() override
    {
        if (isOpen()) {
            store.closeFile(fd);
        }
    }

    bool isOpen() const { return fd >= 0; }
    bool seek(unsigned long offset) override
    {
        return store.lseek(fd, static_cast<long>(offset), SEEK_SET) >= 0;
    }
    long read(unsigned char* buffer, unsigned int size) override
    {
        return store.read(fd, buffer, size);
    }
    long readAt(unsigned long offset, unsigned char* buffer, unsigned int size) override
    {
        return ::pread(fd, buffer, size, static_cast<off_t>(offset));
    }

private:
    BMCSELDataFile& store;
    int fd;
};

/// A file that was just opened and locked. A failure to read counts as its end.
class LockedSource : public SELSlotSource {
public:
    explicit LockedSource(LockedFile& locked) : file(locked) {}

    /// Whether the end was a failure to read, which this class does not trace.
    bool hasFailed() const { return failed; }

    bool seek(unsigned long offset) override
    {
        next = offset;
        return true;
    }
    long read(unsigned char* buffer, unsigned int size) override
    {
        return readAt(next, buffer, size);
    }
    long readAt(unsigned long offset, unsigned char* buffer, unsigned int size) override
    {
        try {
            if (place != offset) {
                file.lseek(static_cast<long>(offset), SEEK_SET);
            }
            const int count = file.read(buffer, size);
            place = offset + static_cast<unsigned int>(count);
            return count;
        } catch (const PException&) {
            failed = true;
            return -1;
        }
    }

private:
    LockedFile& file;
    unsigned long place = 0; ///< current position of the file
    unsigned long next = 0;  ///< position of the next read
    bool failed = false;
};

/// Whether a file whose ids range from `first` to `last` (possibly wrapping around) contains
/// `wanted`.
bool isInRange(unsigned short first, unsigned short last, unsigned short wanted)
{
    return first <= last ? first <= wanted && wanted <= last : wanted >= first || wanted <= last;
}

/// The result of the search for the first empty slot of a file.
unsigned int judge(unsigned int searchCode, unsigned long addr, const BMCSELEntryMessage& found)
{
    unsigned char slot[SLOT_SIZE] = {};
    found.getSerialized(slot, sizeof slot);
    return judgeTail(searchCode, addr, slot);
}

/// The first empty slot of an open file: SUCCESS, FILE_FULL, DAMAGED_TAIL or the code of the
/// search.
unsigned int findTail(BMCSELDataFile& store, SELSlotSource& source, unsigned long& addr)
{
    try {
        unsigned char slot[SLOT_SIZE];
        const unsigned int code = searchSlots(source, EMPTY_RECORD_ID, slot, addr);
        return judgeTail(code, addr, slot);
    } catch (const PException&) {
        store.writeTrace(LEVEL_ERROR, MESSAGE_TEXT, "searchRecord");
        return BMCSELDataFile::READ_FAILED;
    }
}

/// Records of one file for getEntryNumEx; 0 and a trace line when its tail is not found.
unsigned short countRecords(BMCSELDataFile& store, unsigned char sb, int fileNo, int kind,
                            const char* label, int shownFileNo)
{
    unsigned long addr = 0;
    const unsigned int code = store.getTailAddrEx(sb, fileNo, addr, kind);
    switch (code) {
    case BMCSELDataFile::SUCCESS:
        return static_cast<unsigned short>(addr / SLOT_SIZE);
    case BMCSELDataFile::FILE_FULL:
        return SLOTS;
    default:
        store.writeTrace(LEVEL_ERROR, MESSAGE_TEXT,
                         "BMCSELDataFile::getEntryNumEx%s SB#%d sel%d ret(%d)", label, sb,
                         shownFileNo, static_cast<int>(code));
        return 0;
    }
}

bool exists(const std::string& name, struct stat& status)
{
    return ::stat(name.c_str(), &status) == 0;
}

bool isLink(const std::string& name)
{
    struct stat status = {};
    return ::lstat(name.c_str(), &status) == 0 && S_ISLNK(status.st_mode);
}

int runCopy(const std::string& from, const std::string& to, const char* redirection)
{
    const std::string command = "/bin/cp " + from + " " + to + redirection;
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

/// Writes the shift's result to the request file: 16 bytes, zero-padded. The directory is
/// world-writable, so symlinks are not followed.
void answerShiftRequest(int result)
{
    constexpr mode_t PERMISSIONS = 0644;
    const int fd = TEMP_FAILURE_RETRY(::open(BMCSELDataFile::getShiftRequestFile().c_str(),
                                             O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC | O_NOFOLLOW,
                                             PERMISSIONS));
    if (fd < 0) {
        return;
    }
    char answer[SHIFT_ANSWER_SIZE] = {};
    std::snprintf(answer, sizeof answer, "%d", result);
    std::size_t written = 0;
    ssize_t count = 0;
    while (written < sizeof answer &&
           (count = TEMP_FAILURE_RETRY(::write(fd, answer + written, sizeof answer - written))) >
               0) {
        written += static_cast<std::size_t>(count);
    }
    ::close(fd);
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

std::string BMCSELDataFile::getFileName(unsigned char sb, int fileNo, int kind)
{
    const bool isPersistent = fileNo != 0 || kind != TEMPORARY;
    return TAVLib::systemRoot() + (isPersistent ? PERSISTENT_FOLDER : WORKING_FOLDER) + "sb" +
           std::to_string(sb) + "_bmc_sel" + std::to_string(fileNo);
}

std::string BMCSELDataFile::getShiftRequestFile()
{
    return TAVLib::systemRoot() + SHIFT_REQUEST_FILE;
}

int BMCSELDataFile::openFile(std::string name)
{
    const int fd = TEMP_FAILURE_RETRY(::open(name.c_str(), O_RDONLY | O_CLOEXEC));
    if (fd < 0) {
        const int error = errno;
        const std::string text = "open filename:[" + name.substr(0, 255) + "]";
        TAVLib::traceSystemCallError(BMC_SEL_DATA_FILE_LOCATION, text.c_str(), error);
    }
    return fd;
}

long BMCSELDataFile::lseek(int fd, long offset, int whence)
{
    const long at = ::lseek(fd, offset, whence);
    if (at < 0) {
        TAVLib::traceSystemCallError(BMC_SEL_DATA_FILE_LOCATION, "lseek", errno);
    }
    return at;
}

long BMCSELDataFile::read(int fd, void* buf, unsigned int len)
{
    const long count = TEMP_FAILURE_RETRY(::read(fd, buf, len));
    if (count < 0) {
        TAVLib::traceSystemCallError(BMC_SEL_DATA_FILE_LOCATION, "read", errno);
    }
    return count;
}

int BMCSELDataFile::closeFile(int fd)
{
    const int result = ::close(fd);
    if (result < 0) {
        TAVLib::traceSystemCallError(BMC_SEL_DATA_FILE_LOCATION, "close", errno);
    }
    return result;
}

void BMCSELDataFile::writeTrace(unsigned char level, int msgNo, const char* format, ...)
{
    char text[256] = {};
    va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(text, sizeof text, format, arguments);
    va_end(arguments);
    TAVLib::traceText(BMC_SEL_DATA_FILE_LOCATION, level, msgNo, text);
}

unsigned int BMCSELDataFile::searchRecord(std::string name, unsigned short recordId,
                                          BMCSELEntryMessage& out, unsigned long& addr)
{
    addr = 0;
    try {
        OpenFile file(*this, name);
        if (!file.isOpen()) {
            return OPEN_FAILED;
        }
        unsigned char slot[SLOT_SIZE];
        const unsigned int code = searchSlots(file, recordId, slot, addr);
        if (code == SUCCESS) {
            out.setSerialized(slot, SLOT_SIZE);
        }
        return code;
    } catch (const PException&) {
        writeTrace(LEVEL_ERROR, MESSAGE_TEXT, "searchRecord");
        return READ_FAILED;
    }
}

unsigned int BMCSELDataFile::getTailAddr(unsigned char sb, unsigned long& addr)
{
    BMCSELEntryMessage found;
    const unsigned int code =
        searchRecord(getFileName(sb, 0, TEMPORARY), EMPTY_RECORD_ID, found, addr);
    return judge(code, addr, found);
}

unsigned int BMCSELDataFile::getTailAddrEx(unsigned char sb, int fileNo, unsigned long& addr,
                                           int kind)
{
    BMCSELEntryMessage found;
    const unsigned int code =
        searchRecord(getFileName(sb, fileNo, kind), EMPTY_RECORD_ID, found, addr);
    const unsigned int tail = judge(code, addr, found);
    if (tail != SUCCESS && tail != FILE_FULL && tail != DAMAGED_TAIL) {
        writeTrace(LEVEL_ERROR, MESSAGE_TEXT, "BMCSELDataFile::getTailAddrEx SB#%d sel%d ret(%d)",
                   sb, fileNo, static_cast<int>(code));
    }
    return tail;
}

unsigned int BMCSELDataFile::getLastRecAddr(unsigned char sb, unsigned long& addr)
{
    const unsigned int code = getTailAddr(sb, addr);
    switch (code) {
    case NOT_FOUND:
        addr = LAST_SLOT;
        return SUCCESS;
    case SUCCESS:
        if (addr < SLOT_SIZE) {
            return NO_RECORD;
        }
        addr -= SLOT_SIZE;
        return SUCCESS;
    default:
        // FILE_FULL too: callers tell a full file from one with room by this code, and readRecord
        // then finds nothing until the file is rotated.
        return code;
    }
}

unsigned int BMCSELDataFile::getEntryNumEx(unsigned char sb, unsigned short& total,
                                           unsigned short& lastFileNo,
                                           std::vector<unsigned short>& counts)
{
    unsigned short found[OLDEST_FILE + 1] = {};
    for (lastFileNo = 1; lastFileNo <= OLDEST_FILE; ++lastFileNo) {
        const std::string name = getFileName(sb, lastFileNo, PERSISTENT);
        struct stat status = {};
        if (!exists(name, status)) {
            if (errno == ENOENT) {
                break;
            }
            writeTrace(LEVEL_ERROR, MESSAGE_TEXT,
                       "BMCSELDataFile::getEntryNumEx SB#%d sel%d stat(%d)", sb, lastFileNo, errno);
            return STAT_FAILED;
        }
        // A file of another size ends the chain: it and all older ones are not counted.
        if (status.st_size != FILE_SIZE) {
            break;
        }
        found[lastFileNo] = countRecords(*this, sb, lastFileNo, PERSISTENT, "", lastFileNo);
    }
    --lastFileNo;
    found[0] = countRecords(*this, sb, 0, TEMPORARY, "(tmp)", lastFileNo);

    counts.assign(found, found + lastFileNo + 1);
    total = std::accumulate(counts.begin(), counts.end(), static_cast<unsigned short>(0));
    return SUCCESS;
}

unsigned int BMCSELDataFile::getEntryNum(unsigned char sb, unsigned short& total,
                                         unsigned short& lastFileNo)
{
    std::vector<unsigned short> counts;
    return getEntryNumEx(sb, total, lastFileNo, counts);
}

unsigned int BMCSELDataFile::fullEntryCheck(unsigned char sb)
{
    const std::string name = getFileName(sb, 0, TEMPORARY);
    struct stat status = {};
    if (!exists(name, status)) {
        if (errno != ENOENT) {
            return STAT_FAILED;
        }
        return truncate(sb, 0, TEMPORARY);
    }
    if (status.st_size != FILE_SIZE) {
        return truncate(sb, 0, TEMPORARY);
    }
    unsigned long addr = 0;
    return getTailAddr(sb, addr);
}

int BMCSELDataFile::writeRecord(unsigned char sb, BMCSELEntryMessage& rec)
{
    unsigned char slot[SLOT_SIZE] = {};
    if (rec.getSerialized(slot, sizeof slot) != sizeof slot) {
        return 0;
    }
    const std::string name = getFileName(sb, 0, TEMPORARY);
    unsigned long addr = 0;
    // Opening the file for writing would create a missing one.
    if (::access(name.c_str(), F_OK) == 0) {
        try {
            // Search under the lock, through the locked file: closing another descriptor of the
            // same file would drop a POSIX lock.
            LockedFile file(name);
            LockedSource source(file);
            const unsigned int tail = findTail(*this, source, addr);
            if (!source.hasFailed()) {
                if (tail != SUCCESS) {
                    return 0;
                }
                file.lseek(static_cast<long>(addr), SEEK_SET);
                if (file.write(slot, sizeof slot) == static_cast<int>(sizeof slot)) {
                    return 1;
                }
            }
        } catch (const PException&) {
            // Reported like a short write.
        }
    }
    // The search itself reports a file that cannot be read.
    if (getTailAddr(sb, addr) == SUCCESS) {
        writeTrace(LEVEL_ERROR, MESSAGE_TEXT, "writeRecord");
    }
    return 0;
}

unsigned int BMCSELDataFile::readRecord(unsigned char sb, unsigned short recordId,
                                        BMCSELEntryMessage& out)
{
    for (int i = 0; i <= OLDEST_FILE; ++i) {
        const std::string name = getFileName(sb, i, TEMPORARY);
        {
            OpenFile file(*this, name);
            if (!file.isOpen()) {
                return OPEN_FAILED;
            }
            unsigned char slot[SLOT_SIZE] = {};
            if (file.read(slot, SLOT_SIZE) < 0) {
                return READ_FAILED;
            }
            const unsigned short first = idOf(slot);
            unsigned long lastAddr = LAST_SLOT;
            if (i == 0) {
                if (first == EMPTY_RECORD_ID) {
                    return NO_RECORD;
                }
                // A full working file ends the search here: see getLastRecAddr.
                if (getLastRecAddr(sb, lastAddr) != SUCCESS) {
                    return NOT_FOUND;
                }
            }
            if (!file.seek(lastAddr)) {
                return POSITION_FAILED;
            }
            if (file.read(slot, SLOT_SIZE) != SLOT_SIZE) {
                return READ_FAILED;
            }
            if (!isInRange(first, idOf(slot), recordId)) {
                continue;
            }
        }
        unsigned long addr = 0;
        return searchRecord(name, recordId, out, addr);
    }
    return NOT_FOUND;
}

int BMCSELDataFile::readFirstRecord(unsigned char sb, BMCSELEntryMessage& out)
{
    for (int i = OLDEST_FILE; i >= 0; --i) {
        const std::string name = getFileName(sb, i, TEMPORARY);
        if (::access(name.c_str(), R_OK) != 0) {
            if (errno == ENOENT) {
                continue;
            }
            return 0;
        }
        OpenFile file(*this, name);
        if (!file.isOpen()) {
            // Callers treat an existing file as an existing log, and keep their record.
            return 1;
        }
        unsigned char slot[SLOT_SIZE] = {};
        if (file.read(slot, SLOT_SIZE) != SLOT_SIZE || idOf(slot) == EMPTY_RECORD_ID) {
            return 0;
        }
        return out.setSerialized(slot, sizeof slot) ? 1 : 0;
    }
    return 0;
}

int BMCSELDataFile::readLastRecordEx(unsigned char sb, int fileNo, BMCSELEntryMessage& out,
                                     int kind)
{
    unsigned long addr = 0;
    switch (getTailAddrEx(sb, fileNo, addr, kind)) {
    case SUCCESS:
        if (addr < SLOT_SIZE) {
            return 0;
        }
        addr -= SLOT_SIZE;
        break;
    case FILE_FULL:
        addr = LAST_SLOT;
        break;
    default:
        return 0;
    }
    OpenFile file(*this, getFileName(sb, fileNo, kind));
    unsigned char slot[SLOT_SIZE] = {};
    if (!file.isOpen() || !file.seek(addr) || file.read(slot, SLOT_SIZE) != SLOT_SIZE) {
        return 0;
    }
    return out.setSerialized(slot, sizeof slot) ? 1 : 0;
}

int BMCSELDataFile::readLastRecord(unsigned char sb, BMCSELEntryMessage& out)
{
    if (readLastRecordEx(sb, 0, out, TEMPORARY) != 0) {
        return 1;
    }
    return readLastRecordEx(sb, 1, out, PERSISTENT);
}

unsigned int BMCSELDataFile::readStoredRecord(unsigned char sb, unsigned short logNum,
                                              BMCSELEntryMessage& out)
{
    unsigned short total = 0;
    unsigned short lastFileNo = 0;
    std::vector<unsigned short> counts;
    const unsigned int code = getEntryNumEx(sb, total, lastFileNo, counts);
    if (code != SUCCESS) {
        writeTrace(LEVEL_ERROR, MESSAGE_TEXT,
                   "BMCSELDataFile::readStoredRecord SB#%d failed to get SEL entry num", sb);
        return code;
    }
    if (total == 0) {
        writeTrace(LEVEL_ERROR, MESSAGE_TEXT,
                   "BMCSELDataFile::readStoredRecord SB#%d SEL entry is not exists", sb);
        return NOT_FOUND;
    }
    if (total < logNum) {
        writeTrace(LEVEL_ERROR, MESSAGE_TEXT, "BMCSELDataFile::readStoredRecord logNum over(%d)",
                   logNum);
        return NOT_FOUND;
    }

    const auto index = static_cast<unsigned short>(logNum - 1);
    int fileNo = lastFileNo;
    unsigned int start = 0;
    while (index < start || index >= start + counts[fileNo]) {
        start += counts[fileNo];
        if (fileNo == 0) {
            writeTrace(LEVEL_ERROR, MESSAGE_TEXT,
                       "BMCSELDataFile::readStoredRecord SB#%d SEL entry total is mismatch(%d)", sb,
                       static_cast<int>(start));
            return NOT_FOUND;
        }
        --fileNo;
    }

    OpenFile file(*this, getFileName(sb, fileNo, fileNo > 0 ? PERSISTENT : TEMPORARY));
    if (!file.isOpen()) {
        return OPEN_FAILED;
    }
    if (!file.seek((index - start) * SLOT_SIZE)) {
        return POSITION_FAILED;
    }
    unsigned char slot[SLOT_SIZE] = {};
    if (file.read(slot, SLOT_SIZE) < 0) {
        return READ_FAILED;
    }
    out.setSerialized(slot, sizeof slot);
    return SUCCESS;
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
    const int copied = runCopy(from, to, ">/dev/null 2>&1");
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
        runCopy(getFileName(sb, 0, TEMPORARY), getFileName(sb, 0, PERSISTENT), " >/dev/null 2>&1");
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
        // The folder is world-writable and cp would follow a symlink, so refuse one.
        errno = ELOOP;
    } else {
        copied = runCopy(backup, working, " >/dev/null 2>&1");
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
        boards = CommonUtil::getMaxUnitNum(CommonUtil::SYSTEM_BOARDS);
    }
    return boards;
}
