// SPDX-License-Identifier: Apache-2.0
#include <recordkit/platform/BMCMessageFile.h>

#include <cerrno>
#include <cstdio>
#include <string>
#include <unistd.h>
#include <vector>

#include <recordkit/platform/BoardFiles.h>
#include <recordkit/platform/LockedFile.h>
#include <recordkit/platform/SystemRoot.h>
#include <recordkit/platform/TavTrace.h>
#include <recordkit/posix/File.h>

#include "FileError.h"

namespace TAVLib {

namespace {

using namespace BoardFiles;

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

void check(const posix::Failure& failure)
{
    if (failure.isFailure()) {
        fail(failure.operation, failure.path, failure.error);
    }
}

/// Copies a file; returns false if it does not exist.
bool copyFile(const std::string& from, const std::string& to)
{
    std::vector<unsigned char> bytes;
    const posix::Failure failure = posix::readFile(from, bytes);
    if (failure.error == ENOENT) {
        return false;
    }
    check(failure);
    check(posix::replaceFile(to, bytes));
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
