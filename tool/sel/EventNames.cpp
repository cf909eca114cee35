// SPDX-License-Identifier: Apache-2.0
#include "EventNames.h"

#include <fmt/format.h>

#include <recordkit/platform/SystemRoot.h>

#include "../Files.h"
#include "../sdr/Repository.h"
#include "Store.h"

namespace recordkit::tool {

namespace {

/// Below the system root.
constexpr const char* USUAL_REPOSITORY = "/etc/default/config/sdr.bin";
constexpr const char* USUAL_RULES = "/etc/default/config/events.rules";

/// An option for several files, one of which is usual.
Option filesOption(const char* name, const char* variable, const char* help, const char* usual)
{
    Option option = text(
        name, "FILE",
        fmt::format("{} (default: {} of the system root, if it is there)", help, usual).c_str());
    option.environment = variable;
    return option.many();
}

}

std::vector<Option> eventNameOptions()
{
    return {
        filesOption("--sdr", "RECORDKIT_SDR",
                    "Sensor data records that name the sensors of events, as sdr list reads "
                    "them",
                    USUAL_REPOSITORY),
        filesOption("--rules", "RECORDKIT_RULES",
                    "Rules with texts for a site's own events, such as sensor-type=C7h offset=2 "
                    "\"fan tray {data2} is missing\"; the example events.rules explains them",
                    USUAL_RULES)};
}

EventNames::EventNames(const Arguments& arguments, Of events)
{
    const auto add = [&](const char* option, const char* usual,
                         void (EventNames::*read)(const std::string& path)) {
        const std::string path = TAVLib::systemRoot() + usual;
        if (arguments.has(option)) {
            for (const std::string& each : arguments.texts(option)) {
                (this->*read)(each);
            }
        } else if (events == BOARDS && isFile(path)) {
            (this->*read)(path);
        }
    };
    add("--sdr", USUAL_REPOSITORY, &EventNames::addRepository);
    add("--rules", USUAL_RULES, &EventNames::addRules);
}

void EventNames::addRepository(const std::string& path)
{
    const Repository repository = readRepository(path, SdrFormat::AUTO);
    addNames(repository.sensors, sensors);
    problems.add(repository.problems);
    isAnySensor = true;
}

void EventNames::addRules(const std::string& path)
{
    std::vector<std::string> wrong;
    rules.emplace_back(readInput(path, RULES_LIMIT), wrong);
    for (const std::string& problem : wrong) {
        problems.add(inputName(path), problem);
    }
}

void EventNames::name(std::vector<Event>& events) const
{
    if (isAnySensor) {
        nameSensors(events, sensors);
    }
    for (const EventRules& each : rules) {
        each.apply(events);
    }
}

}
