// SPDX-License-Identifier: Apache-2.0
#include <recordkit/inspect/sensor/SdrCheck.h>

#include <map>
#include <optional>
#include <tuple>
#include <utility>

#include <fmt/format.h>

#include <recordkit/inspect/bytes/Error.h>
#include <recordkit/inspect/words/EventTypes.h>
#include <recordkit/inspect/words/SensorTypes.h>

namespace recordkit::inspect {

namespace {

/// Collects the oddities of a repository, record by record.
class Checker {
public:
    void check(const SdrRecord& record)
    {
        at = &record;
        try {
            sensor = readSensor(record);
        } catch (const DataError&) {
            return; // Damaged, and reported as such.
        }
        checkId();
        checkType();
        checkName();
        if (sensor.describesSensor()) {
            checkNumbers();
            checkEntity();
            checkTypes();
            checkThresholds();
        }
    }
    std::vector<SdrOddity> take() { return std::move(found); }

private:
    void add(const std::string& text)
    {
        found.push_back({sensor.id, at->offset, sensor.name, text});
    }

    void checkId()
    {
        const auto [first, isNew] = ids.emplace(sensor.id, at->offset);
        if (!isNew) {
            add(fmt::format("the record at offset {} has the same id", first->second));
        }
    }

    void checkType()
    {
        constexpr unsigned char FIRST_OEM = 0xC0;
        if (sensor.recordType < FIRST_OEM &&
            sdrTypeName(sensor.recordType).rfind("type ", 0) == 0) {
            add(fmt::format("record type {:02X}h is not one of the standard", sensor.recordType));
        }
    }

    void checkName()
    {
        const std::size_t offset = nameOffset(sensor.recordType);
        constexpr unsigned char LENGTH = 0x1F;
        if (offset != 0 && offset < at->bytes.size() &&
            (at->bytes[offset] & LENGTH) > at->bytes.size() - offset - 1) {
            add(fmt::format("its name is cut off: {} of {} bytes are there",
                            at->bytes.size() - offset - 1, at->bytes[offset] & LENGTH));
        }
    }

    void checkNumbers()
    {
        for (unsigned int i = 0; i < sensor.shared.count; ++i) {
            const auto number = static_cast<unsigned char>(sensor.number + i);
            const auto [first, isNew] =
                sensors.emplace(std::tuple(sensor.ownerId, sensor.ownerLun, number), at->offset);
            if (!isNew) {
                add(fmt::format("the record at offset {} describes sensor {:02X}h too",
                                first->second, number));
            }
        }
    }

    void checkEntity()
    {
        if (sensor.entityId == 0) {
            add("its entity is unspecified");
        }
    }

    void checkTypes()
    {
        if (sensor.sensorType == 0 || isReservedSensorType(sensor.sensorType)) {
            add(fmt::format("sensor type {:02X}h is reserved", sensor.sensorType));
        }
        if (isReservedEventType(sensor.eventType)) {
            add(fmt::format("event/reading type {:02X}h is reserved", sensor.eventType));
        }
    }

    /// In units: these rise from threshold to threshold also where readings fall.
    void checkThresholds()
    {
        std::optional<double> before;
        for (const auto& raw : sensor.thresholds) {
            const auto value =
                raw && sensor.conversion ? sensor.conversion->valueOf(*raw) : std::nullopt;
            if (value && before && *value < *before) {
                add("its thresholds do not rise");
                return;
            }
            before = value ? value : before;
        }
    }

    const SdrRecord* at = nullptr;
    Sensor sensor;
    std::map<unsigned int, std::size_t> ids;
    std::map<std::tuple<unsigned char, unsigned char, unsigned char>, std::size_t> sensors;
    std::vector<SdrOddity> found;
};

}

std::vector<SdrOddity> checkRepository(const std::vector<SdrRecord>& records)
{
    Checker checker;
    for (const SdrRecord& record : records) {
        checker.check(record);
    }
    return checker.take();
}

}
