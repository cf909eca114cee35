// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_INSPECT_WORDS_EVENTWORDS_H
#define RECORDKIT_INSPECT_WORDS_EVENTWORDS_H

#include <cstddef>

namespace recordkit::inspect {

/// The words for one event offset. `code` is an event/reading type for the generic events and a
/// sensor type for the sensor-specific ones. Rows are sorted by code and offset.
struct EventWordsRow {
    unsigned char code;
    unsigned char offset;
    const char* words;
};

/// A table of them.
class EventWordsTable {
public:
    constexpr EventWordsTable(const EventWordsRow* first, std::size_t count)
        : rows(first), length(count)
    {
    }
    constexpr const EventWordsRow* begin() const { return rows; }
    constexpr const EventWordsRow* end() const { return rows + length; }
    constexpr std::size_t size() const { return length; }

private:
    const EventWordsRow* rows;
    std::size_t length;
};

/// IPMI v2.0, table 42-2: generic event/reading type codes 01h to 0Ch.
EventWordsTable genericEvents();

/// IPMI v2.0, table 42-3: the offsets of event/reading type 6Fh, by sensor type.
EventWordsTable sensorEvents();

/// The words for an event offset; nullptr if the standard defines none.
const char* eventWords(unsigned char eventType, unsigned char sensorType, unsigned char offset);

}

#endif
