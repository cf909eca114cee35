// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_TOOL_SEL_EVENTNAMES_H
#define RECORDKIT_TOOL_SEL_EVENTNAMES_H

#include <string>
#include <vector>

#include <recordkit/inspect/event/Event.h>
#include <recordkit/inspect/event/EventRules.h>

#include "../cli/Arguments.h"
#include "../print/Problems.h"

namespace recordkit::tool {

using namespace inspect;

/// --sdr: repositories that name the sensors of events; --rules: rules with texts for events.
std::vector<Option> eventNameOptions();

/// What repositories and rules say of events: those of the options; without them, for the logs of
/// boards, those in the configuration folder of the system root, if there are any.
class EventNames {
public:
    enum Of { BOARDS, SAVED_FILES };

    /// Reports what is wrong with a repository or a rule; throws Error for a file that cannot be
    /// read.
    EventNames(const Arguments& arguments, Of events);

    /// Whether there is any repository.
    bool hasSensors() const { return isAnySensor; }
    /// Gives events their sensors and texts; valid as long as the object.
    void name(std::vector<Event>& events) const;
    /// Throws Reported if something was wrong.
    void finish() const { problems.finish(); }

    /// The files of one kind: those of the option, otherwise the usual one if it exists.
    static std::vector<std::string> repositories(const Arguments& arguments, Of events);
    static std::vector<std::string> ruleFiles(const Arguments& arguments, Of events);

private:
    void addRepository(const std::string& path);
    void addRules(const std::string& path);

    SensorNames sensors;
    std::vector<EventRules> rules;
    Problems problems;
    bool isAnySensor = false;
};

}

#endif
