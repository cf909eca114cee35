// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_INSPECT_EVENT_EVENTFIELDS_H
#define RECORDKIT_INSPECT_EVENT_EVENTFIELDS_H

#include <recordkit/inspect/event/Event.h>
#include <recordkit/inspect/fields/Value.h>

namespace recordkit::inspect {

/// What has to be known besides the event for a field to have a value.
enum class FilledBy {
    EVERY_EVENT,
    REPOSITORY, ///< which names the sensor
    COMPARISON, ///< of two logs
};

/// What a program sees of an event: a stable name, and the value, none where the kind of record has
/// no such field.
struct EventField {
    const char* name;
    Value (*get)(const Event& event);
    const char* text;
    FilledBy filledBy = FilledBy::EVERY_EVENT;
};

/// All of them, in the order in which they are written.
class EventFields {
public:
    const EventField* begin() const;
    const EventField* end() const;
};

}

#endif
