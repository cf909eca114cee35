// SPDX-License-Identifier: Apache-2.0
// The scans of the store: searches for records and tails, and counts.
#include <recordkit/selfile/BMCSELDataFile.h>

#include <cerrno>
#include <numeric>
#include <sys/stat.h>

#include <recordkit/selfile/SELFileLayout.h>
#include <recordkit/serial/Failure.h>

#include "OpenSELFile.h"

using TAVLib::LEVEL_ERROR;
using TAVLib::MESSAGE_TEXT;
using TAVLib::RecordKit::findTail;
using TAVLib::RecordKit::OpenSELFile;
using TAVLib::RecordKit::searchSlots;
using namespace TAVLib::RecordKit::SELFileLayout;

namespace {

/// Traces a slot that a search could not read as a record; gives the code of the search.
BMCSELDataFile::Code checked(BMCSELDataFile& store, BMCSELDataFile::Code code)
{
    if (code == BMCSELDataFile::READ_FAILED) {
        store.writeTrace(LEVEL_ERROR, MESSAGE_TEXT, "searchRecord");
    }
    return code;
}

BMCSELDataFile::Code searchFile(BMCSELDataFile& store, const std::string& name,
                                unsigned short wanted, unsigned char (&found)[SLOT_SIZE],
                                unsigned long& addr)
{
    addr = 0;
    OpenSELFile file(store, name);
    return file.isOpen() ? searchSlots(file, wanted, found, addr) : BMCSELDataFile::OPEN_FAILED;
}

/// The first empty slot of a file: SUCCESS, FILE_FULL, DAMAGED_TAIL or the code of the search.
BMCSELDataFile::Code findTailOf(BMCSELDataFile& store, const std::string& name, unsigned long& addr)
{
    addr = 0;
    OpenSELFile file(store, name);
    return file.isOpen() ? findTail(file, addr) : BMCSELDataFile::OPEN_FAILED;
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

}

unsigned int BMCSELDataFile::searchRecord(std::string name, unsigned short recordId,
                                          BMCSELEntryMessage& out, unsigned long& addr)
{
    unsigned char slot[SLOT_SIZE];
    const Code code = checked(*this, searchFile(*this, name, recordId, slot, addr));
    if (code == SUCCESS) {
        out.setSerialized(slot, SLOT_SIZE);
    }
    return code;
}

unsigned int BMCSELDataFile::getTailAddr(unsigned char sb, unsigned long& addr)
{
    return checked(*this, findTailOf(*this, getFileName(sb, 0, TEMPORARY), addr));
}

unsigned int BMCSELDataFile::getTailAddrEx(unsigned char sb, int fileNo, unsigned long& addr,
                                           int kind)
{
    const Code code = checked(*this, findTailOf(*this, getFileName(sb, fileNo, kind), addr));
    if (code != SUCCESS && code != FILE_FULL && code != DAMAGED_TAIL) {
        writeTrace(LEVEL_ERROR, MESSAGE_TEXT, "BMCSELDataFile::getTailAddrEx SB#%d sel%d ret(%d)",
                   sb, fileNo, static_cast<int>(code));
    }
    return code;
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
        if (::stat(name.c_str(), &status) != 0) {
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
    if (::stat(name.c_str(), &status) != 0) {
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
