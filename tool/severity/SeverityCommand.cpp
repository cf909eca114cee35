// SPDX-License-Identifier: Apache-2.0
#include <fmt/format.h>

#include <recordkit/inspect/bytes/Numbers.h>
#include <recordkit/inspect/words/EventTypes.h>
#include <recordkit/inspect/words/EventWords.h>
#include <recordkit/inspect/words/SensorTypes.h>
#include <recordkit/inspect/words/SeverityPairs.h>

#include "../Commands.h"
#include "../Errors.h"
#include "../cli/Arguments.h"
#include "../print/Json.h"
#include "../print/Listing.h"
#include "../print/Output.h"
#include "../sel/EventCodes.h"

namespace recordkit::tool {

namespace {

/// An offset of a pair that the map rates; none for a pair whose masks are all empty.
struct Row {
    SeverityPair pair;
    bool hasOffset = false;
    unsigned char offset = 0;

    Severity severity() const
    {
        return hasOffset ? severityOfEvent(pair.eventType, pair.sensorType, offset)
                         : SeverityMap::SEV_NONE;
    }
    const char* words() const
    {
        return hasOffset ? eventWords(pair.eventType, pair.sensorType, offset) : nullptr;
    }
};

Value textOf(const char* words)
{
    return words == nullptr ? Value() : Value(words);
}

std::string codeText(unsigned char code, const std::string& name)
{
    return fmt::format("{:02X}h {}", code, name);
}

constexpr Column<Row> COLUMNS[] = {
    {"event_type", nullptr, 0, [](const Row& row) { return Value(row.pair.eventType); }},
    {"event_type_name", "EVENT TYPE", 20,
     [](const Row& row) { return Value(eventTypeName(row.pair.eventType)); },
     [](const Row& row) {
         return Cell{codeText(row.pair.eventType, eventTypeName(row.pair.eventType))};
     }},
    {"sensor_type", nullptr, 0, [](const Row& row) { return Value(row.pair.sensorType); }},
    {"sensor_type_name", "SENSOR TYPE", 38,
     [](const Row& row) { return Value(sensorTypeName(row.pair.sensorType)); },
     [](const Row& row) {
         return Cell{codeText(row.pair.sensorType, sensorTypeName(row.pair.sensorType))};
     }},
    {"offset", "OFFSET", 6, [](const Row& row) { return valueIf(row.hasOffset, row.offset); }},
    {"severity", "SEVERITY", 15, [](const Row& row) { return Value(severityName(row.severity())); },
     [](const Row& row) {
         return Cell{severityName(row.severity()), styleOf(row.severity())};
     }},
    {"event", "EVENT", 0, [](const Row& row) { return textOf(row.words()); }},
};

void printTable(const Layout& layout)
{
    Listing<Row> listing(COLUMNS, layout);
    for (const SeverityPair& pair : knownSeverityPairs()) {
        bool hasOffset = false;
        for (unsigned char offset = 0; offset < EVENT_OFFSETS; ++offset) {
            const Row row = {pair, true, offset};
            if (row.severity() != SeverityMap::SEV_NONE) {
                listing.add(row);
                hasOffset = true;
            }
        }
        if (!hasOffset) {
            listing.add({pair});
        }
    }
    listing.finish();
}

/// An event and the map's answer.
struct Answered {
    SeverityPair pair;
    unsigned short offsets = 0;
    Severity severity = SeverityMap::SEV_NONE;
    const char* alarm = "";
};

Answered answerTo(unsigned char eventType, unsigned char sensorType, unsigned short offsets)
{
    SeverityMap& map = *SeverityMap::getInstance();
    Answered answer;
    answer.pair = severityPair(eventType, sensorType);
    answer.offsets = offsets;
    answer.severity = map.getSeverity(eventType, sensorType, offsets);
    answer.alarm = alarmName(map.severityToAlarmStatus(answer.severity));
    return answer;
}

Object masksOf(const SeverityPair& pair)
{
    Object masks;
    for (int each = SeverityMap::SEV_NONCRITICAL; each <= SeverityMap::SEV_INFORMATIONAL; ++each) {
        masks.push_back({severityName(static_cast<Severity>(each)), pair.masks[each]});
    }
    return masks;
}

constexpr Column<Answered> ANSWER[] = {
    {"event_type", nullptr, 0, [](const Answered& a) { return Value(a.pair.eventType); }},
    {"event_type_name", nullptr, 0,
     [](const Answered& a) { return Value(eventTypeName(a.pair.eventType)); }},
    {"sensor_type", nullptr, 0, [](const Answered& a) { return Value(a.pair.sensorType); }},
    {"sensor_type_name", nullptr, 0,
     [](const Answered& a) { return Value(sensorTypeName(a.pair.sensorType)); }},
    {"known", nullptr, 0, [](const Answered& a) { return Value(a.pair.isKnown); }},
    {"masks", nullptr, 0, [](const Answered& a) { return Value(masksOf(a.pair)); }},
    {"alarm_mask", nullptr, 0, [](const Answered& a) { return Value(a.pair.alarm); }},
    {"warning_mask", nullptr, 0, [](const Answered& a) { return Value(a.pair.warning); }},
    {"offsets", nullptr, 0, [](const Answered& a) { return Value(bitsOf(a.offsets)); }},
    {"severity", nullptr, 0, [](const Answered& a) { return Value(severityName(a.severity)); }},
    {"alarm", nullptr, 0, [](const Answered& a) { return Value(a.alarm); }},
};

std::string describe(const Answered& answer)
{
    const SeverityPair& pair = answer.pair;
    std::string text =
        factLine("event type", codeText(pair.eventType, eventTypeName(pair.eventType))) +
        factLine("sensor type", codeText(pair.sensorType, sensorTypeName(pair.sensorType)) +
                                    (pair.isKnown ? "" : " (the map does not contain this pair)"));
    for (const unsigned int offset : bitsOf(answer.offsets)) {
        const char* const words =
            eventWords(pair.eventType, pair.sensorType, static_cast<unsigned char>(offset));
        text += factLine(fmt::format("offset {}", offset), cellText(textOf(words)));
    }
    text += factLine("severity", severityName(answer.severity)) + factLine("alarm", answer.alarm);
    for (int each = SeverityMap::SEV_NONCRITICAL; each <= SeverityMap::SEV_INFORMATIONAL; ++each) {
        text += factLine("mask", fmt::format("{:04X}h {}: offsets {}", pair.masks[each],
                                             severityName(static_cast<Severity>(each)),
                                             cellText(bitsOf(pair.masks[each]))));
    }
    return text + factLine("alarm mask", fmt::format("{:04X}h", pair.alarm)) +
           factLine("warning mask", fmt::format("{:04X}h", pair.warning));
}

void run(const Arguments& arguments)
{
    const bool isTable = arguments.has("--table");
    if (isTable == arguments.has("OFFSETS") || isTable == arguments.has("EVENT-TYPE")) {
        throw usageError("expected EVENT-TYPE, SENSOR-TYPE and OFFSETS, or --table");
    }
    if (isTable) {
        printTable(arguments.layout());
        return;
    }
    unsigned int offsets = 0;
    for (const unsigned long offset : arguments.numbers("OFFSETS")) {
        offsets |= 1U << offset;
    }
    const Answered answer = answerTo(static_cast<unsigned char>(arguments.number("EVENT-TYPE")),
                                     static_cast<unsigned char>(arguments.number("SENSOR-TYPE")),
                                     static_cast<unsigned short>(offsets));
    if (arguments.format() == Format::TABLE) {
        print(describe(answer));
    } else {
        printListing<Answered>({answer}, ANSWER, arguments.layout());
    }
}

}

Command severityCommand()
{
    return {
        "severity",
        "Classify a discrete event, or print the whole severity map",
        "recordkit severity 0x6F processor 0,1; recordkit severity --table",
        {eventTypeOption("EVENT-TYPE", "EVENT-TYPE",
                         "Event/reading type, a name or a code such as 0x6F")
             .optional(),
         sensorTypeOption("SENSOR-TYPE", "SENSOR-TYPE", "Sensor type, a name or a code").optional(),
         numbers("OFFSETS", "OFFSETS", EVENT_OFFSETS - 1, "Asserted event offsets, as 0,2-4")
             .optional(),
         flag("--table", "Print the severity of every offset")},
        Answer::LISTING,
        run,
        "A discrete event has the severity and the alarm of its asserted offsets. The masks are "
        "those of its event/reading type and sensor type. The severity of power unit redundancy "
        "depends on the power supply mode in /tmp/psumode."};
}

}
