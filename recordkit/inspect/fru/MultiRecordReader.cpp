// SPDX-License-Identifier: Apache-2.0
#include <recordkit/inspect/fru/MultiRecordReader.h>

#include <algorithm>
#include <fmt/format.h>

#include <recordkit/inspect/bytes/Hex.h>
#include <recordkit/inspect/bytes/Text.h>
#include <recordkit/inspect/words/Entities.h>

namespace recordkit::inspect {

namespace {

using Kind = MultiRecordRow::Kind;

unsigned long long numberIn(ByteView bytes)
{
    unsigned long long value = 0;
    for (std::size_t i = bytes.size(); i > 0; --i) {
        value = value << 8 | bytes[i - 1];
    }
    return value;
}

/// "00112233-4455-6677-8899-AABBCCDDEEFF".
std::string guidText(ByteView bytes)
{
    const auto turned = [&bytes](std::size_t from, std::size_t size) {
        Bytes part = bytes.part(from, size).copy();
        std::reverse(part.begin(), part.end());
        return toHex(part);
    };
    return turned(0, 4) + "-" + turned(4, 2) + "-" + turned(6, 2) + "-" + toHex(bytes.part(8, 2)) +
           "-" + toHex(bytes.part(10));
}

const char* wordFor(const MultiRecordRow& row, long long value)
{
    for (std::size_t i = 0; i < row.wordCount; ++i) {
        if (row.words[i].value == value) {
            return row.words[i].text;
        }
    }
    return nullptr;
}

/// Digits after the point: 1 for halves and tenths, 2 for hundredths.
int decimalsOf(unsigned int divisor)
{
    return divisor == 1 ? 0 : divisor <= 10 ? 1 : 2;
}

void setNumber(MultiRecordField& field, const MultiRecordRow& row, unsigned long long raw)
{
    const unsigned int bits = row.high - row.low + 1;
    auto value = static_cast<long long>(raw);
    if (row.kind == Kind::SIGNED && ((raw >> (bits - 1)) & 1) != 0) {
        value -= 1LL << bits;
    }
    value *= row.factor;
    if (row.divisor == 1) {
        const char* const word = wordFor(row, value);
        field.value = value;
        field.text = word != nullptr ? word : std::to_string(value);
        return;
    }
    const double fraction = static_cast<double>(value) / row.divisor;
    field.value = fraction;
    field.text = fmt::format("{:.{}f}", fraction, decimalsOf(row.divisor));
}

void setText(MultiRecordField& field, const std::string& text)
{
    field.value = text;
    field.text = text;
}

void setValue(MultiRecordField& field, const MultiRecordRow& row, ByteView bytes)
{
    const unsigned int bits = row.high - row.low + 1;
    const unsigned long long raw =
        row.width > 8 ? 0 : (numberIn(bytes) >> row.low) & (bits < 64 ? (1ULL << bits) - 1 : ~0ULL);
    if (row.hasNone && raw == row.noneNumber) {
        field.text = "unspecified";
        return;
    }
    switch (row.kind) {
    case Kind::FLAG:
        field.value = raw != 0;
        field.text = raw != 0 ? "yes" : "no";
        return;
    case Kind::HEX:
        return setText(field, toHex(bytes));
    case Kind::ADDRESS:
        return setText(field, fmt::format("{}.{}.{}.{}", bytes[0], bytes[1], bytes[2], bytes[3]));
    case Kind::GUID:
        return setText(field, guidText(bytes));
    case Kind::ENTITY:
        field.value = static_cast<long long>(raw);
        field.text = entityName(static_cast<unsigned char>(raw));
        return;
    default:
        return setNumber(field, row, raw);
    }
}

}

MultiRecordReader::MultiRecordReader(const MultiRecordData& data)
    : record(data), covered(data.bytes.size(), 0)
{
}

unsigned int MultiRecordReader::peek(unsigned int offset, unsigned int width) const
{
    const ByteView bytes = record.bytes.part(position + offset, width);
    return bytes.size() == width ? static_cast<unsigned int>(numberIn(bytes)) : 0;
}

void MultiRecordReader::need(unsigned int bytes)
{
    if (!isCut) {
        needed = std::max(needed, position + bytes);
    }
}

void MultiRecordReader::readField(const MultiRecordRow& row)
{
    const unsigned int at = position + row.offset;
    if (!record.bytes.contains(at, row.width)) {
        return;
    }
    MultiRecordField field;
    // An element of one field is called by its number.
    field.name = row.name[0] == '\0' ? prefix.substr(0, prefix.size() - 1) : prefix + row.name;
    field.offset = record.offset + at;
    field.width = row.width;
    field.high = row.high;
    field.low = row.low;
    field.unit = row.unit;
    field.row = row;
    field.row->name = ""; // a list's is not kept
    field.row->offset = 0;
    setValue(field, row, record.bytes.part(at, row.width));
    for (unsigned int bit = row.low; bit <= row.high; ++bit) {
        unsigned char& mask = covered[at + bit / 8];
        mask = static_cast<unsigned char>(mask | 1U << bit % 8);
    }
    decoded.fields.push_back(field);
}

void MultiRecordReader::read(MultiRecordRows rows)
{
    need(rows.size());
    for (const MultiRecordRow& row : rows) {
        readField(row);
    }
    isCut = !record.bytes.contains(position, rows.size());
    position = isCut ? static_cast<unsigned int>(record.bytes.size()) : position + rows.size();
}

unsigned int MultiRecordReader::readCount(const std::string& list)
{
    const unsigned int count = peek(0);
    const std::string name = list + "-count";
    const MultiRecordRow rows[] = {number(name.c_str(), 0)};
    read(rows);
    return count;
}

void MultiRecordReader::addRest(const char* name, Kind kind, const std::string& text)
{
    MultiRecordField field;
    field.name = prefix + name;
    field.offset = record.offset + position;
    field.width = static_cast<unsigned int>(record.bytes.size()) - position;
    field.high = 8 * field.width - 1;
    field.row = bytesOf("", 0, field.width).as(kind);
    setText(field, text);
    decoded.rest = field;
    if (isAtEnd()) {
        return;
    }
    std::fill(covered.begin() + position, covered.end(), static_cast<unsigned char>(0xFF));
    position += field.width;
    decoded.fields.push_back(field);
}

void MultiRecordReader::readBytes(const char* name)
{
    addRest(name, Kind::HEX, toHex(record.bytes.part(position)));
}

void MultiRecordReader::readText(const char* name)
{
    const std::string text = toUtf8(record.bytes.part(position));
    addRest(name, Kind::TEXT, text.substr(0, text.find('\0')));
}

void MultiRecordReader::readSixBit(const char* name)
{
    addRest(name, Kind::SIX_BIT, decodeSixBit(record.bytes.part(position)));
}

/// Whole bytes, or the bits of one byte that no field covers.
void MultiRecordReader::addUncovered(unsigned int at, unsigned int width)
{
    MultiRecordField field;
    field.name = fmt::format("byte{}", at);
    field.offset = record.offset + at;
    field.width = width;
    field.high = 8 * width - 1;
    Bytes bytes = record.bytes.part(at, width).copy();
    if (width == 1) {
        const unsigned int mask = covered[at];
        bytes[0] = static_cast<unsigned char>(bytes[0] & ~mask);
        while ((mask >> field.high & 1) != 0) {
            --field.high;
        }
        while ((mask >> field.low & 1) != 0) {
            ++field.low;
        }
    }
    setText(field, toHex(bytes));
    decoded.fields.push_back(field);
}

MultiRecord MultiRecordReader::finish()
{
    const auto size = static_cast<unsigned int>(covered.size());
    for (unsigned int at = 0; at < size;) {
        unsigned int end = at;
        while (end < size && covered[end] == 0) {
            ++end;
        }
        if (end > at) {
            addUncovered(at, end - at);
            at = end;
            continue;
        }
        if ((record.bytes[at] & ~covered[at]) != 0) {
            addUncovered(at, 1);
        }
        ++at;
    }
    std::stable_sort(decoded.fields.begin(), decoded.fields.end(),
                     [](const auto& a, const auto& b) {
                         return a.offset != b.offset ? a.offset < b.offset : a.low < b.low;
                     });
    decoded.missing = needed > size ? needed : 0;
    return decoded;
}

MultiRecordStart startOf(unsigned char type, unsigned int manufacturer, const Bytes& more)
{
    MultiRecordStart start = {type};
    for (const unsigned int shift : {0U, 8U, 16U}) {
        start.data.push_back(static_cast<unsigned char>(manufacturer >> shift & 0xFF));
    }
    start.data.insert(start.data.end(), more.begin(), more.end());
    return start;
}

}
