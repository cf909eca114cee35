// SPDX-License-Identifier: Apache-2.0
#include "EventSensors.h"

#include <recordkit/platform/SystemRoot.h>

#include "../sdr/Repository.h"
#include "Store.h"

namespace recordkit::tool {

namespace {

/// Below the system root.
constexpr const char* USUAL_REPOSITORY = "/etc/default/config/sdr.bin";

}

Option sdrOption()
{
    Option option = text("--sdr", "FILE",
                         "Sensor data records that name the sensors of events, as sdr list reads "
                         "them (default: /etc/default/config/sdr.bin of the system root, if it is "
                         "there)");
    option.environment = "RECORDKIT_SDR";
    return option.many();
}

EventSensors::EventSensors(const Arguments& arguments, Of events)
{
    const std::string usual = TAVLib::systemRoot() + USUAL_REPOSITORY;
    if (arguments.has("--sdr")) {
        for (const std::string& path : arguments.texts("--sdr")) {
            add(path);
        }
    } else if (events == BOARDS && isFile(usual)) {
        add(usual);
    }
}

void EventSensors::add(const std::string& path)
{
    const Repository repository = readRepository(path, SdrFormat::AUTO);
    addNames(repository.sensors, names);
    problems.add(repository.problems);
    isAny = true;
}

void EventSensors::name(std::vector<Event>& events) const
{
    if (isAny) {
        nameSensors(events, names);
    }
}

}
