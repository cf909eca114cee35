// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_TOOL_SEL_EVENTCODES_H
#define RECORDKIT_TOOL_SEL_EVENTCODES_H

#include <optional>
#include <string>
#include <vector>

#include "../cli/Command.h"

namespace recordkit::tool {

// Options that take words for the codes and times of events.

Option severityOption(const char* name, const char* help);
Option sensorTypeOption(const char* name, const char* valueName, const char* help);
Option eventTypeOption(const char* name, const char* valueName, const char* help);
/// A time, of a day its beginning.
Option sinceOption(const char* name, const char* help);
/// A time, of a day its end.
Option untilOption(const char* name, const char* help);

}

#endif
