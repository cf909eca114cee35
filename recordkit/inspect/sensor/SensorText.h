// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_INSPECT_SENSOR_SENSORTEXT_H
#define RECORDKIT_INSPECT_SENSOR_SENSORTEXT_H

#include <string>

#include <recordkit/sensor/RecordSensorCommon.h>

namespace recordkit::inspect {

/// A sensor's name.
std::string sensorName(const TAVLib::RecordKit::RecordSensorCommon& record);

/// "degrees C", "RPM", "% Volts", "Volts/second"; empty for a discrete sensor.
std::string sensorUnits(const TAVLib::RecordKit::RecordSensorCommon& record);

}

#endif
