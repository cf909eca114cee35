// SPDX-License-Identifier: Apache-2.0
// One description of columns in every format.
#include <gtest/gtest.h>

#include "tool/print/Csv.h"
#include "tool/print/Json.h"
#include "tool/print/Listing.h"

using namespace recordkit::tool;

namespace {

struct Row {
    int number;
    const char* name;
};

constexpr Column<Row> COLUMNS[] = {
    {"number", "NUMBER", 6, [](const Row& row) { return Value(row.number); },
     [](const Row& row) { return Cell{"#" + std::to_string(row.number)}; }},
    {"half", nullptr, 0,
     [](const Row& row) { return valueIf(row.number % 2 == 0, row.number / 2); }},
    {nullptr, "SIGN", 4, nullptr, [](const Row& row) { return Cell{row.number < 0 ? "-" : "+"}; }},
    {"name", "NAME", 0, [](const Row& row) { return Value(row.name); }},
};

std::string listed(const std::vector<Row>& rows, Format format)
{
    testing::internal::CaptureStdout();
    printListing(rows, COLUMNS, format);
    std::fflush(stdout);
    return testing::internal::GetCapturedStdout();
}

const std::vector<Row> ROWS = {{4, "four"}, {-3, "minus, \"three\""}};

}

TEST(Listing, TableHasTitledColumns)
{
    EXPECT_EQ(listed(ROWS, Format::TABLE), "NUMBER  SIGN  NAME\n"
                                           "#4      +     four\n"
                                           "#-3     -     minus, \"three\"\n");
    EXPECT_EQ(listed({}, Format::TABLE), "NUMBER  SIGN  NAME\n");
}

TEST(Listing, JsonIsAnArrayWithAnObjectPerLine)
{
    EXPECT_EQ(listed(ROWS, Format::JSON),
              "[\n{\"number\":4,\"half\":2,\"name\":\"four\"},\n"
              "{\"number\":-3,\"half\":null,\"name\":\"minus, \\\"three\\\"\"}\n]\n");
    EXPECT_EQ(listed({ROWS[0]}, Format::JSON),
              "[\n{\"number\":4,\"half\":2,\"name\":\"four\"}\n]\n");
    EXPECT_EQ(listed({}, Format::JSON), "[]\n");
}

TEST(Listing, NdjsonIsAnObjectPerLine)
{
    EXPECT_EQ(listed(ROWS, Format::NDJSON),
              "{\"number\":4,\"half\":2,\"name\":\"four\"}\n"
              "{\"number\":-3,\"half\":null,\"name\":\"minus, \\\"three\\\"\"}\n");
    EXPECT_EQ(listed({}, Format::NDJSON), "");
}

TEST(Listing, CsvBeginsWithTheKeys)
{
    EXPECT_EQ(listed(ROWS, Format::CSV), "number,half,name\r\n4,2,four\r\n"
                                         "-3,,\"minus, \"\"three\"\"\"\r\n");
    EXPECT_EQ(listed({}, Format::CSV), "number,half,name\r\n");
}

TEST(Listing, RowsAreWrittenInPiecesWithoutALoss)
{
    const std::vector<Row> rows(10000, Row{1, "row"});
    EXPECT_EQ(listed(rows, Format::CSV).size(), 18U + 10000U * 8U);
}

TEST(Table, PadsEveryColumnButTheLast)
{
    const Table table({{"A", 3}, {"LONG", 4}, {"END", 0}}, false);
    EXPECT_EQ(table.header(), "A    LONG  END\n");
    std::string line;
    table.append({{"12345"}, {"x", Style::ALARM}, {"last"}}, line);
    EXPECT_EQ(line, "12345  x     last\n");
}

TEST(Table, IsInColourOnlyOnRequest)
{
    const Table table({{"A", 3}, {"B", 0}}, true);
    std::string line;
    table.append({{"x", Style::WARNING}, {"y"}}, line);
    EXPECT_EQ(line, "\033[33mx\033[0m    y\n");
}

TEST(Table, CellsAreTextsOfValues)
{
    EXPECT_EQ(cellText(Value()), "-");
    EXPECT_EQ(cellText(true), "yes");
    EXPECT_EQ(cellText(false), "no");
    EXPECT_EQ(cellText(-7), "-7");
    EXPECT_EQ(cellText("a\tb"), "a\\x09b");
    EXPECT_EQ(cellText(List{1, "x"}), "1,x");
    EXPECT_EQ(cellText(List()), "-");
    EXPECT_EQ(cellText(Object{{"a", 1}}), "{\"a\":1}");
}

