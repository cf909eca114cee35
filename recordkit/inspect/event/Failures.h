// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_INSPECT_EVENT_FAILURES_H
#define RECORDKIT_INSPECT_EVENT_FAILURES_H

#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include <recordkit/inspect/event/Event.h>

namespace recordkit::inspect {

/// A field-replaceable unit as events name it: by part and serial number, or, where they say
/// neither, by the entity of the sensor.
struct FailedUnit {
    std::string partNumber;
    std::string serialNumber;
    std::string entity; ///< "29.4"; empty where the events name the unit
    std::string entityName;

    /// "EX-FT-0600, serial FT26A00009", "serial FT26A00009" or "fan or cooling device 29.4".
    std::string name() const;
};

/// How often a sensor, or a unit, failed: assertions of severity warning and worse.
struct FailureCount {
    std::map<Severity, std::size_t> assertions; ///< of severities that have any
    std::size_t total = 0;
    std::size_t stillAsserted = 0; ///< states, not events
    std::size_t first = 0;         ///< positions of events in the list
    std::size_t last = 0;
};

struct SensorFailure {
    std::optional<std::size_t> unit; ///< of the last failure, if it is known
    FailureCount count;
};

struct UnitFailure {
    std::size_t unit = 0;
    std::vector<std::size_t> sensors; ///< positions of an event of each, the first one that failed
    FailureCount count;
};

/// What failed, most often first.
struct Failures {
    std::vector<FailedUnit> units;
    std::vector<SensorFailure> bySensor;
    std::vector<UnitFailure> byUnit;
};

/// Counts the failures in a list of events that markAsserted has seen.
Failures findFailures(const std::vector<Event>& events);

/// The unit that an event is of; nothing if neither the event nor a repository says.
std::optional<FailedUnit> unitOf(const Event& event);

}

#endif
