// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_INSPECT_FRU_MULTIRECORDROW_H
#define RECORDKIT_INSPECT_FRU_MULTIRECORDROW_H

#include <cstddef>

namespace recordkit::inspect {

/// A value that has a name.
struct MultiRecordWord {
    unsigned int value;
    const char* text;
};

/// A row of a record's table. Its place counts from the first byte of its group, in a field from
/// that of its own bytes.
struct MultiRecordRow {
    enum class Kind { NUMBER, SIGNED, FLAG, HEX, ADDRESS, GUID, ENTITY, TEXT, SIX_BIT };

    // Each returns a copy that also has what it says.

    constexpr MultiRecordRow bits(unsigned int highest, unsigned int lowest) const
    {
        MultiRecordRow copy = *this;
        copy.high = highest;
        copy.low = lowest;
        return copy;
    }
    constexpr MultiRecordRow in(const char* unitName) const
    {
        MultiRecordRow copy = *this;
        copy.unit = unitName;
        return copy;
    }
    /// The value is the number divided by this.
    constexpr MultiRecordRow per(unsigned int parts) const
    {
        MultiRecordRow copy = *this;
        copy.divisor = parts;
        return copy;
    }
    /// The value is the number times this.
    constexpr MultiRecordRow times(unsigned int each) const
    {
        MultiRecordRow copy = *this;
        copy.factor = each;
        return copy;
    }
    /// The number that means that there is no value.
    constexpr MultiRecordRow none(unsigned int number) const
    {
        MultiRecordRow copy = *this;
        copy.hasNone = true;
        copy.noneNumber = number;
        return copy;
    }
    template <std::size_t Count>
    constexpr MultiRecordRow named(const MultiRecordWord (&table)[Count]) const
    {
        MultiRecordRow copy = *this;
        copy.words = table;
        copy.wordCount = Count;
        return copy;
    }
    constexpr MultiRecordRow as(Kind newKind) const
    {
        MultiRecordRow copy = *this;
        copy.kind = newKind;
        return copy;
    }

    const char* name;
    unsigned int offset;
    unsigned int width;
    unsigned int high;
    unsigned int low;
    Kind kind = Kind::NUMBER;
    const char* unit = "";
    unsigned int divisor = 1;
    unsigned int factor = 1;
    bool hasNone = false;
    unsigned int noneNumber = 0;
    const MultiRecordWord* words = nullptr;
    std::size_t wordCount = 0;
};

constexpr MultiRecordRow number(const char* name, unsigned int offset, unsigned int width = 1)
{
    return {name, offset, width, 8 * width - 1, 0};
}
constexpr MultiRecordRow flag(const char* name, unsigned int offset, unsigned int bit)
{
    return number(name, offset).bits(bit, bit).as(MultiRecordRow::Kind::FLAG);
}
constexpr MultiRecordRow bytesOf(const char* name, unsigned int offset, unsigned int width)
{
    return number(name, offset, width).as(MultiRecordRow::Kind::HEX);
}

}

#endif
