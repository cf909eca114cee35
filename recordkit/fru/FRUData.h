// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_FRU_FRUDATA_H
#define RECORDKIT_FRU_FRUDATA_H

#include <map>
#include <memory>
#include <string>

#include <recordkit/fru/FRUArea.h>

/// The FRU image of one device: an IPMI FRU image (common header with area offsets in multiples of
/// 8 bytes) or a processor's information ROM (a header of 14 bytes with byte offsets of fixed
/// blocks; not edited). Areas are read on first use and kept; syncItem and syncFRU write edits
/// back.
///
/// Failures throw PException (module 128, location 13, action 1, detail 1), the text first; those
/// of FRUArea pass through. The class is not polymorphic: do not derive from it.
class RECORDKIT_API FRUData {
public:
    /// Reads the common header, or the ROM header for FRU_CPU_ROM. A failure is traced (level 100,
    /// message 20004) and rethrown. The device must outlive the object.
    explicit FRUData(TAVLib::FRURWif& device);
    FRUData(TAVLib::FRURWif& device, FRU_CPU layout);
    ~FRUData();
    FRUData(const FRUData&) = delete;
    FRUData& operator=(const FRUData&) = delete;

    /// Byte offset of an area, 0 if the image does not have it. The header's layout is not checked:
    /// asking a FRU image for a ROM block fails in FRUArea::getItemMember.
    unsigned int getAreaOffset(FRU_AREA id);
    /// The area, read on first use; later modes are ignored. Throws for an area whose offset is 0
    /// ("FRUData::getAreaObject. parameter=%d", message 20019).
    FRUArea* getAreaObject(FRU_AREA id, FRUArea::CSUM_MODE mode);

    /// A field's value; `out` is unchanged if there is none. Items 64, 65, 69, 83, 84 and 85,
    /// stored low byte first, are returned high byte first, and as two zero bytes unless they have
    /// two. Items 61, 62, 63 and 82 are bits of item 81; bytes that it lacks count as 0.
    void getItem(FRU_AREA area, FRU_ITEM item, std::string& out, FRUArea::CSUM_MODE mode);
    /// The same with the type/length byte, 0 for a fixed field; throws for a missing field.
    void getItem(FRU_AREA area, FRU_ITEM item, std::string& out, unsigned char& typelength,
                 FRUArea::CSUM_MODE mode);
    /// Copies a field's bytes unchanged to `out`, which must be large enough.
    void getItemData(FRU_AREA area, FRU_ITEM item, unsigned char* out);

    /// As FRUArea::updateItem; throws for a ROM ("Not Support CPU Write", message 20003).
    void updateItem(FRU_AREA area, FRU_ITEM item, std::string& value);
    /// As FRUArea::syncItem; does not refuse a ROM.
    void syncItem(FRU_AREA area, FRU_ITEM item);
    /// Writes back every area that was edited, in ascending order; if a later one fails, earlier
    /// writes are not rolled back.
    void syncFRU();

    int getFSB() const { return 0; }
    int getModelCode() const { return 0; }
    bool isDivideEnabled() const { return false; }

private:
    std::map<FRU_AREA, std::unique_ptr<FRUArea>> areas; ///< key 0 is the header of either layout
    TAVLib::FRURWif& rw;
    FRU_CPU cpu;
};

#endif
