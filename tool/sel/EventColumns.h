// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_TOOL_SEL_EVENTCOLUMNS_H
#define RECORDKIT_TOOL_SEL_EVENTCOLUMNS_H

#include <recordkit/inspect/event/Event.h>

#include "../Errors.h"
#include "../print/Listing.h"

namespace recordkit::tool {

using EventListing = Listing<Event>;

/// A listing of events. In JSON and CSV a field that the kind of record does not have is null.
EventListing eventListing(Format format, Sink sink = print);

}

#endif