TEST(Csv, QuotesWhatNeedsQuotes)
{
    const Object object = {
        {"a", "x,y"},      {"b", "say \"hi\""}, {"c", Value()},      {"d", 5},
        {"e", List{1, 2}}, {"f", true},         {"g", "two\nlines"}, {"h", Object{{"k", 1}}}};
    EXPECT_EQ(csvLine(object), "\"x,y\",\"say \"\"hi\"\"\",,5,1 2,true,two\\x0Alines,"
                               "\"{\"\"k\"\":1}\"\r\n");
}

TEST(Json, ValuesAreReadBackAsWritten)
{
    const std::string text = R"({"b":[1,null,true,{}],"a":"\u00e9\n","n":-9223372036854775808})";
    const auto value = parseJson(text);
    ASSERT_TRUE(value.has_value());
    EXPECT_EQ(jsonText(*value), "{\"b\":[1,null,true,{}],\"a\":\"\u00e9\\n\","
                                "\"n\":-9223372036854775808}");
    EXPECT_EQ(*value->find("a")->as<std::string>(), "\u00e9\n");
    EXPECT_EQ(value->find("z"), nullptr);
    EXPECT_EQ(value->as<List>(), nullptr);
    EXPECT_EQ(Value(1).find("a"), nullptr);
}

TEST(Json, WhatAValueCannotExpressIsRefused)
{
    for (const char* const text : {"", "{", "1.5", "[18446744073709551615]", "{\"a\":1e3}", "x"}) {
        EXPECT_FALSE(parseJson(text).has_value()) << text;
    }
    EXPECT_TRUE(parseJson("9223372036854775807").has_value());
}

TEST(Csv, EscapesControlCharactersAndWhatIsNotUtf8)
{
    EXPECT_EQ(csvLine(Object{{"a", "\033]0;x\a"}, {"b", "\xC2\x9B"}, {"c", "\xFF"}}),
              "\\x1B]0;x\\x07,\\x9B,\\xFF\r\n");
}

TEST(Csv, IsSafeForSpreadsheetsOnRequest)
{
    const Object object = {{"a", "=1+1"}, {"b", "+x"},  {"c", "-x"}, {"d", "@x"},
                           {"e", -5},     {"f", "a=1"}, {"g", ""}};
    EXPECT_EQ(csvLine(object, true), "'=1+1,'+x,'-x,'@x,-5,a=1,\r\n");
    EXPECT_EQ(csvLine(object), "=1+1,+x,-x,@x,-5,a=1,\r\n");
    Layout layout(Format::CSV);
    layout.isSafeCsv = true;
    testing::internal::CaptureStdout();
    printListing<Row>({{1, "=cmd"}}, COLUMNS, layout);
    std::fflush(stdout);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "number,half,name\r\n1,,'=cmd\r\n");
}

TEST(Json, IsUtf8WithoutControlCharacters)
{
    EXPECT_EQ(jsonText("\033[31m\xC2\x9B\x7F\xC3\xA4"), "\"\\u001b[31m\\u009b\\u007f\xC3\xA4\"");
    EXPECT_EQ(jsonText("a\xFFz"), "\"a\xEF\xBF\xBDz\"");
    EXPECT_EQ(indentedJson(Object{{"k\xFF", "\xC2\x80"}}),
              "{\n  \"k\xEF\xBF\xBD\": \"\\u0080\"\n}\n");
}

TEST(Json, WhatIsNestedDeeperThan64LevelsIsRefused)
{
    const auto nested = [](std::size_t depth) {
        return std::string(depth, '[') + std::string(depth, ']');
    };
    EXPECT_TRUE(parseJson(nested(64)).has_value());
    EXPECT_FALSE(parseJson(nested(65)).has_value());
    EXPECT_FALSE(parseJson(nested(1000000)).has_value());
    EXPECT_FALSE(isTooDeep(nested(64)));
    EXPECT_TRUE(isTooDeep(nested(65)));
    // Brackets in texts do not count, nor do those that were closed.
    EXPECT_FALSE(isTooDeep("[\"" + std::string(100, '[') + "\\\"" + std::string(100, '{') + "\"]"));
    std::string row = "[";
    for (int i = 0; i < 100; ++i) {
        row += "[{}],";
    }
    EXPECT_FALSE(isTooDeep(row + "1]"));
    EXPECT_TRUE(isTooDeep(std::string(33, '[') + "{" + std::string(31, '{')));
}
