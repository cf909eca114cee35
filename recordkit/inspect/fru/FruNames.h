// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_INSPECT_FRU_FRUNAMES_H
#define RECORDKIT_INSPECT_FRU_FRUNAMES_H

#include <optional>
#include <string>
#include <vector>

#include <recordkit/fru/FRUItem.h>

namespace recordkit::inspect {

/// The areas with fields for people, in the order of the common header.
const std::vector<FRU_AREA>& informationAreas();

/// "chassis", "board", "product", "internal", "multirecord".
std::string fruAreaName(FRU_AREA area);
/// The area of informationAreas with that name.
bool findFruArea(const std::string& name, FRU_AREA& area);

/// Name of a field, such as "part-number"; empty for items that are not a field of an area.
std::string fruItemName(FRU_ITEM item);

/// Fields of an area by name, in the order of the image, custom fields aside.
std::vector<std::string> fruFieldNames(FRU_AREA area);

/// How many of them are texts.
std::size_t fruTextCount(FRU_AREA area);

/// The number of a custom field, 2 of "custom2"; 0 for other names.
unsigned int customNumber(const std::string& fieldName);

/// What "board.serial" or "dc-output2.max-current" names.
struct FruFieldName {
    std::string text;                  ///< all of it
    std::string owner;                 ///< the area or record
    std::string field;                 ///< in it
    std::optional<FRU_AREA> area = {}; ///< none for a record
};

/// Reads a name. Throws RequestError for one that no image can have.
FruFieldName parseFruFieldName(const std::string& text);

}

#endif
