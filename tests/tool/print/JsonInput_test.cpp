// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <recordkit/inspect/bytes/Error.h>

#include "tool/print/Json.h"
#include "tool/print/JsonInput.h"
#include "tool/print/Output.h"

using namespace recordkit::tool;
using recordkit::inspect::DataError;

namespace {

/// The text of the refusal.
std::string refusal(const std::string& json, JsonComments comments = JsonComments::REFUSED)
{
    try {
        readJson(json, comments);
    } catch (const DataError& e) {
        return e.what();
    }
    return "accepted";
}

}

TEST(JsonInput, ReadsEachTypeInItsOrder)
{
    EXPECT_EQ(jsonText(readJson(R"( {"b": [1, -2, true, false, null], "a": {"x": "\u00e9\u0000"},
                                     "c": 0.5, "d": [], "e": {}} )")),
              R"({"b":[1,-2,true,false,null],"a":{"x":"é\u0000"},"c":0.5,"d":[],"e":{}})");
    EXPECT_EQ(jsonText(readJson("9223372036854775807")), "9223372036854775807");
    EXPECT_EQ(jsonText(readJson("\xEF\xBB\xBF[]")), "[]");
}

TEST(JsonInput, TextsAreNotChangedForTheReader)
{
    showInsteadOf("hidden", "shown");
    const Value value = readJson(R"("hidden")");
    showInsteadOf("", "");
    ASSERT_NE(value.as<std::string>(), nullptr);
    EXPECT_EQ(*value.as<std::string>(), "hidden");
}

TEST(JsonInput, SyntaxErrorsHaveLineAndColumn)
{
    EXPECT_EQ(refusal(""), "line 1, column 1: syntax error while parsing value - unexpected end of "
                           "input; expected '[', '{', or a literal");
    EXPECT_EQ(refusal("{\n  \"a\": 1,\n  \"b\" 2}"),
              "line 3, column 7: syntax error while parsing object separator - unexpected number "
              "literal; expected ':'");
    EXPECT_EQ(refusal("[1] 2"), "line 1, column 5: syntax error while parsing value - unexpected "
                                "number literal; expected end of input");
    EXPECT_NE(refusal(std::string("[\"a\0b\"]", 7)).find("line 1, column 4: "), std::string::npos);
    EXPECT_NE(refusal("[\"\xFF\"]").find("line 1, column 3: "), std::string::npos);
    EXPECT_EQ(refusal("[1e999]"), "number overflow parsing '1e999'");
}

TEST(JsonInput, RefusesKeysThatAreThereTwice)
{
    EXPECT_EQ(refusal(R"({"a": [1, {"b": 1, "c": 2, "b": 3}]})"),
              "a[1].b: the object has this key twice");
    EXPECT_EQ(refusal(R"([{"a": 1}, {"a": 1}])"), "accepted");
}

TEST(JsonInput, RefusesNumbersBeyond63Bits)
{
    EXPECT_EQ(refusal(R"({"a": 9223372036854775808})"),
              "a: the number 9223372036854775808 is too large");
}

TEST(JsonInput, LimitsTheDepth)
{
    const auto nested = [](std::size_t depth) {
        return std::string(depth, '[') + std::string(depth, ']');
    };
    EXPECT_EQ(refusal(nested(MAX_JSON_DEPTH)), "accepted");
    EXPECT_EQ(refusal(nested(MAX_JSON_DEPTH + 1)), "arrays and objects are more than 64 deep");
    EXPECT_EQ(refusal(std::string(1000000, '[')), "arrays and objects are more than 64 deep");
}

TEST(JsonInput, SkipsCommentsWhereTheyMayBe)
{
    const std::string json = "{ /* one */ \"a\": 1 // two\n}";
    EXPECT_NE(refusal(json).find("line 1, column 3: "), std::string::npos);
    EXPECT_EQ(jsonText(readJson(json, JsonComments::SKIPPED)), R"({"a":1})");
}

TEST(JsonInput, PathsNameMembersAndElements)
{
    EXPECT_EQ(memberPath("", "board"), "board");
    EXPECT_EQ(memberPath("board", "custom"), "board.custom");
    EXPECT_EQ(elementPath("board.custom", 2), "board.custom[2]");
}
