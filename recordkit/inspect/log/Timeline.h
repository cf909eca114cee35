// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_INSPECT_LOG_TIMELINE_H
#define RECORDKIT_INSPECT_LOG_TIMELINE_H

#include <vector>

#include <recordkit/inspect/event/Event.h>

namespace recordkit::inspect {

/// Merges logs by time, the oldest event first; of equal times the earlier log comes first. Each
/// log keeps its own order: an event without a date follows the one before it, and what was logged
/// after the clock was set back does not move.
std::vector<Event> mergeByTime(std::vector<std::vector<Event>> logs);

}

#endif
