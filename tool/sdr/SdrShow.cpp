// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <strings.h>

#include <fmt/format.h>

#include <recordkit/inspect/bytes/Numbers.h>
#include <recordkit/inspect/bytes/Text.h>
#include <recordkit/inspect/sensor/SdrRecordFields.h>
#include <recordkit/inspect/words/Match.h>

#include "../Commands.h"
#include "../decode/FieldListing.h"
#include "Repository.h"

namespace recordkit::tool {

namespace {

constexpr unsigned long LAST_ID = 0xFFFF;
constexpr unsigned long LAST_NUMBER = 0xFF;
constexpr const char* NUMBER = "number:";
constexpr const char* NAME = "name:";

/// A record, and what a listing shows of it if it can be read.
struct Candidate {
    const SdrRecord* record;
    const Sensor* sensor;
};

std::vector<Candidate> candidatesOf(const Repository& repository)
{
    std::vector<Candidate> all;
    for (const SdrRecord& record : repository.file.records) {
        const auto sensor =
            std::find_if(repository.sensors.begin(), repository.sensors.end(),
                         [&record](const Sensor& each) { return each.offset == record.offset; });
        all.push_back({&record, sensor == repository.sensors.end() ? nullptr : &*sensor});
    }
    return all;
}

template <typename Wanted>
std::vector<Candidate> chosen(std::vector<Candidate> all, const Wanted& isWanted)
{
    all.erase(std::remove_if(all.begin(), all.end(),
                             [&isWanted](const Candidate& each) { return !isWanted(each); }),
              all.end());
    return all;
}

std::vector<Candidate> findId(const Repository& repository, unsigned long id)
{
    std::vector<Candidate> found =
        chosen(candidatesOf(repository), [id](const Candidate& c) { return c.record->id() == id; });
    if (found.empty()) {
        throw dataError(fmt::format("{}: there is no record {:04X}h among its {}", repository.name,
                                    id, repository.file.records.size()));
    }
    return found;
}

std::vector<Candidate> findNumber(const Repository& repository, unsigned long number)
{
    const auto sensors = chosen(candidatesOf(repository), [](const Candidate& c) {
        return c.sensor != nullptr && c.sensor->describesSensor();
    });
    std::vector<Candidate> found = chosen(sensors, [number](const Candidate& c) {
        constexpr unsigned int LAST = 0xFF;
        return ((number - c.sensor->number) & LAST) < c.sensor->shared.count;
    });
    if (found.empty()) {
        throw dataError(fmt::format("{}: none of its {} describes sensor {:02X}h", repository.name,
                                    counted(sensors.size(), "sensor record"), number));
    }
    return found;
}

/// Whether a record's name, or one of those that sensors which share it have, is accepted.
template <typename Accept> bool hasName(const Candidate& candidate, const Accept& accept)
{
    if (candidate.sensor == nullptr) {
        return false;
    }
    const Sensor& sensor = *candidate.sensor;
    bool isAny = accept(sensor.name);
    for (unsigned int i = 0; i < sensor.shared.count; ++i) {
        isAny = isAny || accept(nameOfSharing(sensor, i));
    }
    return isAny;
}

std::vector<Candidate> findName(const Repository& repository, const std::string& text)
{
    if (text.empty()) {
        throw usageError("WHAT: expected a record id, number:N or a name");
    }
    const auto named = chosen(candidatesOf(repository), [](const Candidate& c) {
        return c.sensor != nullptr && !c.sensor->name.empty();
    });
    std::vector<Candidate> found = chosen(named, [&text](const Candidate& c) {
        return hasName(c, [&text](const std::string& name) {
            return ::strcasecmp(name.c_str(), text.c_str()) == 0;
        });
    });
    if (found.empty()) {
        found = chosen(named, [&text](const Candidate& c) {
            return hasName(c,
                           [&text](const std::string& name) { return containsText(name, text); });
        });
    }
    if (found.empty()) {
        throw dataError(fmt::format("{}: none of its {} contains \"{}\"; recordkit sdr list shows "
                                    "them",
                                    repository.name, counted(named.size(), "name"),
                                    printable(text)));
    }
    return found;
}

std::vector<Candidate> find(const Repository& repository, const std::string& what)
{
    if (what.rfind(NUMBER, 0) == 0) {
        const std::string text = what.substr(std::string(NUMBER).size());
        const auto number = parseNumber(text, LAST_NUMBER);
        if (!number) {
            throw usageError(
                fmt::format("WHAT: \"{}\" is not a sensor number from 0 to FFh", printable(text)));
        }
        return findNumber(repository, *number);
    }
    if (what.rfind(NAME, 0) == 0) {
        return findName(repository, what.substr(std::string(NAME).size()));
    }
    const auto id = parseNumber(what, LAST_ID);
    return id ? findId(repository, *id) : findName(repository, what);
}

std::string titleOf(const Candidate& candidate)
{
    const SdrRecord& record = *candidate.record;
    const std::string name = candidate.sensor == nullptr ? "" : candidate.sensor->name;
    return fmt::format("record {:04X}h at offset {}: {}{}", record.id(), record.offset,
                       sdrTypeName(record.type()), name.empty() ? "" : ", " + name);
}

void run(const Arguments& arguments)
{
    Repository repository = readRepository(arguments);
    std::vector<RecordListing> records;
    std::vector<std::string> problems;
    for (const Candidate& each : find(repository, arguments.text("WHAT"))) {
        SdrDescription description = describeRecord(*each.record);
        records.push_back({each.record->id(), titleOf(each), std::move(description.fields)});
        // What a listing cannot show either was reported with the repository.
        if (each.sensor != nullptr) {
            problems.insert(problems.end(), description.problems.begin(),
                            description.problems.end());
        }
    }
    printRecords(records, arguments.layout());
    for (const std::string& text : problems) {
        repository.problems.add(repository.name, text);
    }
    repository.problems.finish();
}

}

Command sdrShowCommand()
{
    return {"sdr show",
            "Show everything that records of a repository say",
            "recordkit sdr show repository.sdr 0x12; recordkit sdr show repository.sdr number:30h; "
            "recordkit sdr show repository.sdr fan",
            repositoryOptions(
                {argument("WHAT", "Record id; number:N for the sensor with that number; a "
                                  "name, or a part of names, in any case; name:TEXT for a "
                                  "name that looks like a number")}),
            Answer::TABLE,
            run,
            "Every field of every record type, with its bytes, its value and what the value means; "
            "readings also in units. Bytes that no field covers are in hex. A part of names counts "
            "where no whole name is the same. All records that match are shown: in text one table "
            "after another, in JSON, NDJSON and CSV as one list of fields, whose key record is the "
            "id of the record. Without a match the exit status is 1."};
}

}
