// SPDX-License-Identifier: Apache-2.0
#include <recordkit/eeprom/SettingEEPROMData.h>

#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <fcntl.h>
#include <sys/stat.h>
#include <vector>

#include <recordkit/platform/LockedFile.h>
#include <recordkit/platform/PException.h>
#include <recordkit/platform/SystemRoot.h>
#include <recordkit/posix/File.h>
#include <recordkit/serial/Failure.h>

#include "EEPROMText.h"

namespace TAVLib::RecordKit {

namespace {

enum Kind {
    NOT_VALID = 0,
    WRONG_CHECKSUM = 1,
    OTHER_AREA = 2,
    TOO_LONG = 3,
    EEPROM_READ = 4,
    EEPROM_WRITE = 5,
    FILE_READ = 6,
    SHORT_FILE_READ = 7,
    FILE_WRITE = 8,
    SHORT_FILE_WRITE = 9,
    OTHER_PLACE = 10,
    FILE_STATUS = 11,
};

constexpr EEPROMFailure FAILURES[] = {
    {1, 3, MESSAGE_NOT_VALID},        // 0
    {1, 3, MESSAGE_NOT_VALID},        // 1
    {1, 1, MESSAGE_REFUSED},          // 2
    {1, 1, MESSAGE_REFUSED},          // 3
    {2, 3, MESSAGE_OPERATION_FAILED}, // 4
    {2, 3, MESSAGE_OPERATION_FAILED}, // 5
    {2, 3, MESSAGE_OPERATION_FAILED}, // 6
    {2, 5, MESSAGE_MISMATCH},         // 7
    {2, 3, MESSAGE_OPERATION_FAILED}, // 8
    {2, 5, MESSAGE_MISMATCH},         // 9
    {2, 5, MESSAGE_MISMATCH},         // 10
    {2, 3, MESSAGE_OPERATION_FAILED}, // 11
};
constexpr EEPROMFailure OTHER_FAILURE = {2, 0, MESSAGE_TEXT};

/// How long another program may keep the index file locked, in milliseconds. Every user who may
/// read the file can lock it.
constexpr int PATIENCE = 2000;

/// Reads from an offset on; returns 0, or an errno. The file need not be writable, and is not
/// created; while a LockedFile has it open, the call waits.
int readUnderLock(const std::string& path, unsigned long offset, void* buffer, std::size_t size,
                  std::size_t& done)
{
    // A pipe is not waited for: it cannot be read at an offset anyway.
    const posix::File file(path, O_RDONLY | O_NOFOLLOW | O_NONBLOCK);
    const bool isRead = file.isOpen() &&
                        posix::lockFile(file.get(), PATIENCE, posix::Lock::SHARED) &&
                        posix::readAt(file.get(), offset, buffer, size, done);
    return isRead ? 0 : errno;
}

}

SettingEEPROMData::SettingEEPROMData(EEPROMRWif& device)
    : rw(device), index(std::make_unique<PanelEEPROMIndex>())
{
}

SettingEEPROMData::~SettingEEPROMData() = default;

unsigned int SettingEEPROMData::getIndexOffset(int n) const
{
    return index->getIndexSize() * static_cast<unsigned int>(n) + index->getIndexOffset();
}

void SettingEEPROMData::readIndexData(int n)
{
    const int select = index->getIndexEEPROMID();
    try {
        rw.read(select, getIndexOffset(n), index->getIndexData(), index->getIndexSize());
    } catch (const PException& e) {
        setThrow(EEPROM_READ,
                 "readIndexData: read error.(ActCode=0x%02x DetCode=0x%04x area=0x%x select=0x%x "
                 "offset=0x%x length=0x%x)",
                 e.getActionCode(), e.getExceptionDetail(), n, select, getIndexOffset(n),
                 index->getIndexSize());
    }
}

void SettingEEPROMData::writeIndexData(int n)
{
    const int select = index->getIndexEEPROMID();
    try {
        rw.write(select, getIndexOffset(n), index->getIndexData(), index->getIndexSize());
    } catch (const PException& e) {
        setThrow(EEPROM_WRITE,
                 "writeIndexData: write error.(ActCode=0x%02x DetCode=0x%04x area=0x%x "
                 "select=0x%x offset=0x%x length=0x%x)",
                 e.getActionCode(), e.getExceptionDetail(), n, select, getIndexOffset(n),
                 index->getIndexSize());
    }
}

int SettingEEPROMData::checkIndexData(int n)
{
    if (!index->isChecksum()) {
        setThrow(WRONG_CHECKSUM, "checkIndexData: checksum error.(area=0x%x)", n);
    }
    const int number = index->getAreaNumber();
    if (number != n) {
        setThrow(OTHER_AREA, "checkIndexData: area number mismatch.(darea=0x%x area=0x%x)", number,
                 n);
    }
    return number;
}

bool SettingEEPROMData::isValid(int n)
{
    readIndexData(n);
    if (!index->isIndex()) {
        return false;
    }
    try {
        checkIndexData(n);
        return true;
    } catch (const PException&) {
        return false;
    }
}

void SettingEEPROMData::setAllInvalid()
{
    for (int n = index->getIndexHeadNumber(); n <= index->getIndexLastNumber(); ++n) {
        readIndexData(n);
        if (!index->isIndex()) {
            continue;
        }
        checkIndexData(n);
        index->setIndexValidFlag(false);
        index->setChecksum();
        writeIndexData(n);
    }
}

void SettingEEPROMData::initializeIndexData(int n)
{
    constexpr int ALL = -1;
    const int first = n == ALL ? index->getIndexHeadNumber() : n;
    const int last = n == ALL ? index->getIndexLastNumber() : n;
    for (int entry = first; entry <= last; ++entry) {
        readIndexDataFile(entry);
        checkIndexData(entry);
        writeIndexData(entry);
    }
}

void SettingEEPROMData::readIndexDataFile(int n)
{
    constexpr int FILE_ERROR_ACTION = 2;
    const std::string path = systemRoot() + index->getIndexDataFileName();
    const unsigned int size = index->getIndexSize();
    std::size_t count = 0;
    const int error = readUnderLock(path, size * static_cast<unsigned long>(n),
                                    index->getIndexData(), size, count);
    if (error != 0) {
        setThrow(FILE_READ,
                 "rfIndexData: file read error.(ActCode=0x%02x DetCode=0x%04x area=0x%x path=%s)",
                 FILE_ERROR_ACTION, error, n, path.c_str());
    }
    if (count != size) {
        setThrow(SHORT_FILE_READ,
                 "rfIndexData: file read size mismatch.(area=0x%x path=%s count=0x%x "
                 "scount=0x%x)",
                 n, path.c_str(), size, static_cast<unsigned int>(count));
    }
}

void SettingEEPROMData::readArea(std::string& out)
{
    const int select = index->getAreaEEPROMID();
    const unsigned int offset = index->getAreaOffset();
    const unsigned int size = index->getAreaSize();
    std::vector<unsigned char> buffer(size);
    try {
        rw.read(select, offset, buffer.data(), size);
    } catch (const PException& e) {
        setThrow(EEPROM_READ,
                 "readArea: read error.(ActCode=0x%02x DetCode=0x%04x select=0x%x offset=0x%x "
                 "length=0x%x rLen=0x%x)",
                 e.getActionCode(), e.getExceptionDetail(), select, offset, size, size);
    }
    out.assign(buffer.begin(), buffer.end());
}

int SettingEEPROMData::writeArea(std::string& data)
{
    const auto length = static_cast<unsigned int>(data.size());
    // Compare the whole length, which may exceed its low 32 bits.
    if (data.size() > index->getAreaSize()) {
        setThrow(TOO_LONG, "writeArea: size error.(size=0x%x wsize=0x%x)", length,
                 index->getAreaSize());
    }
    const int select = index->getAreaEEPROMID();
    const unsigned int offset = index->getAreaOffset();
    const std::vector<unsigned char> bytes(data.begin(), data.end());
    try {
        rw.write(select, offset, bytes.data(), length);
    } catch (const PException& e) {
        if (index->isIndex()) {
            index->setIndexValidFlag(false);
            index->setChecksum();
            writeIndexData(index->getAreaNumber());
        }
        setThrow(EEPROM_WRITE,
                 "writeArea: area write error.(ActCode=0x%02x DetCode=0x%04x select=0x%x "
                 "offset=0x%x length=0x%x wLen=0x%x)",
                 e.getActionCode(), e.getExceptionDetail(), select, offset, length, length);
    }
    return static_cast<int>(length);
}

std::string SettingEEPROMData::read(int n, char* path)
{
    readIndexData(n);
    if (!index->isIndex()) {
        setThrow(NOT_VALID, "checkIndexData: flag invalid.(area=0x%x)", n);
    }
    checkIndexData(n);
    std::string content;
    readArea(content);
    if (path != nullptr) {
        writeFile(n, path, content);
    }
    return content;
}

int SettingEEPROMData::write(int n, std::string& data)
{
    readIndexData(n);
    checkIndexData(n);
    return writeAndValidate(n, data);
}

int SettingEEPROMData::write(int n, char* path)
{
    readIndexData(n);
    checkIndexData(n);
    struct stat status = {};
    const int result = ::stat(path, &status);
    if (result != 0) {
        setThrow(FILE_STATUS, "write: stat error. area=0x%x path=%s ret=%d", n, path, result);
    }
    if (status.st_size > index->getAreaSize()) {
        setThrow(FILE_STATUS, "write: file size.(area=0x%x path=%s size=0x%x st_size=0x%x)", n,
                 path, index->getAreaSize(), static_cast<unsigned int>(status.st_size));
    }
    std::string content = readFile(n, path, static_cast<unsigned int>(status.st_size));
    return writeAndValidate(n, content);
}

void SettingEEPROMData::setThrow(int kind, const char* format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    const EEPROMText text(format, arguments);
    va_end(arguments);
    const bool isKnown = kind >= 0 && kind <= FILE_STATUS;
    throwEEPROMError(isKnown ? FAILURES[kind] : OTHER_FAILURE, text.get());
}

void SettingEEPROMData::writeFile(int n, const char* path, const std::string& content)
{
    const auto size = static_cast<unsigned int>(content.size());
    int count = 0;
    try {
        LockedFile file(path);
        file.truncFile(0);
        count = file.write(content.data(), size);
    } catch (const PException& e) {
        setThrow(FILE_WRITE,
                 "read: file write error.(ActCode=0x%02x DetCode=0x%04x area=0x%x path=%s)",
                 e.getActionCode(), e.getExceptionDetail(), n, path);
    }
    if (count != static_cast<int>(size)) {
        setThrow(SHORT_FILE_WRITE,
                 "read: file write size mismatch.(area=0x%x path=%s count=0x%x scount=0x%x)", n,
                 path, size, count);
    }
}

std::string SettingEEPROMData::readFile(int n, const char* path, unsigned int size)
{
    std::string content(size, '\0');
    long place = 0;
    int count = 0;
    try {
        LockedFile file(path);
        place = file.lseek(0, SEEK_SET);
        if (place == 0) {
            count = file.read(content.data(), size);
        }
    } catch (const PException& e) {
        setThrow(FILE_READ,
                 "write: file read error.(ActCode=0x%02x DetCode=0x%04x area=0x%x path=%s)",
                 e.getActionCode(), e.getExceptionDetail(), n, path);
    }
    if (place != 0) {
        setThrow(OTHER_PLACE,
                 "write: seek offset mismatch.(area=0x%x path=%s offset=0x%x setOffset=0x%x)", n,
                 path, 0, static_cast<unsigned int>(place));
    }
    if (count != static_cast<int>(size)) {
        setThrow(SHORT_FILE_READ,
                 "write: file read size mismatch.(area=0x%x path=%s count=0x%x scount=0x%x)", n,
                 path, size, count);
    }
    return content;
}

int SettingEEPROMData::writeAndValidate(int n, std::string& data)
{
    const int length = writeArea(data);
    if (!index->isIndex()) {
        index->setIndexValidFlag(true);
        index->setChecksum();
        writeIndexData(n);
    }
    return length;
}

}
