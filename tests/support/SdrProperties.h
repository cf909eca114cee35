// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_TESTS_SUPPORT_SDRPROPERTIES_H
#define RECORDKIT_TESTS_SUPPORT_SDRPROPERTIES_H

#include <string>

#include <recordkit/inspect/sensor/SdrFile.h>

namespace testing_support {

/// What is true of every repository, sound or not: its records are inside the file, one after
/// another; each is described without hiding a byte; sensors that can be read are found by their
/// numbers; what is odd belongs to a record. Returns the first rule that is broken; empty if none
/// is.
std::string brokenSdrProperty(const std::string& content, recordkit::inspect::SdrFormat format);

}

#endif
