// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_TOOL_SEL_EVENTSOURCE_H
#define RECORDKIT_TOOL_SEL_EVENTSOURCE_H

#include <string>
#include <vector>

#include <recordkit/inspect/event/Event.h>
#include <recordkit/inspect/log/NewEvents.h>

#include "../cli/Arguments.h"
#include "../print/Problems.h"
#include "EventNames.h"
#include "LogProblems.h"

namespace recordkit::tool {

using namespace inspect;

/// What chooses the events of a sub-command: saved files, or boards (`standard` without --board),
/// and what names their sensors and gives them texts.
std::vector<Option> eventSourceOptions(const char* standard);

/// The events of saved files if there are any, otherwise of the logs of boards; merged by time,
/// named, marked where they are still asserted.
class EventSource {
public:
    /// Throws CommandError for options that exclude each other, for a root without event logs and
    /// for a repository that cannot be read.
    explicit EventSource(const Arguments& arguments);

    /// Whether there is a repository that names sensors.
    bool hasSensors() const { return names.hasSensors(); }

    /// The events that are new since the last call; valid as long as the object. What is wrong
    /// with files and logs is kept by the first call only: a rotation in progress looks wrong for
    /// a moment.
    std::vector<Event> take();

    /// Writes what was wrong to standard error, once.
    void report();
    /// The same; throws Reported if anything was wrong.
    void finish();

private:
    std::vector<Event> takeSaved();
    std::vector<Event> takeNew();

    std::vector<std::string> files;
    std::vector<unsigned char> boards;
    LogProblems::Events shown;
    EventNames names;
    std::vector<NewEvents> logs;
    LogProblems logProblems;
    Problems fileProblems;
    bool isFirst = true;
};

}

#endif
