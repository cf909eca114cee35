// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_TOOL_REPORT_EVENTDOCUMENT_H
#define RECORDKIT_TOOL_REPORT_EVENTDOCUMENT_H

#include <vector>

#include <recordkit/inspect/event/EventTable.h>

#include "../print/Value.h"

namespace recordkit::tool {

/// The part of a report's document that contains the events: columns in base64, and tables.
Object eventDocument(const std::vector<inspect::Event>& events, const inspect::EventTable& table);

}

#endif
