// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_TOOL_SEVERITY_SEVERITYNAMES_H
#define RECORDKIT_TOOL_SEVERITY_SEVERITYNAMES_H

#include <string>

#include <recordkit/sensor/SeverityMap.h>

#include "../print/Table.h"

namespace recordkit::tool {

using Severity = SeverityMap::DISCRETESEVERITYSTAT;

/// "none", "warning", "critical", "non-recoverable", "monitor" or "informational".
const char* severityName(Severity severity);

/// The severity with that name; false when there is none.
bool findSeverity(const std::string& name, Severity& severity);

/// Whether `severity` is as bad as `least` or worse: none, informational, monitor, warning,
/// critical, non-recoverable.
bool isAtLeast(Severity severity, Severity least);

/// "none", "warning" or "alarm".
const char* alarmName(int alarmStatus);

Style styleOf(Severity severity);

/// The severity of an event. Discrete events have that of the severity map; threshold events,
/// which it does not hold, that of the threshold crossed.
Severity severityOfEvent(unsigned char eventType, unsigned char sensorType, unsigned char offset);

}

#endif
