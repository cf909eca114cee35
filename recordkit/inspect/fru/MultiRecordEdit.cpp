// SPDX-License-Identifier: Apache-2.0
#include <recordkit/inspect/fru/MultiRecordEdit.h>

#include <algorithm>
#include <fmt/format.h>

#include <recordkit/inspect/bytes/Error.h>
#include <recordkit/inspect/bytes/Hex.h>
#include <recordkit/inspect/bytes/Numbers.h>
#include <recordkit/inspect/bytes/Text.h>
#include <recordkit/inspect/fru/MultiRecordReader.h>
#include <recordkit/inspect/words/Entities.h>

namespace recordkit::inspect {

namespace {

using Kind = MultiRecordRow::Kind;

constexpr std::size_t MAX_RECORD = 0xFF;
constexpr unsigned int DATA_ALONE = 0; ///< offset of the data among itself

MultiRecord decode(const FruRecordContent& record)
{
    return decodeMultiRecords({{record.type, DATA_ALONE, record.data}}).front();
}

/// The numbers that a row's bits can be.
struct Range {
    long long least;
    long long most;
};

Range rangeOf(const MultiRecordRow& row)
{
    const unsigned int bits = row.high - row.low + 1;
    if (row.kind == Kind::SIGNED) {
        return {-(1LL << (bits - 1)), (1LL << (bits - 1)) - 1};
    }
    return {0, (1LL << bits) - 1};
}

/// A number of a row as people write it.
std::string written(const MultiRecordRow& row, long long number)
{
    const auto whole = number * static_cast<long long>(row.factor);
    return row.divisor == 1
               ? std::to_string(whole)
               : fmt::format("{:g}", static_cast<double>(whole) / static_cast<double>(row.divisor));
}

std::string expectedNumber(const MultiRecordRow& row)
{
    const Range range = rangeOf(row);
    std::string text =
        fmt::format("expected {} to {}", written(row, range.least), written(row, range.most));
    if (row.unit[0] != '\0') {
        text += fmt::format(" {}", row.unit);
    }
    if (row.factor != 1 || row.divisor != 1) {
        text += fmt::format(" in steps of {}", written(row, 1));
    }
    for (std::size_t i = 0; i < row.wordCount; ++i) {
        text += fmt::format(", \"{}\"", row.words[i].text);
    }
    if (row.kind == Kind::ENTITY) {
        text += ", an entity's name";
    }
    return row.hasNone ? text + ", \"unspecified\"" : text;
}

/// "-12.5" times `scale`; nothing if it is not a number, or the product not a whole one.
std::optional<long long> scaled(const std::string& text, long long scale)
{
    constexpr std::size_t MOST_DIGITS = 10;
    const bool isNegative = text[0] == '-';
    const std::string digits = text.substr(isNegative ? 1 : 0);
    const std::size_t point = digits.find('.');
    const std::string whole = digits.substr(0, point);
    std::string fraction = point == std::string::npos ? "" : digits.substr(point + 1);
    const std::string all = whole + fraction;
    if (whole.empty() || all.size() > MOST_DIGITS ||
        (point != std::string::npos && fraction.empty()) ||
        all.find_first_not_of("0123456789") != std::string::npos) {
        return std::nullopt;
    }
    long long product = std::stoll(all) * scale;
    for (std::size_t i = 0; i < fraction.size(); ++i) {
        if (product % 10 != 0) {
            return std::nullopt;
        }
        product /= 10;
    }
    return isNegative ? -product : product;
}

/// The number for a row's bits; nothing for a value that they cannot have.
std::optional<long long> parseForRow(const MultiRecordRow& row, std::string value)
{
    if (row.hasNone && value == "unspecified") {
        return row.noneNumber;
    }
    for (std::size_t i = 0; i < row.wordCount; ++i) {
        if (value == row.words[i].text) {
            return row.words[i].value;
        }
    }
    const std::string unit = row.unit;
    if (!unit.empty() && value.size() > unit.size() &&
        value.compare(value.size() - unit.size(), unit.size(), unit) == 0) {
        value.erase(value.find_last_not_of(' ', value.size() - unit.size() - 1) + 1);
    }
    std::optional<long long> number = scaled(value, row.divisor);
    if (!number && row.divisor == 1 && row.factor == 1) {
        const auto hexadecimal = parseNumber(value, 0xFFFFFFFF);
        number = hexadecimal ? std::optional<long long>(*hexadecimal) : std::nullopt;
    }
    const Range range = rangeOf(row);
    if (!number || *number % row.factor != 0 || *number / row.factor < range.least ||
        *number / row.factor > range.most) {
        return std::nullopt;
    }
    return *number / row.factor;
}

std::optional<long long> parseEntity(const std::string& value)
{
    for (unsigned int id = 0; id <= 0xFF; ++id) {
        if (entityName(static_cast<unsigned char>(id)) == value) {
            return id;
        }
    }
    return std::nullopt;
}

std::optional<long long> parseFlag(const std::string& value)
{
    if (value == "yes" || value == "true" || value == "1") {
        return 1;
    }
    return value == "no" || value == "false" || value == "0" ? std::optional<long long>(0)
                                                             : std::nullopt;
}

std::optional<std::string> parseAddress(const std::string& value)
{
    std::string bytes;
    std::size_t from = 0;
    for (int i = 0; i < 4; ++i) {
        const std::size_t dot = i < 3 ? value.find('.', from) : value.size();
        const auto number = dot == std::string::npos
                                ? std::nullopt
                                : parseNumber(value.substr(from, dot - from), 0xFF);
        if (!number) {
            return std::nullopt;
        }
        bytes += static_cast<char>(*number);
        from = dot + 1;
    }
    return bytes;
}

std::optional<std::string> parseHex(const std::string& value)
{
    Bytes bytes;
    return parseHexDigits(value, bytes) == std::string::npos
               ? std::optional<std::string>({bytes.begin(), bytes.end()})
               : std::nullopt;
}

std::optional<std::string> parseGuid(const std::string& value)
{
    constexpr const char* FORM = "00000000-0000-0000-0000-000000000000";
    std::string digits;
    for (std::size_t i = 0; i < value.size(); ++i) {
        if (value.size() != std::char_traits<char>::length(FORM) ||
            (FORM[i] == '-') != (value[i] == '-')) {
            return std::nullopt;
        }
        digits += FORM[i] == '-' ? "" : std::string(1, value[i]);
    }
    std::optional<std::string> bytes = parseHex(digits);
    if (!bytes || bytes->size() != 16) {
        return std::nullopt;
    }
    // The first three numbers have their low byte first.
    std::reverse(bytes->begin(), bytes->begin() + 4);
    std::reverse(bytes->begin() + 4, bytes->begin() + 6);
    std::reverse(bytes->begin() + 6, bytes->begin() + 8);
    return bytes;
}

/// Bytes for a row that is not a number, and what such a row expects.
struct Bytewise {
    std::optional<std::string> bytes;
    const char* expected;
};

Bytewise parseBytewise(const MultiRecordRow& row, const std::string& value)
{
    switch (row.kind) {
    case Kind::ADDRESS:
        return {parseAddress(value), "expected an address such as 192.168.0.1"};
    case Kind::GUID:
        return {parseGuid(value), "expected a GUID, such as 00112233-4455-6677-8899-AABBCCDDEEFF"};
    case Kind::TEXT:
        return {toLatin1(value), "expected characters of Latin-1"};
    case Kind::SIX_BIT:
        return {toSixBit(value), "expected the characters 20h to 5Fh"};
    default:
        return {parseHex(value), "expected pairs of hex digits"};
    }
}

bool isNumber(const MultiRecordRow& row)
{
    return row.kind == Kind::NUMBER || row.kind == Kind::SIGNED || row.kind == Kind::FLAG ||
           row.kind == Kind::ENTITY;
}

/// Puts a number into the bits of a row, whose bytes begin at an offset.
void putBits(std::string& data, std::size_t offset, const MultiRecordRow& row, long long number)
{
    for (unsigned int bit = row.low; bit <= row.high; ++bit) {
        const auto byte = static_cast<unsigned char>(data[offset + bit / 8]);
        const unsigned int mask = 1U << bit % 8;
        const bool isOne = (static_cast<unsigned long long>(number) >> (bit - row.low) & 1) != 0;
        data[offset + bit / 8] = static_cast<char>(isOne ? byte | mask : byte & ~mask);
    }
}

/// The record's data with another value of the field.
std::string withValue(const std::string& data, const MultiRecordField& field, bool isRest,
                      const std::string& name, const std::string& value)
{
    const MultiRecordRow& row = *field.row;
    const auto refused = [&](const std::string& expected) {
        return DataError(fmt::format("{}: \"{}\", {}", name, printable(value), expected));
    };
    std::string result = data;
    if (isNumber(row)) {
        std::optional<long long> number =
            row.kind == Kind::FLAG ? parseFlag(value) : parseForRow(row, value);
        if (!number && row.kind == Kind::ENTITY) {
            number = parseEntity(value);
        }
        putBits(result, field.offset, row,
                orThrow(number, refused(row.kind == Kind::FLAG ? "expected \"yes\" or \"no\""
                                                               : expectedNumber(row))));
        return result;
    }
    const Bytewise parsed = parseBytewise(row, value);
    std::string bytes = orThrow(parsed.bytes, refused(parsed.expected));
    const std::string old = data.substr(field.offset, field.width);
    if (row.kind == Kind::TEXT && old.find('\0') != std::string::npos &&
        bytes.find('\0') == std::string::npos) {
        bytes += '\0'; // as it ended before
    }
    if (!isRest && bytes.size() != field.width) {
        throw refused(fmt::format("expected {} bytes in hex digits", field.width));
    }
    return result.replace(field.offset, field.width, bytes);
}

/// What a kind of records begins with.
std::optional<FruRecordContent> startOfRecord(const std::string& kind)
{
    for (const auto startOfKind : {standardRecordStart, vitaRecordStart, picmgRecordStart}) {
        if (const std::optional<MultiRecordStart> start = startOfKind(kind)) {
            FruRecordContent record;
            record.type = start->type;
            record.data.assign(start->data.begin(), start->data.end());
            return record;
        }
    }
    return std::nullopt;
}

/// Adds the zero bytes that a record lacks, as long as it may have them; whether there were any.
bool complete(FruRecordContent& record)
{
    const std::size_t before = record.data.size();
    unsigned int missing = decode(record).missing;
    while (missing != 0 && missing <= MAX_RECORD) {
        record.data.resize(missing, '\0');
        missing = decode(record).missing;
    }
    if (missing != 0) {
        record.data.resize(missing, '\0'); // which is refused
    }
    return record.data.size() != before;
}

std::string expectedOf(const MultiRecordRow& row)
{
    return row.kind == Kind::FLAG ? "expected true or false"
           : isNumber(row)        ? expectedNumber(row)
                                  : parseBytewise(row, "").expected;
}

/// A value as withValue reads it; nothing for a type that the row does not have.
std::optional<std::string> textFor(const MultiRecordRow& row, const Value& value)
{
    if (const auto* const text = std::get_if<std::string>(&value)) {
        return *text;
    }
    if (!isNumber(row)) {
        return std::nullopt;
    }
    if (const auto* const flag = std::get_if<bool>(&value)) {
        return row.kind == Kind::FLAG ? std::optional<std::string>(*flag ? "yes" : "no")
                                      : std::nullopt;
    }
    if (row.kind == Kind::FLAG) {
        return std::nullopt;
    }
    if (const auto* const number = std::get_if<long long>(&value)) {
        return std::to_string(*number);
    }
    if (const auto* const number = std::get_if<double>(&value)) {
        return fmt::format("{}", *number);
    }
    return isNone(value) && row.hasNone ? std::optional<std::string>("unspecified") : std::nullopt;
}

/// A record on its way from its first bytes to all of its values. Values decide which other fields
/// exist and what they mean, so that all are set again until nothing changes.
struct RecordBuilder {
    const std::string& name;
    const std::vector<FruRecordValue>& values;
    FruRecordContent record;
    std::optional<DataError> refusal = {}; ///< the first one of the last round
    bool lacksField = false;

