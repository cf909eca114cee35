// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_TOOL_SEL_EVENTCOLUMNS_H
#define RECORDKIT_TOOL_SEL_EVENTCOLUMNS_H

#include <recordkit/inspect/event/Event.h>
#include <recordkit/inspect/event/EventFields.h>

#include "../Errors.h"
#include "../print/Listing.h"

namespace recordkit::tool {

struct EventColumn;

// What other answers about events contain, too.

/// The field of EventFields with that name, times in the chosen zone.
Value eventField(const Event& event, const char* name);

constexpr std::size_t TIME_WIDTH = 19;
Cell timeCell(const Event& event);
Cell severityCell(const Event& event);
/// The sensor's name if a repository has it, otherwise its number: "38h".
Cell sensorCell(const Event& event);

/// A listing of events: the fields of EventFields in JSON and CSV, the most wanted ones in the
/// table.
class EventListing {
public:
    /// What there is besides the events; fields that nothing fills are left out.
    struct Known {
        bool hasRepositories = false;
        bool isComparison = false;
    };

    explicit EventListing(const Layout& layout, Sink sink = print, Known known = {false, false});

    void add(const Event& event);
    void flush() { writer.flush(); }
    void finish() { writer.end(); }

private:
    ListingWriter writer;
    std::vector<const EventField*> fields;   ///< of the columns shown
    std::vector<const EventColumn*> columns; ///< nullptr: the field's text is the cell
};

}

#endif
