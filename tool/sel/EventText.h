// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_TOOL_SEL_EVENTTEXT_H
#define RECORDKIT_TOOL_SEL_EVENTTEXT_H

#include <string>

#include <recordkit/inspect/event/Event.h>

#include "../Errors.h"

namespace recordkit::tool {

/// Every field of an event on a line of its own, and a dump of its bytes, field by field.
std::string describeEvent(const Event& event);

}

#endif
