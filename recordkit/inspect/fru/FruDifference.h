// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_INSPECT_FRU_FRUDIFFERENCE_H
#define RECORDKIT_INSPECT_FRU_FRUDIFFERENCE_H

#include <optional>
#include <string>
#include <vector>

#include <recordkit/inspect/fru/FruImage.h>

namespace recordkit::inspect {

/// Something that two images do not have in common.
struct FruDifference {
    std::string what;                 ///< "board.serial", "internal", "multirecord2", "bytes"
    std::optional<std::string> first; ///< none where the image does not have it
    std::optional<std::string> second;
};

/// Compares what two images contain: fields by name, and their coding where the values are the same
/// ("text \"AB\""); the internal use area and multirecords in hex. Images with the same contents
/// and other bytes, such as another order of areas, differ in "bytes": how many there are of each.
std::vector<FruDifference> compareFruImages(ByteView first, ByteView second);

}

#endif
