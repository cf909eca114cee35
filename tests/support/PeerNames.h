// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_TESTS_TOOL_PEERNAMES_H
#define RECORDKIT_TESTS_TOOL_PEERNAMES_H

#include <string>

/// Whether ipmitool's name of a sensor type means this type.
bool isSameSensorType(const std::string& peerName, unsigned char sensorType);

/// Whether ipmitool's words for an event mean the same as ours.
bool isSameEvent(const std::string& peerWords, unsigned char eventType, unsigned char sensorType,
                 const std::string& ourWords);

#endif
