// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <iterator>

#include <fmt/format.h>

#include <recordkit/inspect/bytes/Numbers.h>
#include <recordkit/inspect/bytes/Text.h>
#include <recordkit/inspect/event/EventSummary.h>
#include <recordkit/inspect/words/SensorTypes.h>

#include "../Answers.h"
#include "../Commands.h"
#include "../Zone.h"
#include "../print/Json.h"
#include "../print/Listing.h"
#include "../print/Output.h"
#include "../print/Sparkline.h"
#include "EventCodes.h"
#include "EventColumns.h"
#include "EventFilter.h"
#include "EventSource.h"

namespace recordkit::tool {

namespace {

constexpr unsigned int HOUR = 3600;
constexpr std::size_t FACT_WIDTH = 18;
constexpr const char* SOURCE_KEY = "source";
constexpr const char* SENSOR_KEY = "sensor";

using SeverityCount = std::pair<Severity, EventCount>;

struct HourCount {
    Timestamp hour;
    std::size_t events;
};

/// "Fan1", or "Fan 38h" where no repository names the sensor.
std::string sensorText(const Event& event)
{
    return event.sensor != nullptr && !event.sensor->name.empty()
               ? printable(event.sensor->name)
               : fmt::format("{} {:02X}h", sensorTypeName(event.sensorType), event.sensorNumber);
}

Cell logCell(const Event& event)
{
    return {event.source.empty() ? fmt::format("board {}", event.board) : printable(event.source)};
}

Cell countCell(std::size_t count, Severity severity)
{
    return {std::to_string(count), count == 0 ? Style::PLAIN : styleOf(severity)};
}

template <typename Row> const Event& newestOf(const Row& row)
{
    return *row.newest;
}
const Event& newestOf(const Event& event)
{
    return event;
}

// What several of the lists below have.
template <typename Row> constexpr Column<Row> BOARD = {
    "board", nullptr, 0, [](const Row& r) { return eventField(newestOf(r), "board"); }};
template <typename Row> constexpr Column<Row> SOURCE = {
    SOURCE_KEY, "LOG", 12, [](const Row& r) { return eventField(newestOf(r), "source"); },
    [](const Row& r) { return logCell(newestOf(r)); }};
template <typename Row>
constexpr Column<Row> SENSOR_TYPE = {"sensor_type_name", nullptr, 0, [](const Row& r) {
                                         return eventField(newestOf(r), "sensor_type_name");
                                     }};
template <typename Row> constexpr Column<Row> SENSOR_NAME = {
    "sensor_name", nullptr, 0, [](const Row& r) { return eventField(newestOf(r), "sensor_name"); }};
template <typename Row> constexpr Column<Row> SENSOR = {
    SENSOR_KEY, "SENSOR", 24, [](const Row& r) { return eventField(newestOf(r), "sensor"); },
    [](const Row& r) { return Cell{sensorText(newestOf(r))}; }};
template <typename Row> constexpr Column<Row> SEVERITY = {
    "severity", "SEVERITY", 15, [](const Row& r) { return eventField(newestOf(r), "severity"); },
    [](const Row& r) { return severityCell(newestOf(r)); }};
template <typename Row> constexpr Column<Row> EVENT = {
    "event", "EVENT", 0, [](const Row& r) { return eventField(newestOf(r), "event"); }};

constexpr Column<SeverityCount> SEVERITIES[] = {
    {"severity", "SEVERITY", 15,
     [](const SeverityCount& s) { return Value(severityName(s.first)); },
     [](const SeverityCount& s) {
         return Cell{severityName(s.first), styleOf(s.first)};
     }},
    {"events", "EVENTS", 6, [](const SeverityCount& s) { return Value(s.second.events); }},
    {"still_asserted", "STILL ASSERTED", 0,
     [](const SeverityCount& s) { return Value(s.second.stillAsserted); },
     [](const SeverityCount& s) { return countCell(s.second.stillAsserted, s.first); }},
};

constexpr Column<EventGroup> LOGS[] = {
    BOARD<EventGroup>,
    SOURCE<EventGroup>,
    {"events", "EVENTS", 6, [](const EventGroup& g) { return Value(g.count.events); }},
    {"still_asserted", "STILL ASSERTED", 0,
     [](const EventGroup& g) { return Value(g.count.stillAsserted); }},
};

constexpr Column<EventGroup> SENSORS[] = {
    BOARD<EventGroup>,
    SOURCE<EventGroup>,
    SENSOR_TYPE<EventGroup>,
    SENSOR<EventGroup>,
    SENSOR_NAME<EventGroup>,
    {"events", "EVENTS", 6, [](const EventGroup& g) { return Value(g.count.events); }},
    {"still_asserted", "STILL ASSERTED", 0,
     [](const EventGroup& g) { return Value(g.count.stillAsserted); }},
};

constexpr Column<HourCount> HOURS[] = {
    {"hour", nullptr, 0, [](const HourCount& h) { return Value(h.hour.toIso(chosenZone())); }},
    {"events", nullptr, 0, [](const HourCount& h) { return Value(h.events); }},
};

constexpr Column<AssertedState> STATES[] = {
    {"since", "SINCE (UTC)", TIME_WIDTH,
     [](const AssertedState& s) {
         return s.since == nullptr ? Value() : eventField(*s.since, "time");
     },
     [](const AssertedState& s) { return timeCell(*s.since); }},
    SEVERITY<AssertedState>,
    BOARD<AssertedState>,
    SOURCE<AssertedState>,
    SENSOR_TYPE<AssertedState>,
    SENSOR<AssertedState>,
    SENSOR_NAME<AssertedState>,
    {"newest", nullptr, 0, [](const AssertedState& s) { return eventField(*s.newest, "time"); }},
    {"assertions", "TIMES", 5, [](const AssertedState& s) { return Value(s.assertions); }},
    EVENT<AssertedState>,
};

constexpr Column<Event> NEWEST[] = {
    {"time", nullptr, 0, [](const Event& e) { return eventField(e, "time"); }},
    SEVERITY<Event>,
    BOARD<Event>,
    SOURCE<Event>,
    SENSOR_TYPE<Event>,
    SENSOR<Event>,
    SENSOR_NAME<Event>,
    {"direction", nullptr, 0, [](const Event& e) { return eventField(e, "direction"); }},
    EVENT<Event>,
};

Value stateOrNull(const std::optional<AssertedState>& state)
{
    return state ? objectOf(*state, STATES) : Value();
}

Value timeOrNull(const std::optional<Timestamp>& time)
{
    return time ? Value(time->toIso(chosenZone())) : Value();
}

void fact(const char* name, const std::string& value)
{
    print(factLine(name, value, FACT_WIDTH));
}

/// "Fan1: Lower Critical - going low".
std::string stateText(const Event& event)
{
    return event.kind == EventKind::SYSTEM_EVENT
               ? fmt::format("{}: {}", sensorText(event), eventText(event))
               : eventText(event);
}

std::string timeText(const Timestamp& time)
{
    const bool isUtc = time.isDate() && chosenZone() == nullptr;
    return time.toText(chosenZone()) + (isUtc ? " UTC" : "");
}

/// How many events each hour had: the busiest one, and on a terminal a bar for each.
void printHours(const EventSummary& summary)
{
    const auto& hours = summary.hours;
    if (hours.empty()) {
        return;
    }
    const auto busiest =
        std::max_element(hours.begin(), hours.end(), [](const auto& left, const auto& right) {
            return left.second < right.second;
        });
    fact("busiest hour", fmt::format("{}: {}", timeText(Timestamp(busiest->first)),
                                     counted(busiest->second, "event")));
    if (const auto columns = terminalWidth()) {
        const Sparkline line =
            sparkline(hours, HOUR, *columns > FACT_WIDTH ? *columns - FACT_WIDTH : 1);
        const unsigned int together = line.step / HOUR;
        fact(together == 1 ? "by hour" : fmt::format("by {} hours", together).c_str(), line.bars);
    }
}

void printFacts(const EventSummary& summary)
{
    fact("events",
         std::to_string(summary.events) +
             (summary.undated == 0 ? "" : fmt::format(" ({} without a date)", summary.undated)));
    if (summary.first) {
        fact("first", timeText(*summary.first));
        fact("last", timeText(*summary.last));
    }
    printHours(summary);
    if (summary.mostFrequent && summary.mostFrequent->assertions > 1) {
        fact("most frequent", fmt::format("{}, {}", stateText(*summary.mostFrequent->newest),
                                          counted(summary.mostFrequent->assertions, "time")));
    }
    if (summary.longest) {
        fact("longest asserted", fmt::format("{}, since {}", stateText(*summary.longest->newest),
                                             timeText(summary.longest->since->time)));
    }
    if (summary.newest != nullptr) {
        const Event& event = *summary.newest;
        fact("newest",
             fmt::format("{}{}, {}", stateText(event), event.isDeassertion ? " (deasserted)" : "",
                         event.hasTime ? timeText(event.time) : "no time"));
    }
}

/// The rows of a table below a title, logs and sensors as wide as they are, logs only if there are
/// several; nothing if there are no rows.
template <typename Row, std::size_t Count>
void printSection(const std::string& title, const std::vector<Row>& rows,
                  const Column<Row> (&columns)[Count], bool hasLogs,
                  const std::vector<Wish>& wishes = {})
{
    if (rows.empty()) {
        return;
    }
    Column<Row> fitted[Count];
    std::copy(std::begin(columns), std::end(columns), std::begin(fitted));
    for (Column<Row>& column : fitted) {
        const bool isLog = column.key == std::string(SOURCE_KEY);
        column.title = isLog && !hasLogs ? nullptr : column.title;
        const bool isName = isLog || column.key == std::string(SENSOR_KEY);
        for (std::size_t i = 0; i < rows.size() && isName; ++i) {
            column.width = std::max(column.width, textWidth(column.cell(rows[i]).text));
        }
    }
    print("\n" + title + "\n");
    printListing(rows, fitted, Layout(), wishes);
}

void printText(const EventSummary& summary, bool isWhole)
{
    const bool hasLogs = summary.logs.size() > 1;
    printFacts(summary);
    const std::size_t states = summary.asserted.size();
    printSection(fmt::format("STILL ASSERTED after the last event: {}, the worst first",
                             counted(states, "state")),
                 summary.asserted, STATES, hasLogs,
                 {{"event", 24},
                  {"sensor", 12},
                  {"severity", 8},
                  {"since", TIME_WIDTH},
                  {"source", 8},
                  {"assertions", 5}});
    if (states == 0) {
        print("\nNothing is still asserted after the last event.\n");
    }
    std::vector<SeverityCount> severities;
    std::copy_if(summary.severities.begin(), summary.severities.end(),
                 std::back_inserter(severities), [](const SeverityCount& each) {
                     return each.second.events + each.second.stillAsserted != 0;
                 });
    printSection("BY SEVERITY", severities, SEVERITIES, hasLogs);
    if (hasLogs) {
        printSection("BY LOG", summary.logs, LOGS, hasLogs);
    }
    constexpr std::size_t SENSORS_SHOWN = 10;
    std::vector<EventGroup> sensors = summary.sensors;
    if (!isWhole && sensors.size() > SENSORS_SHOWN) {
        sensors.erase(sensors.begin() + SENSORS_SHOWN, sensors.end());
    }
    const std::size_t hidden = summary.sensors.size() - sensors.size();
    printSection("BY SENSOR", sensors, SENSORS, hasLogs);
    if (hidden != 0) {
        print(fmt::format("and {} with fewer or as many events; --all shows them\n",
                          counted(hidden, "sensor")));
    }
}

/// Reports whether something of the severity, or worse, is still asserted.
bool complainOf(const EventSummary& summary, Severity least)
{
    const auto isBad = [least](const AssertedState& state) {
        return isAtLeast(state.since->severity, least);
    };
    const auto count = static_cast<std::size_t>(
        std::count_if(summary.asserted.begin(), summary.asserted.end(), isBad));
    if (count != 0) {
        complain(fmt::format("{} of severity {} or worse {} still asserted",
                             counted(count, "state"), severityName(least),
                             count == 1 ? "is" : "are"));
    }
    return count != 0;
}

void run(const Arguments& arguments)
{
    EventSource source(arguments);
    EventFilter filter(arguments, source.hasSensors());
    const std::vector<Event> all = source.take();
    const std::vector<Event> chosen = filter.choose(all);
    const std::vector<Event> ofAnyTime = filter.atAnyTime().choose(all);
    const EventSummary summary = summarise(chosen, ofAnyTime, chosenZone());
    if (arguments.isJson()) {
        print(indentedJson(summaryObject(summary)));
    } else {
        printText(summary, arguments.has("--all"));
    }
    filter.report();
    const auto least = arguments.find("--fail-on");
    const bool isFailing = least && complainOf(summary, static_cast<Severity>(*least));
    source.finish();
    if (isFailing) {
        throw Reported(EXIT_DATA);
    }
}

std::vector<Option> options()
{
    std::vector<Option> all = eventSourceOptions("all");
    const std::vector<Option> filters = eventFilterOptions();
    all.insert(all.end(), filters.begin(), filters.end());
    all.push_back(flag("--all", "Show every sensor, not only the ten with the most events"));
    all.push_back(severityOption("--fail-on",
                                 "Exit with status 1 if a state of this severity or worse is still "
                                 "asserted, for monitoring"));
    return all;
}

}

Object summaryObject(const EventSummary& summary)
{
    std::vector<HourCount> hours;
    for (const auto& [second, count] : summary.hours) {
        hours.push_back({Timestamp(second), count});
    }
    return {
        {"events", summary.events},
        {"undated", summary.undated},
        {"other_records", summary.otherRecords},
        {"first", timeOrNull(summary.first)},
        {"last", timeOrNull(summary.last)},
        {"severities", severityObjects(summary.severities)},
        {"logs", objectsOf(summary.logs, LOGS)},
        {"sensors", objectsOf(summary.sensors, SENSORS)},
        {"hours", objectsOf(hours, HOURS)},
        {"still_asserted", objectsOf(summary.asserted, STATES)},
        {"longest", stateOrNull(summary.longest)},
        {"most_frequent", stateOrNull(summary.mostFrequent)},
        {"newest", summary.newest == nullptr ? Value() : objectOf(*summary.newest, NEWEST)},
    };
}

List severityObjects(const SeverityCounts& severities)
{
    return objectsOf(severities, SEVERITIES);
}

Object assertedObject(const AssertedState& state)
{
    return objectOf(state, STATES);
}

Command selSummaryCommand()
{
    return {"sel summary",
            "Show what failed and what is still asserted, and count events",
            "recordkit sel summary --since yesterday --fail-on critical",
            options(),
            Answer::OBJECT,
            run,
            "Events are counted by severity, log, sensor and hour. "
            "A state is asserted until its sensor deasserts it or asserts a state that excludes "
            "it, or until the log is cleared. --since and --until choose what is counted; what is "
            "still asserted, and --fail-on, do not depend on them."};
}

}
