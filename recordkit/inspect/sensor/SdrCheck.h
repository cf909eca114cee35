// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_INSPECT_SENSOR_SDRCHECK_H
#define RECORDKIT_INSPECT_SENSOR_SDRCHECK_H

#include <string>
#include <vector>

#include <recordkit/inspect/sensor/Sensor.h>

namespace recordkit::inspect {

/// What is odd about a record of a repository.
struct SdrOddity {
    unsigned int id = 0;    ///< of the record
    std::size_t offset = 0; ///< of the record in the file
    std::string name;       ///< of the sensor or device, if the record has one
    std::string text;
};

/// Finds record ids and sensors that occur twice, thresholds that do not rise, entities that are
/// unspecified, record, sensor and event types that the standard does not know, and names that are
/// cut off. In the order of the records; those that readSensor refuses are left out.
std::vector<SdrOddity> checkRepository(const std::vector<SdrRecord>& records);

}

#endif
