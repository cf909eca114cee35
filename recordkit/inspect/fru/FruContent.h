// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_INSPECT_FRU_FRUCONTENT_H
#define RECORDKIT_INSPECT_FRU_FRUCONTENT_H

#include <optional>
#include <string>
#include <vector>

#include <recordkit/fru/FRUItem.h>
#include <recordkit/inspect/bytes/ByteView.h>
#include <recordkit/inspect/fru/FruImage.h>
#include <recordkit/inspect/fru/FruText.h>

namespace recordkit::inspect {

// What a FRU image says, without its places and checksums: these follow when it is encoded.

/// A chassis, board or product area.
struct FruAreaContent {
    FRU_AREA id = FRU_AREA_BOARD;
    unsigned char format = 1;   ///< its first byte
    std::string start;          ///< language, chassis type or date: what is before the texts
    std::vector<FruText> texts; ///< in the order of fruFieldNames, then the custom fields
    std::string unused = {};    ///< between end marker and checksum

    unsigned char language() const;
    /// Up to the end marker.
    unsigned int usedSize() const;
};

/// A record of the multirecord area.
struct FruRecordContent {
    unsigned char type = 0;
    unsigned char format = 2; ///< with the reserved bits; not that of the last record
    std::string data;
};

/// A whole image.
struct FruContent {
    std::optional<std::string> internalUse;
    std::vector<FruAreaContent> areas; ///< in the order of informationAreas
    std::vector<FruRecordContent> records;
    std::vector<FRU_AREA> order = {}; ///< of the areas' places; others follow in headerAreas' order
    unsigned char blank = 0x00;       ///< in bytes outside all areas
};

/// The bytes of an area, with more unused bytes up to a multiple of 8. Throws DataError for more
/// bytes than the length byte can say.
std::string encodeFruArea(const FruAreaContent& area);

/// The bytes of the multirecord area; none without a record.
std::string encodeFruRecords(const std::vector<FruRecordContent>& records);

/// Takes a whole area of an image apart.
FruAreaContent contentOf(const FruAreaImage& area, ByteView image);
FruRecordContent contentOf(const FruMultiRecord& record, ByteView image);

/// Everything that an image says; the order of its areas, if it is not that of headerAreas; as its
/// blank byte the last one of those outside all areas. Throws DataError for an image with a problem
/// that hides some of it: a wrong checksum or a record that is too short for its fields is none.
FruContent contentOf(const FruImage& fru, ByteView image);

/// An image of the content: common header and areas, each at the next multiple of 8 bytes, then
/// blank bytes up to the size. Size 0 is as small as possible. Throws DataError if the content
/// needs more, or an area would begin where the header cannot say it.
std::string buildFruImage(const FruContent& content, std::size_t size);

}

#endif
