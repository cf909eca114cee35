// SPDX-License-Identifier: Apache-2.0
#include "FieldListing.h"

#include <strings.h>

#include <recordkit/inspect/fru/FruFields.h>

#include "../Answers.h"

namespace recordkit::tool {

namespace {

using inspect::DecodedField;
using inspect::Place;
using inspect::RecordClass;

Object placeObject(const Place& place)
{
    return {{"offset", place.offset}, {"width", place.width}, {"bits", place.bitsText()}};
}

/// A field in a listing of several records.
struct FieldOfRecord {
    unsigned int record;
    const DecodedField* field;
};

const DecodedField& fieldOf(const DecodedField& field)
{
    return field;
}
const DecodedField& fieldOf(const FieldOfRecord& row)
{
    return *row.field;
}

// The columns of a field, whatever it is a row of.
template <typename Row> constexpr Column<Row> NAME = {
    "name", "FIELD", 24, [](const Row& row) { return Value(fieldOf(row).name); }};
// A plus for other bytes that decide the value too.
template <typename Row, std::size_t WIDTH> constexpr Column<Row> BYTES = {
    nullptr, "BYTES", WIDTH, nullptr, [](const Row& row) {
        const DecodedField& field = fieldOf(row);
        return Cell{field.place.text() + (field.also.empty() ? "" : " +")};
    }};
template <typename Row> constexpr Column<Row> VALUE = {
    "value", "VALUE", 20, [](const Row& row) { return Value(fieldOf(row).value); }};
template <typename Row> constexpr Column<Row> MEANING = {
    "meaning", "MEANING", 0, [](const Row& row) { return Value(fieldOf(row).meaning); }};
template <typename Row> constexpr Column<Row> OFFSET = {
    "offset", nullptr, 0, [](const Row& row) { return Value(fieldOf(row).place.offset); }};
template <typename Row> constexpr Column<Row> WIDTH = {
    "width", nullptr, 0, [](const Row& row) { return Value(fieldOf(row).place.width); }};
template <typename Row> constexpr Column<Row> BITS = {
    "bits", nullptr, 0, [](const Row& row) { return Value(fieldOf(row).place.bitsText()); }};
template <typename Row>
constexpr Column<Row> ALSO = {"also", nullptr, 0, [](const Row& row) {
                                  return Value(listOf(fieldOf(row).also, placeObject));
                              }};

using D = DecodedField;
constexpr Column<D> COLUMNS[] = {NAME<D>,   BYTES<D, 12>, VALUE<D>, MEANING<D>,
                                 OFFSET<D>, WIDTH<D>,     BITS<D>,  ALSO<D>};

using R = FieldOfRecord;
constexpr Column<R> RECORD_COLUMNS[] = {
    NAME<R>,
    BYTES<R, 13>,
    VALUE<R>,
    MEANING<R>,
    OFFSET<R>,
    WIDTH<R>,
    BITS<R>,
    ALSO<R>,
    {"record", nullptr, 0, [](const R& row) { return Value(row.record); }},
};

}

List fieldObjects(const inspect::DecodedFields& fields)
{
    return objectsOf(fields, COLUMNS);
}

std::vector<const RecordClass*> decodableClasses()
{
    std::vector<const RecordClass*> classes = inspect::recordClasses();
    for (const RecordClass& each : inspect::fruClasses()) {
        classes.push_back(&each);
    }
    return classes;
}

const RecordClass* findRecordClass(const std::string& name)
{
    for (const RecordClass* const each : decodableClasses()) {
        if (::strcasecmp(each->name, name.c_str()) == 0) {
            return each;
        }
    }
    return nullptr;
}

void printFields(const RecordClass& recordClass, inspect::ByteView image, const Layout& layout)
{
    printListing(inspect::decodeRecord(recordClass, image), COLUMNS, layout);
}

void printRecords(const std::vector<RecordListing>& records, const Layout& layout)
{
    std::vector<FieldOfRecord> rows;
    for (const RecordListing& record : records) {
        if (layout.format == Format::TABLE && records.size() > 1) {
            print((&record == &records.front() ? "== " : "\n== ") + terminalText(record.title) +
                  "\n");
        }
        for (const DecodedField& field : record.fields) {
            rows.push_back({record.id, &field});
        }
        if (layout.format == Format::TABLE) {
            printListing(rows, RECORD_COLUMNS, layout);
            rows.clear();
        }
    }
    if (layout.format != Format::TABLE) {
        printListing(rows, RECORD_COLUMNS, layout);
    }
}

}
