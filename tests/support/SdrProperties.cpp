// SPDX-License-Identifier: Apache-2.0
#include "SdrProperties.h"

#include <algorithm>
#include <set>

#include <recordkit/inspect/bytes/Error.h>
#include <recordkit/inspect/bytes/Text.h>
#include <recordkit/inspect/sensor/SdrCheck.h>
#include <recordkit/inspect/sensor/SdrRecordFields.h>

namespace testing_support {

using namespace recordkit::inspect;

namespace {

std::string brokenDescription(const SdrRecord& record)
{
    const SdrDescription description = describeRecord(record);
    std::set<std::string> names;
    std::vector<bool> isShown(record.bytes.size());
    for (const DecodedField& field : description.fields) {
        if (!names.insert(field.name).second) {
            return "two fields are called " + field.name;
        }
        for (const Place& place : field.also) {
            if (place.end() > record.bytes.size()) {
                return field.name + " depends on bytes after the record";
            }
        }
        if (field.place.end() > record.bytes.size()) {
            return field.name + " is after the record";
        }
        if (isNone(field.value)) {
            return field.name + " has no value";
        }
        std::fill_n(isShown.begin() + field.place.offset, field.place.width, true);
    }
    if (std::find(isShown.begin(), isShown.end(), false) != isShown.end()) {
        return "a byte is hidden";
    }
    return description.problems.size() > 1 ? "several problems of a record" : "";
}

}

std::string brokenSdrProperty(const std::string& content, SdrFormat format)
{
    const SdrFile file = parseSdrFile(content, format);
    std::size_t end = 0;
    std::set<std::size_t> offsets;
    std::vector<Sensor> sensors;
    for (const SdrRecord& record : file.records) {
        if (record.offset < end || record.offset + record.bytes.size() > content.size()) {
            return "a record is not where the file goes on";
        }
        end = record.offset + record.bytes.size();
        offsets.insert(record.offset);
        const std::string broken = brokenDescription(record);
        if (!broken.empty()) {
            return broken;
        }
        try {
            sensors.push_back(readSensor(record));
        } catch (const DataError&) {
            continue; // Damaged.
        }
        for (const unsigned int offset : eventOffsets(sensors.back())) {
            if (offset > 14) {
                return "an event has no offset";
            }
        }
    }
    SensorNames names;
    addNames(sensors, names);
    for (const Sensor& sensor : sensors) {
        const bool isNamed = sensor.describesSensor();
        for (unsigned int i = 0; isNamed && i < sensor.shared.count; ++i) {
            const unsigned char generator[] = {sensor.ownerId, sensor.ownerLun};
            if (names.find(generator, static_cast<unsigned char>(sensor.number + i)) == nullptr) {
                return "a sensor has no name";
            }
        }
    }
    for (const SdrOddity& oddity : checkRepository(file.records)) {
        if (offsets.count(oddity.offset) == 0 || oddity.text.empty()) {
            return "something odd belongs to no record";
        }
    }
    return "";
}

}
