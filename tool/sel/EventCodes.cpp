// SPDX-License-Identifier: Apache-2.0
#include "EventCodes.h"

#include <ctime>

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <recordkit/inspect/bytes/Time.h>
#include <recordkit/inspect/words/EventTypes.h>
#include <recordkit/inspect/words/SensorTypes.h>
#include <recordkit/inspect/words/Severities.h>

#include "../Zone.h"

namespace recordkit::tool {

using namespace inspect;

namespace {

constexpr const char* TIME =
    "a time such as 2024-11-05, 2024-11-05T06:07:08Z, 2024-11-05T08:00+01:00, 18:00, -12h, "
    "yesterday or seconds since 1970";

template <typename Code> std::optional<unsigned long> numberOf(const std::optional<Code>& code)
{
    return code ? std::optional(static_cast<unsigned long>(*code)) : std::nullopt;
}

std::optional<Moment> momentOf(const std::string& text)
{
    return parseMoment(text, static_cast<unsigned int>(std::time(nullptr)), chosenZone());
}

std::string codeOr(const std::vector<std::string>& names)
{
    return fmt::format("a number from 0 to 255 or one of {}", fmt::join(names, ", "));
}

}

Option severityOption(const char* name, const char* help)
{
    return word(
        name, "NAME", [](const std::string& text) { return numberOf(findSeverity(text)); },
        "unrated, informational, monitor, warning, critical or non-recoverable", help);
}

Option sensorTypeOption(const char* name, const char* valueName, const char* help)
{
    return word(
        name, valueName, [](const std::string& text) { return numberOf(findSensorType(text)); },
        codeOr(sensorTypeNames()), help);
}

Option eventTypeOption(const char* name, const char* valueName, const char* help)
{
    return word(
        name, valueName, [](const std::string& text) { return numberOf(findEventType(text)); },
        codeOr(eventTypeNames()), help);
}

Option sinceOption(const char* name, const char* help)
{
    return word(
        name, "TIME",
        [](const std::string& text) {
            const auto moment = momentOf(text);
            return moment ? std::optional<unsigned long>(moment->first) : std::nullopt;
        },
        TIME, help);
}

Option untilOption(const char* name, const char* help)
{
    return word(
        name, "TIME",
        [](const std::string& text) {
            const auto moment = momentOf(text);
            return moment ? std::optional<unsigned long>(moment->last) : std::nullopt;
        },
        TIME, help);
}

}
