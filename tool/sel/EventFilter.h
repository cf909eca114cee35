// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_TOOL_SEL_EVENTFILTER_H
#define RECORDKIT_TOOL_SEL_EVENTFILTER_H

#include <optional>
#include <vector>

#include <recordkit/inspect/event/Event.h>

#include "../Errors.h"
#include "../cli/Arguments.h"

namespace recordkit::tool {

/// The options of `sel list` that select events.
std::vector<Option> eventFilterOptions();

/// The events that they select.
class EventFilter {
public:
    explicit EventFilter(const Arguments& arguments);

    /// The accepted ones of a list.
    std::vector<Event> choose(std::vector<Event> events);

    /// Whether it asks for what only sensor data records say.
    bool needsSensors() const { return !sensorName.empty() || !entity.empty(); }

    /// Events left out until now only because they have no date.
    std::size_t getUndated() const { return undated; }

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
    std::size_t undated = 0;
};

}

#endif
