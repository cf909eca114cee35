// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_FRU_FRUTABLES_H
#define RECORDKIT_FRU_FRUTABLES_H

#include <recordkit/fru/FRUMember.h>

// IPMI FRU Information Storage Definition v1.0.
constexpr unsigned int FRU_LENGTH_UNIT = 8;       ///< the unit of the areas' lengths and offsets
constexpr unsigned char FRU_LENGTH_BITS = 0x3F;   ///< of a type/length byte: the field's length
constexpr unsigned char FRU_END_OF_FIELDS = 0xC1; ///< in place of a type/length byte

/// The layout of one area, and the field with its offset. FRUArea reads by these rows; a program
/// that walks images itself, for example those with areas too long for FRUArea, needs no others.
struct FRUAreaTbl {
    FRU_AREA areaId;
    const FRUMemberTbl* members; ///< ended by FRU_ITEM_TERMINATOR
    FRU_ITEM offsetItem;         ///< header field with its offset; FRU_ITEM_TERMINATOR for none
    unsigned int size;           ///< 0: read from the area's length byte
};

/// The row of an area; nullptr for one that cannot be opened.
RECORDKIT_API const FRUAreaTbl* findFRUArea(FRU_AREA areaId);

#endif
