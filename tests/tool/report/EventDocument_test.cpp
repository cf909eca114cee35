// SPDX-License-Identifier: Apache-2.0
// The events of a report's document: columns and tables of literal events.
#include "tool/report/EventDocument.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "support/SystemEvents.h"
#include "tool/print/Json.h"

using namespace recordkit::inspect;
using namespace testing_support;

namespace {

using Json = nlohmann::json;

Json documentOf(const std::vector<Event>& events, const EventTable& table)
{
    return Json::parse(recordkit::tool::jsonText(recordkit::tool::eventDocument(events, table)));
}

Json documentOf(const std::vector<Event>& events)
{
    return documentOf(events, tabulate(events));
}

Event withSlot(unsigned int slot)
{
    Event event = systemEvent(1730764800, {4, 0x10, 0x01, 0x52, 4, 5});
    event.slot = slot;
    return event;
}

Json column(const char* type, const char* data)
{
    return {{"type", type}, {"data", data}};
}

}

TEST(EventDocument, ColumnsHaveAsFewBytesAsTheirLargestNumberNeeds)
{
    const auto slots = [](unsigned int slot) {
        return documentOf({withSlot(1), withSlot(slot)})["columns"]["slot"];
    };
    EXPECT_EQ(slots(0xFF), column("u8", "Af8="));
    EXPECT_EQ(slots(0x100), column("u16", "AQAAAQ=="));
    EXPECT_EQ(slots(0xFFFF), column("u16", "AQD//w=="));
    EXPECT_EQ(slots(0x10000), column("u32", "AQAAAAAAAQA="));
    // Times always have four: FFFFFFFFh stands for none.
    EXPECT_EQ(documentOf({withSlot(1)})["columns"]["time"], column("u32", "AGApZw=="));
    EXPECT_EQ(documentOf({})["columns"]["time"], column("u32", ""));
    EXPECT_EQ(documentOf({})["columns"]["slot"], column("u8", ""));
}

TEST(EventDocument, TextsShareOnlyAsciiCharacters)
{
    EventTable table;
    table.texts = {"", "fan", "fan 1", "fan\xC3\xA4", "fan\xC3\xA4x", "fax"};
    EXPECT_EQ(documentOf({}, table)["texts"],
              Json::parse(
                  "[0, \"\", 0, \"fan\", 3, \" 1\", 3, \"\xC3\xA4\", 3, \"\xC3\xA4x\", 2, \"x\"]"));
}

TEST(EventDocument, FieldsAreThoseOfTheRecordTypesThatOccur)
{
    const Json fields = documentOf(
        {withSlot(1), eventOf({0xE0, 1, 2, 3}), eventOf({0xC1, 1, 2, 3}), withSlot(2)})["fields"];
    ASSERT_EQ(fields.size(), 3U);
    const auto namesOf = [](const Json& row) {
        std::vector<std::string> names;
        for (const Json& field : row["fields"]) {
            names.push_back(field["name"]);
        }
        return names;
    };
    // Neither the id of the next record, nor the whole record, nor what other bytes decide as well.
    EXPECT_EQ(namesOf(fields[0]),
              (std::vector<std::string>{"record_id", "record_type", "timestamp", "generator_id_1",
                                        "generator_id_2", "slave_address", "evm_revision",
                                        "sensor_type", "sensor_number", "deassertion", "event_type",
                                        "event_data_1", "event_data_2", "event_data_3"}));
    EXPECT_EQ(fields[1]["first"], 0xC1);
    EXPECT_EQ(fields[1]["kind"], "oem-timestamped");
    EXPECT_EQ(fields[2]["last"], 0xE0);
    EXPECT_EQ(fields[2]["kind"], "oem-untimestamped");
    EXPECT_EQ(fields[2]["fields"].back(),
              (Json{{"name", "oem_data"}, {"offset", 3}, {"width", 13}, {"as", "bytes"}}));
}

TEST(EventDocument, SensorsOfOtherRecordsHaveNoNames)
{
    const Json sensors = documentOf({eventOf({0xE0, 1, 2, 3})})["sensors"];
    ASSERT_EQ(sensors.size(), 1U);
    EXPECT_EQ(sensors[0]["log"], 0);
    EXPECT_TRUE(sensors[0]["number"].is_null() && sensors[0]["type_name"].is_null());
}

TEST(EventDocument, SaysWhatOfBlocksIsOmitted)
{
    EventTable table;
    const Event event = withSlot(1);
    table.blocks = {{&event, true}, {&event, false}, {}};
    const Json blocks = documentOf({}, table)["blocks"];
    EXPECT_FALSE(blocks[0]["omitted"]);
    EXPECT_EQ(blocks[0]["image"].get<std::string>().size(), 160U);
    EXPECT_TRUE(blocks[1]["omitted"]);
    EXPECT_TRUE(blocks[1]["image"].is_null());
    EXPECT_EQ(blocks[1]["partitions"], Json::array());
    EXPECT_EQ(blocks[2], (Json{{"omitted", true}}));
}
