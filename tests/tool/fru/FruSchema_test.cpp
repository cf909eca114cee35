// SPDX-License-Identifier: Apache-2.0
// docs/fru.schema.json has the keys, areas, fields and records of the code.
#include <gtest/gtest.h>
#include <map>
#include <nlohmann/json.hpp>

#include <recordkit/inspect/bytes/Text.h>
#include <recordkit/inspect/fru/FruNames.h>
#include <recordkit/inspect/fru/MultiRecordEdit.h>

#include "support/RecordFields.h"
#include "support/ScratchRoot.h"
#include "tool/fru/FruJson.h"

using namespace testing_support;
using namespace recordkit::inspect;
using Json = nlohmann::ordered_json;
using Row = MultiRecordRow;

namespace {

Json schema()
{
    const auto bytes = readFile(RECORDKIT_SOURCE "/docs/fru.schema.json");
    return Json::parse(bytes.begin(), bytes.end());
}

std::vector<std::string> keysOf(const Json& object)
{
    std::vector<std::string> keys;
    for (const auto& member : object.items()) {
        keys.push_back(member.key());
    }
    return keys;
}

/// The keys that fruFromJson says that it expects.
std::vector<std::string> expectedKeys(const recordkit::tool::Value& json)
{
    std::vector<std::string> keys;
    try {
        recordkit::tool::fruFromJson(json, 0);
    } catch (const DataError& e) {
        const std::string text = e.what();
        const std::string before = "expected one of ";
        for (std::size_t at = text.find(before) + before.size(); at < text.size();) {
            const std::size_t end = std::min(text.find(", ", at), text.size());
            keys.push_back(text.substr(at, end - at));
            at = end + 2;
        }
    }
    return keys;
}

/// The name of what the schema defines for values of a row.
std::string definitionOf(const Row& row)
{
    switch (row.kind) {
    case Row::Kind::FLAG:
        return "flag";
    case Row::Kind::NUMBER:
    case Row::Kind::SIGNED:
    case Row::Kind::ENTITY:
        return row.hasNone ? "optional-number" : "number";
    default:
        return "string";
    }
}

/// A pattern of the schema as fieldPattern writes it.
std::string plain(std::string pattern)
{
    for (const auto& [from, to] : std::map<std::string, std::string>{
             {"[1-9][0-9]*", "#"}, {"\\.", "."}, {"^", ""}, {"$", ""}}) {
        for (std::size_t at = pattern.find(from); at != std::string::npos;
             at = pattern.find(from)) {
            pattern.replace(at, from.size(), to);
        }
    }
    return pattern;
}

}

TEST(FruSchema, HasTheKeysOfTheCode)
{
    const recordkit::tool::Value unknown = recordkit::tool::Object{{"no such key", 1}};
    EXPECT_EQ(keysOf(schema()["properties"]), expectedKeys(unknown));
    for (const FRU_AREA id : informationAreas()) {
        const std::string area = fruAreaName(id);
        EXPECT_EQ(keysOf(schema()["$defs"][area]["properties"]),
                  expectedKeys(recordkit::tool::Object{{area, unknown}}));
    }
}

TEST(FruSchema, HasTheCodingsOfTheCode)
{
    std::vector<std::string> codings;
    for (const Coding coding : {CODING_BINARY, CODING_BCD_PLUS, CODING_SIX_BIT, CODING_TEXT}) {
        codings.emplace_back(codingName(coding));
    }
    EXPECT_EQ(schema()["$defs"]["coding"]["enum"].get<std::vector<std::string>>(), codings);
}

TEST(FruSchema, HasTheRecordsOfTheCodeWithTheirFields)
{
    const Json all = schema();
    std::vector<std::string> kinds;
    for (const Json& each : all["properties"]["multirecords"]["items"]["oneOf"]) {
        const std::string name = each["$ref"];
        const std::string start = "#/$defs/record-";
        if (name.find(start) == 0) {
            kinds.push_back(name.substr(start.size()));
        }
    }
    EXPECT_EQ(kinds, multiRecordKinds());
    for (const std::string& kind : multiRecordKinds()) {
        std::map<std::string, std::string> fields;
        for (const FruRecordContent& content : fullRecords(kind)) {
            const MultiRecord record = decoded(content);
            std::vector<MultiRecordField> each = record.fields;
            if (record.rest) {
                each.push_back(*record.rest);
            }
            for (const MultiRecordField& field : each) {
                fields[fieldPattern(record, field.name)] = "#/$defs/" + definitionOf(*field.row);
            }
        }
        const Json& definition = all["$defs"]["record-" + kind];
        EXPECT_EQ(definition["properties"]["record"]["const"], kind);
        std::map<std::string, std::string> defined;
        for (const auto& member : definition["properties"].items()) {
            if (member.key() != "record") {
                defined[member.key()] = member.value()["$ref"];
            }
        }
        const auto patterns = definition.find("patternProperties");
        if (patterns != definition.end()) {
            for (const auto& member : patterns->items()) {
                defined[plain(member.key())] = member.value()["$ref"];
            }
        }
        EXPECT_EQ(defined, fields) << kind;
    }
}
