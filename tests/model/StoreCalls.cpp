// SPDX-License-Identifier: Apache-2.0
#include "StoreCalls.h"

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <stdexcept>

#include <recordkit/platform/BMCMessageFile.h>

namespace testing_support {

namespace {

namespace fs = std::filesystem;

constexpr int EXIT_1 = 256; // as a status of wait

/// What /bin/cp makes of two names.
int copy(const std::string& from, const std::string& to)
{
    std::error_code error;
    const fs::path target =
        fs::is_directory(to, error) ? fs::path(to) / fs::path(from).filename() : fs::path(to);
    if (!fs::is_regular_file(from, error)) {
        return EXIT_1;
    }
    return fs::copy_file(from, target, fs::copy_options::overwrite_existing, error) ? 0 : EXIT_1;
}

/// Carries out "/bin/cp FROM TO>/dev/null 2>&1", with or without a blank before the redirection.
int carryOut(const std::string& command)
{
    const std::string copying = "/bin/cp ";
    const std::size_t blank = command.find(' ', copying.size());
    const std::size_t end = command.find_first_of(" >", blank + 1);
    if (command.compare(0, copying.size(), copying) != 0 || blank == std::string::npos ||
        end == std::string::npos) {
        throw std::runtime_error("not a copy: " + command);
    }
    return copy(command.substr(copying.size(), blank - copying.size()),
                command.substr(blank + 1, end - blank - 1));
}

}

StoreCalls& storeCalls()
{
    static StoreCalls calls;
    return calls;
}

void StoreCalls::note(const std::string& line)
{
    std::string noted = line;
    for (std::size_t at = noted.find(root); !root.empty() && at != std::string::npos;
         at = noted.find(root)) {
        noted.erase(at, root.size());
    }
    log.push_back(noted);
}

}

using testing_support::storeCalls;

// What the linker puts in the place of the C library's functions, and those functions.
extern "C" {

int __real_system(const char* command);
int __wrap_system(const char* command);
int __real_rename(const char* from, const char* to);
int __wrap_rename(const char* from, const char* to);
int __real_remove(const char* path);
int __wrap_remove(const char* path);
void __wrap_sync();

int __wrap_system(const char* command)
{
    storeCalls().note(command);
    int status = storeCalls().commandStatus;
    if (status == 0) {
        status =
            storeCalls().realShell ? __real_system(command) : testing_support::carryOut(command);
    }
    errno = testing_support::ERROR_AFTER_COMMAND;
    return status;
}

int __wrap_rename(const char* from, const char* to)
{
    storeCalls().note(std::string("rename ") + from + " " + to);
    return __real_rename(from, to);
}

int __wrap_remove(const char* path)
{
    storeCalls().note(std::string("remove ") + path);
    return __real_remove(path);
}

/// Thousands of syncs of a whole machine would show nothing more.
void __wrap_sync()
{
    storeCalls().note("sync");
}
}

namespace TAVLib {

namespace {

bool answer(testing_support::MessageFileOperation operation, const char* name, unsigned char sb)
{
    storeCalls().note(std::string(name) + " " + std::to_string(sb));
    return (storeCalls().failingMessageFiles >> operation) % 2 == 0;
}

}

BMCMessageFile::BMCMessageFile() : state(nullptr)
{
}

BMCMessageFile::~BMCMessageFile() = default;

bool BMCMessageFile::clearMessageFile(unsigned char sb)
{
    return answer(testing_support::CLEAR_MESSAGES, "clear messages", sb);
}

bool BMCMessageFile::shiftSelMessageFile(unsigned char sb)
{
    return answer(testing_support::SHIFT_MESSAGES, "shift messages", sb);
}

bool BMCMessageFile::backupTmpMessageFile(unsigned char sb)
{
    return answer(testing_support::BACKUP_MESSAGES, "backup messages", sb);
}

bool BMCMessageFile::restoreTmpMessageFile(unsigned char sb)
{
    return answer(testing_support::RESTORE_MESSAGES, "restore messages", sb);
}

}
