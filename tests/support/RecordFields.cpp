// SPDX-License-Identifier: Apache-2.0
#include "RecordFields.h"

#include <algorithm>

#include <recordkit/inspect/fru/MultiRecordEdit.h>

using namespace recordkit::inspect;

namespace testing_support {

namespace {

bool isCount(const std::string& name)
{
    const std::string suffix = "-count";
    return name.size() > suffix.size() &&
           name.compare(name.size() - suffix.size(), suffix.size(), suffix) == 0;
}

std::size_t fieldsOf(const FruRecordContent& record)
{
    const MultiRecord all = decoded(record);
    return static_cast<std::size_t>(
        std::count_if(all.fields.begin(), all.fields.end(),
                      [](const MultiRecordField& field) { return field.row.has_value(); }));
}

/// The record with one element in each list that has a count.
FruRecordContent counted(FruRecordContent record)
{
    for (bool isChanged = true; isChanged;) {
        isChanged = false;
        for (const MultiRecordField& field : decoded(record).fields) {
            if (isCount(field.name) && field.text == "0") {
                setRecordField("record", record, field.name, "1", RecordSize::EXTENDED);
                isChanged = true;
            }
        }
    }
    return record;
}

/// With an element in a list up to its end, if it has one.
FruRecordContent listed(const FruRecordContent& record)
{
    FruRecordContent longer = record;
    longer.data += '\0';
    while (const unsigned int missing = decoded(longer).missing) {
        longer.data.resize(missing, '\0');
    }
    return !decoded(record).rest && fieldsOf(longer) > fieldsOf(record) ? counted(longer) : record;
}

}

MultiRecord decoded(const FruRecordContent& record)
{
    return decodeMultiRecords({{record.type, 0, record.data}}).front();
}

std::vector<FruRecordContent> fullRecords(const std::string& kind)
{
    // What chooses the fields of these kinds.
    const auto variants = [&kind]() -> std::vector<std::vector<FruRecordValue>> {
        if (kind == "management-access") {
            std::vector<std::vector<FruRecordValue>> all;
            for (long long type = 1; type <= 7; ++type) {
                all.push_back({{"type", type}});
            }
            return all;
        }
        if (kind == "fmc") {
            return {{{"version", 0LL}}, {{"version", 1LL}}};
        }
        return {{}};
    };
    std::vector<FruRecordContent> all;
    for (const auto& values : variants()) {
        all.push_back(listed(counted(newRecord("record", kind, values))));
    }
    return all;
}

std::string fieldPattern(const MultiRecord& record, const std::string& name)
{
    std::string pattern;
    std::string path;
    for (std::size_t at = 0; at <= name.size();) {
        const std::size_t dot = std::min(name.find('.', at), name.size());
        const std::string part = name.substr(at, dot - at);
        const std::string word = part.substr(0, part.find_last_not_of("0123456789") + 1);
        const bool isElement =
            dot < name.size() || record.findField(path + word + "-count") != nullptr;
        pattern += (at == 0 ? "" : ".") + (isElement ? word + "#" : part);
        path += part + ".";
        at = dot + 1;
    }
    return pattern;
}

}
