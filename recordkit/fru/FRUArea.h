// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_FRU_FRUAREA_H
#define RECORDKIT_FRU_FRUAREA_H

#include <string>
#include <vector>

#include <recordkit/fru/FRUMember.h>
#include <recordkit/platform/FRURWif.h>

/// One area of a FRU image, read through the caller's reader/writer, split into fields, edited and
/// written back.
///
/// | part of an information area | width             | meaning                              |
/// |-----------------------------|-------------------|--------------------------------------|
/// | format version              | 1                 | carried unchanged                    |
/// | area length                 | 1                 | in multiples of 8 bytes              |
/// | fields                      |                   | fixed ones, then coded ones          |
/// | custom fields               |                   | coded, as many as there are          |
/// | end marker                  | 1                 | C1h                                  |
/// | unused space                | what is left      | eaten by fields that grow            |
/// | checksum                    | 1                 | all bytes add up to 0 modulo 256     |
///
/// The common header and the blocks of a processor ROM have fixed fields only.
///
/// Every failure throws PException (module 128, location 13, action 1, detail 1); the text is the
/// first parameter. Exceptions of the reader/writer are traced (module 128, location 13, level 0,
/// message 20004) and rethrown unchanged.
class RECORDKIT_API FRUArea {
public:
    /// How reading treats a wrong checksum.
    enum CSUM_MODE : int { CSUM_CHECK = 0, CSUM_IGNORE = 1 };

    /// Reads and splits the area at `areaOffset`. Throws for an id without a layout ("FRUArea
    /// Constractor :: Not Support alloc table. id=%d", message 20004), and what readAreaData,
    /// setAreaData and setAreaEndData throw. The device must outlive the area.
    FRUArea(TAVLib::FRURWif& device, int areaOffset, FRU_AREA id, CSUM_MODE mode);
    virtual ~FRUArea();
    FRUArea(const FRUArea&) = delete;
    FRUArea& operator=(const FRUArea&) = delete;

    /// Reads the area's bytes into a new array, which the caller frees with delete[]. `fixedSize`
    /// is its size unless it has a length byte (areas 1 to 49). The array continues with 128 zero
    /// bytes: coded fields may claim up to 64 bytes beyond the area.
    unsigned char* readAreaData(unsigned int fixedSize, CSUM_MODE mode);
    /// Builds the fields of a table; `pos` becomes the position after the last one. Fixed fields
    /// are bounded by the area's size. Coded ones are not, because existing images have such
    /// fields: `buf` must extend 65 bytes beyond the area, as that of readAreaData does.
    void setAreaData(unsigned char* buf, unsigned short* pos, const FRUMemberTbl* table);
    /// Builds the fields after those of the table: custom fields, end marker, unused space,
    /// checksum. An area without an end marker has none of these, which is not an error. `buf` must
    /// extend 65 bytes beyond the area, as for setAreaData.
    void setAreaEndData(unsigned char* buf, unsigned short pos);

    /// Low 8 bits of the sum of n bytes.
    unsigned char calcChecksum(unsigned char* buf, unsigned int n);
    /// Number of bytes of the fields in the image.
    unsigned int calcAreaSize();

    /// The first field with that item; throws ("FRUData::getItemMember Not Found item. (item%d)",
    /// message 20004) when there is none.
    FRUMember* getItemMember(FRU_ITEM item);
    /// The field's value; `out` is unchanged if there is none.
    void getItem(FRU_ITEM item, std::string& out);
    /// Copies the field's value to `out`, which must be large enough; does nothing if there is
    /// none.
    void getItemData(FRU_ITEM item, unsigned char* out);

    /// Changes a field. A fixed field of several bytes pads a shorter value, in the caller's own
    /// string, with zero bytes; it does not cut a longer one. A coded field takes the bytes that it
    /// grows by from the unused space. An area without the field is marked for writing anyway; a
    /// change that throws leaves the mark unchanged.
    void updateItem(FRU_ITEM item, std::string& value);
    /// Takes `delta` bytes from the unused space, or returns them to it.
    void unusedUpdate(short delta);
    /// Changes the area's length byte by `delta` bytes, rounding towards zero. Throws
    /// ("FRUArea::lengthUpdate Not Length on FRUMember(%d)", message 20004, and the item found) if
    /// the second field is not the length byte.
    void lengthUpdate(short delta);

    /// Writes one field back, without its type/length byte. Its place is counted without the
    /// type/length bytes before it, so it is right only in areas of fixed fields.
    void syncItem(FRU_ITEM item);
    /// Writes the whole area back, with its length byte and checksum.
    void syncFRU();

    const std::vector<FRUMember*>& getMembers() const { return members.get(); }
    unsigned char getSize() const { return size; }
    int getOffset() const { return offset; }
    FRU_AREA getAreaId() const { return areaId; }
    bool isDirty() const { return dirty; }
    void clearDirty() { dirty = false; }

private:
    bool hasLengthByte() const;
    FRUMember* find(FRU_ITEM item) const;
    void readDevice(unsigned int at, unsigned int length, unsigned char* buffer, const char* text);

    /// The fields, which end with the list. A list of pointers, because that is what getMembers
    /// gives to callers, who have compiled in its place and size.
    class MemberList {
    public:
        MemberList() = default;
        ~MemberList();
        MemberList(const MemberList&) = delete;
        MemberList& operator=(const MemberList&) = delete;

        void append(const FRUMember& member);
        const std::vector<FRUMember*>& get() const { return list; }

    private:
        std::vector<FRUMember*> list;
    };

    TAVLib::FRURWif& rw;
    int offset;
    MemberList members;
    unsigned char size;
    FRU_AREA areaId;
    bool dirty;
};

#endif
