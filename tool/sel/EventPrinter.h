// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_TOOL_SEL_EVENTPRINTER_H
#define RECORDKIT_TOOL_SEL_EVENTPRINTER_H

#include <memory>
#include <string>

#include <recordkit/inspect/event/Event.h>

#include "../Errors.h"
#include "../print/Table.h"

namespace recordkit::tool {

enum class EventFormat { TABLE, JSON, NDJSON, CSV };

/// Writes events one after another in one of the formats; nothing is held back but the comma of
/// a JSON array.
class EventPrinter {
public:
    virtual ~EventPrinter() = default;
    /// What stands before the first event and behind the last one.
    virtual std::string begin() = 0;
    virtual std::string end() = 0;
    /// Appends one event to `out`.
    virtual void append(const Event& event, std::string& out) = 0;
};

std::unique_ptr<EventPrinter> makeEventPrinter(EventFormat format, bool hasColour);

/// The table of a listing, and the cells of an event's line in it.
Table eventTable(bool hasColour);
std::vector<Cell> eventCells(const Event& event);

}

#endif
