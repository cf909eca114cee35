// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_SENSOR_SEVERITYTABLE_H
#define RECORDKIT_SENSOR_SEVERITYTABLE_H

#include <cstddef>

#include <recordkit/sensor/SeverityMap.h>

/// The severities of one pair of event/reading type and sensor type.
struct SeverityRow {
    unsigned char evtReadType;
    unsigned char sensorType;
    const SeverityMap::offsetToSev_t* list;
    int count;
};

/// The rows of the severity map, in the order in which they are added.
const SeverityRow* severityRows(std::size_t& count);

#endif