    void build()
    {
        constexpr int MOST_ROUNDS = 2000;
        for (int i = 0; i < MOST_ROUNDS; ++i) {
            const bool isChanged = setAll();
            const bool isLonger = complete(record);
            checkSize();
            if (isChanged || isLonger) {
                continue;
            }
            if (!refusal) {
                return;
            }
            if (!lacksField || !addElement()) {
                throw *refusal;
            }
        }
        throw DataError(fmt::format("{}: its values contradict each other", name));
    }

private:
    void checkSize() const
    {
        if (record.data.size() > MAX_RECORD) {
            throw DataError(fmt::format("{}: the record would have {} bytes, it can have {}", name,
                                        record.data.size(), MAX_RECORD));
        }
    }

    /// Sets each field that the record has; whether anything changed.
    bool setAll()
    {
        const MultiRecord decoded = decode(record);
        const std::string before = record.data;
        refusal.reset();
        lacksField = false;
        for (const FruRecordValue& each : values) {
            try {
                set(decoded, each);
            } catch (const DataError& e) {
                refusal = refusal ? refusal : e;
            }
        }
        return record.data != before;
    }

    void set(const MultiRecord& decoded, const FruRecordValue& each)
    {
        const std::string fullName = name + "." + each.field;
        const bool isRest = decoded.rest && decoded.rest->name == each.field;
        const MultiRecordField* const field =
            isRest ? &*decoded.rest : decoded.findField(each.field);
        if (field == nullptr || !field->row) {
            lacksField = true;
            throw DataError(fmt::format("{}: the record has no such field", fullName));
        }
        const std::string text = orThrow(textFor(*field->row, each.value),
                                         DataError(fmt::format("{}: a value of another type, {}",
                                                               fullName, expectedOf(*field->row))));
        record.data = withValue(record.data, *field, isRest, fullName, text);
    }

