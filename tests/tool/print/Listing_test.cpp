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
    EXPECT_EQ(csvLine(object), "\"x,y\",\"say \"\"hi\"\"\",,5,1 2,true,\"two\nlines\","
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
