// SPDX-License-Identifier: Apache-2.0
// The records of the store: append and read.
#include <recordkit/selfile/BMCSELDataFile.h>

#include <cerrno>
#include <unistd.h>

#include <recordkit/platform/LockedFile.h>
#include <recordkit/platform/PException.h>
#include <recordkit/selfile/SELFileLayout.h>
#include <recordkit/serial/Failure.h>

#include "OpenSELFile.h"

using TAVLib::LEVEL_ERROR;
using TAVLib::LockedFile;
using TAVLib::MESSAGE_TEXT;
using TAVLib::PException;
using TAVLib::RecordKit::BYTES_AT_ONCE;
using TAVLib::RecordKit::findTail;
using TAVLib::RecordKit::OpenSELFile;
using TAVLib::RecordKit::SELSlotBuffer;
using TAVLib::RecordKit::SELSlotSource;
using namespace TAVLib::RecordKit::SELFileLayout;

namespace {

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
    long lookAt(unsigned long offset, const unsigned char*& bytes) override
    {
        unsigned char* const buffer = slots.get();
        bytes = buffer;
        return readAt(offset, buffer, BYTES_AT_ONCE);
    }

private:
    long readAt(unsigned long offset, unsigned char* buffer, unsigned int size)
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

    LockedFile& file;
    SELSlotBuffer slots;
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
            const unsigned int tail = findTail(source, addr);
            if (tail == READ_FAILED) {
                writeTrace(LEVEL_ERROR, MESSAGE_TEXT, "searchRecord");
            }
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
            OpenSELFile file(*this, name);
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
        OpenSELFile file(*this, name);
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
    OpenSELFile file(*this, getFileName(sb, fileNo, kind));
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

    OpenSELFile file(*this, getFileName(sb, fileNo, fileNo > 0 ? PERSISTENT : TEMPORARY));
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
