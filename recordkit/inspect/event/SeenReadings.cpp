// SPDX-License-Identifier: Apache-2.0
#include <recordkit/inspect/event/SeenReadings.h>

namespace recordkit::inspect {

std::map<std::pair<const NamedSensor*, unsigned int>, ReadingCounts>
seenReadings(const std::vector<Event>& events)
{
    std::map<std::pair<const NamedSensor*, unsigned int>, ReadingCounts> seen;
    for (const Event& event : events) {
        const std::optional<unsigned char> raw = triggerReading(event);
        if (event.sensor == nullptr || !event.sensor->conversion || !raw) {
            continue;
        }
        const std::optional<double> value = event.sensor->conversion->valueOf(*raw);
        if (value) {
            ++seen[{event.sensor, event.log}][*value];
        }
    }
    return seen;
}

}
