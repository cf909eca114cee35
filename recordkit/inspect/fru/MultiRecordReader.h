// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_INSPECT_FRU_MULTIRECORDREADER_H
#define RECORDKIT_INSPECT_FRU_MULTIRECORDREADER_H

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include <recordkit/inspect/fru/MultiRecordRow.h>
#include <recordkit/inspect/fru/MultiRecords.h>

namespace recordkit::inspect {

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
    void addRest(const char* name, MultiRecordRow::Kind kind, const std::string& text);
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

/// What makes a record one of its kind.
struct MultiRecordStart {
    unsigned char type = 0;
    Bytes data = {};
};

/// That of a manufacturer's record: the manufacturer's number, then more bytes.
MultiRecordStart startOf(unsigned char type, unsigned int manufacturer, const Bytes& more);

/// The start of each kind of record, by its name; nothing for a kind of somebody else.
std::optional<MultiRecordStart> standardRecordStart(const std::string& kind);
std::optional<MultiRecordStart> vitaRecordStart(const std::string& kind);
std::optional<MultiRecordStart> picmgRecordStart(const std::string& kind);

/// The kinds with such a start; one with several versions has a name for each.
std::vector<std::string> standardRecordKinds();
std::vector<std::string> vitaRecordKinds();
std::vector<std::string> picmgRecordKinds();

}

#endif
