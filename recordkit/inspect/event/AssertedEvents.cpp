// SPDX-License-Identifier: Apache-2.0
#include <recordkit/inspect/event/AssertedEvents.h>

#include <array>
#include <unordered_map>

#include <recordkit/inspect/words/EventTypes.h>
#include <recordkit/inspect/words/SeverityPairs.h>

namespace recordkit::inspect {

namespace {

/// Whether the assertion of one state of a sensor ends another.
bool areExclusive(unsigned char eventType, unsigned int one, unsigned int other)
{
    constexpr unsigned char REDUNDANCY = 0x0B;
    constexpr unsigned int FULLY_REDUNDANT = 0;
    if (one == other || eventType <= THRESHOLD_EVENT || eventType > LAST_GENERIC_EVENT) {
        return false;
    }
    return eventType != REDUNDANCY || one == FULLY_REDUNDANT || other == FULLY_REDUNDANT;
}

/// The assertions of a sensor that nothing has ended yet, by offset.
using Open = std::array<std::vector<std::size_t>, EVENT_OFFSETS>;

class Marker {
public:
    explicit Marker(std::vector<Event>& markedEvents) : events(markedEvents) {}

    void add(std::size_t number)
    {
        Event& event = events[number];
        event.isStillAsserted = false;
        if (event.kind != EventKind::SYSTEM_EVENT) {
            return;
        }
        if (isLogCleared(event)) {
            endLog(event.log);
            return;
        }
        Open& open = sensors[event.log][stateKey(event) / EVENT_OFFSETS];
        for (unsigned int offset = 0; offset < EVENT_OFFSETS; ++offset) {
            const bool isEnded = event.isDeassertion
                                     ? offset == event.offset
                                     : areExclusive(event.eventType, event.offset, offset);
            if (isEnded) {
                end(open[offset]);
            }
        }
        if (!event.isDeassertion) {
            event.isStillAsserted = true;
            open[event.offset].push_back(number);
        }
    }

private:
    void end(std::vector<std::size_t>& assertions)
    {
        for (const std::size_t number : assertions) {
            events[number].isStillAsserted = false;
        }
        assertions.clear();
    }
    void endLog(unsigned int log)
    {
        for (auto& [key, open] : sensors[log]) {
            for (std::vector<std::size_t>& assertions : open) {
                end(assertions);
            }
        }
        sensors.erase(log);
    }

    std::vector<Event>& events;
    std::unordered_map<unsigned int, std::unordered_map<std::uint64_t, Open>> sensors; ///< by log
};

}

std::uint64_t stateKey(const Event& event)
{
    std::uint64_t key = event.log;
    for (const unsigned char byte : {event.generatorId[0], event.generatorId[1], event.sensorNumber,
                                     event.sensorType, event.eventType}) {
        key = key << 8 | byte;
    }
    return key * EVENT_OFFSETS + event.offset;
}

std::uint64_t sensorKey(const Event& event)
{
    constexpr std::uint64_t EVENT_TYPES = 0x100;
    constexpr std::uint64_t OTHER_RECORDS = std::uint64_t{1} << 63;
    return event.kind == EventKind::SYSTEM_EVENT ? stateKey(event) / EVENT_OFFSETS / EVENT_TYPES
                                                 : OTHER_RECORDS | event.log;
}

bool isLogCleared(const Event& event)
{
    constexpr unsigned char EVENT_LOGGING_DISABLED = 0x10;
    constexpr unsigned char LOG_CLEARED = 2;
    return event.kind == EventKind::SYSTEM_EVENT && event.eventType == SENSOR_SPECIFIC_EVENT &&
           event.sensorType == EVENT_LOGGING_DISABLED && event.offset == LOG_CLEARED &&
           !event.isDeassertion;
}

void markAsserted(std::vector<Event>& events)
{
    Marker marker(events);
    for (std::size_t i = 0; i < events.size(); ++i) {
        marker.add(i);
    }
}

}
