// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_TOOL_SEL_EVENTFILTER_H
#define RECORDKIT_TOOL_SEL_EVENTFILTER_H

#include <CLI/CLI.hpp>
#include <string>

#include <recordkit/inspect/event/Event.h>

#include "../Errors.h"

namespace recordkit::tool {

/// The options of `sel list` that select events.
class EventFilter {
public:
    void addTo(CLI::App& command);

    /// Parses the options' texts; throws CommandError (usage).
    void prepare();

    bool accepts(const Event& event) const;

private:
    bool isInTime(const Event& event) const;

    std::string severityText;
    std::string sinceText;
    std::string untilText;
    std::string sensorTypeText;
    std::string partitionText;

    Severity leastSeverity = SeverityMap::SEV_NONE;
    unsigned int since = 0;
    unsigned int until = 0;
    unsigned char sensorType = 0;
    unsigned long partition = 0;
};

}

#endif
