// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_INSPECT_EVENT_EVENTJUDGE_H
#define RECORDKIT_INSPECT_EVENT_EVENTJUDGE_H

#include <optional>
#include <string>
#include <vector>

#include <recordkit/inspect/event/Event.h>
#include <recordkit/inspect/event/EventImport.h>

namespace recordkit::inspect {

/// Why a record does not look like an event, "record type 00h is unknown"; empty if it does. A
/// record looks like one if its type is known and, for a system event, the message revision, the
/// sensor type, the event type and the offset of a generic event are those that the standard or
/// OEMs use.
std::string oddityOf(const Event& event);

/// The first record that does not look like an event, with its place and the reason; nothing if all
/// do. With `hasOwnIds` the record ids must rise, too, except from FF00h and above to the first
/// ones.
std::optional<std::string> findOddity(const std::vector<ImportedEvent>& events, bool hasOwnIds);

}

#endif
