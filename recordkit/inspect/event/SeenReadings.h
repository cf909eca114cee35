// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_INSPECT_EVENT_SEENREADINGS_H
#define RECORDKIT_INSPECT_EVENT_SEENREADINGS_H

#include <map>
#include <utility>
#include <vector>

#include <recordkit/inspect/event/Event.h>

namespace recordkit::inspect {

/// How often each reading in the units of a sensor occurs in the events of one log.
using ReadingCounts = std::map<double, std::size_t>;

/// The readings that triggered events of threshold sensors: by the sensor as a repository describes
/// it, and the log. Events without a reading, or of a sensor without units, are left out.
std::map<std::pair<const NamedSensor*, unsigned int>, ReadingCounts>
seenReadings(const std::vector<Event>& events);

}

#endif
