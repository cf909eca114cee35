// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_BENCH_SENSORIMAGE_H
#define RECORDKIT_BENCH_SENSORIMAGE_H

#include <vector>

namespace bench {

/// A full sensor record with a name of 16 characters.
const std::vector<unsigned char>& fullSensorRecord();

}

#endif
