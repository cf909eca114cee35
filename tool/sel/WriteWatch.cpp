// SPDX-License-Identifier: Apache-2.0
#include "WriteWatch.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <sys/inotify.h>
#include <unistd.h>

#include "../Errors.h"
#include "Store.h"

namespace recordkit::tool {

WriteWatch::WriteWatch(const std::vector<unsigned char>& boards) : fd(::inotify_init1(IN_CLOEXEC))
{
    if (fd == -1) {
        throw systemError("the working files", "watched", errno);
    }
    // Watch the folders, not the files: a restore or a rotation replaces files by new ones.
    for (const unsigned char board : boards) {
        const std::filesystem::path working = workingFile(board);
        const std::filesystem::path newest = BMCSELDataFile().getFileName(board, 1, 1);
        names.push_back(working.filename().string());
        names.push_back(newest.filename().string());
        watch(working.parent_path().string(), IN_MODIFY | IN_CREATE | IN_MOVED_TO);
        watch(newest.parent_path().string(), IN_MOVED_TO);
    }
}

void WriteWatch::watch(const std::string& folder, unsigned int events)
{
    if (::inotify_add_watch(fd, folder.c_str(), events) == -1) {
        const int error = errno;
        ::close(fd);
        throw systemError(folder, "watched", error);
    }
}

WriteWatch::~WriteWatch()
{
    ::close(fd);
}

void WriteWatch::wait() const
{
    alignas(inotify_event) char buffer[4096];
    for (;;) {
        const ssize_t count = TEMP_FAILURE_RETRY(::read(fd, buffer, sizeof buffer));
        if (count <= 0) {
            throw systemError("the working files", "watched", errno);
        }
        for (ssize_t at = 0; at < count;) {
            inotify_event event = {};
            std::memcpy(&event, buffer + at, sizeof event);
            const char* const name = buffer + at + sizeof event;
            if (event.len != 0 && std::find(names.begin(), names.end(), name) != names.end()) {
                return;
            }
            at += static_cast<ssize_t>(sizeof event + event.len);
        }
    }
}

}
