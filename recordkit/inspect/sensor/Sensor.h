// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_INSPECT_SENSOR_SENSOR_H
#define RECORDKIT_INSPECT_SENSOR_SENSOR_H

#include <array>
#include <optional>
#include <string>
#include <vector>

#include <recordkit/inspect/sensor/SdrFile.h>
#include <recordkit/inspect/words/SensorNames.h>

namespace recordkit::inspect {

/// The thresholds of a sensor, from the lowest to the highest.
enum class Threshold : unsigned char {
    LOWER_NON_RECOVERABLE,
    LOWER_CRITICAL,
    LOWER_NON_CRITICAL,
    UPPER_NON_CRITICAL,
    UPPER_CRITICAL,
    UPPER_NON_RECOVERABLE,
};
constexpr std::size_t THRESHOLDS = 6;

/// How many sensors a compact or event-only record describes (IPMI v2.0, section 43.2, bytes 24 and
/// 25): their numbers follow each other.
struct SharedRecord {
    unsigned int count = 1;
    bool isAlphabetic = false;  ///< names end in letters, not in numbers
    unsigned int first = 0;     ///< what the first name ends in
    bool hasEntityEach = false; ///< entity instances follow each other, too
};

/// The contents of a record of a repository, as a listing shows them.
struct Sensor {
    unsigned int id = 0;
    std::size_t offset = 0;
    unsigned char recordType = 0;
    bool isSensor = false; ///< a full or compact record; only these have all fields below
    /// These, and event-only records, which have the fields up to `shared`.
    bool describesSensor() const { return isSensor || recordType == SDR_EVENT_ONLY; }
    std::string name; ///< also of event-only records and locators
    // Event-only records have these, too.
    unsigned char ownerId = 0;  ///< as byte 1 of an event's generator id
    unsigned char ownerLun = 0; ///< as byte 2: channel and LUN
    unsigned char number = 0;
    unsigned char sensorType = 0;
    unsigned char entityId = 0;
    unsigned char entityInstance = 0;
    unsigned char eventType = 0;
    SharedRecord shared;

    std::string units;
    unsigned short assertionMask = 0;
    unsigned short deassertionMask = 0;
    unsigned short readingMask = 0;
    unsigned char positiveHysteresis = 0;
    unsigned char negativeHysteresis = 0;
    /// How readings become units; only of a full record.
    std::optional<Conversion> conversion;
    /// The readings from here on are raw. What the record does not specify is none, and so are
    /// thresholds that the sensor does not have.
    std::optional<unsigned char> nominal;
    std::optional<unsigned char> normalMaximum;
    std::optional<unsigned char> normalMinimum;
    unsigned char maximum = 0; ///< that the sensor can report
    unsigned char minimum = 0;
    std::array<std::optional<unsigned char>, THRESHOLDS> thresholds;
};

/// Reads a record. Throws DataError for a full or compact one that the library refuses.
Sensor readSensor(const SdrRecord& record);

/// The sensors of a file. What is wrong with it, and with records that cannot be read, is added to
/// `problems`.
std::vector<Sensor> readSensors(const SdrFile& file, std::vector<std::string>& problems);

/// How readings of a record become units; none but for a full record of a threshold sensor.
std::optional<Conversion> sensorConversion(const SdrRecord& record);

/// Offset of the name's type/length byte in a record that is not a sensor's; 0 for those without.
std::size_t nameOffset(unsigned char recordType);

/// The name of a sensor of a record, of which several may share it: the first one is 0.
std::string nameOfSharing(const Sensor& sensor, unsigned int which);

/// Adds the sensors of a repository, each of those that share a record.
void addNames(const std::vector<Sensor>& sensors, SensorNames& names);

/// The offsets that a sensor can report: those of its masks. Threshold sensors have the twelve
/// crossings of IPMI v2.0, table 42-2. None for an event-only record, which has no masks.
std::vector<unsigned int> eventOffsets(const Sensor& sensor);

}

#endif
