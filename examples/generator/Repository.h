// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_EXAMPLES_GENERATOR_REPOSITORY_H
#define RECORDKIT_EXAMPLES_GENERATOR_REPOSITORY_H

#include "Bytes.h"

namespace generator {

/// The sensor data records of both boards, back to back (IPMI v2.0, section 43).
Bytes sensorRepository();

/// The rules with texts for the OEM records of the log.
Bytes eventRules();

}

#endif
