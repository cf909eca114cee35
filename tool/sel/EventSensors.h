// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_TOOL_SEL_EVENTSENSORS_H
#define RECORDKIT_TOOL_SEL_EVENTSENSORS_H

#include <vector>

#include <recordkit/inspect/event/Event.h>

#include "../cli/Arguments.h"
#include "../print/Problems.h"

namespace recordkit::tool {

using namespace inspect;

/// --sdr: repositories that name the sensors of events.
Option sdrOption();

/// What repositories say of the sensors of events: those of --sdr; without it, for the logs of
/// boards, the one of the system root if there is one.
class EventSensors {
public:
    enum Of { BOARDS, SAVED_FILES };

    /// Reports what is wrong with a repository; throws Error for one that cannot be read.
    EventSensors(const Arguments& arguments, Of events);

    /// Whether there is any repository.
    bool areKnown() const { return isAny; }
    /// Valid as long as the object.
    void name(std::vector<Event>& events) const;
    /// Throws Reported if something was wrong.
    void finish() const { problems.finish(); }

private:
    void add(const std::string& path);

    SensorNames names;
    Problems problems;
    bool isAny = false;
};

}

#endif
