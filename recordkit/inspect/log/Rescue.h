// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_INSPECT_LOG_RESCUE_H
#define RECORDKIT_INSPECT_LOG_RESCUE_H

#include <array>
#include <cstddef>
#include <vector>

#include <recordkit/inspect/bytes/ByteView.h>
#include <recordkit/inspect/event/Event.h>

namespace recordkit::inspect {

/// A record that was found in bytes of any kind.
struct RescuedRecord {
    std::size_t offset = 0;
    Event event;
};

/// Whether bytes are an event file, whole or cut: most of the slots that are not empty contain
/// events.
bool isEventFile(ByteView bytes);

/// Every whole record of an event log, 138 bytes, in the order of their places. Of an event file
/// these are all slots that are not empty, and what looks like an event between them; of any other
/// bytes, what looks like an event at any offset.
std::vector<RescuedRecord> rescueRecords(ByteView bytes);

}

#endif
