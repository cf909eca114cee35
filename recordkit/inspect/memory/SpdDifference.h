// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_INSPECT_MEMORY_SPDDIFFERENCE_H
#define RECORDKIT_INSPECT_MEMORY_SPDDIFFERENCE_H

#include <string>
#include <vector>

#include <recordkit/inspect/bytes/ByteView.h>
#include <recordkit/inspect/fields/Value.h>

namespace recordkit::inspect {

/// Something in which the data of two modules differ.
struct SpdDifference {
    std::string what; ///< "capacity_mb", "serial_number", spdFactKey; "bytes 60 to 63", "size"
    Value first;      ///< none where the data do not say it
    Value second;
};

/// Compares what the data of two modules say. Data that say the same in other bytes differ in
/// these, in hex, and in their size. Throws as parseSpd does.
std::vector<SpdDifference> compareSpdImages(ByteView first, ByteView second);

}

#endif
