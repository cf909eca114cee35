// SPDX-License-Identifier: Apache-2.0
#include "SavedEvents.h"

#include <algorithm>
#include <functional>
#include <iterator>
#include <map>
#include <utility>

#include <fmt/format.h>

#include <recordkit/inspect/bytes/Numbers.h>
#include <recordkit/inspect/event/EventJudge.h>
#include <recordkit/inspect/log/LogFile.h>
#include <recordkit/inspect/log/Rescue.h>
#include <recordkit/inspect/log/Timeline.h>

#include "../Files.h"
#include "EventInput.h"

namespace recordkit::tool {

namespace {

std::vector<Event> eventsOfSlots(const SlotView& view)
{
    std::vector<Event> events;
    for (const unsigned int slot : view.getEvents()) {
        events.push_back(decodeEvent(0, {0, 0, slot, view.slot(slot)}));
    }
    return events;
}

std::vector<std::string> damageOf(const SlotView& view)
{
    std::vector<std::string> damage;
    if (view.getBadSlots() != 0) {
        damage.push_back(counted(view.getBadSlots(), "damaged slot"));
    }
    if (!view.rest().empty()) {
        damage.push_back(fmt::format("the last {} bytes are not a whole slot", view.rest().size()));
    }
    return damage;
}

/// Throws CommandError (data) for an input most of whose records do not look like events.
std::vector<Event> eventsOfRecords(const std::string& name, const std::string& content)
{
    const std::vector<ImportedEvent> imported = readEvents(name, content, ImportFormat::AUTO, {});
    std::vector<Event> events;
    std::size_t odd = 0;
    for (const ImportedEvent& each : imported) {
        events.push_back(decodeEvent(each.message));
        events.back().slot = static_cast<unsigned int>(events.size() - 1);
        odd += oddityOf(events.back()).empty() ? 0 : 1;
    }
    if (odd * 2 > events.size()) {
        throw dataError(fmt::format("{}, {}; this is not a list of events", name,
                                    findOddity(imported, false).value_or("")));
    }
    return events;
}

/// The place of a file in its log.
struct LogPart {
    std::string log; ///< the path; of a file of the store without its index
    int later = 0;   ///< than parts with a lower number
};

/// The store names its files sbN_bmc_sel0 to 7, from the newest to the oldest.
LogPart partOf(const std::string& path)
{
    const std::string stem = "_bmc_sel";
    const std::size_t at = path.rfind(stem);
    if (at == std::string::npos || at + stem.size() + 1 != path.size() || path.back() < '0' ||
        path.back() > '0' + SELFileLayout::OLDEST_FILE) {
        return {path};
    }
    // With a character that no file name ends in, so that it is not taken for another file.
    return {path.substr(0, path.size() - 1) + '/', '0' - path.back()};
}

/// A file, and how its content is had: reading can fail.
struct Source {
    std::string path;
    std::function<std::string()> read;
};

std::vector<Event> eventsOf(const std::vector<Source>& sources, Problems& problems)
{
    // In the order in which they are given, which decides between equal times.
    std::vector<std::pair<std::string, std::map<int, std::vector<Event>>>> logs;
    for (const Source& source : sources) {
        const std::string& path = source.path;
        const std::string name = inputName(path);
        problems.run(name, [&] {
            const std::string content = source.read();
            const SlotView view{ByteView(content)};
            const bool isLog = isEventFile(content);
            std::vector<Event> events =
                isLog ? eventsOfSlots(view) : eventsOfRecords(name, content);
            const LogPart part = partOf(path);
            auto log = std::find_if(logs.begin(), logs.end(),
                                    [&part](const auto& each) { return each.first == part.log; });
            if (log == logs.end()) {
                log = logs.insert(logs.end(), {part.log, {}});
            }
            for (Event& event : events) {
                event.source = name;
                event.log = static_cast<unsigned int>(log - logs.begin());
                log->second[part.later].push_back(std::move(event));
            }
            return isLog ? damageOf(view) : std::vector<std::string>();
        });
    }
    std::vector<std::vector<Event>> wholeLogs;
    for (auto& log : logs) {
        std::vector<Event>& events = wholeLogs.emplace_back();
        for (auto& part : log.second) {
            std::move(part.second.begin(), part.second.end(), std::back_inserter(events));
        }
    }
    return mergeByTime(std::move(wholeLogs));
}

}

std::vector<Event> readSavedEvents(const std::vector<std::string>& paths, Problems& problems)
{
    std::vector<Source> sources;
    sources.reserve(paths.size());
    for (const std::string& path : paths) {
        sources.push_back({path, [&path] { return readInput(path, LARGE_LIMIT); }});
    }
    return eventsOf(sources, problems);
}

std::vector<Event> readSavedEvents(const std::vector<SavedFile>& files, Problems& problems)
{
    std::vector<Source> sources;
    sources.reserve(files.size());
    for (const SavedFile& file : files) {
        sources.push_back({file.path, [&file] { return file.content; }});
    }
    return eventsOf(sources, problems);
}

}
