// SPDX-License-Identifier: Apache-2.0
// The options that select events: each line is the name of one, a blank and its value. What they
// accept is applied to events of every kind, with and without a sensor.
#include <algorithm>
#include <sstream>

#include "Fuzz.h"
#include "support/SystemEvents.h"
#include "tool/sel/EventFilter.h"

using namespace recordkit::tool;
using namespace testing_support;

namespace {

/// The options of a command line; throws Error where one does not take its value.
Arguments argumentsOf(const std::string& lines)
{
    std::map<std::string, std::vector<std::string>> given;
    std::istringstream stream(lines);
    for (std::string line; std::getline(stream, line);) {
        const std::size_t blank = line.find(' ');
        given[line.substr(0, blank)] = {blank == std::string::npos ? "" : line.substr(blank + 1)};
    }
    Arguments arguments;
    for (const Option& option : eventFilterOptions()) {
        arguments.add(option, given[option.name]);
    }
    return arguments;
}

}

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size)
{
    const NamedSensor fan = {"FAN1", "29.1", "fan or cooling device", "RPM", std::nullopt};
    std::vector<Event> events = {
        systemEvent(1000000000, {4, 0x10, 0x01, 0x52, 8, 10}),
        systemEvent(5, {0xC7, 0x71, 0xEF, 0xA3, 0x5C, 0x80}),
        eventOf({0xC1, 1, 2, 3, 4, 0x7C, 0x2A, 0x00, 10, 20, 30, 40, 50, 60}),
        eventOf({0xE1, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13}),
        eventOf({0x55}),
    };
    events[0].sensor = &fan;
    events[0].isStillAsserted = true;
    fuzz::attempt([&] {
        EventFilter filter(argumentsOf(std::string(data, data + size)), true);
        const std::vector<Event> chosen = filter.choose(events);
        fuzz::expect(chosen.size() <= events.size());
        fuzz::expect(filter.choose(chosen).size() == chosen.size());
        fuzz::expect(filter.atAnyTime().choose(events).size() >= chosen.size());
    });
    return 0;
}
