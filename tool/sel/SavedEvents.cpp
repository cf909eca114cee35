// SPDX-License-Identifier: Apache-2.0
#include "SavedEvents.h"

#include <algorithm>

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

}

std::vector<Event> readSavedEvents(const std::vector<std::string>& paths, Problems& problems)
{
    std::vector<std::vector<Event>> logs;
    for (const std::string& path : paths) {
        const std::string name = inputName(path);
        problems.run(name, [&] {
            const std::string content = readInput(path, LARGE_LIMIT);
            const SlotView view{ByteView(content)};
            const bool isLog = isEventFile(content);
            logs.push_back(isLog ? eventsOfSlots(view) : eventsOfRecords(name, content));
            for (Event& event : logs.back()) {
                event.source = name;
            }
            return isLog ? damageOf(view) : std::vector<std::string>();
        });
    }
    return mergeByTime(std::move(logs));
}

}
