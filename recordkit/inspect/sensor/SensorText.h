// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_INSPECT_SENSOR_SENSORTEXT_H
#define RECORDKIT_INSPECT_SENSOR_SENSORTEXT_H

#include <string>

#include <recordkit/sensor/RecordSensorCommon.h>

namespace recordkit::inspect {

/// A sensor's name.
std::string sensorName(const TAVLib::RecordKit::RecordSensorCommon& record);

/// The units by the three bytes of a record that name them (IPMI v2.0, section 43.1, bytes 21 to
/// 23).
std::string sensorUnits(unsigned char units1, unsigned char base, unsigned char modifier);

/// "degrees C", "RPM", "% Volts", "Volts/second"; empty for a discrete sensor.
std::string sensorUnits(const TAVLib::RecordKit::RecordSensorCommon& record);

}

#endif
