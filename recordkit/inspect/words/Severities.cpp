// SPDX-License-Identifier: Apache-2.0
#include <recordkit/inspect/words/Severities.h>

#include <iterator>
#include <vector>

#include <recordkit/inspect/words/EventTypes.h>
#include <recordkit/inspect/words/Match.h>

namespace recordkit::inspect {

namespace {

struct Row {
    Severity severity;
    const char* name;
    int rank; ///< higher is worse
};

constexpr Row ROWS[] = {
    {SeverityMap::SEV_NONE, "unrated", 0},
    {SeverityMap::SEV_NONCRITICAL, "warning", 3},
    {SeverityMap::SEV_CRITICAL, "critical", 4},
    {SeverityMap::SEV_NONRECOVERABLE, "non-recoverable", 5},
    {SeverityMap::SEV_MONITOR, "monitor", 2},
    {SeverityMap::SEV_INFORMATIONAL, "informational", 1},
};
static_assert(std::size(ROWS) == SeverityMap::SEV_INFORMATIONAL + 1, "one row for each severity");

/// Severities of the threshold events by offset: non-critical, critical and non-recoverable, each
/// going low and going high, for the lower and then for the upper thresholds.
constexpr Severity THRESHOLDS[] = {
    SeverityMap::SEV_NONCRITICAL, SeverityMap::SEV_NONCRITICAL,    SeverityMap::SEV_CRITICAL,
    SeverityMap::SEV_CRITICAL,    SeverityMap::SEV_NONRECOVERABLE, SeverityMap::SEV_NONRECOVERABLE,
    SeverityMap::SEV_NONCRITICAL, SeverityMap::SEV_NONCRITICAL,    SeverityMap::SEV_CRITICAL,
    SeverityMap::SEV_CRITICAL,    SeverityMap::SEV_NONRECOVERABLE, SeverityMap::SEV_NONRECOVERABLE,
};

constexpr const char* ALARMS[] = {"none", "warning", "alarm"};

}

const char* severityName(Severity severity)
{
    return ROWS[severity].name;
}

std::optional<Severity> findSeverity(const std::string& name)
{
    std::vector<std::string> names;
    for (const Row& row : ROWS) {
        names.emplace_back(row.name);
    }
    const auto found = matchWord(name, names);
    return found ? std::optional(ROWS[*found].severity) : std::nullopt;
}

const std::array<Severity, SeverityMap::SEV_INFORMATIONAL + 1>& worstFirst()
{
    static constexpr std::array<Severity, SeverityMap::SEV_INFORMATIONAL + 1> ALL = {
        SeverityMap::SEV_NONRECOVERABLE, SeverityMap::SEV_CRITICAL,
        SeverityMap::SEV_NONCRITICAL,    SeverityMap::SEV_MONITOR,
        SeverityMap::SEV_INFORMATIONAL,  SeverityMap::SEV_NONE};
    return ALL;
}

bool isAtLeast(Severity severity, Severity least)
{
    return ROWS[severity].rank >= ROWS[least].rank;
}

const char* alarmName(int alarmStatus)
{
    return ALARMS[alarmStatus];
}

Severity severityOfEvent(unsigned char eventType, unsigned char sensorType, unsigned char offset)
{
    if (eventType == THRESHOLD_EVENT) {
        return offset < std::size(THRESHOLDS) ? THRESHOLDS[offset] : SeverityMap::SEV_NONE;
    }
    return SeverityMap::getInstance()->getSeverity(eventType, sensorType,
                                                   static_cast<unsigned short>(1U << offset));
}

}
