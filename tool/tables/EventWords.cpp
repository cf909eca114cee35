// SPDX-License-Identifier: Apache-2.0
#include "EventWords.h"

#include <algorithm>
#include <utility>

#include "EventTypes.h"

namespace recordkit::tool {

const char* eventWords(unsigned char eventType, unsigned char sensorType, unsigned char offset)
{
    const bool isSensorSpecific = eventType == SENSOR_SPECIFIC_EVENT;
    std::size_t count = 0;
    const EventWordsRow* const rows =
        isSensorSpecific ? sensorEventRows(count) : genericEventRows(count);
    const std::pair<int, int> wanted(isSensorSpecific ? sensorType : eventType, offset);
    const EventWordsRow* const found = std::lower_bound(
        rows, rows + count, wanted, [](const EventWordsRow& row, const std::pair<int, int>& key) {
            return std::pair<int, int>(row.code, row.offset) < key;
        });
    const bool isThere =
        found != rows + count && std::pair<int, int>(found->code, found->offset) == wanted;
    return isThere ? found->words : nullptr;
}

}
