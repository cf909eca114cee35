// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_INSPECT_FRU_FRUREPAIR_H
#define RECORDKIT_INSPECT_FRU_FRUREPAIR_H

#include <string>
#include <vector>

namespace recordkit::inspect {

/// A FRU image with what can be repaired.
struct FruRepair {
    std::string bytes;
    std::vector<std::string> repairs; ///< one for each byte that changed
    std::vector<std::string> left;    ///< what is still wrong, as FruImage::allProblems
};

/// Repairs, in this order:
///
/// - the common header: its pad byte, and its checksum where everything that it leads to is right;
///   otherwise an offset may be wrong, and nothing else is repaired;
/// - the length byte of an area that would reach over the next area or the end of the image, or
///   that ends before its end marker, where a length makes the area's checksum right;
/// - a missing end marker after the last field, where only blank bytes follow;
/// - the format byte of an area whose checksum is right with 01h;
/// - the checksum of an area;
/// - a record's data checksum where its header is right, or its header checksum where its data is
///   right and a record follows, unless it is the last one: otherwise its length is not certain;
/// - the end of the list of records, on the last one before blank bytes.
///
/// An area that begins in another one is left as it is. Fields keep their bytes. What a repaired
/// checksum covers may be damaged itself: nobody can tell. Throws DataError for an image without a
/// common header.
FruRepair repairFruImage(const std::string& bytes);

}

#endif
