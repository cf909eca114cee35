// SPDX-License-Identifier: Apache-2.0
#include "ReportDocument.h"

#include <algorithm>
#include <filesystem>
#include <map>
#include <unordered_map>

#include <recordkit/inspect/bytes/Time.h>
#include <recordkit/inspect/event/AssertedEvents.h>
#include <recordkit/inspect/event/SeenReadings.h>
#include <recordkit/selfile/SELFileLayout.h>

#include "../Answers.h"
#include "../Files.h"
#include "../eeprom/EfiStore.h"
#include "../fru/FruValues.h"
#include "../print/Base64.h"
#include "EventDocument.h"

namespace recordkit::tool {

using namespace inspect;

namespace {

constexpr const char* FORMAT = "recordkit-report";
constexpr unsigned int VERSION = 1;
constexpr const char* ROOT = "root";
constexpr const char* FILE_KEY = "file";

Object joined(Object first, const Object& second)
{
    first.insert(first.end(), second.begin(), second.end());
    return first;
}

Object without(const Object& object, const std::vector<std::string>& keys)
{
    Object rest;
    std::copy_if(object.begin(), object.end(), std::back_inserter(rest),
                 [&keys](const Member& member) {
                     return std::find(keys.begin(), keys.end(), member.key) == keys.end();
                 });
    return rest;
}

/// Where the positions of a document's tables come from.
class Positions {
public:
    Positions(const std::vector<Event>& listed, const EventTable& eventTable)
        : events(listed), table(eventTable)
    {
    }

