// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_TESTS_SUPPORT_FRUSNAPSHOT_H
#define RECORDKIT_TESTS_SUPPORT_FRUSNAPSHOT_H

#include <map>
#include <string>
#include <utility>
#include <vector>

#include <recordkit/inspect/fru/FruImage.h>

namespace testing_support {

/// What an edit of a FRU image must conserve: every field with its type/length byte, every record,
/// the internal use area, and the bytes that belong to nothing.
struct FruSnapshot {
    using Fields = std::vector<std::pair<std::string, std::string>>;

    std::map<std::string, Fields> areas;
    std::vector<std::pair<std::string, std::string>> records; ///< kind; type, format and data
    std::string internalUse;                                  ///< without blank bytes at its end
    std::map<std::size_t, char> others; ///< bytes outside all areas that are not blank, by offset
    std::size_t problems = 0;

    explicit FruSnapshot(const std::string& bytes)
    {
        using namespace recordkit::inspect;
        const FruImage image = parseFruImage(bytes);
        problems = image.allProblems().size();
        for (const FruAreaImage& area : image.areas) {
            Fields& fields = areas[area.extent.name];
            for (const FruField& field : area.fields) {
                fields.emplace_back(field.name, static_cast<char>(field.typeLength) + field.bytes);
            }
        }
        for (const FruMultiRecord& record : image.records) {
            records.emplace_back(kindOf(record.content),
                                 static_cast<char>(record.type) + record.bytes);
        }
        for (const FruInternalUse& internal : image.internalUse) {
            internalUse = internal.bytes;
            while (!internalUse.empty() && isBlank(internalUse.substr(internalUse.size() - 1))) {
                internalUse.pop_back();
            }
        }
        for (const FruExtent& extent : image.map(bytes)) {
            for (std::size_t at = extent.offset; at < extent.end(); ++at) {
                if (extent.name == OTHER_BYTES && !isBlank(bytes.substr(at, 1))) {
                    others[at] = bytes[at];
                }
            }
        }
    }

    /// The field's bytes with their type/length byte; nullptr if it is missing.
    std::string* find(const std::string& area, const std::string& field)
    {
        for (auto& each : areas[area]) {
            if (each.first == field) {
                return &each.second;
            }
        }
        return nullptr;
    }

    /// In which part this differs from what is expected; empty if nowhere.
    std::string differenceFrom(const FruSnapshot& expected) const
    {
        if (areas != expected.areas) {
            return "fields";
        }
        if (records != expected.records) {
            return "records";
        }
        if (internalUse != expected.internalUse) {
            return "internal use";
        }
        return others != expected.others ? "bytes outside all areas" : "";
    }
};

}

#endif
