// SPDX-License-Identifier: Apache-2.0
#include <fmt/format.h>
#include <memory>

#include <recordkit/inspect/bytes/Hex.h>
#include <recordkit/inspect/bytes/Numbers.h>
#include <recordkit/inspect/bytes/Text.h>
#include <recordkit/inspect/sensor/Sensor.h>
#include <recordkit/inspect/words/EventTypes.h>
#include <recordkit/inspect/words/EventWords.h>
#include <recordkit/inspect/words/SensorTypes.h>
#include <recordkit/inspect/words/Severities.h>

#include "../Commands.h"
#include "../Errors.h"
#include "../Files.h"
#include "../decode/DecodedPrinter.h"
#include "../print/Table.h"
#include "SensorJson.h"

namespace recordkit::tool {

namespace {

struct Options {
    std::string file;
    std::string format = "auto";
    std::string id;
    bool isJson = false;
};

/// A repository and its problems.
struct Repository {
    std::string name;
    SdrFile file;
    std::vector<Sensor> sensors;
    std::vector<std::string> problems;
};

SdrFormat formatOf(const std::string& name)
{
    return name == "dump"        ? SdrFormat::DUMP
           : name == "responses" ? SdrFormat::RESPONSES
                                 : SdrFormat::AUTO;
}

Repository readRepository(const Options& options)
{
    Repository repository;
    repository.name = inputName(options.file);
    repository.file = parseSdrFile(readInput(options.file), formatOf(options.format));
    repository.problems = repository.file.problems;
    for (const SdrRecord& record : repository.file.records) {
        try {
            repository.sensors.push_back(readSensor(record));
        } catch (const DataError& e) {
            repository.problems.emplace_back(e.what());
        }
    }
    return repository;
}

/// Reports damage at the end of a listing.
void finish(const Repository& repository)
{
    if (repository.problems.empty()) {
        return;
    }
    std::fflush(stdout);
    for (const std::string& problem : repository.problems) {
        fmt::print(stderr, "recordkit: {}: {}\n", repository.name, problem);
    }
    throw dataError(fmt::format("{}: {} problems", repository.name, repository.problems.size()));
}

std::string maskText(unsigned short mask)
{
    return fmt::format("{:04X}h", mask);
}

void list(const Options& options, bool hasColour)
{
    const Repository repository = readRepository(options);
    if (options.isJson) {
        Json json;
        json["records"] = Json::array();
        for (const Sensor& sensor : repository.sensors) {
            json["records"].push_back(toJson(sensor));
        }
        json["problems"] = repository.problems;
        fmt::print("{}", indented(json));
        finish(repository);
        return;
    }
    const Table table({{"ID", 5},
                       {"RECORD", 12},
                       {"NUMBER", 6},
                       {"NAME", 16},
                       {"SENSOR TYPE", 24},
                       {"ENTITY", 7},
                       {"EVENT TYPE", 20},
                       {"UNITS", 10},
                       {"ASSERT", 6},
                       {"DEASSERT", 8},
                       {"READING", 7},
                       {"HYSTERESIS", 0}},
                      hasColour);
    std::string text = table.header();
    for (const Sensor& sensor : repository.sensors) {
        const std::string id = fmt::format("{:04X}h", sensor.id);
        if (!sensor.isSensor) {
            table.append({{id}, {sdrTypeName(sensor.recordType)}, {"-"}, {printable(sensor.name)}},
                         text);
            continue;
        }
        table.append(
            {{id},
             {sdrTypeName(sensor.recordType)},
             {fmt::format("{:02X}h", sensor.number)},
             {printable(sensor.name)},
             {sensorTypeName(sensor.sensorType)},
             {fmt::format("{}.{}", sensor.entityId, sensor.entityInstance)},
             {fmt::format("{:02X}h {}", sensor.eventType, eventTypeName(sensor.eventType))},
             {sensor.units.empty() ? "-" : sensor.units},
             {maskText(sensor.assertionMask)},
             {maskText(sensor.deassertionMask)},
             {maskText(sensor.readingMask)},
             {fmt::format("+{} -{}", sensor.positiveHysteresis, sensor.negativeHysteresis)}},
            text);
    }
    fmt::print("{}", text);
    finish(repository);
}

const SdrRecord& findRecord(const Repository& repository, const std::string& text)
{
    const unsigned long id =
        orThrow(parseNumber(text, 0xFFFF),
                usageError(fmt::format("\"{}\" is not a record id, expected 0 to 65535, decimal or "
                                       "as 0x1F",
                                       text)));
    for (const SdrRecord& record : repository.file.records) {
        if (record.id() == id) {
            return record;
        }
    }
    throw dataError(fmt::format("{}: there is no record {:04X}h", repository.name, id));
}

void show(const Options& options, bool hasColour)
{
    const Repository repository = readRepository(options);
    const SdrRecord& record = findRecord(repository, options.id);
    const char* const name = record.type() == SDR_FULL      ? "FullSensorRecord"
                             : record.type() == SDR_COMPACT ? "CompactSensorRecord"
                                                            : nullptr;
    if (name == nullptr) {
        throw dataError(fmt::format("{}: record {:04X}h at offset {} is no sensor but {}: {}",
                                    repository.name, record.id(), record.offset,
                                    sdrTypeName(record.type()), toHex(record.bytes)));
    }
    printDecoded(*findRecordClass(name), record.bytes, options.isJson, hasColour);
}

Json eventsJson(const Sensor& sensor)
{
    Json json;
    json["id"] = sensor.id;
    json["number"] = sensor.number;
    json["name"] = sensor.name;
    json["events"] = Json::array();
    for (const unsigned int offset : eventOffsets(sensor)) {
        const auto number = static_cast<unsigned char>(offset);
        const char* const words = eventWords(sensor.eventType, sensor.sensorType, number);
        Json event;
        event["offset"] = offset;
        event["severity"] =
            severityName(severityOfEvent(sensor.eventType, sensor.sensorType, number));
        event["event"] = words == nullptr ? Json(nullptr) : Json(words);
        json["events"].push_back(event);
    }
    return json;
}

void events(const Options& options, bool hasColour)
{
    const Repository repository = readRepository(options);
    if (options.isJson) {
        Json json = Json::array();
        for (const Sensor& sensor : repository.sensors) {
            if (sensor.isSensor) {
                json.push_back(eventsJson(sensor));
            }
        }
        fmt::print("{}", indented(json));
        finish(repository);
        return;
    }
    const Table table({{"NUMBER", 6},
                       {"NAME", 16},
                       {"SENSOR TYPE", 24},
                       {"OFFSET", 6},
                       {"SEVERITY", 15},
                       {"EVENT", 0}},
                      hasColour);
    std::string text = table.header();
    for (const Sensor& sensor : repository.sensors) {
        if (!sensor.isSensor) {
            continue;
        }
        for (const unsigned int offset : eventOffsets(sensor)) {
            const auto number = static_cast<unsigned char>(offset);
            const Severity severity = severityOfEvent(sensor.eventType, sensor.sensorType, number);
            const char* const words = eventWords(sensor.eventType, sensor.sensorType, number);
            table.append({{fmt::format("{:02X}h", sensor.number)},
                          {printable(sensor.name)},
                          {sensorTypeName(sensor.sensorType)},
                          {std::to_string(offset)},
                          {severityName(severity), styleOf(severity)},
                          {words == nullptr ? "-" : words}},
                         text);
        }
    }
    fmt::print("{}", text);
    finish(repository);
}

/// A sub-command on one file.
CLI::App* addFileCommand(CLI::App& sdr, const char* name, const char* description,
                         const char* example, Options& options)
{
    CLI::App* const command = addCommand(sdr, name, description, example);
    command
        ->add_option("FILE", options.file,
                     "Records as ipmitool sdr dump saves them, or answers to Get SDR; - for "
                     "standard input")
        ->required();
    command->add_option("--format", options.format, "How the records stand in the file")
        ->check(CLI::IsMember({"auto", "dump", "responses"}))
        ->capture_default_str();
    command->add_flag("--json", options.isJson, "JSON instead of a table");
    return command;
}

}

void addSdrCommands(CLI::App& app, Globals& globals)
{
    CLI::App* const sdr = addCommand(app, "sdr", "List and show sensor data records",
                                     "recordkit sdr list repository.sdr");
    sdr->require_subcommand(1);
    const auto options = std::make_shared<Options>();
    addFileCommand(*sdr, "list", "List the sensors of a repository, and what else is in it",
                   "recordkit sdr list repository.sdr", *options)
        ->callback([options, &globals] { list(*options, globals.wantsColour()); });
    CLI::App* const showCommand =
        addFileCommand(*sdr, "show", "Show every field of one full or compact record",
                       "recordkit sdr show repository.sdr 0x12", *options);
    showCommand->add_option("ID", options->id, "Record id")->required();
    showCommand->callback([options, &globals] { show(*options, globals.wantsColour()); });
    addFileCommand(*sdr, "events", "Say how severe each event of each sensor is",
                   "recordkit sdr events repository.sdr", *options)
        ->callback([options, &globals] { events(*options, globals.wantsColour()); });
}

}
