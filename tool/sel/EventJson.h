// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_TOOL_SEL_EVENTJSON_H
#define RECORDKIT_TOOL_SEL_EVENTJSON_H

#include <recordkit/inspect/event/Event.h>

#include "../Errors.h"
#include "../print/Json.h"

namespace recordkit::tool {

/// Every field of an event under its stable name; a field that the kind of record does not have is
/// null. JSON, ndjson and CSV are all made from this.
Json toJson(const Event& event);

}

#endif
