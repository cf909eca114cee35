// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_INSPECT_EVENT_EVENTDIFFERENCE_H
#define RECORDKIT_INSPECT_EVENT_EVENTDIFFERENCE_H

#include <vector>

#include <recordkit/inspect/event/Event.h>

namespace recordkit::inspect {

/// Positions of the events that only one of two lists has.
struct EventDifference {
    std::vector<std::size_t> onlyInFirst;
    std::vector<std::size_t> onlyInSecond;
};

/// Compares two lists. Events are the same if their IPMI records are, without the record id, which
/// a log gives to what it stores, and so are the bytes after the record from the OEM event data on,
/// unless those of one of the two are all zero; and, with `isByBoard`, their boards. Of several
/// that are the same, as many are in only one list as there are more of them.
EventDifference compareEvents(const std::vector<Event>& first, const std::vector<Event>& second,
                              bool isByBoard);

}

#endif
