// SPDX-License-Identifier: Apache-2.0
#include "Store.h"

#include <cerrno>
#include <fcntl.h>
#include <filesystem>
#include <system_error>
#include <unistd.h>

#include <fmt/format.h>

#include <recordkit/host/LockTimeout.h>
#include <recordkit/inspect/bytes/Numbers.h>
#include <recordkit/inspect/log/LogFile.h>
#include <recordkit/platform/LockedFile.h>
#include <recordkit/platform/PException.h>
#include <recordkit/posix/File.h>
#include <recordkit/selfile/SELFileLayout.h>
#include <recordkit/selfile/SELStoreCheck.h>

namespace recordkit::tool {

using TAVLib::RecordKit::SELStoreCheck;
using namespace TAVLib::RecordKit::SELFileLayout;

namespace {

/// Why a file cannot be opened for writing, as the system's text; empty if it can. The operation
/// that failed has waited for the lock.
std::string writeProblem(const std::string& path)
{
    const NoWaiting now;
    try {
        const TAVLib::LockedFile file(path);
        return "";
    } catch (const TAVLib::PException& e) {
        return e.getMessage();
    }
}

/// Why there cannot be another event file beside one, as the system's text; empty if there can.
std::string roomProblem(const std::string& path)
{
    const std::string name = path + ".new";
    const int fd = TEMP_FAILURE_RETRY(
        ::open(name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600));
    if (fd == -1) {
        return std::generic_category().message(errno);
    }
    const int error = ::posix_fallocate(fd, 0, FILE_SIZE);
    ::close(fd);
    ::unlink(name.c_str());
    return error == 0 ? "" : std::generic_category().message(error);
}

/// Events of the oldest file, if a rotation now drops it.
std::size_t eventsToDrop(unsigned char board)
{
    const std::vector<LogFile> files = readLogFiles(board);
    const bool isReplaced = !files[OLDEST_FILE - 1].isMissing();
    return isReplaced ? SlotView(files[OLDEST_FILE].bytes).getEvents().size() : 0;
}

}

std::string workingFile(unsigned char board)
{
    return BMCSELDataFile().getFileName(board, 0, TEMPORARY);
}

std::string backupFile(unsigned char board)
{
    return BMCSELDataFile().getFileName(board, 0, PERSISTENT);
}

bool isFile(const std::string& path)
{
    std::error_code ignored;
    return std::filesystem::exists(path, ignored);
}

void requireLogs()
{
    const auto folderOf = [](const std::string& path) {
        return std::filesystem::path(path).parent_path().string();
    };
    const std::string folder = folderOf(workingFile(0));
    if (!isFile(folder) && !isFile(folderOf(backupFile(0)))) {
        throw fileError(folder + " is missing; recordkit sel init creates it, and the logs");
    }
}

void requireTrusted(const std::string& path)
{
    const int error = TAVLib::posix::refusalOf(path);
    const auto text = [error] {
        switch (error) {
        case ELOOP:
            return "it is a link";
        case EPERM:
            return "it belongs to another user";
        case EMLINK:
            return "it has a second name";
        case EACCES:
            return "others may write it";
        default:
            return "it is not a regular file";
        }
    };
    if (error != 0) {
        throw fileError(fmt::format("{} is not used: {}, in a folder that everybody may write to",
                                    path, text()));
    }
}

void requireFile(const std::string& path, const char* action)
{
    if (!isFile(path)) {
        throw dataError(fmt::format("{} is missing, there is nothing to {}", path, action));
    }
}

void createFolderOf(const std::string& path)
{
    const std::filesystem::path folder = std::filesystem::path(path).parent_path();
    std::error_code error;
    std::filesystem::create_directories(folder, error);
    if (error) {
        throw systemError(folder.string(), "created", error.value());
    }
}

CommandError storeError(unsigned int code, const std::string& path)
{
    switch (code) {
    case BMCSELDataFile::NO_RECORD:
        return dataError(path + " contains no record");
    case BMCSELDataFile::FILE_FULL:
        return dataError(path + " is full");
    case BMCSELDataFile::DAMAGED_TAIL:
        return dataError(path + " is damaged: the first slot with record id FFFFh is not empty");
    case BMCSELDataFile::NOT_FOUND:
        return dataError(path + " has no empty slot where one is expected");
    case BMCSELDataFile::REWRITE_FAILED: {
        const std::string problem = writeProblem(path);
        return fileError(problem.empty() ? path + " cannot be rewritten" : problem);
    }
    case BMCSELDataFile::MOVE_FAILED: {
        const std::string reason = roomProblem(path);
        return fileError(path + " cannot be copied or renamed" +
                         (reason.empty() ? "" : ": " + reason));
    }
    default:
        return fileError(fmt::format("{} cannot be read (code {})", path, code));
    }
}

unsigned int prepareWorkingFile(unsigned char board)
{
    const SELStoreCheck check(board);
    const SELStoreCheck::File& working = check.workingFile();
    if (!working.isMissing && working.size != FILE_SIZE && working.count != 0) {
        throw dataError(
            fmt::format("{}: {} bytes long, expected {}; it contains {} and stays as it is",
                        working.path, working.size, FILE_SIZE, counted(working.count, "event")));
    }
    const unsigned int code = BMCSELDataFile().fullEntryCheck(board);
    if (code != BMCSELDataFile::SUCCESS && code != BMCSELDataFile::FILE_FULL) {
        throw storeError(code, workingFile(board));
    }
    return code;
}

void refuseWhileCutOff(unsigned char board)
{
    const SELStoreCheck check(board);
    for (const auto& finding : check.getFindings()) {
        if (finding.kind == SELStoreCheck::ROTATION_CUT_OFF) {
            throw dataError(finding.text + ": run \"recordkit sel check --recover\" first");
        }
    }
}

LogLock::LogLock(unsigned char board) : lock(board, TAVLib::host::lockTimeout())
{
    if (!lock.isHeld()) {
        throw fileError(lock.getProblem());
    }
}

NoWaiting::NoWaiting() : before(TAVLib::host::lockTimeout())
{
    TAVLib::host::setLockTimeout(0);
}

NoWaiting::~NoWaiting()
{
    TAVLib::host::setLockTimeout(before);
}

std::size_t rotate(unsigned char board)
{
    refuseWhileCutOff(board);
    const std::size_t dropped = eventsToDrop(board);
    const int result = BMCSELDataFile().shiftSelFile(board, true);
    if (result != BMCSELDataFile::SUCCESS) {
        throw storeError(static_cast<unsigned int>(result), backupFile(board));
    }
    return dropped;
}

}
