// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_TESTS_SUPPORT_SDRPROPERTIES_H
#define RECORDKIT_TESTS_SUPPORT_SDRPROPERTIES_H

#include <string>

#include <recordkit/inspect/sensor/SdrFile.h>

namespace testing_support {

/// What every repository has to do with its records, sound or not: their places are inside the
/// file, one after another; each is described without hiding a byte; sensors that can be read have
/// names that are found; what is odd belongs to a record. Returns what does not hold; empty if all
/// does. Also throws what only a bug throws.
std::string brokenSdrProperty(const std::string& content, recordkit::inspect::SdrFormat format);

}

#endif
