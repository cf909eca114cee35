// SPDX-License-Identifier: Apache-2.0
#include <recordkit/inspect/words/SeverityPairs.h>

namespace recordkit::inspect {

SeverityPair severityPair(unsigned char eventType, unsigned char sensorType)
{
    SeverityMap& map = *SeverityMap::getInstance();
    SeverityPair pair;
    pair.eventType = eventType;
    pair.sensorType = sensorType;
    // An unknown pair writes nothing; no mask of a known one has offset 15.
    constexpr unsigned short UNWRITTEN = 1U << (EVENT_OFFSETS - 1);
    pair.alarm = UNWRITTEN;
    map.getAlarmMasks(eventType, sensorType, pair.alarm, pair.warning);
    pair.isKnown = pair.alarm != UNWRITTEN;
    pair.alarm = pair.isKnown ? pair.alarm : 0;
    map.getSeverityMasks(
        eventType, sensorType, pair.masks[SeverityMap::SEV_NONCRITICAL],
        pair.masks[SeverityMap::SEV_CRITICAL], pair.masks[SeverityMap::SEV_NONRECOVERABLE],
        pair.masks[SeverityMap::SEV_MONITOR], pair.masks[SeverityMap::SEV_INFORMATIONAL]);
    return pair;
}

std::vector<SeverityPair> knownSeverityPairs()
{
    std::vector<SeverityPair> pairs;
    for (unsigned int eventType = 0; eventType <= 0xFF; ++eventType) {
        for (unsigned int sensorType = 0; sensorType <= 0xFF; ++sensorType) {
            const SeverityPair pair = severityPair(static_cast<unsigned char>(eventType),
                                                   static_cast<unsigned char>(sensorType));
            if (pair.isKnown) {
                pairs.push_back(pair);
            }
        }
    }
    return pairs;
}

}
