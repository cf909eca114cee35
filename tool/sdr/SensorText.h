// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_TOOL_SDR_SENSORTEXT_H
#define RECORDKIT_TOOL_SDR_SENSORTEXT_H

#include <string>

#include <recordkit/sensor/RecordSensorCommon.h>

namespace recordkit::tool {

/// A type/length byte and what it says of the bytes behind it, as UTF-8: 16-bit, BCD plus, 6-bit or
/// 8-bit characters (IPMI v2.0, section 43.15).
std::string idStringText(unsigned char typeLength, const std::string& bytes);

/// A sensor's name.
std::string sensorName(const TAVLib::RecordKit::RecordSensorCommon& record);

/// "degrees C", "RPM", "% Volts", "Volts/second"; empty for a discrete sensor.
std::string sensorUnits(const TAVLib::RecordKit::RecordSensorCommon& record);

}

#endif
