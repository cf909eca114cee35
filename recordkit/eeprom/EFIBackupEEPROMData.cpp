// SPDX-License-Identifier: Apache-2.0
#include <recordkit/eeprom/EFIBackupEEPROMData.h>

#include <cstdarg>
#include <vector>

#include <recordkit/platform/PException.h>
#include <recordkit/serial/Failure.h>

#include "EEPROMText.h"
#include "EFIBackupGroup.h"

namespace TAVLib::RecordKit {

namespace {

using Index = EFIBackupEEPROMIndex;

constexpr int READ_FAILURE = 4;
constexpr int WRITE_FAILURE = 5;

/// Locks a mutex for its lifetime. The locks are mutexes of the C library, which the class promises
/// by its layout, and so not for std::lock_guard.
class Guard {
public:
    explicit Guard(pthread_mutex_t& held) : mutex(held) { pthread_mutex_lock(&mutex); }
    ~Guard() { pthread_mutex_unlock(&mutex); }
    Guard(const Guard&) = delete;
    Guard& operator=(const Guard&) = delete;

private:
    pthread_mutex_t& mutex;
};

}

pthread_mutex_t EFIBackupEEPROMData::idxlock = PTHREAD_MUTEX_INITIALIZER;
pthread_mutex_t EFIBackupEEPROMData::clrlock[] = {
    PTHREAD_MUTEX_INITIALIZER, PTHREAD_MUTEX_INITIALIZER, PTHREAD_MUTEX_INITIALIZER,
    PTHREAD_MUTEX_INITIALIZER, PTHREAD_MUTEX_INITIALIZER, PTHREAD_MUTEX_INITIALIZER,
    PTHREAD_MUTEX_INITIALIZER, PTHREAD_MUTEX_INITIALIZER, PTHREAD_MUTEX_INITIALIZER,
    PTHREAD_MUTEX_INITIALIZER, PTHREAD_MUTEX_INITIALIZER, PTHREAD_MUTEX_INITIALIZER,
    PTHREAD_MUTEX_INITIALIZER, PTHREAD_MUTEX_INITIALIZER, PTHREAD_MUTEX_INITIALIZER,
    PTHREAD_MUTEX_INITIALIZER};

EFIBackupEEPROMData::EFIBackupEEPROMData(EEPROMRWif& device)
    : rw(device), index(std::make_unique<EFIBackupEEPROMIndex>())
{
}

EFIBackupEEPROMData::~EFIBackupEEPROMData() = default;

bool EFIBackupEEPROMData::isValid() const
{
    return index->getIndexState();
}

unsigned int EFIBackupEEPROMData::write(unsigned int p, unsigned int b, unsigned long offset,
                                        unsigned int length, unsigned char* data)
{
    if (!isValid()) {
        return 0;
    }
    const unsigned int select = index->getAreaEEPROMID(p, b);
    try {
        rw.write(static_cast<int>(select), offset, data, length);
    } catch (const PException& e) {
        setThrow(WRITE_FAILURE,
                 "EFIBackup write: write error.(ActCode=0x%02x DetCode=0x%04x select=0x%x "
                 "offset=0x%x length=0x%x)",
                 e.getActionCode(), e.getExceptionDetail(), select,
                 static_cast<unsigned int>(offset), length);
    }
    return length;
}

unsigned int EFIBackupEEPROMData::read(unsigned int p, unsigned int b, unsigned long offset,
                                       unsigned int length, unsigned char* data)
{
    if (!isValid()) {
        return 0;
    }
    const unsigned int select = index->getAreaEEPROMID(p, b);
    try {
        rw.read(static_cast<int>(select), offset, data, length);
    } catch (const PException& e) {
        setThrow(READ_FAILURE,
                 "EFIBackup read: read error.(ActCode=0x%02x DetCode=0x%04x select=0x%x "
                 "offset=0x%x length=0x%x)",
                 e.getActionCode(), e.getExceptionDetail(), select,
                 static_cast<unsigned int>(offset), length);
    }
    return length;
}

bool EFIBackupEEPROMData::checkIndexData(const std::string& serial)
{
    try {
        const Guard guard(idxlock);
        readRecord();
        if (!index->isChecksum() || !index->checkSerialInfo(serial)) {
            return false;
        }
        index->expandClrFlags();
        return true;
    } catch (const PException& e) {
        setThrow(READ_FAILURE,
                 "EFIBackup checkIndexData: read error.(ActCode=0x%02x DetCode=0x%04x "
                 "select=0x%x)",
                 e.getActionCode(), e.getExceptionDetail(), Index::INDEX_EEPROM);
    }
}

void EFIBackupEEPROMData::setIndexData(bool valid, std::string serial)
{
    const Guard guard(idxlock);
    if (valid) {
        index->setIndexValidFlag(true, serial);
        writeIndexData();
    }
    index->setIndexState(valid);
}

int EFIBackupEEPROMData::writeIndexData()
{
    const std::vector<unsigned char> rest(Index::INDEX_AREA_SIZE - Index::INDEX_SIZE, 0);
    try {
        rw.write(Index::INDEX_EEPROM, 0, index->getIndexData(), Index::INDEX_SIZE);
        return rw.write(Index::INDEX_EEPROM, Index::INDEX_SIZE, rest.data(),
                        static_cast<unsigned int>(rest.size()));
    } catch (const PException& e) {
        throwWriteError(e.getActionCode(), e.getExceptionDetail());
    }
}

int EFIBackupEEPROMData::writeIndexData(int p, int b, int n)
{
    const int at = index->getIndexPoint(p, b, n);
    // No byte outside the record is a flag; a checksum alone would make a damaged record look
    // sound.
    return at >= 0 && at < static_cast<int>(Index::INDEX_SIZE) ? writeFlags(at, 1) : 0;
}

int EFIBackupEEPROMData::writeIndexData(int p, int b)
{
    return writeFlags(index->getIndexPoint(p, b, 0), Index::GROUP_SIZE);
}

int EFIBackupEEPROMData::resetClearFlag(unsigned int p, unsigned int b, unsigned int address)
{
    return changeFlag(p, b, address, false);
}

int EFIBackupEEPROMData::markBlock(unsigned int p, unsigned int b, unsigned int address)
{
    const Guard guard(clrlock[groupOfBlock(p, b, index->getClrBlockNumber(address))]);
    return changeFlag(p, b, address, true);
}

int EFIBackupEEPROMData::clearExecute(unsigned int p, unsigned int b)
{
    if (!isValid()) {
        return 0;
    }
    const unsigned int select = index->getAreaEEPROMID(p, b);
    const std::vector<unsigned char> erased(Index::BLOCK_SIZE, 0xFF);
    for (unsigned int n = 0; n < Index::BLOCKS; ++n) {
        const Guard guard(clrlock[groupOf(p, b)]);
        if (!index->getClrBlockState(p, b, n)) {
            continue;
        }
        unsigned int start = 0;
        unsigned int end = 0;
        index->getClrBlockAddress(n, start, end);
        try {
            rw.write(static_cast<int>(select), start, erased.data(), Index::BLOCK_SIZE);
        } catch (const PException& e) {
            setThrow(WRITE_FAILURE,
                     "EFIBackup clearExecute: initialize error.(ActCode=0x%02x DetCode=0x%04x "
                     "select=0x%x)",
                     e.getActionCode(), e.getExceptionDetail(), select);
        }
        if (resetClearFlag(p, b, start) != 0) {
            setThrow(WRITE_FAILURE,
                     "EFIBackup clearExecute: INDEX Clear Error (pid:%d, Bank:%d, off=%d)", p, b,
                     start);
        }
    }
    return 0;
}

void EFIBackupEEPROMData::setThrow(int, const char* format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    const EEPROMText text(format, arguments);
    va_end(arguments);
    throwEEPROMError({2, 3, MESSAGE_OPERATION_FAILED}, text.get());
}

void EFIBackupEEPROMData::throwWriteError(unsigned char action, unsigned short detail)
{
    // The text has no closing parenthesis: log readers match it like this.
    setThrow(WRITE_FAILURE,
             "EFIBackup writeIndexData: write error.(ActCode=0x%02x DetCode=0x%04x select=0x%x",
             action, detail, Index::INDEX_EEPROM);
}

void EFIBackupEEPROMData::readRecord()
{
    rw.read(Index::INDEX_EEPROM, 0, index->getIndexData(), Index::INDEX_SIZE);
}

int EFIBackupEEPROMData::changeFlag(unsigned int p, unsigned int b, unsigned int address, bool set)
{
    const Guard guard(idxlock);
    try {
        readRecord();
    } catch (const PException& e) {
        setThrow(READ_FAILURE,
                 "EFIBackup %s: read error.(ActCode=0x%02x DetCode=0x%04x select=0x%x)",
                 set ? "markBlock" : "resetClearFlag", e.getActionCode(), e.getExceptionDetail(),
                 Index::INDEX_EEPROM);
    }
    index->expandClrFlags();
    const unsigned int n = index->getClrBlockNumber(address);
    const bool wasSet = index->getClrBlockState(p, b, n);
    index->setClrFlag(p, b, n, set);
    index->setChecksum();
    try {
        writeIndexData(static_cast<int>(p), static_cast<int>(b), static_cast<int>(n));
    } catch (...) {
        // A block that could not be marked must not be erased.
        if (!wasSet) {
            index->setClrFlag(p, b, n, false);
            index->setChecksum();
        }
        throw;
    }
    return 0;
}

int EFIBackupEEPROMData::writeFlags(int first, unsigned int count)
{
    const unsigned char* const record = index->getIndexData();
    const int checksum = index->getIndexChecksumPoint();
    try {
        rw.write(Index::INDEX_EEPROM, static_cast<unsigned long>(checksum), record + checksum, 1);
        return rw.write(Index::INDEX_EEPROM, static_cast<unsigned long>(first), record + first,
                        count);
    } catch (const PException& e) {
        throwWriteError(e.getActionCode(), e.getExceptionDetail());
    }
}

}
