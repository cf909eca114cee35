// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_TOOL_ZONE_H
#define RECORDKIT_TOOL_ZONE_H

#include <cstddef>
#include <string>

#include <recordkit/inspect/bytes/Time.h>

namespace recordkit::tool {

/// Characters of "+01:00".
constexpr std::size_t OFFSET_WIDTH = 6;

/// The time zone of event times, UTC until one is chosen; nullptr for UTC.
inspect::Zone chosenZone();

/// Chooses UTC again, for an answer that is in UTC whatever zone its options are in.
void chooseUtc();

/// Chooses the zone of the machine, or that of the variable TZ.
void chooseLocalZone();

/// Chooses a zone by name (Europe/Berlin), or by an offset from UTC (+01:00). Throws CommandError
/// (usage) for a zone that the system does not know.
void chooseZone(const std::string& name);

}

#endif
