// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_INSPECT_WORDS_SENSORUNITS_H
#define RECORDKIT_INSPECT_WORDS_SENSORUNITS_H

#include <string>

namespace recordkit::inspect {

/// Name of a sensor unit (IPMI v2.0, table 43-15); "unit 200" for those without one.
std::string sensorUnitName(unsigned char unit);

}

#endif
