// SPDX-License-Identifier: Apache-2.0
#include "Follower.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <sys/inotify.h>
#include <unistd.h>

#include "../Errors.h"
#include "Store.h"

namespace recordkit::tool {

using TAVLib::RecordKit::SELChainReader;

std::vector<Event> NewEvents::take(std::vector<std::string>& problems)
{
    SELChainReader reader(board, SELChainReader::NEWEST_FIRST);
    for (const auto& damage : reader.getDamage()) {
        problems.push_back(damage.path + ": " + damage.text);
    }
    // Back to the last event given; when that is gone, everything is new.
    std::vector<Event> events;
    SELChainReader::Record record = {};
    while (reader.next(record) &&
           !(hasLast && std::equal(last.begin(), last.end(), record.image))) {
        events.push_back(decodeEvent(board, record));
    }
    std::reverse(events.begin(), events.end());
    if (!events.empty()) {
        last = events.back().image;
        hasLast = true;
    }
    return events;
}

WriteWatch::WriteWatch(const std::vector<unsigned char>& boards) : fd(::inotify_init1(IN_CLOEXEC))
{
    if (fd == -1) {
        throw systemError("the working files", "watched", errno);
    }
    std::string folder;
    for (const unsigned char board : boards) {
        const std::filesystem::path path = workingFile(board);
        folder = path.parent_path().string();
        names.push_back(path.filename().string());
    }
    // The folder, not the files: a restore may put a new file in the place of an old one.
    if (::inotify_add_watch(fd, folder.c_str(), IN_MODIFY | IN_CREATE | IN_MOVED_TO) == -1) {
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
