// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_INSPECT_FRU_FRUDRAFT_H
#define RECORDKIT_INSPECT_FRU_FRUDRAFT_H

#include <map>
#include <optional>
#include <string>
#include <vector>

#include <recordkit/inspect/fru/FruContent.h>
#include <recordkit/inspect/fru/FruImage.h>
#include <recordkit/inspect/fru/FruLayout.h>

namespace recordkit::inspect {

/// An edited image and what there is to say about the edit.
struct FruDraftResult {
    std::string bytes;
    std::vector<std::string> notes; ///< one for each repaired checksum and each area
};

/// An image that is being edited in memory. What an edit asks for is taken apart, and encoded again
/// by finish(); everything else keeps its bytes.
///
/// Every operation throws DataError for what in the image prevents the edit.
class FruDraft {
public:
    /// Refuses an image with a wrong checksum in its header or an area, or repairs them all.
    FruDraft(const std::string& bytes, bool repairsChecksums);

    /// As it was.
    const FruImage& image() const { return fru; }

    /// An area that the image has; refused if it is damaged or overlaps another.
    FruAreaContent& area(FRU_AREA id);
    /// A new area.
    void addArea(const FruAreaContent& area);
    void removeArea(FRU_AREA id);

    /// All records; none if the image has no multirecord area. Refused if one is damaged.
    std::vector<FruRecordContent>& records();

    /// The bytes of the internal use area, up to the next area; of a new one if there is none.
    void setInternalUse(const std::string& content);
    void removeInternalUse();

    /// The edited image. With `mayGrow`, areas become larger where they must, and the areas after
    /// them move up; otherwise such an edit is refused.
    FruDraftResult finish(bool mayGrow);

private:
    void check(const std::string& name, const FruChecksum& checksum, bool repairs);
    const FruExtent* findExtent(FRU_AREA id) const;
    void requireExtent(FRU_AREA id) const;
    void checkApart(const FruExtent& area) const;
    void requireKnownPlaces(const char* otherwise) const;
    std::string encode(FruAreaContent area);
    void put(FRU_AREA id, const std::string& content);
    void requireGrowth(const std::string& need) const;

    std::string bytes;
    FruImage fru;
    std::map<FRU_AREA, FruAreaContent> areas; ///< taken apart, or new
    std::optional<std::vector<FruRecordContent>> multirecords;
    FruBlocks blocks;      ///< what finish() places
    bool mayGrow = false;  ///< as finish() was asked
    bool isMoving = false; ///< an area has become larger
    std::vector<std::string> notes;
};

}

#endif
