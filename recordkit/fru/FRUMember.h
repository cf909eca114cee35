// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_FRU_FRUMEMBER_H
#define RECORDKIT_FRU_FRUMEMBER_H

#include <string>

#include <recordkit/fru/FRUItem.h>
#include <recordkit/platform/Export.h>

/// One row of a member table; size 0 means a field coded with a type/length byte. A row with
/// FRU_ITEM_TERMINATOR ends the table.
struct FRUMemberTbl {
    FRU_ITEM item;
    unsigned int size;
};

/// One field of a FRU area: fixed, or coded with a type/length byte (bits 7..6 type, bits 5..0
/// length; IPMI FRU Information Storage Definition v1.0, section 13).
class RECORDKIT_API FRUMember {
public:
    /// A field of `size` bytes at `src`; with size 0 a coded one, whose type/length byte is at
    /// `src` and whose value (up to 63 bytes) follows it.
    FRUMember(const unsigned char* src, FRU_ITEM fruItem, unsigned int size);
    /// A reserved field of `size` zero bytes.
    explicit FRUMember(unsigned int size);
    virtual ~FRUMember();
    FRUMember(const FRUMember&) = default;
    FRUMember& operator=(const FRUMember&) = default;

    /// Declares the field as 8-bit text of `len` bytes, whatever its value is.
    void settypelength(unsigned char len);
    /// Declares a coded field as 8-bit text of the length of its value; does nothing to a fixed
    /// one. Lengths above 63 overflow into the type bits: it is the callers who bound them.
    void settypelength();

    FRU_ITEM getItem() const { return item; }
    std::string getData() const { return data; }
    /// Length of the value in bytes, as stored in the image, modulo 65536.
    unsigned short getLength() const { return length; }
    /// 0 for a fixed field.
    unsigned char getTypeLength() const { return typelength; }
    bool getHasTypeLength() const { return hasTypeLength; }

    /// Changes only the value; the declared length stays.
    void setData(const std::string& value) { data = value; }

private:
    unsigned char typelength;
    std::string data;
    FRU_ITEM item;
    bool hasTypeLength;
    unsigned short length;
};

#endif
