// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_INSPECT_FRU_MULTIRECORDREADER_H
#define RECORDKIT_INSPECT_FRU_MULTIRECORDREADER_H

#include <cstddef>
#include <string>

#include <recordkit/inspect/fru/MultiRecords.h>

namespace recordkit::inspect {

/// A value that has a name.
struct MultiRecordWord {
    unsigned int value;
    const char* text;
};

/// A row of a record's table. Its place counts from the first byte of its group.
struct MultiRecordRow {
    enum class Kind { NUMBER, SIGNED, FLAG, HEX, ADDRESS, GUID, ENTITY };

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

/// The rows of a group; its size is where the last of them ends.
class MultiRecordRows {
public:
    template <std::size_t Count> constexpr MultiRecordRows(const MultiRecordRow (&table)[Count])
        : rows(table), count(Count)
    {
        for (const MultiRecordRow& row : table) {
            length = row.offset + row.width > length ? row.offset + row.width : length;
        }
    }

    constexpr const MultiRecordRow* begin() const { return rows; }
    constexpr const MultiRecordRow* end() const { return rows + count; }
    constexpr unsigned int size() const { return length; }

private:
    const MultiRecordRow* rows;
    std::size_t count;
    unsigned int length = 0;
};

/// Takes the data of one record apart, from its first byte on.
class MultiRecordReader {
public:
    explicit MultiRecordReader(const MultiRecordData& data);

    unsigned char type() const { return record.type; }
    /// A number ahead of what was read; 0 if the record ends before it.
    unsigned int peek(unsigned int offset, unsigned int width = 1) const;
    /// A byte of the whole data; 0 if the record ends before it.
    unsigned int first(unsigned int offset) const
    {
        return offset < record.bytes.size() ? record.bytes[offset] : 0;
    }
    bool isAtEnd() const { return position >= record.bytes.size(); }
    /// Whether there is a byte ahead of what was read.
    bool has(unsigned int offset) const { return record.bytes.contains(position, offset + 1); }

    /// The kind of record, which names it.
    void call(const char* kind) { decoded.name = kind; }
    /// So many bytes are ahead of what was read, if the record is complete.
    void need(unsigned int bytes);
    /// The fields of a group, as far as the record has them.
    void read(MultiRecordRows rows);
    /// One more field of the group that is read next; nothing if the record ends before it.
    void readField(const MultiRecordRow& row);
    /// One byte, the number of elements of a list.
    unsigned int readCount(const std::string& list);
    /// Elements of at least some bytes each.
    template <typename Each>
    void readList(const std::string& list, unsigned int count, unsigned int least, const Each& each)
    {
        need(count * least);
        for (unsigned int i = 1; i <= count && !isAtEnd(); ++i) {
            readElement(list, i, each);
        }
    }
    /// Elements up to the end of the record.
    template <typename Each> void readAll(const std::string& list, const Each& each)
    {
        for (unsigned int i = 1; !isAtEnd(); ++i) {
            readElement(list, i, each);
        }
    }
    /// All bytes up to the end of the record, in hex; no field if there are none.
    void readBytes(const char* name);
    /// The same as Latin-1 text up to a zero byte.
    void readText(const char* name);
    /// The same as 6-bit text.
    void readSixBit(const char* name);

    /// The record, with what no field covers.
    MultiRecord finish();

private:
    template <typename Each>
    void readElement(const std::string& list, unsigned int index, const Each& each)
    {
        const std::string outer = prefix;
        prefix += list + std::to_string(index) + ".";
        each();
        prefix = outer;
    }
    void addRest(const char* name, const std::string& text);
    void addUncovered(unsigned int at, unsigned int width);

    MultiRecordData record;
    MultiRecord decoded;
    Bytes covered; ///< a mask for each byte
    std::string prefix;
    unsigned int position = 0;
    unsigned int needed = 0;
    bool isCut = false; ///< in the group that was read last, so that it ends anywhere
};

/// Each reads a record of its own, and returns false for any other.
bool readStandardRecord(MultiRecordReader& reader);
bool readVitaRecord(MultiRecordReader& reader);
bool readPicmgRecord(MultiRecordReader& reader);

}

#endif
