// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_INSPECT_WORDS_SEVERITYPAIRS_H
#define RECORDKIT_INSPECT_WORDS_SEVERITYPAIRS_H

#include <vector>

#include <recordkit/inspect/words/Severities.h>

namespace recordkit::inspect {

/// Event offsets of a discrete event.
constexpr unsigned char EVENT_OFFSETS = 16;

/// What the severity map contains for an event/reading type and a sensor type.
struct SeverityPair {
    unsigned char eventType = 0;
    unsigned char sensorType = 0;
    bool isKnown = false;
    unsigned short masks[SeverityMap::SEV_INFORMATIONAL + 1] = {}; ///< of offsets, by severity
    unsigned short alarm = 0;
    unsigned short warning = 0;
};

SeverityPair severityPair(unsigned char eventType, unsigned char sensorType);

/// Every pair that the map contains.
std::vector<SeverityPair> knownSeverityPairs();

}

#endif
