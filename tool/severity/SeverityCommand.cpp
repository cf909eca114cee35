// SPDX-License-Identifier: Apache-2.0
#include <fmt/format.h>
#include <memory>

#include <recordkit/inspect/bytes/Numbers.h>
#include <recordkit/inspect/words/EventTypes.h>
#include <recordkit/inspect/words/EventWords.h>
#include <recordkit/inspect/words/SensorTypes.h>
#include <recordkit/inspect/words/Severities.h>

#include "../Commands.h"
#include "../Errors.h"
#include "../print/Json.h"
#include "../print/Table.h"

namespace recordkit::tool {

namespace {

constexpr unsigned char OFFSETS = 16;

struct Options {
    std::string eventType;
    std::string sensorType;
    std::string offsets;
    bool isTable = false;
    bool isJson = false;
};

/// The severity map's entry for one pair of codes.
struct Pair {
    unsigned char eventType = 0;
    unsigned char sensorType = 0;
    bool isKnown = false;
    unsigned short masks[SeverityMap::SEV_INFORMATIONAL + 1] = {}; ///< by severity
    unsigned short alarm = 0;
    unsigned short warning = 0;
};

Pair lookUp(unsigned char eventType, unsigned char sensorType)
{
    SeverityMap& map = *SeverityMap::getInstance();
    Pair pair;
    pair.eventType = eventType;
    pair.sensorType = sensorType;
    // An unknown pair writes nothing; no mask of a known one has offset 15.
    constexpr unsigned short UNWRITTEN = 1U << (OFFSETS - 1);
    pair.alarm = UNWRITTEN;
    map.getAlarmMasks(eventType, sensorType, pair.alarm, pair.warning);
    pair.isKnown = pair.alarm != UNWRITTEN;
    pair.alarm = pair.isKnown ? pair.alarm : 0;
    map.getSeverityMasks(
        eventType, sensorType, pair.masks[SeverityMap::SEV_NONCRITICAL],
        pair.masks[SeverityMap::SEV_CRITICAL], pair.masks[SeverityMap::SEV_NONRECOVERABLE],
        pair.masks[SeverityMap::SEV_MONITOR], pair.masks[SeverityMap::SEV_INFORMATIONAL]);
    return pair;
}

Json masksToJson(const Pair& pair)
{
    Json masks;
    for (int severity = SeverityMap::SEV_NONCRITICAL; severity <= SeverityMap::SEV_INFORMATIONAL;
         ++severity) {
        masks[severityName(static_cast<Severity>(severity))] = pair.masks[severity];
    }
    return masks;
}

Json toJson(const Pair& pair)
{
    Json json;
    json["event_type"] = pair.eventType;
    json["event_type_name"] = eventTypeName(pair.eventType);
    json["sensor_type"] = pair.sensorType;
    json["sensor_type_name"] = sensorTypeName(pair.sensorType);
    json["known"] = pair.isKnown;
    json["masks"] = masksToJson(pair);
    json["alarm_mask"] = pair.alarm;
    json["warning_mask"] = pair.warning;
    return json;
}

std::vector<Pair> allPairs()
{
    std::vector<Pair> pairs;
    for (unsigned int eventType = 0; eventType <= 0xFF; ++eventType) {
        for (unsigned int sensorType = 0; sensorType <= 0xFF; ++sensorType) {
            const Pair pair = lookUp(static_cast<unsigned char>(eventType),
                                     static_cast<unsigned char>(sensorType));
            if (pair.isKnown) {
                pairs.push_back(pair);
            }
        }
    }
    return pairs;
}

void printTable(bool isJson, bool hasColour)
{
    const std::vector<Pair> pairs = allPairs();
    if (isJson) {
        Json json = Json::array();
        for (const Pair& pair : pairs) {
            json.push_back(toJson(pair));
        }
        fmt::print("{}", indented(json));
        return;
    }
    const Table table(
        {{"EVENT TYPE", 20}, {"SENSOR TYPE", 38}, {"OFFSET", 6}, {"SEVERITY", 15}, {"EVENT", 0}},
        hasColour);
    std::string text = table.header();
    for (const Pair& pair : pairs) {
        const std::string eventType =
            fmt::format("{:02X}h {}", pair.eventType, eventTypeName(pair.eventType));
        const std::string sensorType =
            fmt::format("{:02X}h {}", pair.sensorType, sensorTypeName(pair.sensorType));
        bool hasOffset = false;
        for (unsigned char offset = 0; offset < OFFSETS; ++offset) {
            const Severity severity = severityOfEvent(pair.eventType, pair.sensorType, offset);
            if (severity == SeverityMap::SEV_NONE) {
                continue;
            }
            hasOffset = true;
            const char* const words = eventWords(pair.eventType, pair.sensorType, offset);
            table.append({{eventType},
                          {sensorType},
                          {std::to_string(offset)},
                          {severityName(severity), styleOf(severity)},
                          {words == nullptr ? "" : words}},
                         text);
        }
        if (!hasOffset) {
            table.append({{eventType}, {sensorType}, {"-"}, {"none"}, {""}}, text);
        }
    }
    fmt::print("{}", text);
}

std::string offsetsText(unsigned int mask)
{
    std::string text;
    for (const unsigned int offset : bitsOf(mask)) {
        text += (text.empty() ? "" : ", ") + std::to_string(offset);
    }
    return text.empty() ? "-" : text;
}

unsigned char parseCode(const char* what, const std::string& text)
{
    return static_cast<unsigned char>(orThrow(
        parseNumber(text, 0xFF),
        usageError(fmt::format("{}: \"{}\" is not a code, expected 0 to 0xFF", what, text))));
}

unsigned short parseOffsets(const std::string& text)
{
    const std::vector<unsigned long> offsets =
        orThrow(parseNumberList(text, OFFSETS - 1),
                usageError(fmt::format("OFFSETS: \"{}\" is not a list of offsets 0 to 15", text)));
    unsigned int mask = 0;
    for (const unsigned long offset : offsets) {
        mask |= 1U << offset;
    }
    return static_cast<unsigned short>(mask);
}

void answer(const Options& options)
{
    const unsigned char eventType = parseCode("EVENT-TYPE", options.eventType);
    const unsigned char sensorType = orThrow(
        findSensorType(options.sensorType),
        usageError(fmt::format("SENSOR-TYPE: \"{}\" is neither the name nor the number of a "
                               "sensor type",
                               options.sensorType)));
    const unsigned short offsets = parseOffsets(options.offsets);
    const Pair pair = lookUp(eventType, sensorType);
    SeverityMap& map = *SeverityMap::getInstance();
    const Severity severity = map.getSeverity(eventType, sensorType, offsets);
    const char* const alarm = alarmName(map.severityToAlarmStatus(severity));
    if (options.isJson) {
        Json json = toJson(pair);
        json["offsets"] = bitsOf(offsets);
        json["severity"] = severityName(severity);
        json["alarm"] = alarm;
        fmt::print("{}", indented(json));
        return;
    }
    fmt::print("event type    {:02X}h {}\n", eventType, eventTypeName(eventType));
    fmt::print("sensor type   {:02X}h {}{}\n", sensorType, sensorTypeName(sensorType),
               pair.isKnown ? "" : " (the map does not contain this pair)");
    for (const unsigned int offset : bitsOf(offsets)) {
        const char* const words =
            eventWords(eventType, sensorType, static_cast<unsigned char>(offset));
        fmt::print("offset {:<6} {}\n", offset, words == nullptr ? "-" : words);
    }
    fmt::print("severity      {}\nalarm         {}\n", severityName(severity), alarm);
    for (int each = SeverityMap::SEV_NONCRITICAL; each <= SeverityMap::SEV_INFORMATIONAL; ++each) {
        fmt::print("mask          {:04X}h {}: offsets {}\n", pair.masks[each],
                   severityName(static_cast<Severity>(each)), offsetsText(pair.masks[each]));
    }
    fmt::print("alarm mask    {:04X}h\nwarning mask  {:04X}h\n", pair.alarm, pair.warning);
}

}

void addSeverityCommand(CLI::App& app, Globals& globals)
{
    const auto options = std::make_shared<Options>();
    CLI::App* const command =
        addCommand(app, "severity", "Say how severe a discrete event is, or print the whole map",
                   "recordkit severity 0x6F processor 0,1; recordkit severity --table");
    command->add_option("EVENT-TYPE", options->eventType, "Event/reading type code, as 0x6F");
    command->add_option("SENSOR-TYPE", options->sensorType, "Sensor type, a name or a code");
    command->add_option("OFFSETS", options->offsets, "Asserted event offsets, as 0,1");
    command->add_flag("--table", options->isTable, "Print the severity of every offset");
    command->add_flag("--json", options->isJson, "JSON instead of text");
    command->callback([options, &globals] {
        const bool hasCodes = !options->offsets.empty();
        if (options->isTable == hasCodes || options->isTable == !options->eventType.empty()) {
            throw usageError("expected EVENT-TYPE, SENSOR-TYPE and OFFSETS, or --table");
        }
        if (options->isTable) {
            printTable(options->isJson, globals.wantsColour());
        } else {
            answer(*options);
        }
    });
}

}
