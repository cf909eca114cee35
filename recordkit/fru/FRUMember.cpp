// SPDX-License-Identifier: Apache-2.0
#include <recordkit/fru/FRUMember.h>

#include <recordkit/serial/BitField.h>

namespace {

/// 8-bit text in bits 7..6: the declared type of every edited field.
constexpr unsigned char TEXT_TYPE = 0xC0;

}

FRUMember::FRUMember(const unsigned char* src, FRU_ITEM fruItem, unsigned int size)
    : typelength(size == 0 ? src[0] : 0), item(fruItem), hasTypeLength(size == 0),
      length(size == 0 ? TAVLib::get_bit(src[0], 0, 6) : static_cast<unsigned short>(size))
{
    // A fixed field has all its bytes, though only the low 16 bits of their number are kept.
    const unsigned char* const value = hasTypeLength ? src + 1 : src;
    data.assign(value, value + (hasTypeLength ? length : size));
}

FRUMember::FRUMember(unsigned int size)
    : typelength(0), data(size, '\0'), item(FRU_ITEM_RESERVED), hasTypeLength(false),
      length(static_cast<unsigned short>(size))
{
}

FRUMember::~FRUMember() = default;

void FRUMember::settypelength(unsigned char len)
{
    typelength = len | TEXT_TYPE;
    length = len;
}

void FRUMember::settypelength()
{
    if (hasTypeLength) {
        typelength = static_cast<unsigned char>(data.size() | TEXT_TYPE);
        length = static_cast<unsigned short>(data.size());
    }
}
