// SPDX-License-Identifier: Apache-2.0
#include <recordkit/inspect/event/Failures.h>

#include <algorithm>
#include <set>
#include <tuple>

#include <recordkit/inspect/bytes/Text.h>
#include <recordkit/inspect/event/AssertedEvents.h>

namespace recordkit::inspect {

namespace {

bool isFailure(const Event& event)
{
    return event.kind == EventKind::SYSTEM_EVENT && !event.isDeassertion &&
           isAtLeast(event.severity, SeverityMap::SEV_NONCRITICAL);
}

/// The failures with something in common.
class Counter {
public:
    void add(const Event& event, std::size_t position)
    {
        count.first = count.total == 0 ? position : count.first;
        count.last = position;
        ++count.total;
        ++count.assertions[event.severity];
        if (event.isStillAsserted && states.insert(stateKey(event)).second) {
            ++count.stillAsserted;
        }
    }
    const FailureCount& get() const { return count; }

private:
    FailureCount count;
    std::set<std::uint64_t> states;
};

struct OfSensor {
    std::optional<std::size_t> unit;
    Counter counter;
};

struct OfUnit {
    std::vector<std::size_t> sensors;
    std::set<std::uint64_t> known;
    Counter counter;
};

using UnitKey = std::tuple<std::string, std::string, std::string, unsigned int>;

/// Units that have no number are those of one log.
UnitKey keyOf(const FailedUnit& unit, const Event& event)
{
    return {unit.partNumber, unit.serialNumber, unit.entity,
            unit.serialNumber.empty() ? event.log : 0};
}

template <typename Failure> void sortByCount(std::vector<Failure>& failures)
{
    std::stable_sort(failures.begin(), failures.end(), [](const auto& left, const auto& right) {
        return left.count.total > right.count.total;
    });
}

}

std::string FailedUnit::name() const
{
    const std::string serial = serialNumber.empty() ? "" : "serial " + serialNumber;
    const std::string numbers =
        partNumber + (partNumber.empty() || serial.empty() ? "" : ", ") + serial;
    return entity.empty()    ? numbers
           : numbers.empty() ? entityName + " " + entity
                             : numbers + " (" + entityName + " " + entity + ")";
}

std::optional<FailedUnit> unitOf(const Event& event)
{
    FailedUnit unit;
    unit.partNumber = toUtf8(event.partNumber);
    unit.serialNumber = toUtf8(event.serialNumber);
    // A part number only says which kind of unit it is.
    if (unit.serialNumber.empty() && event.sensor != nullptr) {
        unit.entity = event.sensor->entity;
        unit.entityName = event.sensor->entityName;
    }
    const bool isKnown =
        !unit.partNumber.empty() || !unit.serialNumber.empty() || !unit.entity.empty();
    return isKnown ? std::optional(unit) : std::nullopt;
}

Failures findFailures(const std::vector<Event>& events)
{
    Failures failures;
    std::map<std::uint64_t, OfSensor> sensors;
    std::map<UnitKey, std::size_t> units;
    std::vector<OfUnit> ofUnits;
    for (std::size_t i = 0; i < events.size(); ++i) {
        const Event& event = events[i];
        if (!isFailure(event)) {
            continue;
        }
        const std::uint64_t key = sensorKey(event);
        OfSensor& sensor = sensors[key];
        sensor.counter.add(event, i);
        const std::optional<FailedUnit> unit = unitOf(event);
        if (!unit) {
            continue;
        }
        const auto added = units.try_emplace(keyOf(*unit, event), failures.units.size());
        const std::size_t position = added.first->second;
        if (added.second) {
            failures.units.push_back(*unit);
            ofUnits.emplace_back();
        }
        sensor.unit = position;
        OfUnit& ofUnit = ofUnits[position];
        ofUnit.counter.add(event, i);
        if (ofUnit.known.insert(key).second) {
            ofUnit.sensors.push_back(i);
        }
    }
    for (const auto& each : sensors) {
        failures.bySensor.push_back({each.second.unit, each.second.counter.get()});
    }
    for (std::size_t i = 0; i < ofUnits.size(); ++i) {
        failures.byUnit.push_back({i, ofUnits[i].sensors, ofUnits[i].counter.get()});
    }
    sortByCount(failures.bySensor);
    sortByCount(failures.byUnit);
    return failures;
}

}
