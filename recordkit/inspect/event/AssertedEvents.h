// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_INSPECT_EVENT_ASSERTEDEVENTS_H
#define RECORDKIT_INSPECT_EVENT_ASSERTEDEVENTS_H

#include <cstdint>
#include <vector>

#include <recordkit/inspect/event/Event.h>

namespace recordkit::inspect {

/// What a system event says something about: a state of a sensor in one log, that is the generator,
/// the sensor's number and type, the event/reading type and the offset.
std::uint64_t stateKey(const Event& event);

/// The sensor of a system event, whatever it reports: one log, generator, number and type. The
/// other records of a log have one together.
std::uint64_t sensorKey(const Event& event);

/// Whether an event says that the log was cleared (IPMI v2.0, table 42-3, sensor type 10h).
bool isLogCleared(const Event& event);

/// Marks the events that are still asserted, and no others. The events of each log are in the order
/// in which they were logged.
///
/// An assertion lasts until one of these events of the same log:
/// - the deassertion of the same state;
/// - where the states of a generic event/reading type exclude each other (IPMI v2.0, table 42-2:
///   all but redundancy, of which only "fully redundant" excludes the others), the assertion of
///   another state of the sensor;
/// - "Log Area Reset/Cleared" (table 42-3, sensor type 10h), which is not a state itself.
void markAsserted(std::vector<Event>& events);

}

#endif
