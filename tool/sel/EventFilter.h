// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_TOOL_SEL_EVENTFILTER_H
#define RECORDKIT_TOOL_SEL_EVENTFILTER_H

#include <optional>
#include <vector>

#include <recordkit/inspect/event/Event.h>

#include "../Errors.h"
#include "../cli/Arguments.h"

namespace recordkit::tool {

/// The options that select events.
std::vector<Option> eventFilterOptions();

/// The events that they select.
class EventFilter {
public:
    /// Throws CommandError (usage) where it asks for what only sensor data records say, and there
    /// are none.
    EventFilter(const Arguments& arguments, bool hasSensors);

    /// The accepted ones of a list.
    std::vector<Event> choose(std::vector<Event> events);

    /// The same, at any time.
    EventFilter atAnyTime() const;

    /// Says what may surprise: how many events were left out until now only because they have no
    /// date, and that --since is in the future.
    void report() const;

private:
    bool isSevere(const Event& event) const;
    bool accepts(const Event& event);
    bool isChosen(const Event& event) const;
    bool isOfSensor(const Event& event) const;
    bool hasTexts(const Event& event) const;

    std::optional<unsigned long> severity;
    std::optional<unsigned long> sensorType;
    std::optional<unsigned long> partition;
    std::optional<unsigned long> since;
    std::optional<unsigned long> until;
    std::optional<unsigned long> sensorNumber;
    std::string sensorName; ///< the next four: empty if not given
    std::string entity;
    std::string eventWords;
    std::string anyText;
    std::optional<bool> isDeasserted;
    bool isOnlyAsserted = false; ///< still
    std::size_t undated = 0;
};

}

#endif