    /// Of an event among those of the document; null if a filter left it out.
    Value row(const Event* event) const
    {
        if (event == nullptr) {
            return {};
        }
        const bool isListed = !events.empty() &&
                              !std::less<const Event*>()(event, &events.front()) &&
                              !std::less<const Event*>()(&events.back(), event);
        if (isListed) {
            return static_cast<std::size_t>(event - &events.front());
        }
        const auto found = std::find_if(events.begin(), events.end(), [event](const Event& each) {
            return each.log == event->log && each.source == event->source &&
                   each.fileIndex == event->fileIndex && each.slot == event->slot &&
                   each.state == event->state;
        });
        return valueIf(found != events.end(), found - events.begin());
    }
    /// Of the sensor of a listed event.
    Value sensor(std::size_t row) const { return table.sensorOf[row]; }

private:
    const std::vector<Event>& events;
    const EventTable& table;
};

Object reasonObject(const ReportReason& reason, const EventSummary& summary)
{
    if (reason.kind == ReportReason::ASSERTED) {
        return {{"kind", reasonName(reason.kind)},
                {"severity", severityName(summary.asserted[reason.state].since->severity)},
                {"state", reason.state}};
    }
    return {{"kind", reasonName(reason.kind)}, {"where", reason.where}, {"text", reason.text}};
}

Object verdictObject(const ReportVerdict& verdict, const EventSummary& summary)
{
    return {{"level", verdict.level},
            {"text", verdict.text},
            {"reasons", listOf(verdict.reasons, [&summary](const ReportReason& reason) {
                 return reasonObject(reason, summary);
             })}};
}

Object inputObject(const ReportInput& input)
{
    return {{"name", inputName(input.place.path)},
            {"kind", input.kind},
            {ROOT, textOrNull(input.place.root)},
            {"left_out", input.isLeftOut},
            {"problems", input.problems}};
}

Object logObject(const ReportLog& log)
{
    return {{"name", log.name},
            {ROOT, textOrNull(log.root)},
            {"board", log.board ? Value(*log.board) : Value()},
            {"events", log.count.events},
            {"still_asserted", log.count.stillAsserted},
            {"severities", severityObjects(log.severities)},
            {"status", log.status ? Value(statusObject(*log.status)) : Value()},
            {"slots", TAVLib::RecordKit::SELFileLayout::SLOTS},
            {"sound", log.isSound()},
            {"files", listOf(log.files, logFileObject)},
            {"findings", listOf(log.findings, logFindingObject)}};
}

Object unitObject(const FailedUnit& unit)
{
    return {{"name", unit.name()},
            {"part_number", textOrNull(unit.partNumber)},
            {"serial_number", textOrNull(unit.serialNumber)},
            {"entity", textOrNull(unit.entity)},
            {"entity_name", textOrNull(unit.entityName)}};
}

Object countObject(const FailureCount& count)
{
    Object severities;
    for (const Severity each : worstFirst()) {
        const auto found = count.assertions.find(each);
        if (found != count.assertions.end()) {
            severities.push_back({severityName(each), found->second});
        }
    }
    return {{"severities", severities},
            {"assertions", count.total},
            {"still_asserted", count.stillAsserted},
            {"first_row", count.first},
            {"last_row", count.last}};
}

Value unitOrNull(const std::optional<std::size_t>& unit)
{
    return unit ? Value(*unit) : Value();
}

Object sensorFailure(const SensorFailure& failure, const Report& report, const Positions& positions)
{
    return joined({{"log", report.events[failure.count.first].log},
                   {"sensor", positions.sensor(failure.count.first)},
                   {"unit", unitOrNull(failure.unit)}},
                  countObject(failure.count));
}

Object unitFailure(const UnitFailure& failure, const Positions& positions)
{
    const auto sensorAt = [&positions](std::size_t row) { return positions.sensor(row); };
    return joined({{"unit", failure.unit}, {"sensors", listOf(failure.sensors, sensorAt)}},
                  countObject(failure.count));
}

/// The unit of a failure of that sensor.
Value unitOfState(const AssertedState& state, const Report& report, const Failures& failures)
{
    const auto found = std::find_if(
        failures.bySensor.begin(), failures.bySensor.end(), [&](const SensorFailure& failure) {
            return sensorKey(report.events[failure.count.first]) == sensorKey(*state.newest);
        });
    return found == failures.bySensor.end() ? Value() : unitOrNull(found->unit);
}

Value rootOf(const ReportPlace& place)
{
    return textOrNull(place.root);
}

/// The sensor of a record by which the events of a log are named; nullptr if there is none.
const NamedSensor* nameIn(const ReportLog& log, const Sensor& sensor)
{
    const unsigned char generator[] = {sensor.ownerId, sensor.ownerLun};
    const NamedSensor* const named = log.names == nullptr || !sensor.isSensor
                                         ? nullptr
                                         : log.names->find(generator, sensor.number);
    return named != nullptr && named->name == nameOfSharing(sensor, 0) ? named : nullptr;
}

List repositorySensors(const Report& report)
{
    const auto seen = seenReadings(report.events);
    const auto readingsOf = [&](const Sensor& sensor) {
        List readings;
        for (unsigned int log = 0; log < report.logs.size(); ++log) {
            const auto found = seen.find({nameIn(report.logs[log], sensor), log});
            if (found != seen.end()) {
                readings.push_back(
                    Object{{"log", log}, {"values", listOf(found->second, [](const auto& each) {
                                              return List{each.first, each.second};
                                          })}});
            }
        }
        return readings;
    };
    List list;
    for (const ReportRepository& repository : report.repositories) {
        for (const Sensor& sensor : repository.sensors) {
            list.push_back(
                joined(sensorObject(sensor), {{FILE_KEY, inputName(repository.place.path)},
                                              {ROOT, rootOf(repository.place)},
                                              {"readings", readingsOf(sensor)}}));
        }
    }
    return list;
}

Object fruOf(const ReportFru& each)
{
    return joined(fruObject({each.place.path, each.bytes, each.image}),
                  {{ROOT, rootOf(each.place)}, {"image", base64(each.bytes)}});
}

Object moduleOf(const ReportModule& each)
{
    return joined(moduleObject(each.place.path, each.spd), {{ROOT, rootOf(each.place)}});
}

Object processorOf(const ReportProcessor& each)
{
    return joined({{FILE_KEY, inputName(each.place.path)}, {ROOT, rootOf(each.place)}},
                  processorObject(each.rom, each.size));
}

Object recordOf(const ReportRecord& each)
{
    return {{FILE_KEY, inputName(each.place.path)},
            {ROOT, rootOf(each.place)},
            {"class", each.recordClass->name},
            {"description", each.recordClass->description},
            {"fields", fieldObjects(each.fields)}};
}

/// The folder of the EEPROMs that an index is for.
std::string folderOf(const ReportPlace& place)
{
    const std::string folder = std::filesystem::path(place.path).parent_path();
    return inputName(folder.empty() ? "." : folder);
}

Object settingsOf(const ReportSettings& each)
{
    return {{"folder", folderOf(each.place)},
            {ROOT, rootOf(each.place)},
            {"areas", settingObjects(each.entries, each.master)},
            {"problems", indexProblems(each.entries)}};
}

Object efiOf(const ReportEfi& each)
{
    return {{"folder", folderOf(each.place)},
            {ROOT, rootOf(each.place)},
            {"serial", efiSerialText(each.index)},
            {"checksum_right", each.index.isChecksum()},
            {"banks", efiObjects(each.index)}};
}

}

Value reportDocument(const Report& report, const ReportHead& head)
{
    const EventTable table = tabulate(report.events);
    const Positions positions(report.events, table);
    const Failures failures = findFailures(report.events);
    const auto stateObject = [&](const AssertedState& state) {
        return joined(assertedObject(state), {{"log", state.newest->log},
                                              {"row", positions.row(state.newest)},
                                              {"since_row", positions.row(state.since)},
                                              {"unit", unitOfState(state, report, failures)}});
    };
    return Object{
        {"format", FORMAT},
        {"version", VERSION},
        {"title", head.title},
        {"made", Object{{"time", Timestamp(head.now).toIso()},
                        {"program", "recordkit " RECORDKIT_VERSION}}},
        {"chosen", head.chosen},
        {"left_out", report.leftOut},
        {"verdict", verdictObject(judge(report, head.now), report.summary)},
        {"inputs", listOf(report.inputs, inputObject)},
        {"logs", listOf(report.logs, logObject)},
        {"summary", without(summaryObject(report.summary), {"logs", "sensors", "still_asserted",
                                                            "longest", "most_frequent", "newest"})},
        {"asserted", listOf(report.summary.asserted, stateObject)},
        {"units", listOf(failures.units, unitObject)},
        {"sensor_failures",
         listOf(failures.bySensor,
                [&](const SensorFailure& each) { return sensorFailure(each, report, positions); })},
        {"unit_failures",
         listOf(failures.byUnit,
                [&](const UnitFailure& each) { return unitFailure(each, positions); })},
        {"events", eventDocument(report.events, table)},
        {"sensors", repositorySensors(report)},
        {"fru", listOf(report.fru, fruOf)},
        {"memory", listOf(report.memory, moduleOf)},
        {"processors", listOf(report.processors, processorOf)},
        {"records", listOf(report.records, recordOf)},
        {"settings", listOf(report.settings, settingsOf)},
        {"efi", listOf(report.efi, efiOf)},
    };
}

}
