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

/// Streams events in one of the formats; only a JSON array needs to remember whether a comma is
/// due.
class EventPrinter {
public:
    virtual ~EventPrinter() = default;
    /// The output before the first event and after the last one.
    virtual std::string begin() = 0;
    virtual std::string end() = 0;
    /// Appends one event to `out`.
    virtual void append(const Event& event, std::string& out) = 0;
};

std::unique_ptr<EventPrinter> makeEventPrinter(EventFormat format, bool hasColour);

/// The table of a listing, and the cells of an event's line.
Table eventTable(bool hasColour);
std::vector<Cell> eventCells(const Event& event);

}

#endif
