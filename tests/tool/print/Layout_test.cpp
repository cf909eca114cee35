// SPDX-License-Identifier: Apache-2.0
// Which columns an answer has, and how wide they are on a narrow terminal.
#include <gtest/gtest.h>

#include "tool/Errors.h"
#include "tool/print/Layout.h"

using namespace recordkit::tool;

namespace {

const std::vector<ColumnHead> COLUMNS = {
    {"id", "ID", 5},
    {"record_type", nullptr, 0},
    {"sensor_type", "SENSOR TYPE", 24},
    {"severity", "SEVERITY", 15},
    {"image", nullptr, 0, true},
    {nullptr, "LOG FILE", 10},
    {"event", "EVENT", 0},
};
const std::vector<Wish> WISHES = {{"event", 20}, {"severity", 8}, {"id", 5}, {"sensor_type", 12}};

/// The columns as NAME:WIDTH, with a "~" if longer texts are shortened.
std::string shownOn(std::optional<std::size_t> terminal, const Layout& layout = {},
                    const std::vector<Wish>& wishes = WISHES)
{
    std::string text;
    for (const ShownColumn& column : shownColumns(COLUMNS, layout, wishes, terminal)) {
        text += (text.empty() ? "" : " ") + COLUMNS[column.index].name() + ":" +
                std::to_string(column.width) + (column.isCut ? "~" : "");
    }
    return text;
}

std::string refusal(const Layout& layout)
{
    try {
        static_cast<void>(shownColumns(COLUMNS, layout, WISHES, std::nullopt));
    } catch (const CommandError& e) {
        EXPECT_EQ(e.getStatus(), EXIT_USAGE);
        return e.what();
    }
    return "none";
}

const std::string ALL = "id:5 sensor_type:24 severity:15 log_file:10 event:0";

}

TEST(Layout, WithoutATerminalATableHasEveryColumn)
{
    EXPECT_EQ(shownOn(std::nullopt), ALL);
}

TEST(Layout, ATerminalThatIsWideEnoughShowsEveryColumn)
{
    // 5 + 24 + 15 + 10, a gap of two after each, and 20 for the event
    EXPECT_EQ(shownOn(82), ALL);
    EXPECT_EQ(shownOn(81), "id:5~ sensor_type:24~ severity:15~ event:0");
}

TEST(Layout, ANarrowTerminalShowsTheMostWantedColumnsFirst)
{
    EXPECT_EQ(shownOn(51), "id:5~ sensor_type:12~ severity:8~ event:0");
    EXPECT_EQ(shownOn(50), "id:5~ severity:15~ event:0");
    EXPECT_EQ(shownOn(37), "id:5~ severity:8~ event:0");
    EXPECT_EQ(shownOn(36), "severity:14~ event:0");
    EXPECT_EQ(shownOn(30), "severity:8~ event:0");
    EXPECT_EQ(shownOn(29), "id:5~ event:0");
    EXPECT_EQ(shownOn(20), "event:0");
    EXPECT_EQ(shownOn(1), "event:0");
}

TEST(Layout, WhatIsLeftWidensTheMostWantedColumnsFirst)
{
    EXPECT_EQ(shownOn(52), "id:5~ sensor_type:12~ severity:9~ event:0");
    EXPECT_EQ(shownOn(58), "id:5~ sensor_type:12~ severity:15~ event:0");
    EXPECT_EQ(shownOn(59), "id:5~ sensor_type:13~ severity:15~ event:0");
}

TEST(Layout, OnRequestEveryColumnIsShownWhole)
{
    Layout wide;
    wide.isWide = true;
    EXPECT_EQ(shownOn(20, wide), ALL);
    EXPECT_EQ(shownOn(20, {}, {}), ALL);
}

TEST(Layout, ATableHasTheColumnsThatAreNamed)
{
    Layout layout;
    layout.columns = "SEV,id";
    EXPECT_EQ(shownOn(10, layout), "severity:15 id:5");
    layout.columns = "event,record,log_f";
    EXPECT_EQ(shownOn(10, layout), "event:40 record_type:11 log_file:10");
    layout.columns = "severity,event";
    EXPECT_EQ(shownOn(10, layout), "severity:15 event:0");
}

TEST(Layout, AnObjectHasTheFieldsThatAreNamed)
{
    Layout layout(Format::JSON);
    EXPECT_EQ(shownOn(10, layout), "id:5 record_type:11 sensor_type:24 severity:15 event:0");
    layout.fields = "event,id,image";
    EXPECT_EQ(shownOn(10, layout), "event:40 id:5 image:5");
    layout.fields = "+image,id,image";
    EXPECT_EQ(shownOn(10, layout),
              "id:5 record_type:11 sensor_type:24 severity:15 event:0 image:5");
    layout.fields = "id,ID";
    EXPECT_EQ(shownOn(10, layout), "id:5");
}

TEST(Layout, OtherNamesAreRefusedWithTheChoices)
{
    Layout layout;
    layout.columns = "id,x\ty";
    EXPECT_EQ(refusal(layout),
              "--columns: unknown or ambiguous \"x\\x09y\" (expected id, sensor_type, severity, "
              "log_file, event, record_type, image)");
    layout.columns = "s"; // sensor_type and severity
    EXPECT_EQ(refusal(layout).substr(0, 35), "--columns: unknown or ambiguous \"s\"");
    Layout json(Format::JSON);
    json.fields = "log_file"; // only in the table
    EXPECT_EQ(refusal(json),
              "--fields: unknown or ambiguous \"log_file\" (expected id, sensor_type, severity, "
              "event, record_type, image)");
    json.fields = "+";
    EXPECT_EQ(refusal(json), "--fields: expected some of id, sensor_type, severity, event, "
                             "record_type, image");
}
