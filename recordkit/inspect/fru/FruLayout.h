// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_INSPECT_FRU_FRULAYOUT_H
#define RECORDKIT_INSPECT_FRU_FRULAYOUT_H

#include <cstddef>
#include <map>
#include <string>
#include <vector>

#include <recordkit/fru/FRUTables.h>

namespace recordkit::inspect {

/// The size of the common header.
constexpr unsigned int FRU_HEADER_SIZE = 8;

/// The largest area that FRUArea can store: its size has eight bits.
constexpr unsigned int MAX_AREA_SIZE = 248;

/// The most bytes that a length or an offset in units can say.
constexpr unsigned int MAX_UNIT_BYTES = 0xFF * FRU_LENGTH_UNIT;

/// The areas in the order in which the common header has their offsets; the internal use area is
/// FRU_AREA_INTERNAL_A.
const std::vector<FRU_AREA>& headerAreas();

/// Where the common header has the offset of an area.
std::size_t headerOffset(FRU_AREA id);

/// Rounds a number of bytes up to the unit of area lengths.
unsigned int toLengthUnit(unsigned int bytes);

/// Bytes for areas, without any for an area that the image shall not have.
using FruBlocks = std::map<FRU_AREA, std::string>;

/// The image with these bytes in its areas; header and checksum are updated. An area keeps its
/// place, unless an area before it needs the space: then it moves up, also where it is not among
/// the blocks. An area that the image did not have goes to the first gap that is large enough.
/// Bytes that belong to no area are used only if they are blank; bytes that areas leave become 00h.
///
/// The image must have a common header, and areas of known extents that do not overlap. Throws
/// DataError if there is no room.
std::string placeFruBlocks(const std::string& bytes, const FruBlocks& blocks);

/// The image with another size: bytes after its last area go, or follow in the value that the last
/// byte has if it is 00h or FFh, and as 00h otherwise. Throws DataError if areas or bytes that are
/// not blank would be cut off.
std::string resizeFruImage(const std::string& bytes, std::size_t size);

}

#endif
