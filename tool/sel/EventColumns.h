// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_TOOL_SEL_EVENTCOLUMNS_H
#define RECORDKIT_TOOL_SEL_EVENTCOLUMNS_H

#include <recordkit/inspect/event/Event.h>

#include "../Errors.h"
#include "../print/Listing.h"

namespace recordkit::tool {

/// A listing of events: every field of EventFields in JSON and CSV, the most wanted ones in the
/// table.
class EventListing {
public:
    explicit EventListing(Format format, Sink sink = print);

    void add(const Event& event);
    void flush() { writer.flush(); }
    void finish() { writer.end(); }

private:
    ListingWriter writer;
};

}

#endif
