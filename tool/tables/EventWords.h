// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_TOOL_TABLES_EVENTWORDS_H
#define RECORDKIT_TOOL_TABLES_EVENTWORDS_H

#include <cstddef>

namespace recordkit::tool {

/// The words for one event offset. `code` is an event/reading type for the generic events and a
/// sensor type for the sensor-specific ones. Rows are sorted by code and offset.
struct EventWordsRow {
    unsigned char code;
    unsigned char offset;
    const char* words;
};

/// IPMI v2.0, table 42-2: generic event/reading type codes 01h to 0Ch.
const EventWordsRow* genericEventRows(std::size_t& count);

/// IPMI v2.0, table 42-3: the offsets of event/reading type 6Fh, by sensor type.
const EventWordsRow* sensorEventRows(std::size_t& count);

/// The words for an event offset; nullptr where the standard has none.
const char* eventWords(unsigned char eventType, unsigned char sensorType, unsigned char offset);

}

#endif
