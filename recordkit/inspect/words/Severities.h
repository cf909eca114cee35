// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_INSPECT_WORDS_SEVERITIES_H
#define RECORDKIT_INSPECT_WORDS_SEVERITIES_H

#include <array>
#include <optional>
#include <string>

#include <recordkit/sensor/SeverityMap.h>

namespace recordkit::inspect {

using Severity = SeverityMap::DISCRETESEVERITYSTAT;

/// "unrated", "warning", "critical", "non-recoverable", "monitor" or "informational". Unrated is
/// what the severity map has no entry for.
const char* severityName(Severity severity);

/// The severity with that name, as matchWord takes it.
std::optional<Severity> findSeverity(const std::string& name);

/// All severities, the worst first.
const std::array<Severity, SeverityMap::SEV_INFORMATIONAL + 1>& worstFirst();

/// Whether `severity` is `least` or higher: unrated, informational, monitor, warning, critical,
/// non-recoverable.
bool isAtLeast(Severity severity, Severity least);

/// "none", "warning" or "alarm".
const char* alarmName(int alarmStatus);

/// The severity of an event: of discrete events by the severity map, of threshold events, which it
/// does not contain, by the threshold crossed.
Severity severityOfEvent(unsigned char eventType, unsigned char sensorType, unsigned char offset);

}

#endif
