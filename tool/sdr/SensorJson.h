// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_TOOL_SDR_SENSORJSON_H
#define RECORDKIT_TOOL_SDR_SENSORJSON_H

#include <recordkit/inspect/sensor/Sensor.h>

#include "../Errors.h"
#include "../print/Json.h"

namespace recordkit::tool {

/// The contents of a record as JSON with stable names.
Json toJson(const inspect::Sensor& sensor);

}

#endif
