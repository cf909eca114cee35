// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_INSPECT_FRU_FRULAYOUT_H
#define RECORDKIT_INSPECT_FRU_FRULAYOUT_H

#include <map>
#include <string>

#include <recordkit/fru/FRUItem.h>

namespace recordkit::inspect {

/// The largest area that FRUArea can store: its size has eight bits.
constexpr unsigned int MAX_AREA_SIZE = 248;

/// Rounds a number of bytes up to the unit of area lengths.
unsigned int toLengthUnit(unsigned int bytes);

/// The image with areas that have more unused bytes: the areas after them move up, including
/// multirecord and internal use areas, and header and checksums are updated. Bytes that belong to
/// no area are used only if they are blank.
///
/// `growth` is the number of bytes, a multiple of 8, by which each area grows. Header and checksums
/// must be correct. Throws DataError if there is no room.
std::string growAreas(const std::string& bytes, const std::map<FRU_AREA, unsigned int>& growth);

}

#endif
