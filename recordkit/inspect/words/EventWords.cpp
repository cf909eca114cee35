// SPDX-License-Identifier: Apache-2.0
#include <recordkit/inspect/words/EventWords.h>

#include <algorithm>
#include <utility>

#include <recordkit/inspect/words/EventTypes.h>

namespace recordkit::inspect {

const char* eventWords(unsigned char eventType, unsigned char sensorType, unsigned char offset)
{
    const bool isSensorSpecific = eventType == SENSOR_SPECIFIC_EVENT;
    const EventWordsTable table = isSensorSpecific ? sensorEvents() : genericEvents();
    const std::pair<int, int> wanted(isSensorSpecific ? sensorType : eventType, offset);
    const auto keyOf = [](const EventWordsRow& row) {
        return std::pair<int, int>(row.code, row.offset);
    };
    const EventWordsRow* const found = std::lower_bound(
        table.begin(), table.end(), wanted,
        [keyOf](const EventWordsRow& row, const auto& key) { return keyOf(row) < key; });
    return found != table.end() && keyOf(*found) == wanted ? found->words : nullptr;
}

}
