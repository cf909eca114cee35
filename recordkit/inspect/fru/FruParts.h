// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_INSPECT_FRU_FRUPARTS_H
#define RECORDKIT_INSPECT_FRU_FRUPARTS_H

#include <string>
#include <vector>

#include <recordkit/inspect/fru/FruEdit.h>

namespace recordkit::inspect {

// Parts of a FRU image that come and go. Each function works in memory and does everything it is
// asked or nothing; what it is not asked stays byte for byte, moved where a part needs the room.
//
// Each throws RequestError for a name that no image can have, DataError for anything in the image
// that prevents the edit.

/// Adds parts:
///
/// | name                 | value | part                                                       |
/// |----------------------|-------|------------------------------------------------------------|
/// | chassis, board, ...  | none  | an area with empty texts, in English, without a date       |
/// | board.custom         | text  | one more custom field; board.custom2 only as the second    |
/// | board.asset-tag      | text  | a field that the area ends before                          |
/// | internal             | bytes | the internal use area                                      |
/// | dc-load              | none  | a record of this kind with zero bytes in its fields        |
/// | dc-load.max-current  | value | a field of the last record of this kind that was added; of |
/// |                      |       | a new one if none was                                      |
/// | record:C1h           | hex   | a record of any type with this data                        |
FruEditResult addToFruImage(const std::string& bytes, const std::vector<FruEdit>& parts,
                            const FruEditOptions& options);

/// Removes parts: an area ("board", "internal"), a custom field ("board.custom2"), a record
/// ("dc-load1"). Later custom fields and records of the kind count from one less.
FruEditResult removeFromFruImage(const std::string& bytes, const std::vector<std::string>& parts,
                                 const FruEditOptions& options);

}

#endif
