// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_TOOL_SEL_EVENTCOLUMNS_H
#define RECORDKIT_TOOL_SEL_EVENTCOLUMNS_H

#include <recordkit/inspect/event/Event.h>
#include <recordkit/inspect/event/EventFields.h>

#include "../Errors.h"
#include "../print/Listing.h"

namespace recordkit::tool {

struct EventColumn;

/// A listing of events: the fields of EventFields in JSON and CSV, the most wanted ones in the
/// table. Without repositories the fields that only these fill are left out.
class EventListing {
public:
    explicit EventListing(const Layout& layout, Sink sink = print, bool hasRepositories = false);

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
