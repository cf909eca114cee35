// SPDX-License-Identifier: Apache-2.0
#include <recordkit/inspect/event/EventTable.h>

#include <algorithm>
#include <string_view>
#include <unordered_map>

#include <recordkit/inspect/event/AssertedEvents.h>

namespace recordkit::inspect {

using TAVLib::RecordKit::SELEntry;

namespace {

/// Texts in the order of their first use, each once.
class TextPool {
public:
    void add(std::string text)
    {
        const auto added = positions.try_emplace(std::move(text), positions.size());
        found.push_back(static_cast<unsigned int>(added.first->second));
    }

    /// Sorts the texts, and gives each event the position of its text.
    void finish(std::vector<std::string>& texts, std::vector<unsigned int>& textOf)
    {
        std::vector<std::pair<std::string_view, unsigned int>> sorted;
        sorted.reserve(positions.size());
        for (const auto& [text, position] : positions) {
            sorted.emplace_back(text, static_cast<unsigned int>(position));
        }
        std::sort(sorted.begin(), sorted.end());
        std::vector<unsigned int> moved(sorted.size());
        for (std::size_t i = 0; i < sorted.size(); ++i) {
            moved[sorted[i].second] = static_cast<unsigned int>(i);
            texts.emplace_back(sorted[i].first);
        }
        for (const unsigned int each : found) {
            textOf.push_back(moved[each]);
        }
    }

private:
    std::unordered_map<std::string, std::size_t> positions;
    std::vector<unsigned int> found; ///< of each event
};

class Tabulator {
public:
    explicit Tabulator(EventTable& filled) : table(filled) {}

    void add(const Event& event)
    {
        const auto* const record = event.image.data() + SELEntry::HEADER_SIZE;
        table.records.insert(table.records.end(), record, record + SELEntry::RECORD_SIZE);
        const bool isDated = event.hasTime && event.time.isDate();
        const bool isSystem = event.kind == EventKind::SYSTEM_EVENT;
        const bool isPreInit = event.hasTime && event.time.isPreInit();
        table.times.push_back(isDated ? event.time.raw() : EventTable::NO_DATE);
        table.severities.push_back(severityOf(event));
        table.directions.push_back(!isSystem ? 0 : event.isDeassertion ? 2 : 1);
        table.flags.push_back((event.isStillAsserted ? EventTable::STILL_ASSERTED : 0U) |
                              (isPreInit ? EventTable::PRE_INIT : 0U));
        table.states.push_back(static_cast<unsigned int>(event.state));
        table.files.push_back(static_cast<unsigned int>(event.fileIndex));
        table.slots.push_back(event.slot);
        table.numbers.push_back(event.logNumber);
        table.sensorOf.push_back(sensorOf(event));
        table.blockOf.push_back(blockOf(event));
        texts.add(eventText(event));
        causes.add(eventCause(event));
    }

    void finish()
    {
        texts.finish(table.texts, table.textOf);
        causes.finish(table.causes, table.causeOf);
    }

private:
    static unsigned int severityOf(const Event& event)
    {
        const auto& all = worstFirst();
        return static_cast<unsigned int>(event.kind == EventKind::SYSTEM_EVENT
                                             ? std::find(all.begin(), all.end(), event.severity) -
                                                   all.begin()
                                             : all.end() - all.begin());
    }

    unsigned int sensorOf(const Event& event)
    {
        const auto added = sensors.try_emplace(sensorKey(event), table.sensors.size());
        if (added.second) {
            table.sensors.push_back(&event);
        }
        return static_cast<unsigned int>(added.first->second);
    }

    unsigned int blockOf(const Event& event)
    {
        const auto* const bytes =
            reinterpret_cast<const char*>(event.image.data()) + SELEntry::IMAGE_SIZE;
        const std::string_view block(bytes, event.image.size() - SELEntry::IMAGE_SIZE);
        const std::size_t position = table.blocks.size();
        const auto known = blocks.find(block);
        if (known != blocks.end()) {
            return static_cast<unsigned int>(known->second);
        }
        if (position < EventBlock::MOST_BLOCKS) {
            blocks.emplace(block, position);
            table.blocks.push_back({&event, position < EventBlock::MOST_IMAGES});
            return static_cast<unsigned int>(position);
        }
        if (position == EventBlock::MOST_BLOCKS) {
            table.blocks.emplace_back(); // for all further ones
        }
        return EventBlock::MOST_BLOCKS;
    }

    EventTable& table;
    TextPool texts;
    TextPool causes;
    std::unordered_map<std::uint64_t, std::size_t> sensors;
    std::unordered_map<std::string_view, std::size_t> blocks;
};

}

EventTable tabulate(const std::vector<Event>& events)
{
    EventTable table;
    Tabulator tabulator(table);
    for (const Event& event : events) {
        tabulator.add(event);
    }
    tabulator.finish();
    return table;
}

}
