// SPDX-License-Identifier: Apache-2.0
#include "FieldListing.h"

namespace recordkit::tool {

namespace {

using inspect::DecodedField;

struct ToValue {
    Value operator()(std::monostate) const { return {}; }
    Value operator()(const std::vector<long long>& numbers) const
    {
        return List(numbers.begin(), numbers.end());
    }
    template <typename Scalar> Value operator()(const Scalar& scalar) const { return scalar; }
};

constexpr Column<DecodedField> COLUMNS[] = {
    {"name", "FIELD", 24, [](const DecodedField& f) { return Value(f.name); }},
    {nullptr, "BYTES", 12, nullptr, [](const DecodedField& f) { return Cell{f.place.text()}; }},
    {"value", "VALUE", 20, [](const DecodedField& f) { return std::visit(ToValue(), f.value); }},
    {"meaning", "MEANING", 0, [](const DecodedField& f) { return Value(f.meaning); }},
    {"offset", nullptr, 0, [](const DecodedField& f) { return Value(f.place.offset); }},
    {"width", nullptr, 0, [](const DecodedField& f) { return Value(f.place.width); }},
    {"bits", nullptr, 0, [](const DecodedField& f) { return Value(f.place.bitsText()); }},
};

}

void printFields(const inspect::RecordClass& recordClass, inspect::ByteView image, Format format)
{
    printListing(inspect::decodeRecord(recordClass, image), COLUMNS, format);
}

}
