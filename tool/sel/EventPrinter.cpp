// SPDX-License-Identifier: Apache-2.0
#include "EventPrinter.h"

#include <fmt/format.h>

#include <recordkit/inspect/bytes/Hex.h>
#include <recordkit/inspect/bytes/Numbers.h>
#include <recordkit/inspect/words/SensorTypes.h>

#include "../print/Csv.h"
#include "EventJson.h"

namespace recordkit::tool {

namespace {

std::string partitionsText(unsigned int mask)
{
    std::string text;
    for (const unsigned int partition : bitsOf(mask)) {
        text += (text.empty() ? "" : ",") + std::to_string(partition);
    }
    return text.empty() ? "-" : text;
}

class TablePrinter : public EventPrinter {
public:
    explicit TablePrinter(bool hasColour) : table(eventTable(hasColour)) {}
    std::string begin() override { return table.header(); }
    std::string end() override { return ""; }
    void append(const Event& event, std::string& out) override
    {
        table.append(eventCells(event), out);
    }

private:
    Table table;
};

class JsonPrinter : public EventPrinter {
public:
    std::string begin() override { return "["; }
    std::string end() override { return isFirst ? "]\n" : "\n]\n"; }
    void append(const Event& event, std::string& out) override
    {
        out += isFirst ? "\n" : ",\n";
        out += toJson(event).dump();
        isFirst = false;
    }

private:
    bool isFirst = true;
};

class NdjsonPrinter : public EventPrinter {
public:
    std::string begin() override { return ""; }
    std::string end() override { return ""; }
    void append(const Event& event, std::string& out) override { out += oneLine(toJson(event)); }
};

class CsvPrinter : public EventPrinter {
public:
    std::string begin() override { return csvHeader(toJson(Event())); }
    std::string end() override { return ""; }
    void append(const Event& event, std::string& out) override { out += csvLine(toJson(event)); }
};

}

std::unique_ptr<EventPrinter> makeEventPrinter(EventFormat format, bool hasColour)
{
    switch (format) {
    case EventFormat::JSON:
        return std::make_unique<JsonPrinter>();
    case EventFormat::NDJSON:
        return std::make_unique<NdjsonPrinter>();
    case EventFormat::CSV:
        return std::make_unique<CsvPrinter>();
    case EventFormat::TABLE:
        break;
    }
    return std::make_unique<TablePrinter>(hasColour);
}

Table eventTable(bool hasColour)
{
    return Table({{"BOARD", 5},
                  {"LOG", 4},
                  {"ID", 5},
                  {"TIME (UTC)", 19},
                  {"SEVERITY", 15},
                  {"SENSOR TYPE", 24},
                  {"SENSOR", 6},
                  {"DIRECTION", 10},
                  {"DATA", 6},
                  {"PARTITIONS", 10},
                  {"EVENT", 0}},
                 hasColour);
}

std::vector<Cell> eventCells(const Event& event)
{
    const bool isSystemEvent = event.kind == EventKind::SYSTEM_EVENT;
    std::vector<Cell> cells;
    cells.reserve(11);
    cells.push_back({std::to_string(event.board)});
    cells.push_back({event.logNumber == 0 ? "-" : std::to_string(event.logNumber)});
    cells.push_back({fmt::format("{:04X}h", event.recordId)});
    cells.push_back({event.hasTime ? event.time.toText() : "-"});
    if (isSystemEvent) {
        cells.push_back({severityName(event.severity), styleOf(event.severity)});
        cells.push_back({sensorTypeName(event.sensorType)});
        cells.push_back({fmt::format("{:02X}h", event.sensorNumber)});
        cells.push_back({event.isDeassertion ? "deasserted" : "asserted"});
        cells.push_back({toLowerHex(event.data)});
    } else {
        cells.push_back({"-"});
        cells.push_back({kindName(event.kind)});
        cells.push_back({"-"});
        cells.push_back({"-"});
        cells.push_back({toLowerHex(event.oemData)});
    }
    cells.push_back({partitionsText(event.partitions)});
    cells.push_back({eventText(event), styleOf(event.severity)});
    return cells;
}

}
