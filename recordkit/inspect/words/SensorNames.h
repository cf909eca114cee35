// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_INSPECT_WORDS_SENSORNAMES_H
#define RECORDKIT_INSPECT_WORDS_SENSORNAMES_H

#include <map>
#include <optional>
#include <string>

#include <recordkit/inspect/words/Conversion.h>

namespace recordkit::inspect {

/// A sensor as a repository describes it, for texts of its events.
struct NamedSensor {
    std::string name;
    std::string entity;     ///< id and instance: "29.1"
    std::string entityName; ///< "fan or cooling device"
    std::string units;      ///< empty for a discrete sensor
    std::optional<Conversion> conversion;
};

/// Sensors by what an event says of its sensor: who logged it, and the number.
class SensorNames {
public:
    /// Of several with the same owner and number the first one counts. Owner and LUN are bytes 6
    /// and 7 of a sensor data record.
    void add(unsigned char owner, unsigned char lun, unsigned char number,
             const NamedSensor& sensor);

    /// nullptr if there is none. The channel does not matter: a controller has 0 for itself.
    const NamedSensor* find(const unsigned char (&generatorId)[2], unsigned char number) const;

private:
    std::map<unsigned int, NamedSensor> sensors;
};

}

#endif