    /// Adds an element to a list up to the end of the record; false if none of the missing fields
    /// would be in it.
    bool addElement()
    {
        const MultiRecord before = decode(record);
        FruRecordContent longer = record;
        longer.data += '\0';
        complete(longer);
        const MultiRecord after = decode(longer);
        const bool isElement =
            longer.data.size() <= MAX_RECORD &&
            std::any_of(values.begin(), values.end(), [&](const FruRecordValue& each) {
                const MultiRecordField* const field = after.findField(each.field);
                return before.findField(each.field) == nullptr && field != nullptr && field->row;
            });
        if (isElement) {
            record = longer;
        }
        return isElement;
    }
};

}

void setRecordField(const std::string& name, FruRecordContent& record, const std::string& field,
                    const std::string& value, RecordSize size)
{
    const MultiRecord before = decode(record);
    const bool isRest = before.rest && before.rest->name == field;
    const MultiRecordField* const found = isRest ? &*before.rest : before.findField(field);
    const std::string fullName = name + "." + field;
    if (found == nullptr || !found->row) {
        throw DataError(fmt::format("{}: the record has no such field", fullName));
    }
    FruRecordContent edited = record;
    edited.data = withValue(record.data, *found, isRest, fullName, value);
    if (size == RecordSize::EXTENDED) {
        complete(edited);
    }
    const unsigned int missing = decode(edited).missing;
    if (missing > before.missing) {
        throw DataError(fmt::format("{}: the record has {}, with \"{}\" it needs {}", fullName,
                                    counted(record.data.size(), "byte"), printable(value),
                                    missing));
    }
    if (edited.data.size() > MAX_RECORD) {
        throw DataError(fmt::format("{}: the record would have {} bytes, it can have {}", fullName,
                                    edited.data.size(), MAX_RECORD));
    }
    record = edited;
}

std::optional<FruRecordContent> newRecord(const std::string& kind)
{
    std::optional<FruRecordContent> record = startOfRecord(kind);
    if (record) {
        complete(*record);
    }
    return record;
}

std::vector<std::string> multiRecordKinds()
{
    std::vector<std::string> all;
    for (const auto kindsOf : {standardRecordKinds, vitaRecordKinds, picmgRecordKinds}) {
        for (const std::string& kind : kindsOf()) {
            if (std::find(all.begin(), all.end(), kind) == all.end()) {
                all.push_back(kind);
            }
        }
    }
    return all;
}

FruRecordContent newRecord(const std::string& name, const std::string& kind,
                           const std::vector<FruRecordValue>& values)
{
    RecordBuilder builder = {
        name, values,
        orThrow(startOfRecord(kind),
                DataError(fmt::format("{}: \"{}\" is not a kind of records with fields", name,
                                      printable(kind))))};
    builder.build();
    if (kindOf(decode(builder.record)) != kind) {
        throw DataError(
            fmt::format("{}: with these values it is not a record of the kind {}", name, kind));
    }
    return builder.record;
}

}
