// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_INSPECT_FRU_FRULAYOUT_H
#define RECORDKIT_INSPECT_FRU_FRULAYOUT_H

#include <map>
#include <string>

#include <recordkit/fru/FRUItem.h>

namespace recordkit::inspect {

/// The largest area that FRUArea can hold, whose size has eight bits.
constexpr unsigned int MAX_AREA_SIZE = 248;

/// The number of bytes that areas take for so many.
unsigned int toLengthUnit(unsigned int bytes);

/// The image with areas that have more unused bytes: those behind them move up, multirecord and
/// internal use areas too, and header and checksums follow. Bytes that belong to no area are taken
/// only where they are blank.
///
/// `growth` says by how many bytes, multiples of 8, each area grows. Header and checksums must be
/// right. Throws DataError when there is no room.
std::string growAreas(const std::string& bytes, const std::map<FRU_AREA, unsigned int>& growth);

}

#endif
