// SPDX-License-Identifier: Apache-2.0
#include "EventNames.h"

#include <fmt/format.h>

#include <recordkit/platform/SystemRoot.h>

#include "../Files.h"
#include "../sdr/Repository.h"
#include "Store.h"

namespace recordkit::tool {

namespace {

constexpr const char* SDR_OPTION = "--sdr";
constexpr const char* RULES_OPTION = "--rules";
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

std::vector<std::string> filesOf(const Arguments& arguments, const char* option, const char* usual,
                                 EventNames::Of events)
{
    const std::string path = TAVLib::systemRoot() + usual;
    if (arguments.has(option)) {
        return arguments.texts(option);
    }
    return events == EventNames::BOARDS && isFile(path) ? std::vector<std::string>{path}
                                                        : std::vector<std::string>();
}

}

std::vector<Option> eventNameOptions()
{
    return {
        filesOption(SDR_OPTION, "RECORDKIT_SDR",
                    "Sensor data records that name the sensors of events, as sdr list reads "
                    "them",
                    USUAL_REPOSITORY),
        filesOption(RULES_OPTION, "RECORDKIT_RULES",
                    "Rules with texts for a site's own events, such as sensor-type=C7h offset=2 "
                    "\"fan tray {data2} is missing\"; the example events.rules explains them",
                    USUAL_RULES)};
}

EventNames::EventNames(const Arguments& arguments, Of events)
{
    for (const std::string& path : repositories(arguments, events)) {
        addRepository(path);
    }
    for (const std::string& path : ruleFiles(arguments, events)) {
        addRules(path);
    }
}

std::vector<std::string> EventNames::repositories(const Arguments& arguments, Of events)
{
    return filesOf(arguments, SDR_OPTION, USUAL_REPOSITORY, events);
}

std::vector<std::string> EventNames::ruleFiles(const Arguments& arguments, Of events)
{
    return filesOf(arguments, RULES_OPTION, USUAL_RULES, events);
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
