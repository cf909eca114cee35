// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_INSPECT_SENSOR_SENSORTEXT_H
#define RECORDKIT_INSPECT_SENSOR_SENSORTEXT_H

#include <string>

#include <recordkit/inspect/bytes/ByteView.h>
#include <recordkit/sensor/RecordSensorCommon.h>

namespace recordkit::inspect {

/// The bytes after a type/length byte as UTF-8, by its coding: 16-bit, BCD plus, 6-bit or 8-bit
/// characters (IPMI v2.0, section 43.15).
std::string idStringText(unsigned char typeLength, ByteView bytes);

/// A sensor's name.
std::string sensorName(const TAVLib::RecordKit::RecordSensorCommon& record);

/// "degrees C", "RPM", "% Volts", "Volts/second"; empty for a discrete sensor.
std::string sensorUnits(const TAVLib::RecordKit::RecordSensorCommon& record);

}

#endif
