// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_INSPECT_EVENT_EVENTTABLE_H
#define RECORDKIT_INSPECT_EVENT_EVENTTABLE_H

#include <cstddef>
#include <string>
#include <vector>

#include <recordkit/inspect/event/Event.h>

namespace recordkit::inspect {

/// What slots of event files contain besides the record: bytes 18 to 137, and what they say of the
/// unit concerned.
struct EventBlock {
    /// Of how many blocks a table has everything, and of how many at least what they say.
    static constexpr std::size_t MOST_IMAGES = 4096;
    static constexpr std::size_t MOST_BLOCKS = 2 * MOST_IMAGES;

    const Event* event =
        nullptr;           ///< one that has it; nullptr: too many blocks, this one is left out
    bool hasImage = false; ///< whether the table has its bytes
};

/// Events as columns, a number for each event, and tables of what many events have in common. The
/// pointers are to events of the list.
struct EventTable {
    static constexpr unsigned int NO_DATE = 0xFFFFFFFF;
    enum Flag : unsigned int { STILL_ASSERTED = 1, PRE_INIT = 2 };

    std::vector<unsigned char> records; ///< 16 bytes each (IPMI v2.0, section 32.1)
    std::vector<unsigned int> times;    ///< seconds since 1970; NO_DATE for an event without a date
    std::vector<unsigned int> severities; ///< position among worstFirst; their number: not an event
    std::vector<unsigned int> directions; ///< 0 neither, 1 asserted, 2 deasserted
    std::vector<unsigned int> flags;      ///< bits of Flag
    std::vector<unsigned int> states;     ///< of EventState
    std::vector<unsigned int> files;      ///< file index
    std::vector<unsigned int> slots;      ///< slot in the file, or number of the record
    std::vector<unsigned int> numbers;    ///< log number, 0: none
    std::vector<unsigned int> sensorOf;   ///< positions in the tables below
    std::vector<unsigned int> textOf;
    std::vector<unsigned int> causeOf;
    std::vector<unsigned int> blockOf;

    std::vector<const Event*> sensors; ///< an event of each sensor of each log
    std::vector<std::string> texts;    ///< of events, sorted, each once
    std::vector<std::string> causes;   ///< the same of what event data 2 and 3 add
    std::vector<EventBlock> blocks;
};

/// The columns of events that markAsserted has seen, in their order.
EventTable tabulate(const std::vector<Event>& events);

}

#endif
