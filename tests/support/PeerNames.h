// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_TESTS_TOOL_PEERNAMES_H
#define RECORDKIT_TESTS_TOOL_PEERNAMES_H

#include <string>

#include <recordkit/inspect/event/Event.h>

/// Whether ipmitool's name of a sensor type means this type.
bool isSameSensorType(const std::string& peerName, unsigned char sensorType);

/// Whether ipmitool's words for an event mean the same as ours, without what event data 2 and 3
/// add.
bool isSameEvent(const std::string& peerWords, unsigned char eventType, unsigned char sensorType,
                 const std::string& ourWords);

/// The text of an event without what event data 2 and 3 add, which ipmitool mostly leaves out.
std::string textWithoutCause(const recordkit::inspect::Event& event);

#endif
