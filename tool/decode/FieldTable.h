// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_TOOL_DECODE_FIELDTABLE_H
#define RECORDKIT_TOOL_DECODE_FIELDTABLE_H

#include <fmt/format.h>
#include <recordkit/platform/PException.h>
#include <recordkit/serial/PaddedImage.h>

#include "../Errors.h"
#include "RecordClass.h"

namespace recordkit::tool {

/// The meaning of a value; nullptr for fields that need no explanation.
using Meaning = std::string (*)(const Json& value);

/// A row of a class's table: appends one field, or those of a list.
template <typename Record> using Row = std::function<void(Record&, DecodedFields&)>;
template <typename Record> using Rows = std::vector<Row<Record>>;

inline Json toValue(bool value)
{
    return value;
}

inline Json toValue(int value)
{
    return value;
}

inline Json toValue(unsigned int value)
{
    return value;
}

/// Texts of records are Latin-1.
inline Json toValue(const std::string& value)
{
    return toUtf8(value);
}

inline Json toValue(const Json& value)
{
    return value;
}

/// A field that `get` reads: a member function of the record, or a function of it.
template <typename Record, typename Get>
Row<Record> field(const std::string& name, Place place, Get get, Meaning meaning = nullptr)
{
    return [=](Record& record, DecodedFields& fields) {
        DecodedField decoded = {name, place, nullptr, ""};
        try {
            decoded.value = toValue(std::invoke(get, record));
            decoded.meaning = meaning == nullptr ? "" : meaning(decoded.value);
        } catch (const TAVLib::PException&) {
            decoded.meaning = "not in this record";
        }
        fields.push_back(decoded);
    };
}

/// The rows of `first`, followed by those of `rows`.
template <typename Record> Rows<Record> operator+(Rows<Record> first, const Rows<Record>& rows)
{
    first.insert(first.end(), rows.begin(), rows.end());
    return first;
}

/// A class of the library, described by its table.
template <typename Record> RecordClass describe(const char* name, const char* sizes,
                                                const char* description, const Rows<Record>& rows)
{
    const auto refused = [=](const Image& image) {
        return dataError(
            fmt::format("{} bytes are no image of {}, expected {}", image.size(), name, sizes));
    };
    RecordClass recordClass = {name, sizes, description, nullptr, nullptr};
    recordClass.create = [] { return std::make_unique<Record>(); };
    recordClass.decode = [=](const Image& image) {
        Record record;
        try {
            if (!TAVLib::setSerializedPadded(record, image)) {
                throw refused(image);
            }
        } catch (const TAVLib::PException&) {
            throw refused(image);
        }
        DecodedFields fields;
        for (const Row<Record>& row : rows) {
            row(record, fields);
        }
        return fields;
    };
    return recordClass;
}

// Meanings that several classes share.
std::string hexMeaning(const Json& value);
std::string sensorTypeMeaning(const Json& value);
std::string eventTypeMeaning(const Json& value);

// The tables, a file for each subsystem.
std::vector<RecordClass> serialClasses();
std::vector<RecordClass> hardwareClasses();
std::vector<RecordClass> versionClasses();
std::vector<RecordClass> selClasses();
std::vector<RecordClass> sensorClasses();
std::vector<RecordClass> fruClasses();

}

#endif
